#pragma once

#include <QCryptographicHash>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QString>

#include <sys/stat.h>

/// What stands below a directory: the kind of every entry and the hash of every file. Links are not followed.
namespace TreeRecord {

using Record = QMap<QString, QString>;

/// `except` is a path below which nothing is looked at.
inline Record of(const QString &directory, const QString &except = {})
{
    Record record;
    QDirIterator entry(
        directory, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (entry.hasNext()) {
        const QString path = entry.next();
        if (!except.isEmpty() && (path == except || path.startsWith(except + u'/'))) {
            continue;
        }
        struct stat status { };
        lstat(QFile::encodeName(path).constData(), &status);
        QString content;
        if (S_ISREG(status.st_mode)) {
            QFile file(path);
            QCryptographicHash hash(QCryptographicHash::Sha1);
            content = file.open(QIODevice::ReadOnly) && hash.addData(&file) ? QString::fromLatin1(hash.result().toHex())
                                                                            : QStringLiteral("unreadable");
        } else if (S_ISLNK(status.st_mode)) {
            content = QFile::symLinkTarget(path);
        }
        record.insert(path, QString::number(status.st_mode, 8) + u' ' + content);
    }
    return record;
}

} // namespace TreeRecord
