#include "TemporaryFiles.h"

#include "ProcessExistence.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QRandomGenerator>
#include <QStringBuilder>
#include <QSysInfo>

namespace TemporaryFiles {

QString prefix()
{
    return QStringLiteral(".velgor-writing-");
}

QString prefix(const QString &host, qint64 process)
{
    const QByteArray hash = QCryptographicHash::hash(host.toUtf8(), QCryptographicHash::Sha1).toHex().first(8);
    return prefix() + QStringLiteral("%1-%2-").arg(QString::fromLatin1(hash)).arg(process);
}

std::optional<qint64> ownerOf(const QString &name, const QString &host)
{
    const qint64 process = name.section(u'-', 3, 3).toLongLong();
    return process > 0 && name.startsWith(prefix(host, process)) ? std::optional(process) : std::nullopt;
}

QString nameBeside(const QString &name)
{
    static const QString ownPrefix = prefix(QSysInfo::machineHostName(), QCoreApplication::applicationPid());
    // Short, because Linux handles names of up to 39 bytes faster.
    const quint32 number = QRandomGenerator::global()->bounded(1U << 30U);
    return QStringView(name).first(name.lastIndexOf(u'/') + 1) % ownPrefix % QString::number(number, 36);
}

void sweep(const QDir &directory)
{
    const QStringList names = directory.entryList({prefix() + u'*'}, QDir::Files | QDir::Hidden | QDir::NoSymLinks);
    for (const QString &name : names) {
        const auto process = ownerOf(name, QSysInfo::machineHostName());
        if (process && isProcessGone(*process)) {
            QFile::remove(directory.filePath(name));
        }
    }
}

} // namespace TemporaryFiles
