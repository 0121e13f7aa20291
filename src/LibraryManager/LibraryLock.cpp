#include "LibraryLock.h"

#include "LibraryFileNames.h"

#include <chrono>
#include <thread>

LibraryLock::LibraryLock(const QString &directory)
    : m_file(directory + u'/' + LibraryFileNames::lockFile())
{
    // Only a holder that is gone makes a lock stale, never its age: a library may stay open for days.
    m_file.setStaleLockTime(0);
}

bool LibraryLock::tryLock()
{
    return m_file.tryLock(0) || (isWithoutOwner() && m_file.removeStaleLockFile() && m_file.tryLock(0));
}

bool LibraryLock::isWithoutOwner() const
{
    // Between making the file and writing its owner goes by no time to speak of, unless the program died there.
    constexpr int attempts = 10;
    constexpr std::chrono::milliseconds pause(20);
    for (int attempt = 0; attempt < attempts; ++attempt) {
        qint64 process = 0;
        QString host;
        QString application;
        if (m_file.error() != QLockFile::LockFailedError || m_file.getLockInfo(&process, &host, &application)) {
            return false;
        }
        std::this_thread::sleep_for(pause);
    }
    return true;
}
