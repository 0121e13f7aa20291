#include "CommandTargets.h"

#include "LibraryViewFilter.h"
#include "VelgorLibrary.h"

#include <algorithm>
#include <iterator>

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

std::optional<quint64> CommandTargets::nextToDeleted(const VelgorLibrary &library, const LibraryViewFilter &filter)
{
    const bool isForTicks = areTicked(library);
    const auto isDeleted = [&](const VelgorPatch &patch) {
        return isForTicks ? library.multiSelections().isTicked(patch.id()) : patch.id() == library.selection();
    };
    const auto isLeft = [&](const VelgorPatch &patch) { return !isDeleted(patch) && filter.show(patch); };
    const QList<VelgorPatch> &patches = library.patches();
    const auto selected = library.getPatchFromId(library.selection());
    const auto start =
        selected ? patches.begin() + selected->index : std::find_if(patches.begin(), patches.end(), isDeleted);
    const auto behind = std::find_if(start, patches.end(), isLeft);
    if (behind != patches.end()) {
        return behind->id();
    }
    const auto before = std::find_if(std::make_reverse_iterator(start), patches.rend(), isLeft);
    return before != patches.rend() ? std::optional(before->id()) : std::nullopt;
}
