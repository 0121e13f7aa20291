#pragma once

#include "FileStamp.h"
#include "OpenDirectory.h"
#include "Result.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QString>

/// The one module that opens, writes, moves and removes files.
class DiskFiles {
    Q_DECLARE_TR_FUNCTIONS(DiskFiles)

public:
    /// Largest file that is read: far more than a list of 65,535 patches with impulse responses needs.
    static constexpr qint64 largestFile = qint64(1) << 30;

    enum class Links { Follow, Refuse };

    struct ReadFile {
        QByteArray bytes;
        FileStamp stamp; ///< as it was before the file was read
    };
    /// Reads a regular file. Never waits for a pipe or a device. Of a file that is there, but that the system does not
    /// let be read now, or in whose place a link stands that is not followed, the problem may pass.
    [[nodiscard]] static Result<QByteArray> readRegular(const QString &path, Links links);
    /// `room` is memory that may be used for the bytes.
    [[nodiscard]] static Result<ReadFile> readRegular(
        const OpenDirectory &directory, const QString &name, Links links, QByteArray room = {});
    /// Writes a temporary file beside `path`, checks and synchronises it, and renames it over `path`, so that an
    /// interruption leaves the old file or the new one. Refuses to take the place of anything but a file or link.
    [[nodiscard]] static Result<> replace(const QString &path, const QByteArray &bytes);
    /// Rewrites the file itself, so that its identity, owner and rights stay, and synchronises it. Gives what tells the
    /// written file from later ones.
    [[nodiscard]] static Result<FileContentStamp> overwriteInPlace(const QString &path, const QByteArray &bytes);

    struct Staging {
        bool isSynced = true;
        bool isFree = false; ///< nothing has the name, which is therefore not looked at
    };
    struct Staged {
        QString name;
        FileStamp stamp; ///< which the file keeps when it is renamed
    };
    /// The first step of a replacement: a checked temporary file beside `name`. Where something that is neither a file
    /// nor a link has taken the name, no file can get it.
    [[nodiscard]] static Result<Staged> stage(
        const OpenDirectory &directory, const QString &name, const QByteArray &bytes, const Staging &staging);
    /// The last step: the temporary file takes the place of the other. It stays on failure.
    [[nodiscard]] static Result<> commit(const OpenDirectory &directory, const QString &temporary, const QString &name);

    /// The file that a chain of links leads to, whether or not it exists; the path itself where there is no link.
    [[nodiscard]] static QString endOfLinks(const QString &path);
    /// Never replaces another file.
    [[nodiscard]] static Result<> move(const QString &from, const QString &to);
    [[nodiscard]] static Result<> remove(const QString &path);
    [[nodiscard]] static Result<> makeDirectory(const QString &path);
};
