#include "LibraryListView.h"

#include "LibraryEditor.h"
#include "LibraryListModel.h"
#include "LibraryRowDelegate.h"
#include "StatusText.h"

#include <QMouseEvent>
#include <QScopedValueRollback>

#include <algorithm>
#include <utility>

LibraryListView::LibraryListView(
    const VelgorLibrary &library, LibraryEditor &editor, LibraryListModel &model, QWidget *parent)
    : PatchListView(parent)
    , m_library(library)
    , m_editor(editor)
    , m_model(model)
{
    setAccessibleName(tr("Library"));
    setSelectionMode(SingleSelection);
    setItemDelegate(new LibraryRowDelegate(this));
    // View and selection model would both go on to a neighbour of the selected row. Connected before theirs.
    connect(&model, &QAbstractItemModel::rowsAboutToBeRemoved, this, [this] { m_isRemoving = true; });
    setModel(&model);
    connect(&library, &VelgorLibrary::selectionChanged, this, &LibraryListView::followLibrary);
    connect(&library, &VelgorLibrary::isMultiSelChanged, this, &LibraryListView::followLibrary);
    connect(&model, &QAbstractItemModel::modelReset, this, &LibraryListView::followLibrary);
    connect(&model, &QAbstractItemModel::rowsRemoved, this, [this] {
        m_isRemoving = false;
        followLibrary();
    });
    connect(&model, &QAbstractItemModel::rowsInserted, this, &LibraryListView::followLibrary);
}

void LibraryListView::flipTickOfCurrent()
{
    const QModelIndex index = currentIndex();
    if (!m_library.isMultiSel()) {
        m_editor.flipMultiSelection();
    }
    if (index.isValid()) {
        m_editor.flipTick(m_model.idAt(index.row()));
        selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
    }
}

bool LibraryListView::canFlipTickOfCurrent() const
{
    if (m_library.count() == 0) {
        return false;
    }
    return !m_library.isMultiSel() || currentIndex().isValid();
}

void LibraryListView::grabFocus()
{
    if (m_model.filteredVelgorPatchesCount() == 0) {
        return;
    }
    setFocus(Qt::OtherFocusReason);
    if (selectedIndexes().isEmpty()) {
        selectionModel()->setCurrentIndex(m_model.index(0), QItemSelectionModel::ClearAndSelect);
        scrollTo(currentIndex());
    }
}

void LibraryListView::showPatch(quint64 id)
{
    const QModelIndex index = m_model.indexOf(id);
    if (!index.isValid()) {
        return;
    }
    if (m_library.isMultiSel()) {
        selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
    } else {
        m_editor.select(id);
    }
    setFocus(Qt::OtherFocusReason);
    scrollTo(index);
}

bool LibraryListView::canMoveSelected(int step) const
{
    const auto selection = m_library.selection();
    const QModelIndex index = selection ? m_model.indexOf(*selection) : QModelIndex();
    const int target = index.row() + step;
    return index.isValid() && target >= 0 && target < m_model.rowCount();
}

void LibraryListView::moveSelected(int step)
{
    if (!canMoveSelected(step)) {
        return;
    }
    const quint64 id = *m_library.selection();
    const qsizetype neighbour = m_model.libraryRow(m_model.indexOf(id).row() + step);
    m_editor.move(id, step < 0 ? neighbour : neighbour + 1);
    scrollTo(m_model.indexOf(id));
}

DropMark LibraryListView::markFor(const QList<TransferablePatch> &items, const QPoint &position) const
{
    if (items.isEmpty()) {
        return {};
    }
    if (items.first().origin == TransferablePatch::fromLibrary) {
        const auto found = m_library.getPatchFromId(items.first().id);
        if (items.size() != 1 || !found || found->patch->empty) {
            return {};
        }
        const int row = insertionRow(position);
        return {.kind = DropMark::Insert, .row = row, .place = placeInWholeLibrary(*found, row)};
    }
    return m_editor.canKeep(items) ? DropMark{.kind = DropMark::WholeList} : DropMark();
}

