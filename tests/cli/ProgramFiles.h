#pragma once

#include "LibraryDirectory.h"

#include <QByteArray>
#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QString>

/// Files that runs of the program read and write.
namespace ProgramFiles {

inline QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!QDir().mkpath(QFileInfo(path).path()) || !file.open(QIODevice::WriteOnly)
        || file.write(bytes) != bytes.size()) {
        qFatal("cannot write %s", qPrintable(path));
    }
}

inline QString sha256(const QByteArray &bytes)
{
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex());
}

/// A sample preset file: "edge/one_patch".
inline QString sample(const QString &name)
{
    return QStringLiteral(VELGOR_TEST_DATA "/samples/") + name + QStringLiteral(".prst");
}

/// Puts a copy of a sample library into `directory`.
inline void copyLibrary(const QString &name, const LibraryDirectory &directory)
{
    const QString source = QStringLiteral(VELGOR_TEST_DATA "/libraries/") + name;
    QDirIterator entry(source, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (entry.hasNext()) {
        const QString path = entry.next();
        directory.write(path.sliced(source.size() + 1), read(path));
    }
}

} // namespace ProgramFiles
