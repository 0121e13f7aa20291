#pragma once

#include "Result.h"

#include <QByteArray>
#include <QString>

/// How the models read and write whole files, so that disk access stays in one place.
class FileAccess {
public:
    FileAccess() = default;
    virtual ~FileAccess() = default;
    Q_DISABLE_COPY_MOVE(FileAccess)

    /// Reads a regular file; anything else in its place is refused at once.
    [[nodiscard]] virtual Result<QByteArray> read(const QString &path) = 0;
    /// Replaces the file or leaves the old one untouched.
    [[nodiscard]] virtual Result<> write(const QString &path, const QByteArray &bytes) = 0;
};
