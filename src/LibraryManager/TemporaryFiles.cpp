#include "TemporaryFiles.h"

#include "DiskFiles.h"
#include "LibraryFileNames.h"

#include <QCoreApplication>
#include <QRandomGenerator>
#include <QSysInfo>

#ifdef Q_OS_UNIX
#include <cerrno>
#include <csignal>
#endif

namespace TemporaryFiles {

QString nameBeside(const QString &name)
{
    static const QString prefix =
        LibraryFileNames::temporaryPrefix(QSysInfo::machineHostName(), QCoreApplication::applicationPid());
    return name.first(name.lastIndexOf(u'/') + 1) + prefix
        + QString::number(QRandomGenerator::global()->generate64(), 36);
}

void sweep(const QDir &directory)
{
#ifdef Q_OS_UNIX
    const QStringList names = directory.entryList(
        {LibraryFileNames::temporaryPrefix() + u'*'}, QDir::Files | QDir::Hidden | QDir::NoSymLinks);
    for (const QString &name : names) {
        const auto process = LibraryFileNames::temporaryFileOwner(name, QSysInfo::machineHostName());
        if (process && ::kill(static_cast<pid_t>(*process), 0) != 0 && errno == ESRCH) {
            std::ignore = DiskFiles::remove(directory.filePath(name));
        }
    }
#else
    Q_UNUSED(directory)
#endif
}

} // namespace TemporaryFiles
