// The order of a library: remembering it, sorting, similar patches and the ticked set.

#include "VelgorLibrary.h"

#include "Diagnostics.h"
#include "ObservableProperty.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
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

/// Gives each row of `patches` the patch of its former row.
void rearrange(QList<VelgorPatch> &patches, const QList<qsizetype> &formerRows)
{
    // As bytes, around each circle of rows: a copy of the list, or moves member by member, take several times as long.
    static_assert(QTypeInfo<VelgorPatch>::isRelocatable);
    auto *const bytes = reinterpret_cast<std::byte *>(patches.data());
    const auto patchAt = [bytes](size_t row) { return bytes + row * sizeof(VelgorPatch); };
    std::vector<size_t> sources(formerRows.begin(), formerRows.end());
    for (size_t start = 0; start < sources.size(); ++start) {
        if (sources[start] == start) {
            continue;
        }
        std::array<std::byte, sizeof(VelgorPatch)> first{};
        std::memcpy(first.data(), patchAt(start), first.size());
        size_t row = start;
        for (size_t source = 0; (source = std::exchange(sources[row], row)) != start; row = source) {
            std::memcpy(patchAt(row), patchAt(source), first.size());
        }
        std::memcpy(patchAt(row), first.data(), first.size());
    }
}

} // namespace

const QList<quint64> &VelgorLibrary::order()
{
    materializeOrder();
    return m_order;
}

void VelgorLibrary::saveOrder()
{
    const bool wasSorted = std::exchange(m_isSorted, false);
    if (count() > 0) {
        m_orderIsList = true;
        if (wasSorted) {
            Q_EMIT sortedOrderKept();
        }
    }
}

void VelgorLibrary::materializeOrder()
{
    if (!m_orderIsList) {
        return;
    }
    m_orderIsList = false;
    m_order.clear();
    m_order.reserve(m_patches.size());
    for (const VelgorPatch &patch : std::as_const(m_patches)) {
        m_order.append(patch.id());
    }
}

void VelgorLibrary::move(qsizetype from, qsizetype offset)
{
    if (from < 0 || from >= m_patches.size() || offset < 0 || offset > m_patches.size()) {
        Diagnostics::fatalStop("library row out of range");
    }
    if (offset == from || offset == from + 1) {
        return;
    }
    materializeOrder();
    Q_EMIT rowAboutToBeMoved(from, offset);
    const qsizetype to = offset > from ? offset - 1 : offset;
    m_patches.move(from, to);
    m_index.moved(from, to);
    Q_EMIT rowMoved(from, offset);
}

void VelgorLibrary::sort()
{
    switch (m_inverseSort) {
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
    m_isSorted = !m_orderIsList && !isInRememberedOrder();
    setObservable(this, m_inverseSort, nextStep(m_inverseSort), &VelgorLibrary::inverseSortChanged);
}

bool VelgorLibrary::isInRememberedOrder() const
{
    return std::equal(m_patches.begin(), m_patches.end(), m_order.begin(), m_order.end(),
        [](const VelgorPatch &patch, quint64 id) { return patch.id() == id; });
}

QList<VelgorPatch> VelgorLibrary::patchesInOwnOrder() const
{
    if (!m_isSorted) {
        return m_patches;
    }
    QList<VelgorPatch> patches;
    patches.reserve(m_patches.size());
    for (const qsizetype row : rowsByRememberedOrder()) {
        patches.append(m_patches.at(row));
    }
    return patches;
}

QList<qsizetype> VelgorLibrary::rowsByRememberedOrder() const
{
    QHash<quint64, qsizetype> places;
    places.reserve(m_order.size());
    // From the end, so that the first place of an id is the one that stays.
    for (qsizetype place = m_order.size(); place-- > 0;) {
        places.insert(m_order.at(place), place);
    }
    std::vector<qsizetype> keys;
    keys.reserve(static_cast<size_t>(m_patches.size()));
    for (const VelgorPatch &patch : std::as_const(m_patches)) {
        keys.push_back(places.value(patch.id(), m_patches.size()));
    }
    return rowsByPlace(keys, std::max(m_order.size(), m_patches.size()));
}

void VelgorLibrary::reorder(const QList<qsizetype> &formerRows)
{
    if (std::is_sorted(formerRows.begin(), formerRows.end())) {
        return;
    }
    materializeOrder();
    Q_EMIT aboutToBeReordered();
    rearrange(m_patches, formerRows);
    m_index.reordered(formerRows);
    Q_EMIT reordered(formerRows);
}

MultiSelections VelgorLibrary::findSimilarPatches(quint64 id) const
{
    MultiSelections result;
    const auto found = getPatchFromId(id);
    if (!found || found->patch->empty) {
        return result;
    }
    const PatchIndex::SoundHashes &hashes = m_index.soundHashes(m_patches);
    const std::optional<quint64> target = hashes.at(found->index);
    result.multiSelections.reserve(m_patches.size());
    for (qsizetype row = 0; row < m_patches.size(); ++row) {
        const VelgorPatch &patch = m_patches.at(row);
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
    for (auto patch = m_patches.begin(); patch != m_patches.end() && ticked.size() < most; ++patch) {
        if (m_multiSelections.isTicked(patch->id())) {
            ticked.append(*patch);
        }
    }
    return ticked;
}

qsizetype VelgorLibrary::tickedCount() const
{
    if (!m_tickedCount) {
        m_tickedCount = m_multiSelections.count(true);
    }
    return *m_tickedCount;
}
