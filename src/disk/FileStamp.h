#pragma once

#include <QtGlobal>

#include <optional>

class OpenDirectory;
class QString;

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
