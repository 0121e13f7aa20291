#pragma once

#include "PatchFields.h"

#include <vector>

/// A table of fields with one flag more, which needs a member of its own only: it takes the one of `empty`, whose row
/// makes room.
namespace FurtherFlag {

inline constexpr PatchField row{.key = "live",
    .flag = &VelgorPatch::empty,
    .setMissing = [](VelgorPatch &patch) { patch.empty = true; },
    .isSeen = true,
    .isEdited = true,
    .isFilter = true,
    .group = PatchField::Group::Usage,
    .label = "Live",
    .initial = "L",
    .command = "Li&ve",
    .option = "live"};

[[nodiscard]] inline std::vector<PatchField> rowsWith(const PatchField &further = row)
{
    std::vector<PatchField> rows(PatchFields::all().begin(), PatchFields::all().end());
    std::erase_if(rows, [](const PatchField &field) { return field.flag == row.flag; });
    rows.push_back(further);
    return rows;
}

} // namespace FurtherFlag
