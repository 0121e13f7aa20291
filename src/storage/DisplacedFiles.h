#pragma once

#include <QString>

/// Files in the place of a patch's own that are not it.
namespace DisplacedFiles {

/// Moves one to a name of its own, which goes into `aside`, and never over another file. The system's reason on
/// failure, empty on success. `directory` is a path without a slash at its end.
[[nodiscard]] QString setAside(const QString &directory, const QString &name, quint64 patchID, QString &aside);

} // namespace DisplacedFiles
