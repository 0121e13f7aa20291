#include "VelgorLibrary.h"

#include "Diagnostics.h"
#include "ObservableProperty.h"

#include <algorithm>
#include <utility>

namespace {

/// What an empty library holds.
VelgorPatch placeholder()
{
    VelgorPatch dummy(QStringLiteral("Empty library"), false);
    dummy.empty = true;
    return dummy;
}

/// Nothing that is stored of them differs.
bool isSame(const VelgorPatch &one, const VelgorPatch &other)
{
    return one == other && one.empty == other.empty && one.records == other.records;
}

} // namespace

VelgorLibrary::VelgorLibrary(QObject *parent)
    : QObject(parent)
{
    manageDummy();
    saveOrder();
}

VelgorLibrary::VelgorLibrary(const QList<VelgorPatch> &patches, std::optional<quint64> defaultPatch, QObject *parent)
    : QObject(parent)
    , m_patches(patches)
    , m_defaultPatch(defaultPatch)
{
    countEmpty();
}

void VelgorLibrary::setSelection(std::optional<quint64> selection)
{
    setObservable(this, m_selection, selection, &VelgorLibrary::selectionChanged);
}

void VelgorLibrary::setIsMultiSel(bool isMultiSel)
{
    setObservable(this, m_isMultiSel, isMultiSel, &VelgorLibrary::isMultiSelChanged);
}

void VelgorLibrary::setMultiSelections(const MultiSelections &multiSelections)
{
    m_tickedCount.reset();
    setObservable(this, m_multiSelections, multiSelections, &VelgorLibrary::multiSelectionsChanged);
}

void VelgorLibrary::setDeleteConfirm(bool deleteConfirm)
{
    setObservable(this, m_deleteConfirm, deleteConfirm, &VelgorLibrary::deleteConfirmChanged);
}

void VelgorLibrary::takeOver(LibraryState loaded)
{
    Q_EMIT aboutToBeReset();
    // Many patches are not copied by the way.
    m_patches = std::move(loaded.patches);
    m_patches.removeIf([](const VelgorPatch &patch) { return patch.empty; });
    if (m_patches.isEmpty()) {
        m_patches.append(placeholder());
    }
    m_index.invalidate();
    countEmpty();
    m_order.clear();
    m_orderIsList = count() > 0;
    m_isSorted = false;
    QList<void (VelgorLibrary::*)()> changes;
    const auto assign = [&changes](auto &member, const auto &value, void (VelgorLibrary::*changed)()) {
        if (!(member == value)) {
            member = value;
            changes.append(changed);
        }
    };
    assign(m_selection, std::optional<quint64>(), &VelgorLibrary::selectionChanged);
    assign(m_isMultiSel, false, &VelgorLibrary::isMultiSelChanged);
    m_tickedCount.reset();
    assign(m_multiSelections, MultiSelections(), &VelgorLibrary::multiSelectionsChanged);
    assign(m_deleteConfirm, false, &VelgorLibrary::deleteConfirmChanged);
    assign(m_inverseSort, TripleBool::tripleFalse, &VelgorLibrary::inverseSortChanged);
    assign(m_defaultPatch, loaded.defaultPatch, &VelgorLibrary::defaultPatchChanged);
    Q_EMIT wasReset();
    for (const auto changed : changes) {
        Q_EMIT(this->*changed)();
    }
}

qsizetype VelgorLibrary::count() const
{
    return m_patches.size() == 1 && m_patches.first().empty ? 0 : m_patches.size();
}

std::optional<VelgorLibrary::Found> VelgorLibrary::getPatchFromId(std::optional<quint64> id) const
{
    const qsizetype index = id ? m_index.positionOf(*id, m_patches) : -1;
    if (index < 0) {
        return std::nullopt;
    }
    return Found{index, &m_patches.at(index)};
}

bool VelgorLibrary::update(const QList<VelgorPatch> &patches)
{
    bool areKnown = true;
    qsizetype first = m_patches.size();
    qsizetype last = -1;
    for (const VelgorPatch &patch : patches) {
        const auto found = getPatchFromId(patch.id());
        if (!found || isSame(*found->patch, patch)) {
            areKnown = areKnown && found;
            continue;
        }
        m_index.changed(found->index, *found->patch, patch);
        m_emptyCount += (patch.empty ? 1 : 0) - (found->patch->empty ? 1 : 0);
        m_patches[found->index] = patch;
        first = std::min(first, found->index);
        last = std::max(last, found->index);
    }
    if (first <= last) {
        Q_EMIT rowsChanged(first, last);
    }
    return areKnown;
}

