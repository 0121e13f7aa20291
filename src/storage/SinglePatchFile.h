#pragma once

#include "Result.h"
#include "SPresetFile.h"
#include "VelgorPatch.h"

#include <QByteArray>

/// A preset file of exactly one patch, as every patch of a library has one.
namespace SinglePatchFile {

/// Malformed is what is no preset file at all; the problem of one with more patches is another.
[[nodiscard]] Result<SPresetFile> decode(const QByteArray &bytes);
/// Its records.
[[nodiscard]] PresetRecords recordsIn(SPresetFile file);
/// The same as a patch, with the id and the name of its content.
[[nodiscard]] VelgorPatch patchIn(const SPresetFile &file);
/// True when `bytes` are such a file of just this patch: loading them gives the patch to the last byte that an export
/// writes.
[[nodiscard]] bool holds(const QByteArray &bytes, const VelgorPatch &patch);

} // namespace SinglePatchFile
