#pragma once

#include "LibraryState.h"
#include "PatchFields.h"

#include <QByteArray>

#include <optional>

/// The library file's text: every patch's descriptive fields and the default patch, as compact JSON.
/// Ids are exact over all 64 bits, dates come back to the last bit, and keys stand in the order of the rows.
/// Preset data is never part of it.
namespace LibraryJson {

[[nodiscard]] QByteArray encode(const LibraryState &library, PatchFields::Rows rows = PatchFields::all());
/// One patch as the object that stands in the library file.
[[nodiscard]] QByteArray encodePatch(const VelgorPatch &patch, PatchFields::Rows rows = PatchFields::all());

/// Patches for people and scripts: in the same keys and order, but a line a key, indented as entries of a member of a
/// document, and ids as text, which every reader of JSON keeps exactly. Without the brackets of the list.
[[nodiscard]] QByteArray listing(const QList<VelgorPatch> &patches);

/// Nothing when the text is not JSON, has no list of patches, or any patch lacks a required key or has one of another
/// type. A default patch that is missing or no id is left out silently; keys that are not known are skipped. Of the
/// second and the third, `hasUnknown` tells.
[[nodiscard]] std::optional<LibraryState> decode(const QByteArray &text, PatchFields::Rows rows = PatchFields::all());

} // namespace LibraryJson