void VelgorLibrary::duplicateSelection(std::optional<quint64> id, LibraryStorage &storage)
{
    if (id) {
        duplicatePatches({*id}, storage);
    }
}

void VelgorLibrary::duplicatePatches(const QList<quint64> &ids, LibraryStorage &storage)
{
    bool isAnyKnown = false;
    for (const quint64 id : ids) {
        if (const auto found = getPatchFromId(id)) {
            appendOrReplace(VelgorPatch(*found->patch), true, false);
            isAnyKnown = true;
        }
    }
    if (isAnyKnown) {
        manageDummy();
        saveOrder();
        storage.delayedSave(*this);
    }
}

void VelgorLibrary::deletePatches(const QList<quint64> &ids, LibraryStorage &storage)
{
    materializeOrder();
    QList<qsizetype> rows;
    MultiSelections ticks = m_multiSelections;
    for (const quint64 id : ids) {
        if (const auto found = getPatchFromId(id)) {
            rows.append(found->index);
        }
        ticks.multiSelections[id] = false;
    }
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    removeRows(rows);
    if (m_defaultPatch && ids.contains(*m_defaultPatch)) {
        m_defaultPatch.reset();
        Q_EMIT defaultPatchChanged();
    }
    storage.remove(ids);
    storage.save(*this);
    setMultiSelections(ticks);
    manageDummy();
    saveOrder();
}

void VelgorLibrary::setDefaultPatch(std::optional<quint64> id, LibraryStorage &storage)
{
    const auto found = getPatchFromId(id);
    if (!found || found->patch->empty) {
        return;
    }
    setObservable(this, m_defaultPatch, id, &VelgorLibrary::defaultPatchChanged);
    storage.delayedSave(*this);
}

void VelgorLibrary::insertAt(qsizetype position, const QList<VelgorPatch> &patches)
{
    if (position < 0) {
        Diagnostics::fatalStop("library position below 0");
    }
    const bool isAtEnd = position == m_patches.size();
    Q_EMIT rowsAboutToBeInserted(position, position + patches.size() - 1);
    if (isAtEnd) {
        for (const VelgorPatch &patch : patches) {
            m_index.appended(patch, m_patches.size());
            m_patches.append(patch);
        }
    } else {
        m_patches = m_patches.first(position) + patches + m_patches.sliced(position);
        m_index.invalidate();
    }
    m_emptyCount += std::count_if(patches.begin(), patches.end(), [](const VelgorPatch &patch) { return patch.empty; });
    Q_EMIT rowsInserted(position, position + patches.size() - 1);
}

void VelgorLibrary::removeRows(const QList<qsizetype> &ascendingRows)
{
    if (ascendingRows.isEmpty()) {
        return;
    }
    const qsizetype first = ascendingRows.first();
    const qsizetype last = ascendingRows.last();
    const bool isOneBlock = last - first + 1 == ascendingRows.size();
    if (isOneBlock) {
        Q_EMIT rowsAboutToBeRemoved(first, last);
    } else {
        Q_EMIT aboutToBeReset();
    }
    auto removed = ascendingRows.begin();
    qsizetype end = 0;
    for (qsizetype row = 0; row < m_patches.size(); ++row) {
        if (removed != ascendingRows.end() && *removed == row) {
            ++removed;
        } else {
            if (end != row) {
                m_patches[end] = std::move(m_patches[row]);
            }
            ++end;
        }
    }
    m_patches.remove(end, m_patches.size() - end);
    m_index.removed(ascendingRows);
    countEmpty();
    if (isOneBlock) {
        Q_EMIT rowsRemoved(first, last);
    } else {
        Q_EMIT wasReset();
    }
}

void VelgorLibrary::manageDummy()
{
    if (m_patches.size() > 1 && m_emptyCount > 0) {
        QList<qsizetype> rows;
        for (qsizetype row = 0; row < m_patches.size(); ++row) {
            if (m_patches.at(row).empty) {
                rows.append(row);
            }
        }
        removeRows(rows);
    }
    if (m_patches.isEmpty()) {
        insertAt(0, {placeholder()});
        setIsMultiSel(false);
    }
}

void VelgorLibrary::countEmpty()
{
    m_emptyCount =
        std::count_if(m_patches.begin(), m_patches.end(), [](const VelgorPatch &patch) { return patch.empty; });
}
