#include "ContentEditor.h"

#include "VelgorContent.h"
#include "VelgorLibrary.h"

#include <algorithm>

ContentEditor::ContentEditor(VelgorLibrary &library, VelgorContent &content, QObject *parent)
    : QObject(parent)
    , m_library(library)
    , m_content(content)
{
}

void ContentEditor::dropDest(quint64 id, qsizetype location)
{
    m_content.setPatches(patchesForDrop(id, location), location);
    m_library.setIsMultiSel(false);
    warnOfMixedVersions();
}

QList<VelgorPatch> ContentEditor::patchesForDrop(quint64 id, qsizetype location) const
{
    const qsizetype room = std::max<qsizetype>(m_content.velgorContentPatchList().size() - location, 0);
    QList<VelgorPatch> patches;
    if (m_library.isMultiSel()) {
        patches = m_library.getMultiSelection(room);
    } else if (const auto found = m_library.getPatchFromId(id); found && !found->patch->empty) {
        patches.append(*found->patch);
    }
    return patches.first(std::min(patches.size(), room));
}

void ContentEditor::putIntoSelectedSlot()
{
    const QList<qsizetype> rows = selectedRows();
    if (!canPut()) {
        return;
    }
    const quint64 id = m_library.selection().value_or(0);
    const qsizetype placed = patchesForDrop(id, rows.first()).size();
    dropDest(id, rows.first());
    selectRow(std::min(rows.first() + placed, m_content.velgorContentPatchList().size() - 1));
}

void ContentEditor::replaceSelectedSlots()
{
    if (!canReplace()) {
        return;
    }
    const VelgorPatch patch = *selectedPatch();
    const QList<qsizetype> rows = selectedRows();
    m_content.replace(rows, patch);
    QSet<QUuid> replaced;
    for (const qsizetype row : rows) {
        replaced.insert(m_content.velgorContentPatchList().at(row).id);
    }
    m_content.setSelections(replaced);
    warnOfMixedVersions();
}

void ContentEditor::reset()
{
    const auto found = m_library.getPatchFromId(m_library.defaultPatch());
    if (!found) {
        m_content.setSelectDefault(true);
        return;
    }
    m_content.createNew(*found->patch);
    m_content.setSelections({});
}

void ContentEditor::moveSlots(const QList<qsizetype> &rows, qsizetype offset)
{
    const auto isAbove = [offset](qsizetype row) { return row < offset; };
    const qsizetype first = offset - std::count_if(rows.begin(), rows.end(), isAbove);
    const bool isMove = !rows.isEmpty() && (rows.first() != first || rows.last() != first + rows.size() - 1);
    m_content.move(rows, offset);
    if (isMove) {
        Q_EMIT moved(first, rows.size());
    }
}

void ContentEditor::moveSelectedSlots(int step)
{
    if (!canMoveSelected(step)) {
        return;
    }
    const QList<qsizetype> rows = selectedRows();
    moveSlots(rows, step < 0 ? rows.first() - 1 : rows.last() + 2);
}

QList<qsizetype> ContentEditor::selectedRows() const
{
    QList<qsizetype> rows;
    const auto &list = m_content.velgorContentPatchList();
    for (qsizetype row = 0; row < list.size() && rows.size() < m_content.selections().size(); ++row) {
        if (m_content.selections().contains(list.at(row).id)) {
            rows.append(row);
        }
    }
    return rows;
}

bool ContentEditor::canPut() const
{
    const bool hasPatch = m_library.isMultiSel() ? m_library.tickedCount() > 0 : selectedPatch() != nullptr;
    return hasPatch && !selectedRows().isEmpty();
}

bool ContentEditor::canReplace() const
{
    return selectedPatch() && !selectedRows().isEmpty();
}

bool ContentEditor::canMoveSelected(int step) const
{
    const QList<qsizetype> rows = selectedRows();
    if (rows.isEmpty()) {
        return false;
    }
    return step < 0 ? rows.first() > 0 : rows.last() < m_content.velgorContentPatchList().size() - 1;
}

const VelgorPatch *ContentEditor::selectedPatch() const
{
    const auto found = m_library.getPatchFromId(m_library.selection());
    return found && !found->patch->empty ? found->patch : nullptr;
}

void ContentEditor::selectRow(qsizetype row)
{
    m_content.setSelections({m_content.velgorContentPatchList().at(row).id});
}

void ContentEditor::warnOfMixedVersions()
{
    // Slots that were filled, replaced or moved otherwise left the table behind.
    m_content.recountVersions();
    m_content.setMixVersions(m_content.versions().size() >= 2);
}
