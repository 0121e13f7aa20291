#pragma once

#include <QString>

enum class FileExistence { none, file, directory };

/// What stands at `path`: a directory, anything else ("file"), or nothing. Links are followed.
[[nodiscard]] FileExistence existence(const QString &path);
