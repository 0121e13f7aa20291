#include "LibraryLoading.h"

#include <chrono>
#include <system_error>
#include <utility>

LibraryLoading::LibraryLoading(QObject *parent)
    : QObject(parent)
{
    // Thirty times a second is as often as a progress bar can be seen to move.
    m_reportTimer.setInterval(std::chrono::milliseconds(34));
    m_reportTimer.setTimerType(Qt::PreciseTimer);
    connect(&m_reportTimer, &QTimer::timeout, this, &LibraryLoading::reportProgress);
}

LibraryLoading::~LibraryLoading()
{
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

void LibraryLoading::start(const QString &directory)
{
    m_isRunning = true;
    m_reported = 0;
    m_loaded = 0;
    m_total = 0;
    const auto read = [this, directory, run = ++m_run, owner = thread()] {
        const auto report = [this](qsizetype loaded, qsizetype total) {
            m_total = total;
            m_loaded = loaded;
        };
        m_result = LibraryLoader(directory, report).load();
        if (m_result.library) {
            // Only the thread that an object belongs to can give it away.
            m_result.library->moveToThread(owner);
        }
        const auto end = [this, run] {
            // finish() may have been called meanwhile, and another run be under way.
            if (run == m_run) {
                finish();
            }
        };
        QMetaObject::invokeMethod(this, end, Qt::QueuedConnection);
    };
    try {
        m_thread = std::thread(read);
        m_reportTimer.start();
    } catch (const std::system_error &) {
        // Without another thread to be had, loading takes place on this one.
        read();
    }
}

void LibraryLoading::finish()
{
    if (!m_isRunning) {
        return;
    }
    if (m_thread.joinable()) {
        m_thread.join();
    }
    m_reportTimer.stop();
    m_isRunning = false;
    Q_EMIT finished();
}

LibraryLoadResult LibraryLoading::takeResult()
{
    return std::exchange(m_result, {});
}

void LibraryLoading::reportProgress()
{
    const qsizetype loaded = m_loaded;
    if (loaded != m_reported) {
        m_reported = loaded;
        Q_EMIT progress(loaded, m_total);
    }
}
