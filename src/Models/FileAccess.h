#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// What reading a whole file gave: the bytes, or why there are none.
struct FileReadResult {
    std::optional<QByteArray> bytes;
    QString error; ///< the system's reason, without the file's name; empty on success
    /// The file is there, but the system does not let it be read now, or a link stands in its place that is not
    /// followed.
    bool isUnreadable = false;
};

/// How the models read and write whole files, so that disk access stays in one place.
class FileAccess {
public:
    FileAccess() = default;
    virtual ~FileAccess() = default;
    Q_DISABLE_COPY_MOVE(FileAccess)

    /// Reads a regular file; anything else in its place is refused at once.
    [[nodiscard]] virtual FileReadResult read(const QString &path) = 0;
    /// Replaces the file or leaves the old one untouched. The reason on failure, empty on success.
    [[nodiscard]] virtual QString write(const QString &path, const QByteArray &bytes) = 0;
};
