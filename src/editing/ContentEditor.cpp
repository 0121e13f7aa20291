#include "ContentEditor.h"

#include "CommandTargets.h"
#include "EditHistory.h"
#include "VelgorContent.h"
#include "VelgorLibrary.h"

#include <algorithm>

ContentEditor::ContentEditor(VelgorLibrary &library, VelgorContent &content, EditHistory &history)
    : m_library(library)
    , m_content(content)
    , m_history(history)
{
}

void ContentEditor::dropDest(quint64 id, qsizetype location)
{
    m_lastPlacement = placementFor(id, location);
    const qsizetype count = m_lastPlacement.patches.size();
    m_history.perform(count == 1 ? tr("Placing of a Patch") : tr("Placing of %1 Patches").arg(count), [&] {
        m_content.setPatches(m_lastPlacement.patches, location);
        m_library.setIsMultiSel(false);
        warnOfMixedVersions();
    });
    if (!m_lastPlacement.patches.isEmpty()) {
        Q_EMIT placed();
    }
}

ContentEditor::Placement ContentEditor::placementFor(quint64 id, qsizetype location) const
{
    constexpr qsizetype fewNames = 3;
    const qsizetype room = std::max<qsizetype>(m_content.velgorContentPatchList().size() - location, 0);
    const QList<VelgorPatch> patches = CommandTargets::several(m_library, id, room + fewNames);
    Placement placement{.row = location, .patches = patches.first(std::min(patches.size(), room))};
    if (patches.size() > room) {
        placement.leftOut = CommandTargets::count(m_library, id) - room;
        for (const VelgorPatch &patch : patches.sliced(room)) {
            placement.firstLeftOut.append(patch.name);
        }
    }
    return placement;
}

void ContentEditor::putIntoSelectedSlot()
{
    const QList<qsizetype> rows = selectedRows();
    if (!canPut()) {
        return;
    }
    dropDest(m_library.selection().value_or(0), rows.first());
    const qsizetype behind = rows.first() + m_lastPlacement.patches.size();
    const auto &list = m_content.velgorContentPatchList();
    m_content.setSelections({list.at(std::min(behind, list.size() - 1)).id});
}

void ContentEditor::replaceSelectedSlots()
{
    if (!canReplace()) {
        return;
    }
    const VelgorPatch patch = *CommandTargets::one(m_library);
    const QList<qsizetype> rows = selectedRows();
    m_lastPlacement = {};
    m_history.perform(rows.size() == 1 ? tr("Replacing of a Slot") : tr("Replacing of %1 Slots").arg(rows.size()), [&] {
        m_content.replace(rows, patch);
        QSet<QUuid> slotIds;
        for (const qsizetype row : rows) {
            slotIds.insert(m_content.velgorContentPatchList().at(row).id);
        }
        m_content.setSelections(slotIds);
        warnOfMixedVersions();
    });
    Q_EMIT replaced(patch.id(), rows);
}

void ContentEditor::reset()
{
    const auto found = m_library.getPatchFromId(m_library.defaultPatch());
    if (!found) {
        m_content.setSelectDefault(true);
        return;
    }
    m_history.perform(tr("New List"), [&] {
        m_content.createNew(*found->patch);
        m_content.setSelections({});
    });
}

void ContentEditor::moveSlots(const QList<qsizetype> &rows, qsizetype offset)
{
    const auto isAbove = [offset](qsizetype row) { return row < offset; };
    const qsizetype first = offset - std::count_if(rows.begin(), rows.end(), isAbove);
    const bool isMove = !rows.isEmpty() && (rows.first() != first || rows.last() != first + rows.size() - 1);
    m_history.perform(rows.size() == 1 ? tr("Move of a Slot") : tr("Move of %1 Slots").arg(rows.size()),
        [&] { m_content.move(rows, offset); });
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
    return CommandTargets::count(m_library) > 0 && !selectedRows().isEmpty();
}

bool ContentEditor::canReplace() const
{
    return CommandTargets::one(m_library) && !selectedRows().isEmpty();
}

bool ContentEditor::canMoveSelected(int step) const
{
    const QList<qsizetype> rows = selectedRows();
    if (rows.isEmpty()) {
        return false;
    }
    return step < 0 ? rows.first() > 0 : rows.last() < m_content.velgorContentPatchList().size() - 1;
}

void ContentEditor::warnOfMixedVersions()
{
    // Slots that were filled, replaced or moved otherwise left the table behind.
    m_content.recountVersions();
    m_content.setMixVersions(m_content.versions().size() >= 2);
}

void ContentEditor::select(const QSet<QUuid> &slotIds)
{
    m_content.setSelections(slotIds);
}

void ContentEditor::setInverseTailBit(bool isInverse)
{
    m_history.perform(tr("Inverting of the Tail Bit"), [&] { m_content.setInverseTailBit(isInverse); });
}

void ContentEditor::endSelectDefault()
{
    m_content.setSelectDefault(false);
}

void ContentEditor::endMixVersions()
{
    m_content.setMixVersions(false);
}
