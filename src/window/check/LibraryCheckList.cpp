#include "LibraryCheckList.h"

#include "LibraryCheckDelegate.h"

#include <QPainter>

LibraryCheckList::LibraryCheckList(QWidget *parent)
    : QListView(parent)
    , m_model(new LibraryCheckModel(this))
{
    // Framed like the field below it, to which it belongs.
    setProperty("field", true);
    setFrameShape(StyledPanel);
    setModel(m_model);
    setItemDelegate(new LibraryCheckDelegate(this));
    setUniformItemSizes(true);
    setMouseTracking(true);
    setEditTriggers(NoEditTriggers);
    setSelectionMode(SingleSelection);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerPixel);
}

void LibraryCheckList::setRows(const QList<LibraryCheckRow> &rows)
{
    m_model->setRows(rows);
    setCurrentIndex(m_model->first());
    scrollToTop();
    Q_EMIT selectionMoved();
}

LibraryCheckRow LibraryCheckList::selectedRow() const
{
    const QModelIndexList selected = selectedIndexes();
    return selected.isEmpty() ? LibraryCheckRow() : m_model->rowAt(selected.first());
}

void LibraryCheckList::setHint(const EmptyHint &hint)
{
    m_hint = hint;
    // What is painted is said too.
    setAccessibleDescription(hint.isEmpty() ? QString() : hint.title + QStringLiteral(". ") + hint.text);
    viewport()->update();
}

void LibraryCheckList::paintEvent(QPaintEvent *event)
{
    QListView::paintEvent(event);
    if (m_model->rowCount() == 0 && !m_hint.isEmpty()) {
        QPainter painter(viewport());
        painter.setRenderHint(QPainter::Antialiasing);
        m_hint.paint(painter, *viewport());
    }
}

void LibraryCheckList::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    QListView::selectionChanged(selected, deselected);
    Q_EMIT selectionMoved();
}

void LibraryCheckList::focusInEvent(QFocusEvent *event)
{
    QListView::focusInEvent(event);
    // The selected row changes its colour, and so does the frame.
    viewport()->update();
    update();
}

void LibraryCheckList::focusOutEvent(QFocusEvent *event)
{
    QListView::focusOutEvent(event);
    viewport()->update();
    update();
}
