#pragma once

#include <QDir>
#include <QString>

/// The names under which files are written before they take their places.
namespace TemporaryFiles {

/// A name, or a path, in the directory of another: a new one at each call. The name tells which process of which
/// computer writes it.
[[nodiscard]] QString nameBeside(const QString &name);

/// Removes what processes of this computer left there that were killed while they wrote: nothing will ever use it. Does
/// nothing where the system cannot tell whether a process is alive.
void sweep(const QDir &directory);

} // namespace TemporaryFiles
