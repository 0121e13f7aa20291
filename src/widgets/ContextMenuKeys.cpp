#include "ContextMenuKeys.h"

#include <QAbstractItemView>
#include <QContextMenuEvent>
#include <QKeyEvent>

ContextMenuKeys::ContextMenuKeys(QAbstractItemView &list)
    : QObject(&list)
    , m_list(list)
{
    list.installEventFilter(this);
}

bool ContextMenuKeys::eventFilter(QObject *watched, QEvent *event)
{
    const bool isMenuKey = event->type() == QEvent::ContextMenu
        && static_cast<QContextMenuEvent *>(event)->reason() == QContextMenuEvent::Keyboard;
    // The platform knows the menu key; this one it leaves to the program.
    const bool isShiftF10 = event->type() == QEvent::KeyPress
        && static_cast<QKeyEvent *>(event)->keyCombination() == (Qt::SHIFT | Qt::Key_F10);
    if (isMenuKey || isShiftF10) {
        event->accept();
        showMenu();
        return true;
    }
    return QObject::eventFilter(watched, event);
}

void ContextMenuKeys::showMenu()
{
    const QModelIndexList selected = m_list.selectionModel()->selectedIndexes();
    const bool isCurrentMeant = selected.isEmpty() || selected.contains(m_list.currentIndex());
    const QModelIndex index = isCurrentMeant ? m_list.currentIndex() : selected.first();
    if (index.isValid()) {
        m_list.scrollTo(index);
    }
    const QRect place = index.isValid() ? m_list.visualRect(index) : m_list.viewport()->rect();
    Q_EMIT m_list.customContextMenuRequested(place.center());
}
