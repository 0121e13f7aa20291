#include "LibraryLock.h"

#include "LibraryFileNames.h"
#include "OwnerlessLock.h"

#include <QFileInfo>

#include <cerrno>

LibraryLock::LibraryLock(const QString &directory)
    : m_directory(directory)
    , m_file(directory + u'/' + LibraryFileNames::lockFile())
{
    // Only a holder that is gone makes a lock stale, never its age: a library may stay open for days.
    m_file.setStaleLockTime(0);
}

bool LibraryLock::tryLock()
{
    const QString removal = m_directory + u'/' + LibraryFileNames::lockRemovalFile();
    m_isPlaceTaken = false;
    for (const QString &path : {m_file.fileName(), removal}) {
        const QFileInfo info(path);
        m_isPlaceTaken = m_isPlaceTaken || info.isSymLink() || (info.exists() && !info.isFile());
    }
    if (m_isPlaceTaken) {
        return false;
    }
    errno = 0;
    if (m_file.tryLock(0)) {
        return true;
    }
    m_systemError = errno;
    // A program may have died while it took over the lock of one that had died.
    if (OwnerlessLock::remove(removal) && m_file.tryLock(0)) {
        return true;
    }
    return m_file.error() == QLockFile::LockFailedError && OwnerlessLock::remove(m_file.fileName())
        && m_file.tryLock(0);
}

bool LibraryLock::isHeldElsewhere() const
{
    return !m_isPlaceTaken && m_file.error() == QLockFile::LockFailedError;
}

QString LibraryLock::reason() const
{
    const QString name = LibraryFileNames::lockFile();
    if (m_isPlaceTaken) {
        return tr("%1: there is something else than a file in the place of the lock file %2").arg(m_directory, name);
    }
    return isHeldElsewhere()
        ? tr("%1: the library is in use by another program, says its lock file %2").arg(m_directory, name)
        : tr("%1: the directory cannot be written (%2)").arg(m_directory, qt_error_string(m_systemError));
}
