#pragma once

#include <QByteArray>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

#include <sys/stat.h>

/// A library directory in a place of its own, gone with the object and its copies. Its path needs no percent-encoding
/// unless `name` does.
class LibraryDirectory {
public:
    explicit LibraryDirectory(const QString &name = QStringLiteral("library"))
        : m_path(m_parent->filePath(name))
    {
        QDir().mkpath(m_path);
    }

    [[nodiscard]] QString path() const { return m_path; }
    [[nodiscard]] QString parentPath() const { return m_parent->path(); }
    [[nodiscard]] QString filePath(const QString &name) const { return m_path + u'/' + name; }
    [[nodiscard]] bool has(const QString &name) const
    {
        return QFileInfo::exists(filePath(name)) || QFileInfo(filePath(name)).isSymLink();
    }

    void write(const QString &name, const QByteArray &bytes) const
    {
        QFile file(filePath(name));
        if (!QDir().mkpath(QFileInfo(file).path()) || !file.open(QIODevice::WriteOnly)
            || file.write(bytes) != bytes.size()) {
            qFatal("cannot write %s", qPrintable(file.fileName()));
        }
    }

    [[nodiscard]] QByteArray read(const QString &name) const
    {
        QFile file(filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    /// Everything that is there, directories left out, as sorted relative paths.
    [[nodiscard]] QStringList files() const { return contents().keys(); }

    [[nodiscard]] QMap<QString, QByteArray> contents() const
    {
        QMap<QString, QByteArray> result;
        QDirIterator entry(m_path, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
            QDirIterator::Subdirectories);
        while (entry.hasNext()) {
            const QFileInfo info(entry.next());
            if (!info.isDir() || info.isSymLink()) {
                const QString name = info.filePath().sliced(m_path.size() + 1);
                result.insert(name, info.isFile() ? read(name) : QByteArray());
            }
        }
        return result;
    }

    /// What changes when a file is written, replaced, moved or touched: its number and its times.
    [[nodiscard]] QMap<QString, QString> stamps() const
    {
        QMap<QString, QString> result;
        for (const QString &name : files()) {
            struct stat status { };
            lstat(QFile::encodeName(filePath(name)).constData(), &status);
            result.insert(name,
                QStringLiteral("%1 %2.%3 %4.%5")
                    .arg(status.st_ino)
                    .arg(status.st_mtim.tv_sec)
                    .arg(status.st_mtim.tv_nsec)
                    .arg(status.st_ctim.tv_sec)
                    .arg(status.st_ctim.tv_nsec));
        }
        return result;
    }

private:
    /// Not named for the program, whose name may hold a space.
    std::shared_ptr<QTemporaryDir> m_parent =
        std::make_shared<QTemporaryDir>(QDir::tempPath() + QStringLiteral("/velgor-XXXXXX"));
    QString m_path;
};
