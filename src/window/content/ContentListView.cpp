#include "ContentListView.h"

#include "ContentEditor.h"
#include "ContentListModel.h"
#include "ContentRowDelegate.h"
#include "LibraryEditor.h"
#include "VelgorContent.h"

#include <QScopedValueRollback>

ContentListView::ContentListView(const VelgorContent &content, ContentEditor &editor,
    const LibraryEditor &libraryEditor, ContentListModel &model, QWidget *parent)
    : PatchListView(parent)
    , m_content(content)
    , m_editor(editor)
    , m_libraryEditor(libraryEditor)
{
    setAccessibleName(tr("Content"));
    setSelectionMode(ExtendedSelection);
    setItemDelegate(new ContentRowDelegate(this));
    setModel(&model);
    connect(&content, &VelgorContent::selectionsChanged, this, &ContentListView::followContent);
    // The view forgets its selection with a new list; the slots that it named are gone.
    connect(&model, &QAbstractItemModel::modelReset, this, &ContentListView::publishSelection);
    // One slot, or several at once.
    const auto followCurrent = [this] { scrollTo(currentIndex()); };
    connect(&model, &QAbstractItemModel::rowsMoved, this, followCurrent, Qt::QueuedConnection);
    connect(&model, &QAbstractItemModel::layoutChanged, this, followCurrent, Qt::QueuedConnection);
}

void ContentListView::showSlot(int row)
{
    const QModelIndex index = model()->index(row, 0);
    if (index.isValid()) {
        selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
        scrollTo(index);
    }
}

QList<qsizetype> ContentListView::rowsOf(const QList<TransferablePatch> &items) const
{
    QSet<QUuid> dragged;
    for (const TransferablePatch &item : items) {
        if (item.cid) {
            dragged.insert(*item.cid);
        }
    }
    QList<qsizetype> rows;
    const auto &list = m_content.velgorContentPatchList();
    for (qsizetype row = 0; row < list.size(); ++row) {
        if (dragged.contains(list.at(row).id)) {
            rows.append(row);
        }
    }
    return rows;
}

DropMark ContentListView::markFor(const QList<TransferablePatch> &items, const QPoint &position) const
{
    if (items.isEmpty() || m_content.velgorContentPatchList().isEmpty()) {
        return {};
    }
    if (items.first().origin != TransferablePatch::fromLibrary) {
        return rowsOf(items).isEmpty() ? DropMark() : DropMark{.kind = DropMark::Insert, .row = insertionRow(position)};
    }
    const QModelIndex target = indexAt(position);
    if (!target.isValid()) {
        return {};
    }
    const ContentEditor::Placement placement = m_editor.placementFor(items.first().id, target.row());
    if (placement.patches.isEmpty()) {
        return {};
    }
    DropMark mark{.kind = DropMark::Replace,
        .row = target.row(),
        .count = static_cast<int>(placement.patches.size()),
        .leftOut = placement.leftOut,
        .firstLeftOut = placement.firstLeftOut,
        .hidden = m_libraryEditor.hiddenCount(placement.patches)};
    for (const VelgorPatch &patch : placement.patches) {
        mark.names.append(patch.name);
    }
    return mark;
}

bool ContentListView::hasUserIR(const TransferablePatch &payload) const
{
    const QList<qsizetype> rows = rowsOf({payload});
    return !rows.isEmpty() && m_content.velgorContentPatchList().at(rows.first()).patch.hasUserIR;
}

void ContentListView::acceptDrop(const QList<TransferablePatch> &items, const DropMark &mark)
{
    if (mark.kind == DropMark::Replace) {
        m_editor.dropDest(items.first().id, mark.row);
    } else {
        m_editor.moveSlots(rowsOf(items), mark.row);
    }
}

void ContentListView::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    PatchListView::selectionChanged(selected, deselected);
    publishSelection();
}

void ContentListView::publishSelection()
{
    if (m_isFollowing) {
        return;
    }
    const QScopedValueRollback following(m_isFollowing, true);
    QSet<QUuid> selections;
    const QModelIndexList indexes = selectedIndexes();
    for (const QModelIndex &index : indexes) {
        selections.insert(m_content.velgorContentPatchList().at(index.row()).id);
    }
    m_editor.select(selections);
}

void ContentListView::followContent()
{
    if (m_isFollowing) {
        return;
    }
    const QScopedValueRollback following(m_isFollowing, true);
    QItemSelection selection;
    const QList<qsizetype> rows = m_editor.selectedRows();
    for (const qsizetype row : rows) {
        const QModelIndex index = model()->index(static_cast<int>(row), 0);
        selection.select(index, index);
    }
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    if (!rows.isEmpty()) {
        const QModelIndex first = model()->index(static_cast<int>(rows.first()), 0);
        selectionModel()->setCurrentIndex(first, QItemSelectionModel::NoUpdate);
        scrollTo(first);
    }
}