QString LibraryListView::placeInWholeLibrary(const VelgorLibrary::Found &patch, int row) const
{
    const qsizetype all = m_library.patches().size();
    if (m_model.rowCount() == all) {
        return {};
    }
    const qsizetype from = patch.index;
    const qsizetype to = row > from ? row - 1 : row;
    const QString &name = patch.patch->name;
    if (to == from) {
        return StatusText::ofMoveNowhere(name, to, all);
    }
    const qsizetype before = to > from ? to : to - 1;
    return StatusText::ofMove(name, to, all, before < 0 ? QString() : m_library.patches().at(before).name);
}

bool LibraryListView::hasUserIR(const TransferablePatch &payload) const
{
    const auto found = m_library.getPatchFromId(payload.id);
    return found && found->patch->hasUserIR;
}

void LibraryListView::acceptDrop(const QList<TransferablePatch> &items, const DropMark &mark)
{
    m_editor.drop(items, mark.kind == DropMark::Insert ? mark.row : 0);
}

QModelIndexList LibraryListView::draggedIndexes() const
{
    // What is ticked goes along; the model knows.
    const QModelIndex current = currentIndex();
    const bool isDraggable = current.isValid() && current.flags().testFlag(Qt::ItemIsDragEnabled);
    return isDraggable ? QModelIndexList{current} : QModelIndexList();
}

void LibraryListView::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    PatchListView::selectionChanged(selected, deselected);
    if (m_isFollowing || m_isRemoving) {
        return;
    }
    const QScopedValueRollback following(m_isFollowing, true);
    const QModelIndexList indexes = selectedIndexes();
    m_editor.select(indexes.isEmpty() ? std::nullopt : std::optional(m_model.idAt(indexes.first().row())));
}

void LibraryListView::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    PatchListView::currentChanged(current, previous);
    // The row that just got the focus is what Space ticks, so it is what every other command means.
    if (m_library.isMultiSel() && current.isValid() && !m_isFollowing && !m_isRemoving) {
        selectionModel()->select(current, QItemSelectionModel::ClearAndSelect);
    }
}

void LibraryListView::mousePressEvent(QMouseEvent *event)
{
    const QModelIndex index = indexAt(event->position().toPoint());
    const bool isRange = event->modifiers() == Qt::ShiftModifier;
    m_isTickingClick = event->button() == Qt::LeftButton && (isRange || event->modifiers() == Qt::ControlModifier)
        && index.isValid() && m_library.count() > 0;
    if (m_isTickingClick) {
        tickByClick(index, isRange);
    } else {
        PatchListView::mousePressEvent(event);
    }
}

void LibraryListView::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_isTickingClick) {
        PatchListView::mouseMoveEvent(event);
    }
}

void LibraryListView::mouseReleaseEvent(QMouseEvent *event)
{
    // The row would take the end of such a click for one on its tick.
    if (!std::exchange(m_isTickingClick, false)) {
        PatchListView::mouseReleaseEvent(event);
    }
}

void LibraryListView::tickByClick(const QModelIndex &index, bool isRange)
{
    const quint64 id = m_model.idAt(index.row());
    if (isRange) {
        const QModelIndexList selected = selectedIndexes();
        const int start = selected.isEmpty() ? index.row() : selected.first().row();
        QList<quint64> ids;
        for (int row = std::min(start, index.row()); row <= std::max(start, index.row()); ++row) {
            ids.append(m_model.idAt(row));
        }
        m_editor.tickToo(ids);
    } else if (m_library.isMultiSel()) {
        m_editor.flipTick(id);
    } else {
        m_editor.tickToo({id});
    }
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
}

void LibraryListView::followLibrary()
{
    if (m_isFollowing) {
        return;
    }
    const QScopedValueRollback following(m_isFollowing, true);
    const auto selection = m_library.selection();
    const QModelIndex index = selection ? m_model.indexOf(*selection) : QModelIndex();
    if (!index.isValid()) {
        selectionModel()->clearSelection();
        if (m_library.isMultiSel()) {
            selectionModel()->clearCurrentIndex();
        }
    } else if (!selectionModel()->isSelected(index)) {
        selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
        scrollTo(index);
    }
}
