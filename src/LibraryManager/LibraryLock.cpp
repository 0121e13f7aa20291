#include "LibraryLock.h"

#include "LibraryFileNames.h"

LibraryLock::LibraryLock(const QString &directory)
    : m_file(directory + u'/' + LibraryFileNames::lockFile())
{
    // Only a holder that is gone makes a lock stale, never its age: a library may stay open for days.
    m_file.setStaleLockTime(0);
}

bool LibraryLock::tryLock()
{
    return m_file.tryLock(0);
}
