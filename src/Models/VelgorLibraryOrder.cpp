// The order of a library: remembering it, sorting, similar patches and the ticked set.

#include "VelgorLibrary.h"

#include "ObservableProperty.h"
#include "Utf8Text.h"

#include <algorithm>
#include <numeric>

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

/// Rows in the stable order of their keys.
template <typename Key, typename Less>
QList<qsizetype> rowsSortedBy(const QList<Key> &keys, Less less)
{
    QList<qsizetype> rows(keys.size());
    std::iota(rows.begin(), rows.end(), 0);
    std::stable_sort(rows.begin(), rows.end(), [&](qsizetype a, qsizetype b) { return less(keys.at(a), keys.at(b)); });
    return rows;
}

} // namespace

const QList<quint64> &VelgorLibrary::order()
{
    materializeOrder();
    return m_order;
}

void VelgorLibrary::saveOrder()
{
    if (count() > 0) {
        m_orderIsList = true;
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

void VelgorLibrary::sort()
{
    switch (m_inverseSort) {
    case TripleBool::tripleFalse:
        reorder(rowsByName(true));
        break;
    case TripleBool::tripleNeutral:
        reorder(rowsByRememberedOrder());
        break;
    case TripleBool::tripleTrue:
        reorder(rowsByName(false));
        break;
    }
    setObservable(this, m_inverseSort, nextStep(m_inverseSort), &VelgorLibrary::inverseSortChanged);
}

QList<qsizetype> VelgorLibrary::rowsByName(bool ascending) const
{
    QList<QByteArray> keys;
    keys.reserve(m_patches.size());
    for (const VelgorPatch &patch : m_patches) {
        keys.append(Utf8Text::caselessKey(patch.name));
    }
    return ascending ? rowsSortedBy(keys, std::less<>()) : rowsSortedBy(keys, std::greater<>());
}

QList<qsizetype> VelgorLibrary::rowsByRememberedOrder()
{
    materializeOrder();
    QHash<quint64, qsizetype> places;
    places.reserve(m_order.size());
    for (qsizetype place = 0; place < m_order.size(); ++place) {
        if (!places.contains(m_order.at(place))) {
            places.insert(m_order.at(place), place);
        }
    }
    QList<qsizetype> keys;
    keys.reserve(m_patches.size());
    for (const VelgorPatch &patch : std::as_const(m_patches)) {
        keys.append(places.value(patch.id(), m_patches.size()));
    }
    return rowsSortedBy(keys, std::less<>());
}

void VelgorLibrary::reorder(const QList<qsizetype> &formerRows)
{
    if (std::is_sorted(formerRows.begin(), formerRows.end())) {
        return;
    }
    materializeOrder();
    Q_EMIT aboutToBeReordered();
    QList<VelgorPatch> sorted;
    sorted.reserve(m_patches.size());
    for (const qsizetype row : formerRows) {
        sorted.append(m_patches.at(row));
    }
    m_patches = sorted;
    m_index.invalidate();
    Q_EMIT reordered(formerRows);
}

MultiSelections VelgorLibrary::findSimilarPatches(quint64 id) const
{
    MultiSelections result;
    const auto found = getPatchFromId(id);
    if (!found || found->patch->empty) {
        return result;
    }
    const std::optional<quint64> target = found->patch->soundHash();
    for (const VelgorPatch &patch : m_patches) {
        if (!patch.empty) {
            const std::optional<quint64> hash = patch.soundHash();
            // Two patches without preset data have nothing in common; each is similar to itself.
            result.multiSelections.insert(patch.id(), patch.id() == id || (hash && hash == target));
        }
    }
    return result;
}

QList<VelgorPatch> VelgorLibrary::getMultiSelection() const
{
    QList<VelgorPatch> ticked;
    for (const VelgorPatch &patch : m_patches) {
        if (m_multiSelections.isTicked(patch.id())) {
            ticked.append(patch);
        }
    }
    return ticked;
}
