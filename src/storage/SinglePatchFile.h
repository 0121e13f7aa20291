#pragma once

#include "VelgorPatch.h"

#include <QString>

#include <optional>

/// A preset file of one patch, as every patch of a library has one.
namespace SinglePatchFile {

struct Result {
    std::optional<VelgorPatch> patch; ///< with the id and the name of its content
    QString reason; ///< why there is none; translated
    bool isThere = false; ///< something stands in this place, readable or not
};

/// Follows no link.
[[nodiscard]] Result read(const QString &path);

} // namespace SinglePatchFile
