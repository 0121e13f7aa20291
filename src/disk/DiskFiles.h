#pragma once

#include "FileContentStamp.h"
#include "FileReadResult.h"
#include "FileStamp.h"
#include "OpenDirectory.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QString>

/// The one module that opens, writes, moves and removes files. Errors are returned as the system's reason,
/// translated, without the file's name; an empty text means success.
class DiskFiles {
    Q_DECLARE_TR_FUNCTIONS(DiskFiles)

public:
    /// Largest file that is read: far more than a list of 65,535 patches with impulse responses needs.
    static constexpr qint64 largestFile = qint64(1) << 30;

    enum class Links { Follow, Refuse };

    /// Reads a regular file. Never waits for a pipe or a device.
    [[nodiscard]] static FileReadResult readRegular(const QString &path, Links links);
    /// `room` is memory that may be used for the bytes. `stamp` is the file's as it was before it was read.
    [[nodiscard]] static FileReadResult readRegular(const OpenDirectory &directory, const QString &name, Links links,
        QByteArray room = {}, FileStamp *stamp = nullptr);
    /// Writes a temporary file beside `path`, checks and synchronises it, and renames it over `path`, so that an
    /// interruption leaves the old file or the new one. Refuses to take the place of anything but a file or link.
    [[nodiscard]] static QString replace(const QString &path, const QByteArray &bytes);
    /// Rewrites the file itself, so that its identity, owner and rights stay, and synchronises it. On failure
    /// `wasTouched` says whether the old bytes are gone. `stamp` tells the written file from later ones.
    [[nodiscard]] static QString overwriteInPlace(const QString &path, const QByteArray &bytes, bool &wasTouched,
        std::optional<FileContentStamp> *stamp = nullptr);

    /// Why no file can get this name: there is something that is neither a file nor a link.
    [[nodiscard]] static QString whyNotReplaceable(const OpenDirectory &directory, const QString &name);
    struct Staging {
        bool isSynced = true;
        bool isFree = false; ///< nothing has the name, which is therefore not looked at
    };
    struct Staged {
        QString name;
        FileStamp stamp; ///< which the file keeps when it is renamed
    };
    /// The first step of a replacement: a checked temporary file beside `name`, described in `staged`. Refuses where
    /// whyNotReplaceable() says so.
    [[nodiscard]] static QString stage(const OpenDirectory &directory, const QString &name, const QByteArray &bytes,
        const Staging &staging, Staged &staged);
    /// The last step: the temporary file takes the place of the other. It stays on failure.
    [[nodiscard]] static QString commit(const OpenDirectory &directory, const QString &temporary, const QString &name);

    /// The file that a chain of links leads to, whether or not it exists; the path itself where there is no link.
    [[nodiscard]] static QString endOfLinks(const QString &path);
    /// Never replaces another file.
    [[nodiscard]] static QString move(const QString &from, const QString &to);
    [[nodiscard]] static QString remove(const QString &path);
    [[nodiscard]] static QString makeDirectory(const QString &path);
};
