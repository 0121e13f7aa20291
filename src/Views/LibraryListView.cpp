#include "LibraryListView.h"

#include "LibraryEditor.h"
#include "LibraryListModel.h"
#include "LibraryRowDelegate.h"
#include "VelgorLibrary.h"

#include <QScopedValueRollback>

LibraryListView::LibraryListView(
    VelgorLibrary &library, LibraryEditor &editor, LibraryListModel &model, QWidget *parent)
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
    connect(&library, &VelgorLibrary::isMultiSelChanged, this, &LibraryListView::followTicking);
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
        m_library.setSelection(id);
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
        const bool isMove = items.size() == 1 && found && !found->patch->empty;
        return isMove ? DropMark{DropMark::Insert, insertionRow(position), 0, {}} : DropMark();
    }
    return m_editor.canKeep(items) ? DropMark{DropMark::WholeList, 0, 0, {}} : DropMark();
}

bool LibraryListView::hasUserIR(const TransferablePatch &payload) const
{
    const auto found = m_library.getPatchFromId(payload.id);
    return found && found->patch->hasUserIR;
}

void LibraryListView::take(const QList<TransferablePatch> &items, const DropMark &mark)
{
    m_editor.drop(items, mark.kind == DropMark::Insert ? mark.row : 0);
}

QModelIndexList LibraryListView::draggedIndexes() const
{
    // While ticking no row is selected, but each can be dragged.
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
    m_library.setSelection(indexes.isEmpty() ? std::nullopt : std::optional(m_model.idAt(indexes.first().row())));
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
    } else if (!selectionModel()->isSelected(index)) {
        selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
        scrollTo(index);
    }
}

void LibraryListView::followTicking()
{
    setSelectionMode(m_library.isMultiSel() ? NoSelection : SingleSelection);
}
