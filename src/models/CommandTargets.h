#pragma once

#include "VelgorPatch.h"

#include <QList>

#include <limits>
#include <optional>

class LibraryViewFilter;
class VelgorLibrary;

/// Which library patches a command means. The one rule, for menus, context menus, buttons, keys and drags:
///
/// A command about one patch means the selected one, which is the row that was pointed at or has the focus, ticking or
/// not. A command about several means the ticked patches while ticking, if there are any, whether the list shows them
/// or not; otherwise it means that one as well. The placeholder of an empty library is never meant.
namespace CommandTargets {

/// The patch that a command about one means; nullptr when there is none. Good until the next change of the library.
[[nodiscard]] const VelgorPatch *one(const VelgorLibrary &library);

/// Ticked patches take the place of the selected one in commands about several.
[[nodiscard]] bool areTicked(const VelgorLibrary &library);
/// Number of patches that a command about several means.
[[nodiscard]] qsizetype count(const VelgorLibrary &library);
/// The patches that a command about several means, in library order.
[[nodiscard]] QList<VelgorPatch> several(const VelgorLibrary &library);
/// The same two where the row of `pointedAt` stands for the selected one, as in a drag. Of the patches, the first
/// `atMost`.
[[nodiscard]] qsizetype count(const VelgorLibrary &library, std::optional<quint64> pointedAt);
[[nodiscard]] QList<VelgorPatch> several(const VelgorLibrary &library, std::optional<quint64> pointedAt,
    qsizetype atMost = std::numeric_limits<qsizetype>::max());
/// True when there are such patches and each of them has this classification.
[[nodiscard]] bool allHave(const VelgorLibrary &library, bool VelgorPatch::*flag);
/// The patch to go on with when the patches of a command about several are deleted: the next one that the filter shows,
/// the one before at the end, nothing when none is left.
[[nodiscard]] std::optional<quint64> nextToDeleted(const VelgorLibrary &library, const LibraryViewFilter &filter);

} // namespace CommandTargets
