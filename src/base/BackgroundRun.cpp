#include "BackgroundRun.h"

#include <system_error>

namespace {

/// What ends the work of a run whose result nobody waits for.
struct Unwanted { };

} // namespace

BackgroundRun::BackgroundRun(QObject *parent)
    : QObject(parent)
{
    // Thirty times a second is as often as a progress bar can be seen to move.
    m_reportTimer.setInterval(std::chrono::milliseconds(34));
    m_reportTimer.setTimerType(Qt::PreciseTimer);
    connect(&m_reportTimer, &QTimer::timeout, this, &BackgroundRun::reportProgress);
}

BackgroundRun::~BackgroundRun()
{
    m_isUnwanted = true;
    if (m_end.valid()) {
        m_end.wait();
    }
}

void BackgroundRun::start(const Work &work)
{
    m_isRunning = true;
    m_reported = 0;
    m_done = 0;
    m_total = 0;
    const auto report = [this](qsizetype done, qsizetype total) {
        if (m_isUnwanted) {
            throw Unwanted();
        }
        m_total = total;
        m_done = done;
    };
    const auto run = [this, work, report, number = ++m_run]() noexcept {
        try {
            work(report);
        } catch (const Unwanted &) {
            return;
        }
        const auto end = [this, number] {
            // finish() may have been called meanwhile, and another run be under way.
            if (number == m_run) {
                finish();
            }
        };
        QMetaObject::invokeMethod(this, end, Qt::QueuedConnection);
    };
    try {
        m_end = std::async(std::launch::async, run);
        m_reportTimer.start();
    } catch (const std::system_error &) {
        run();
    }
}

void BackgroundRun::finish()
{
    if (!m_isRunning) {
        return;
    }
    if (m_end.valid()) {
        m_end.get();
    }
    m_reportTimer.stop();
    m_isRunning = false;
    Q_EMIT finished();
}

bool BackgroundRun::finishWithin(std::chrono::milliseconds time)
{
    if (m_isRunning && m_end.valid() && m_end.wait_for(time) != std::future_status::ready) {
        return false;
    }
    finish();
    return true;
}

void BackgroundRun::reportProgress()
{
    const qsizetype done = m_done;
    if (done != m_reported) {
        m_reported = done;
        Q_EMIT progress(done, m_total);
    }
}
