#include "EditStep.h"

#include "VelgorLibrary.h"

#include <algorithm>
#include <utility>
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

EditStep::EditStep(const QString &name, const EditDeed &deed, const QString &field, EditTarget &target)
    : QUndoCommand(name)
    , m_deed(deed)
    , m_field(field)
    , m_target(target)
{
}

void EditStep::redo()
{
    if (!std::exchange(m_isDone, false)) {
        m_target.doAgain(m_deed);
    }
}

bool EditStep::mergeWith(const QUndoCommand *other)
{
    const auto *next = dynamic_cast<const EditStep *>(other);
    if (!next || m_field.isEmpty() || m_field != next->m_field || !next->m_deed.sorting.deltas.isEmpty()) {
        return false;
    }
    m_deed.library = m_deed.library.followedBy(next->m_deed.library);
    m_deed.content = m_deed.content.followedBy(next->m_deed.content);
    return true;
}
