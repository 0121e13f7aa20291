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
