#pragma once

#include <QDir>
#include <QString>

#include <optional>

/// The names under which files are written before they take their places.
namespace TemporaryFiles {

/// Every file being written starts with this; no such name holds a number between dots.
[[nodiscard]] QString prefix();
/// The same, for files that one process of one computer writes.
[[nodiscard]] QString prefix(const QString &host, qint64 process);
/// The process that writes or wrote a temporary file; nothing when it was on another computer than `host`.
[[nodiscard]] std::optional<qint64> ownerOf(const QString &name, const QString &host);

/// A name, or a path, in the directory of another. It tells which process of which computer writes the file, and is
/// drawn anew at each call; one out of thousands may be taken.
[[nodiscard]] QString nameBeside(const QString &name);

/// Removes what processes of this computer left there that were killed while they wrote: nothing will ever use it. Does
/// nothing where the system cannot tell whether a process is alive.
void sweep(const QDir &directory);

} // namespace TemporaryFiles
