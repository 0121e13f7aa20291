#pragma once

#include <QString>

struct SPresetFile;

namespace NameWarning {

/// A warning on standard error that says which names of a file are no text; none when all of them are.
void print(const QString &path, const SPresetFile &file);

} // namespace NameWarning
