#include "ShortcutHints.h"

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMenuBar>

bool ShortcutHints::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        if (static_cast<QKeyEvent *>(event)->key() == Qt::Key_Alt) {
            show(event->type() == QEvent::KeyPress);
        }
        break;
    case QEvent::ApplicationDeactivate:
    case QEvent::WindowDeactivate:
        show(false);
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void ShortcutHints::show(bool shown)
{
    if (m_areShown == shown) {
        return;
    }
    m_areShown = shown;
    const QWidgetList widgets = QApplication::allWidgets();
    for (QWidget *widget : widgets) {
        if (qobject_cast<QMenuBar *>(widget) || qobject_cast<QAbstractButton *>(widget)
            || qobject_cast<QLabel *>(widget)) {
            widget->update();
        }
    }
}
