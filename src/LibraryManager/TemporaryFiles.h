#pragma once

#include <QDir>
#include <QString>

/// The names under which files are written before they take their places.
namespace TemporaryFiles {

/// A name, or a path, in the directory of another. It tells which process of which computer writes the file, and is
/// drawn anew at each call; one out of thousands may be taken.
[[nodiscard]] QString nameBeside(const QString &name);

/// Removes what processes of this computer left there that were killed while they wrote: nothing will ever use it. Does
/// nothing where the system cannot tell whether a process is alive.
void sweep(const QDir &directory);

} // namespace TemporaryFiles
