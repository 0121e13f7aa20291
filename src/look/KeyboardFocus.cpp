#include "KeyboardFocus.h"

#include <QFocusEvent>

bool KeyboardFocus::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::FocusIn: {
        const Qt::FocusReason reason = static_cast<QFocusEvent *>(event)->reason();
        if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason || reason == Qt::ShortcutFocusReason) {
            m_isShown = true;
        } else if (reason == Qt::MouseFocusReason) {
            m_isShown = false;
        }
        break;
    }
    case QEvent::MouseButtonPress:
        m_isShown = false;
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}
