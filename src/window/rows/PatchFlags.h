#pragma once

#include "ToggleButton.h"
#include "VelgorPatch.h"

#include <QList>
#include <QString>

#include <array>

/// One classification flag of a patch, as the filter and the details show it.
using PatchFlag = bool VelgorPatch::*;

/// What a button for a flag needs to know.
struct ShownPatchFlag {
    PatchFlag flag;
    const char *label; ///< untranslated; see PatchFlags::label()
    const char *initial; ///< untranslated; see PatchFlags::initial()
    ToggleButton::Tone tone; ///< in the details; the filter has one tone for all
};

/// The flags in the order in which they stand on the screen.
namespace PatchFlags {

[[nodiscard]] const std::array<ShownPatchFlag, 4> &usage();
[[nodiscard]] const std::array<ShownPatchFlag, 4> &style();
/// Usage, user impulse response, style.
[[nodiscard]] const std::array<ShownPatchFlag, 9> &inFilter();

[[nodiscard]] QString label(const ShownPatchFlag &shown);
/// One letter, or two where one would not do, for where there is no room for the label.
[[nodiscard]] QString initial(const ShownPatchFlag &shown);

/// Usage and style flags of a patch that are set, in their order.
[[nodiscard]] QList<ShownPatchFlag> classification(const VelgorPatch &patch);

} // namespace PatchFlags
