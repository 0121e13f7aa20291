#pragma once

#include "PatchFields.h"
#include "ToggleButton.h"

#include <QList>
#include <QString>

/// One flag of a patch, as the filter and the details show it.
using PatchFlag = bool VelgorPatch::*;
/// Rows of the table of fields, which must outlive the list.
using ShownFlags = QList<const PatchField *>;

/// The flags in the order in which they stand on the screen.
namespace PatchFlags {

[[nodiscard]] ShownFlags usage(PatchFields::Rows rows = PatchFields::all());
[[nodiscard]] ShownFlags style(PatchFields::Rows rows = PatchFields::all());
/// Usage and style: what the user sets and clears.
[[nodiscard]] ShownFlags marks(PatchFields::Rows rows = PatchFields::all());
/// Usage, user impulse response, style.
[[nodiscard]] ShownFlags inFilter(PatchFields::Rows rows = PatchFields::all());
/// The marks of a patch that are set.
[[nodiscard]] ShownFlags classification(const VelgorPatch &patch, PatchFields::Rows rows = PatchFields::all());

[[nodiscard]] QString label(const PatchField &field);
/// One letter, or two where one would not do, for where there is no room for the label.
[[nodiscard]] QString initial(const PatchField &field);
/// In rows and details; the filter has one tone for all.
[[nodiscard]] ToggleButton::Tone tone(const PatchField &field);

} // namespace PatchFlags
