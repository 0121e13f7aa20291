#include "EditDeed.h"

#include "VelgorLibrary.h"

#include <algorithm>
#include <variant>

namespace {

using LibraryDelta = RowDelta<VelgorPatch>;

bool isReordering(const LibraryDelta &delta)
{
    return std::holds_alternative<LibraryDelta::Reordered>(delta.step);
}

} // namespace

bool EditDeed::concernsStorage(const LibraryChange &change)
{
    const auto &[deltas, before, after] = change;
    const bool isOrderExchanged = before.order.isList != after.order.isList && deltas.isEmpty()
        && (before.order.isListSorted || after.order.isListSorted);
    return before.defaultPatch != after.defaultPatch || isOrderExchanged
        || !std::all_of(deltas.begin(), deltas.end(), isReordering);
}

bool EditDeed::isEmpty() const
{
    return !concernsStorage(library) && content.deltas.isEmpty() && content.before.limit == content.after.limit
        && content.before.inverseTailBit == content.after.inverseTailBit;
}

QList<quint64> EditDeed::removedIds(const LibraryChange &change, const VelgorLibrary &library)
{
    QList<quint64> ids;
    for (const LibraryDelta &delta : change.deltas) {
        const auto *removed = std::get_if<LibraryDelta::Removed>(&delta.step);
        for (const VelgorPatch &patch : removed ? removed->values : QList<VelgorPatch>()) {
            if (!patch.empty && !library.getPatchFromId(patch.id())) {
                ids.append(patch.id());
            }
        }
    }
    return ids;
}
