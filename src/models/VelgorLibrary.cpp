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
    : RecordedRows(parent)
{
    manageDummy();
    saveOrder();
}

VelgorLibrary::VelgorLibrary(const QList<VelgorPatch> &patches, std::optional<quint64> defaultPatch, QObject *parent)
    : RecordedRows(parent)
    , m_marks{.defaultPatch = defaultPatch}
{
    unrecordedRows() = patches;
    countEmpty();
}

void VelgorLibrary::setSelection(std::optional<quint64> selection)
{
    setObservable(this, m_marks.selection, selection, &VelgorLibrary::selectionChanged);
}

void VelgorLibrary::setIsMultiSel(bool isMultiSel)
{
    setObservable(this, m_marks.isMultiSel, isMultiSel, &VelgorLibrary::isMultiSelChanged);
}

void VelgorLibrary::setMultiSelections(const MultiSelections &multiSelections)
{
    m_tickedCount.reset();
    setObservable(this, m_marks.multiSelections, multiSelections, &VelgorLibrary::multiSelectionsChanged);
}

void VelgorLibrary::setDeleteConfirm(bool deleteConfirm)
{
    setObservable(this, m_deleteConfirm, deleteConfirm, &VelgorLibrary::deleteConfirmChanged);
}

void VelgorLibrary::adopt(LibraryState loaded)
{
    // Many patches are not copied by the way.
    QList<VelgorPatch> patches = std::move(loaded.patches);
    patches.removeIf([](const VelgorPatch &patch) { return patch.empty; });
    const bool isEmpty = patches.isEmpty();
    if (isEmpty) {
        patches.append(placeholder());
    }
    QList<Announcement> announcements =
        setMarks({.order = {.isList = !isEmpty}, .defaultPatch = loaded.defaultPatch, .awaited = m_marks.awaited});
    if (std::exchange(m_deleteConfirm, false)) {
        announcements.append(&VelgorLibrary::deleteConfirmChanged);
    }
    exchangeRows(std::move(patches));
    for (const Announcement announcement : announcements) {
        Q_EMIT(this->*announcement)();
    }
}

QList<VelgorLibrary::Announcement> VelgorLibrary::setMarks(const LibraryMarks &marks)
{
    const LibraryMarks before = std::exchange(m_marks, marks);
    m_tickedCount.reset();
    QList<Announcement> announcements;
    const auto announceIf = [&announcements](bool isChanged, Announcement announcement) {
        if (isChanged) {
            announcements.append(announcement);
        }
    };
    announceIf(before.selection != marks.selection, &VelgorLibrary::selectionChanged);
    announceIf(before.isMultiSel != marks.isMultiSel, &VelgorLibrary::isMultiSelChanged);
    announceIf(before.multiSelections != marks.multiSelections, &VelgorLibrary::multiSelectionsChanged);
    announceIf(before.order.inverseSort != marks.order.inverseSort, &VelgorLibrary::inverseSortChanged);
    announceIf(before.defaultPatch != marks.defaultPatch, &VelgorLibrary::defaultPatchChanged);
    return announcements;
}

void VelgorLibrary::startChange()
{
    m_marksBefore = m_marks;
    startRecording();
}

LibraryChange VelgorLibrary::endChange()
{
    return {.deltas = takeRecorded(), .before = std::exchange(m_marksBefore, {}), .after = m_marks};
}

void VelgorLibrary::apply(const LibraryChange &change)
{
    const QList<Announcement> announcements = setMarks(change.after);
    applyDeltas(change.deltas);
    for (const Announcement announcement : announcements) {
        Q_EMIT(this->*announcement)();
    }
}

qsizetype VelgorLibrary::count() const
{
    return rows().size() == 1 && rows().first().empty ? 0 : rows().size();
}

std::optional<VelgorLibrary::Found> VelgorLibrary::getPatchFromId(std::optional<quint64> id) const
{
    const qsizetype index = id ? m_index.positionOf(*id, rows()) : -1;
    if (index < 0) {
        return std::nullopt;
    }
    return Found{index, &rows().at(index)};
}

