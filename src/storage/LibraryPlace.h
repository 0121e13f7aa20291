#pragma once

#include <QString>

/// What can be said of a directory as the place of a library.
namespace LibraryPlace {

/// True for a directory with a library in it, whole or as an interrupted save left it.
[[nodiscard]] bool holdsLibrary(const QString &directory);
/// False when the path of a directory changes by percent-encoding. Such a directory is not listed.
[[nodiscard]] bool isListable(const QString &directory);

} // namespace LibraryPlace
