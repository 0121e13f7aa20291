#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <optional>

class OpenDirectory;
class QFileDevice;

#ifndef Q_OS_WIN
struct stat;
#endif

/// What tells, without opening a file, whether it is still the one that was read or written. Moving a file and giving
/// it other rights change nothing of it; every way of changing its bytes does, but for one that sets the time back.
struct FileStamp {
    quint64 number = 0; ///< the file system's own for the file; 0 where it has none
    qint64 size = -1;
    qint64 modified = 0; ///< in nanoseconds, as far as the file system counts them

    bool operator==(const FileStamp &) const = default;

    /// The stamp of the file as it is now; nothing where there is no regular file. A link is not followed.
    [[nodiscard]] static std::optional<FileStamp> of(const OpenDirectory &directory, const QString &name);
#ifndef Q_OS_WIN
    [[nodiscard]] static FileStamp of(const struct stat &status);
#endif
};

/// What tells whether a file still holds what was read from it or written last, without reading it again.
struct FileContentStamp {
    qint64 size = 0;
    QDateTime modified;
    QDateTime changed; ///< of the file's metadata too, which no program can set back
    std::size_t hash = 0; ///< of the bytes; good within one run of the program

    bool operator==(const FileContentStamp &) const = default;

    /// The stamp of the file as it is now, whose bytes are still to be set; nothing where there is no file. To be taken
    /// before the file is read: a change in between then counts as one.
    [[nodiscard]] static std::optional<FileContentStamp> of(const QString &path);
    /// The same for a file that was just written and is still open.
    [[nodiscard]] static FileContentStamp of(const QFileDevice &file);
    void setBytes(const QByteArray &bytes);

    /// False only when the file at `path` cannot be told from the one of the stamp without reading it.
    [[nodiscard]] bool looksChanged(const QString &path) const;
    [[nodiscard]] bool isOf(const QByteArray &bytes) const;
};