bool VelgorLibrary::update(const QList<VelgorPatch> &patches)
{
    bool areKnown = true;
    QList<qsizetype> changedRows;
    QList<VelgorPatch> values;
    for (const VelgorPatch &patch : patches) {
        const auto found = getPatchFromId(patch.id());
        areKnown = areKnown && found;
        if (found && !isSame(*found->patch, patch)) {
            changedRows.append(found->index);
            values.append(patch);
        }
    }
    changeRows(changedRows, values);
    return areKnown;
}

void VelgorLibrary::duplicateSelection(std::optional<quint64> id)
{
    if (id) {
        duplicatePatches({*id});
    }
}

void VelgorLibrary::duplicatePatches(const QList<quint64> &ids)
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
    }
}

void VelgorLibrary::deletePatches(const QList<quint64> &ids)
{
    materializeOrder();
    QList<qsizetype> deletedRows;
    MultiSelections ticks = m_marks.multiSelections;
    for (const quint64 id : ids) {
        if (const auto found = getPatchFromId(id)) {
            deletedRows.append(found->index);
        }
        ticks.multiSelections[id] = false;
    }
    std::sort(deletedRows.begin(), deletedRows.end());
    deletedRows.erase(std::unique(deletedRows.begin(), deletedRows.end()), deletedRows.end());
    removeRows(deletedRows);
    if (m_marks.defaultPatch && ids.contains(*m_marks.defaultPatch)) {
        m_marks.defaultPatch.reset();
        Q_EMIT defaultPatchChanged();
    }
    setMultiSelections(ticks);
    manageDummy();
    saveOrder();
}

bool VelgorLibrary::setDefaultPatch(std::optional<quint64> id)
{
    const auto found = getPatchFromId(id);
    if (!found || found->patch->empty) {
        return false;
    }
    setObservable(this, m_marks.defaultPatch, id, &VelgorLibrary::defaultPatchChanged);
    return true;
}

void VelgorLibrary::followInserted(const QList<qsizetype> &rows)
{
    const auto &patches = this->rows();
    const bool isAtEnd = rows.first() + rows.size() == patches.size();
    if (!isAtEnd) {
        m_index.invalidate();
    }
    for (const qsizetype row : rows) {
        m_emptyCount += patches.at(row).empty ? 1 : 0;
        if (isAtEnd) {
            m_index.appended(patches.at(row), row);
        }
    }
}

void VelgorLibrary::followRemoved(const QList<qsizetype> &formerRows)
{
    m_index.removed(formerRows);
    countEmpty();
}

void VelgorLibrary::followChanged(qsizetype row, const VelgorPatch &before)
{
    const VelgorPatch &after = rows().at(row);
    m_index.changed(row, before, after);
    m_emptyCount += (after.empty ? 1 : 0) - (before.empty ? 1 : 0);
}

void VelgorLibrary::followMoved(qsizetype from, qsizetype to)
{
    m_index.moved(from, to);
}

void VelgorLibrary::followReordered(const QList<qsizetype> &formerRows)
{
    m_index.reordered(formerRows);
}

void VelgorLibrary::followExchanged()
{
    m_index.invalidate();
    countEmpty();
}

void VelgorLibrary::manageDummy()
{
    if (rows().size() > 1 && m_emptyCount > 0) {
        QList<qsizetype> emptyRows;
        for (qsizetype row = 0; row < rows().size(); ++row) {
            if (rows().at(row).empty) {
                emptyRows.append(row);
            }
        }
        removeRows(emptyRows);
    }
    if (rows().isEmpty()) {
        insertRows(0, {placeholder()});
        setIsMultiSel(false);
    }
}

void VelgorLibrary::countEmpty()
{
    m_emptyCount = std::count_if(rows().begin(), rows().end(), [](const VelgorPatch &patch) { return patch.empty; });
}
