#pragma once

#include <QString>

enum class FileExistence { none, file, directory };

/// What stands at `path`: a directory, anything else ("file"), or nothing. Links are followed.
[[nodiscard]] FileExistence existence(const QString &path);

/// True for a directory with a library in it, whole or as an interrupted save left it.
[[nodiscard]] bool holdsLibrary(const QString &directory);
