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
    m_run.start(
        [this, directory](const BackgroundRun::Report &report) { m_result = LibraryLoader(directory, report).load(); });
}

LibraryLoadResult LibraryLoading::takeResult()
{
    return std::exchange(m_result, {});
}
