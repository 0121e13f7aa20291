#include "LibraryLock.h"

#include "DirectoryGuard.h"
#include "LibraryFileNames.h"
#include "OwnerlessLock.h"
#include "ProcessExistence.h"

#include <QDir>
#include <QFileInfo>
#include <QSysInfo>

#include <algorithm>
#include <cerrno>

LibraryLock::LibraryLock(const QString &directory)
    : m_directory(directory)
    , m_file(directory + u'/' + LibraryFileNames::lockFile())
{
    // Only a holder that is gone makes a lock stale, never its age: a library may stay open for days.
    m_file.setStaleLockTime(0);
}

bool LibraryLock::isHeldByOther(const QString &directory)
{
    const std::optional<Holder> holder = LibraryLock(directory).holder();
    if (!holder) {
        return false;
    }
    return !holder->isHere
        || (holder->process != QCoreApplication::applicationPid() && !isProcessGone(holder->process));
}

Result<> LibraryLock::tryLock()
{
    const QString name = LibraryFileNames::lockFile();
    if (isPlaceTaken()) {
        return Problem{.where = m_directory,
            .why = tr("there is something else than a file in the place of the lock file %1").arg(name)};
    }
    const DirectoryGuard guard(m_directory);
    if (guard.isHeld()) {
        removeLeftovers();
    } else {
        OwnerlessLock::remove(m_file.fileName());
    }
    errno = 0;
    if (m_file.tryLock(0)) {
        return Success();
    }
    const int systemError = errno;
    if (m_file.error() == QLockFile::LockFailedError) {
        return Problem{.what = Problem::What::Taken,
            .where = m_directory,
            .why = tr("the library is in use by another program, says its lock file %1").arg(name)};
    }
    return Problem{
        .where = m_directory, .why = tr("the directory cannot be written (%1)").arg(qt_error_string(systemError))};
}

bool LibraryLock::isPlaceTaken() const
{
    const QDir directory(m_directory);
    const QStringList names{LibraryFileNames::lockFile(), LibraryFileNames::lockRemovalFile()};
    return std::any_of(names.begin(), names.end(), [&directory](const QString &name) {
        const QFileInfo info(directory, name);
        return info.isSymLink() || (info.exists() && !info.isFile());
    });
}

// Qt takes over the lock of a dead program too, but guards that with a lock file of its own, which a program that dies
// there leaves behind. Under the guard of the directory nobody else is about it. And Qt asks whether a process has the
// holder's number, which in another sandbox nobody may have while the holder lives, or the program itself when it is
// dead. The removal asks the system, which knows whether the file is held, and fails then.
void LibraryLock::removeLeftovers()
{
    const std::optional<Holder> found = holder();
    if (found && found->isHere) {
        m_file.removeStaleLockFile();
    }
    OwnerlessLock::remove(m_file.fileName());
    const QString removal = m_directory + u'/' + LibraryFileNames::lockRemovalFile();
    for (const QString &path : {removal + QStringLiteral(".rmlock"), removal}) {
        if (QFileInfo(path).isFile() && !QFileInfo(path).isSymLink()) {
            QLockFile(path).removeStaleLockFile();
        }
    }
}

std::optional<LibraryLock::Holder> LibraryLock::holder() const
{
    qint64 process = 0;
    QString host;
    QString application;
    // A pipe would be waited for.
    if (!QFileInfo(m_file.fileName()).isFile() || !m_file.getLockInfo(&process, &host, &application)) {
        return std::nullopt;
    }
    return Holder{.process = process, .isHere = host == QSysInfo::machineHostName()};
}
