#include "TemporaryFiles.h"

#include "DiskFiles.h"
#include "LibraryFileNames.h"
#include "ProcessExistence.h"

#include <QCoreApplication>
#include <QFile>
#include <QRandomGenerator>
#include <QSysInfo>

namespace TemporaryFiles {

QString freePath(const QDir &directory)
{
    static const QString prefix =
        LibraryFileNames::temporaryPrefix(QSysInfo::machineHostName(), QCoreApplication::applicationPid());
    QString path;
    do {
        path = directory.filePath(prefix + QString::number(QRandomGenerator::global()->generate64(), 36));
    } while (QFile::exists(path));
    return path;
}

void sweep(const QDir &directory)
{
    const QStringList names = directory.entryList(
        {LibraryFileNames::temporaryPrefix() + u'*'}, QDir::Files | QDir::Hidden | QDir::NoSymLinks);
    for (const QString &name : names) {
        const auto process = LibraryFileNames::temporaryFileOwner(name, QSysInfo::machineHostName());
        if (process && isProcessGone(*process)) {
            std::ignore = DiskFiles::remove(directory.filePath(name));
        }
    }
}

} // namespace TemporaryFiles
