#include "LibraryLoading.h"

#include <utility>

LibraryLoading::LibraryLoading(QObject *parent)
    : QObject(parent)
{
    connect(&m_run, &BackgroundRun::progress, this, &LibraryLoading::progress);
    connect(&m_run, &BackgroundRun::finished, this, &LibraryLoading::finished);
}

void LibraryLoading::start(const QString &directory)
{
    m_run.start([this, directory, owner = thread()](const BackgroundRun::Report &report) {
        m_result = LibraryLoader(directory, report).load();
        if (m_result.library) {
            // Only the thread that an object belongs to can give it away.
            m_result.library->moveToThread(owner);
        }
    });
}

LibraryLoadResult LibraryLoading::takeResult()
{
    return std::exchange(m_result, {});
}
