#include "CommandTargets.h"

#include "VelgorLibrary.h"

#include <algorithm>

namespace {

const VelgorPatch *realPatch(const VelgorLibrary &library, std::optional<quint64> id)
{
    const auto found = library.getPatchFromId(id);
    return found && !found->patch->empty ? found->patch : nullptr;
}

} // namespace

const VelgorPatch *CommandTargets::one(const VelgorLibrary &library)
{
    return realPatch(library, library.selection());
}

bool CommandTargets::areTicked(const VelgorLibrary &library)
{
    return library.isMultiSel() && library.tickedCount() > 0;
}

qsizetype CommandTargets::count(const VelgorLibrary &library)
{
    return count(library, library.selection());
}

qsizetype CommandTargets::count(const VelgorLibrary &library, std::optional<quint64> pointedAt)
{
    if (areTicked(library)) {
        return library.tickedCount();
    }
    return realPatch(library, pointedAt) ? 1 : 0;
}

QList<VelgorPatch> CommandTargets::several(const VelgorLibrary &library)
{
    return several(library, library.selection());
}

QList<VelgorPatch> CommandTargets::several(
    const VelgorLibrary &library, std::optional<quint64> pointedAt, qsizetype atMost)
{
    if (areTicked(library)) {
        return library.getMultiSelection(atMost);
    }
    const VelgorPatch *patch = realPatch(library, pointedAt);
    return patch && atMost > 0 ? QList<VelgorPatch>{*patch} : QList<VelgorPatch>();
}

bool CommandTargets::allHave(const VelgorLibrary &library, bool VelgorPatch::*flag)
{
    if (!areTicked(library)) {
        const VelgorPatch *patch = one(library);
        return patch && patch->*flag;
    }
    const MultiSelections &ticks = library.multiSelections();
    return std::all_of(library.patches().begin(), library.patches().end(),
        [&](const VelgorPatch &patch) { return patch.*flag || !ticks.isTicked(patch.id()); });
}
