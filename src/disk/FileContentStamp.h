#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <optional>

class QFileDevice;

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
