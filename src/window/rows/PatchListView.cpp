#include "PatchListView.h"

#include "ContextMenuKeys.h"
#include "DragPicture.h"
#include "LookMeasures.h"
#include "PatchPayload.h"
#include "PatchRoles.h"

#include <QApplication>
#include <QDrag>
#include <QDragEnterEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QScrollBar>

#include <algorithm>
#include <memory>
#include <utility>

namespace {

/// Between two steps of scrolling while a drag is held at an edge. The view's own scrolling starts over with every
/// move that the desktop reports, and some report them all the time. In milliseconds.
constexpr int edgeInterval = 30;

} // namespace

PatchListView::PatchListView(QWidget *parent)
    : QListView(parent)
{
    setUniformItemSizes(true);
    setFrameShape(QFrame::NoFrame);
    setMouseTracking(true);
    setDragEnabled(true);
    setAcceptDrops(true);
    setDropIndicatorShown(false);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerPixel);
    setEditTriggers(NoEditTriggers);
    setContextMenuPolicy(Qt::CustomContextMenu);
    new ContextMenuKeys(*this);
    verticalScrollBar()->setSingleStep(LookMeasures::rowHeight(fontMetrics()));
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, &PatchListView::updateMarkAfterScroll);
}

void PatchListView::setHint(const EmptyHint &hint)
{
    if (m_hint != hint) {
        m_hint = hint;
        // What is painted is said too.
        setAccessibleDescription(hint.text.isEmpty() ? hint.title : hint.title + QStringLiteral(". ") + hint.text);
        viewport()->update();
    }
}

void PatchListView::setContextMenu(QMenu *menu)
{
    connect(this, &QWidget::customContextMenuRequested, menu,
        [this, menu](const QPoint &position) { menu->popup(viewport()->mapToGlobal(position)); });
}

QModelIndexList PatchListView::draggedIndexes() const
{
    QModelIndexList indexes = selectedIndexes();
    indexes.removeIf([](const QModelIndex &index) { return !index.flags().testFlag(Qt::ItemIsDragEnabled); });
    return indexes;
}

int PatchListView::insertionRow(const QPoint &position) const
{
    const QModelIndex index = indexAt(position);
    if (!index.isValid()) {
        return position.y() < 0 ? 0 : model()->rowCount();
    }
    return position.y() < visualRect(index).center().y() ? index.row() : index.row() + 1;
}

void PatchListView::mousePressEvent(QMouseEvent *event)
{
    notePress(*event);
    QListView::mousePressEvent(event);
}

void PatchListView::mouseDoubleClickEvent(QMouseEvent *event)
{
    notePress(*event);
    QListView::mouseDoubleClickEvent(event);
}

void PatchListView::notePress(const QMouseEvent &event)
{
    const QModelIndex index = indexAt(event.position().toPoint());
    const bool isDraggable = event.button() == Qt::LeftButton && index.flags().testFlag(Qt::ItemIsDragEnabled);
    m_pressedAt = isDraggable ? std::optional(event.position().toPoint()) : std::nullopt;
    m_isDragDue = false;
}

void PatchListView::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_pressedAt || !event->buttons().testFlag(Qt::LeftButton)) {
        QListView::mouseMoveEvent(event);
        return;
    }
    // Left to itself, the view would go on to another row while no selection is allowed, instead of dragging.
    if (!m_isDragDue
        && (event->position().toPoint() - *m_pressedAt).manhattanLength() >= QApplication::startDragDistance()) {
        // A release at another place than the last move is told as a move first. A drag that began in there would wait
        // for a release that has been, and would take every key.
        m_isDragDue = true;
        QMetaObject::invokeMethod(this, &PatchListView::beginDrag, Qt::QueuedConnection);
    }
}

void PatchListView::mouseReleaseEvent(QMouseEvent *event)
{
    m_isDragDue = false;
    m_pressedAt.reset();
    QListView::mouseReleaseEvent(event);
}

void PatchListView::beginDrag()
{
    if (std::exchange(m_isDragDue, false)) {
        m_pressedAt.reset();
        setState(DraggingState);
        startDrag(model()->supportedDragActions());
        setState(NoState);
    }
}

void PatchListView::startDrag(Qt::DropActions supportedActions)
{
    const QModelIndexList indexes = draggedIndexes();
    std::unique_ptr<QMimeData> carried(indexes.isEmpty() ? nullptr : model()->mimeData(indexes));
    if (!carried) {
        return;
    }
    const QList<TransferablePatch> payloads = PatchPayload::unpack(carried.get());
    auto *drag = new QDrag(this);
    drag->setMimeData(carried.release());
    const QPixmap picture = DragPicture::paint(
        payloads.first().name, hasUserIR(payloads.first()), payloads.size(), font(), devicePixelRatioF());
    drag->setPixmap(picture);
    drag->setHotSpot(DragPicture::hotSpot(picture, font()));
    drag->exec(supportedActions, Qt::MoveAction);
}

void PatchListView::dragEnterEvent(QDragEnterEvent *event)
{
    m_dragged = PatchPayload::unpack(event->mimeData());
    m_dragPosition = event->position().toPoint();
    if (m_dragged.isEmpty()) {
        event->ignore();
        return;
    }
    setMark(markFor(m_dragged, event->position().toPoint()));
    event->acceptProposedAction();
}

