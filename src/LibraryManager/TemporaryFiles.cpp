#include "TemporaryFiles.h"

#include "DiskFiles.h"
#include "LibraryFileNames.h"
#include "ProcessExistence.h"

#include <QCoreApplication>
#include <QRandomGenerator>
#include <QStringBuilder>
#include <QSysInfo>

namespace TemporaryFiles {

QString nameBeside(const QString &name)
{
    static const QString prefix =
        LibraryFileNames::temporaryPrefix(QSysInfo::machineHostName(), QCoreApplication::applicationPid());
    // Short, because Linux handles names of up to 39 bytes faster.
    const quint32 number = QRandomGenerator::global()->bounded(1U << 30U);
    return QStringView(name).first(name.lastIndexOf(u'/') + 1) % prefix % QString::number(number, 36);
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
