// The order of a library: remembering it, sorting, similar patches and the ticked set.

#include "VelgorLibrary.h"

#include "Diagnostics.h"
#include "ObservableProperty.h"

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

namespace {

TripleBool nextStep(TripleBool step)
{
    switch (step) {
    case TripleBool::tripleFalse:
        return TripleBool::tripleNeutral;
    case TripleBool::tripleNeutral:
        return TripleBool::tripleTrue;
    case TripleBool::tripleTrue:
        break;
    }
    return TripleBool::tripleFalse;
}

/// Rows in the stable order of their places, none of which is above `last`.
QList<qsizetype> rowsByPlace(const std::vector<qsizetype> &places, qsizetype last)
{
    std::vector<qsizetype> ends(static_cast<size_t>(last) + 1);
    for (const qsizetype place : places) {
        ++ends[static_cast<size_t>(place)];
    }
    std::partial_sum(ends.begin(), ends.end(), ends.begin());
    QList<qsizetype> rows(static_cast<qsizetype>(places.size()));
    for (qsizetype row = rows.size(); row-- > 0;) {
        rows[--ends[static_cast<size_t>(places[static_cast<size_t>(row)])]] = row;
    }
    return rows;
}

} // namespace

const QList<quint64> &VelgorLibrary::order()
{
    materializeOrder();
    return m_marks.order.ids;
}

void VelgorLibrary::saveOrder()
{
    const bool wasSorted = std::exchange(m_marks.order.isListSorted, false);
    if (count() > 0) {
        m_marks.order.isList = true;
        if (wasSorted) {
            Q_EMIT sortedOrderKept();
        }
    }
}

void VelgorLibrary::materializeOrder()
{
    if (!m_marks.order.isList) {
        return;
    }
    m_marks.order.isList = false;
    m_marks.order.ids.clear();
    m_marks.order.ids.reserve(rows().size());
    for (const VelgorPatch &patch : patches()) {
        m_marks.order.ids.append(patch.id());
    }
}

void VelgorLibrary::move(qsizetype from, qsizetype offset)
{
    if (from < 0 || from >= rows().size() || offset < 0 || offset > rows().size()) {
        Diagnostics::fatalStop("library row out of range");
    }
    if (offset != from && offset != from + 1) {
        materializeOrder();
        moveRow(from, offset);
    }
}

void VelgorLibrary::sort()
{
    switch (m_marks.order.inverseSort) {
    case TripleBool::tripleFalse:
        reorder(caselessNames().sortedRows(true));
        break;
    case TripleBool::tripleNeutral:
        materializeOrder();
        reorder(rowsByRememberedOrder());
        break;
    case TripleBool::tripleTrue:
        reorder(caselessNames().sortedRows(false));
        break;
    }
    m_marks.order.isListSorted = !m_marks.order.isList && !isInRememberedOrder();
    setObservable(
        this, m_marks.order.inverseSort, nextStep(m_marks.order.inverseSort), &VelgorLibrary::inverseSortChanged);
}

bool VelgorLibrary::isInRememberedOrder() const
{
    return std::equal(rows().begin(), rows().end(), m_marks.order.ids.begin(), m_marks.order.ids.end(),
        [](const VelgorPatch &patch, quint64 id) { return patch.id() == id; });
}

LibraryState VelgorLibrary::state() const
{
    return {.patches = count() == 0 ? QList<VelgorPatch>() : patchesInOwnOrder(), .defaultPatch = defaultPatch()};
}

QList<VelgorPatch> VelgorLibrary::patchesInOwnOrder() const
{
    if (!m_marks.order.isListSorted) {
        return rows();
    }
    QList<VelgorPatch> patches;
    patches.reserve(rows().size());
    for (const qsizetype row : rowsByRememberedOrder()) {
        patches.append(rows().at(row));
    }
    return patches;
}

QList<qsizetype> VelgorLibrary::rowsByRememberedOrder() const
{
    QHash<quint64, qsizetype> places;
    places.reserve(m_marks.order.ids.size());
    // From the end, so that the first place of an id is the one that stays.
    for (qsizetype place = m_marks.order.ids.size(); place-- > 0;) {
        places.insert(m_marks.order.ids.at(place), place);
    }
    std::vector<qsizetype> keys;
    keys.reserve(static_cast<size_t>(rows().size()));
    for (const VelgorPatch &patch : patches()) {
        keys.push_back(places.value(patch.id(), rows().size()));
    }
    return rowsByPlace(keys, std::max(m_marks.order.ids.size(), rows().size()));
}

void VelgorLibrary::reorder(const QList<qsizetype> &formerRows)
{
    if (!std::is_sorted(formerRows.begin(), formerRows.end())) {
        materializeOrder();
        reorderRows(formerRows);
    }
}

MultiSelections VelgorLibrary::findSimilarPatches(quint64 id) const
{
    MultiSelections result;
    const auto found = getPatchFromId(id);
    if (!found || found->patch->empty) {
        return result;
    }
    const PatchIndex::SoundHashes &hashes = m_index.soundHashes(rows());
    const std::optional<quint64> target = hashes.at(found->index);
    result.multiSelections.reserve(rows().size());
    for (qsizetype row = 0; row < rows().size(); ++row) {
        const VelgorPatch &patch = rows().at(row);
        if (!patch.empty) {
            const std::optional<quint64> hash = hashes.at(row);
            // Two patches without preset data have nothing in common; each is similar to itself.
            const bool isSimilar = hash && hash == target && PatchIdentity::isSameSound(patch, *found->patch);
            result.multiSelections.insert(patch.id(), patch.id() == id || isSimilar);
        }
    }
    return result;
}

QList<VelgorPatch> VelgorLibrary::getMultiSelection(qsizetype atMost) const
{
    QList<VelgorPatch> ticked;
    const qsizetype most = std::min(tickedCount(), atMost);
    ticked.reserve(most);
    for (auto patch = rows().begin(); patch != rows().end() && ticked.size() < most; ++patch) {
        if (m_marks.multiSelections.isTicked(patch->id())) {
            ticked.append(*patch);
        }
    }
    return ticked;
}

qsizetype VelgorLibrary::tickedCount() const
{
    if (!m_tickedCount) {
        m_tickedCount = m_marks.multiSelections.count(true);
    }
    return *m_tickedCount;
}