void PatchListView::dragMoveEvent(QDragMoveEvent *event)
{
    const QPoint position = event->position().toPoint();
    setMark(markFor(m_dragged, position));
    event->setDropAction(event->possibleActions().testFlag(Qt::MoveAction) ? Qt::MoveAction : Qt::CopyAction);
    event->setAccepted(m_mark.kind != DropMark::None);
    m_dragPosition = position;
    if (edgeDirection() == 0) {
        m_edgeTimer.stop();
    } else if (!m_edgeTimer.isActive()) {
        m_edgeSteps = 0;
        m_edgeTimer.start(edgeInterval, this);
    }
}

int PatchListView::edgeDirection() const
{
    if (m_dragPosition.y() < autoScrollMargin()) {
        return -1;
    }
    return m_dragPosition.y() >= viewport()->height() - autoScrollMargin() ? 1 : 0;
}

void PatchListView::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_edgeTimer.timerId()) {
        QListView::timerEvent(event);
        return;
    }
    // Slowly at first, so that a near row is not missed, then faster, up to a row a step.
    ++m_edgeSteps;
    const int step = std::min(2 + m_edgeSteps / 4, LookMeasures::rowHeight(fontMetrics()));
    verticalScrollBar()->setValue(verticalScrollBar()->value() + edgeDirection() * step);
}

void PatchListView::dragLeaveEvent(QDragLeaveEvent *event)
{
    endDrag();
    event->accept();
}

void PatchListView::dropEvent(QDropEvent *event)
{
    const QList<TransferablePatch> items = PatchPayload::unpack(event->mimeData());
    const DropMark mark = items.isEmpty() ? DropMark() : markFor(items, event->position().toPoint());
    endDrag();
    if (mark.kind == DropMark::None) {
        event->ignore();
        return;
    }
    event->acceptProposedAction();
    acceptDrop(items, mark);
}

void PatchListView::endDrag()
{
    m_edgeTimer.stop();
    m_dragged.clear();
    setMark({});
}

void PatchListView::setMark(const DropMark &mark)
{
    if (m_mark != mark) {
        m_mark = mark;
        viewport()->update();
        Q_EMIT dropMarkChanged();
    }
}

void PatchListView::updateMarkAfterScroll()
{
    if (!m_dragged.isEmpty()) {
        setMark(markFor(m_dragged, m_dragPosition));
    }
}

void PatchListView::changeEvent(QEvent *event)
{
    QListView::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        verticalScrollBar()->setSingleStep(LookMeasures::rowHeight(fontMetrics()));
        scheduleDelayedItemsLayout();
    }
}

void PatchListView::keyPressEvent(QKeyEvent *event)
{
    // Alt and an arrow move rows. Where there is no further to go, the selection must not move instead.
    if (event->modifiers().testFlag(Qt::AltModifier)) {
        event->ignore();
        return;
    }
    const bool isPlainOrShifted = !(event->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier));
    if (isPlainOrShifted && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)) {
        // As a shortcut it did not get here.
        Q_EMIT returnedInVain();
        return;
    }
    QListView::keyPressEvent(event);
    // The row on which the focus arrived is current, and the view would leave it so.
    const bool isGoingToIt =
        event->key() == Qt::Key_Home || event->key() == Qt::Key_Up || event->key() == Qt::Key_PageUp;
    if (isGoingToIt && event->modifiers() == Qt::NoModifier && selectionMode() != NoSelection
        && selectedIndexes().isEmpty()) {
        selectionModel()->select(currentIndex(), QItemSelectionModel::ClearAndSelect);
    }
}

void PatchListView::keyboardSearch(const QString &search)
{
    const int rows = model() ? model()->rowCount() : 0;
    const bool isGoingOn = m_lastTyped.isValid() && !m_lastTyped.hasExpired(QApplication::keyboardInputInterval());
    m_lastTyped.start();
    m_typed = isGoingOn ? m_typed + search : search;
    if (rows == 0 || m_typed.trimmed().isEmpty()) {
        m_typed.clear();
        return;
    }
    // The same letter again and again goes through the names that begin with it.
    const bool isOneLetter = m_typed.count(m_typed.at(0)) == m_typed.size();
    const QString start = isOneLetter ? m_typed.first(1) : m_typed;
    const int current = currentIndex().isValid() ? currentIndex().row() : -1;
    const int first = isOneLetter ? current + 1 : std::max(current, 0);
    QModelIndex found = findFrom(first, start);
    if (!found.isValid() && isOneLetter && m_typed.size() > 1) {
        found = findFrom(std::max(current, 0), m_typed);
    }
    if (found.isValid()) {
        setCurrentIndex(found);
    }
}

QModelIndex PatchListView::findFrom(int row, const QString &start) const
{
    const int rows = model()->rowCount();
    for (const int role : {int(PatchRoles::Name), int(Qt::DisplayRole)}) {
        for (int i = 0; i < rows; ++i) {
            const QModelIndex index = model()->index((row + i) % rows, 0);
            if (index.data(role).toString().startsWith(start, Qt::CaseInsensitive)) {
                return index;
            }
        }
    }
    return {};
}

void PatchListView::focusInEvent(QFocusEvent *event)
{
    QListView::focusInEvent(event);
    // The selected rows change their colour.
    viewport()->update();
}

void PatchListView::focusOutEvent(QFocusEvent *event)
{
    QListView::focusOutEvent(event);
    viewport()->update();
}

QSize PatchListView::viewportSizeHint() const
{
    return {200, 10 * LookMeasures::rowHeight(fontMetrics())};
}
