#include "KeyboardHints.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QApplication>
#include <QComboBox>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>

namespace {

bool canShowFocus(const QObject *object)
{
    return qobject_cast<const QAbstractButton *>(object) || qobject_cast<const QAbstractScrollArea *>(object)
        || qobject_cast<const QLineEdit *>(object) || qobject_cast<const QComboBox *>(object);
}

} // namespace

bool KeyboardHints::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::FocusIn: {
        const Qt::FocusReason reason = static_cast<QFocusEvent *>(event)->reason();
        const bool isByKeyboard =
            reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason || reason == Qt::ShortcutFocusReason;
        if (canShowFocus(watched) && (isByKeyboard || reason == Qt::MouseFocusReason)) {
            m_areRingsShown = isByKeyboard;
        }
        break;
    }
    case QEvent::MouseButtonPress:
        m_areRingsShown = m_areRingsShown && !canShowFocus(watched);
        break;
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        if (static_cast<QKeyEvent *>(event)->key() == Qt::Key_Alt) {
            showLetters(event->type() == QEvent::KeyPress);
        }
        break;
    case QEvent::ApplicationDeactivate:
    case QEvent::WindowDeactivate:
        showLetters(false);
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void KeyboardHints::showLetters(bool areShown)
{
    if (m_areLettersShown == areShown) {
        return;
    }
    m_areLettersShown = areShown;
    const QWidgetList widgets = QApplication::allWidgets();
    for (QWidget *widget : widgets) {
        if (qobject_cast<QMenuBar *>(widget) || qobject_cast<QAbstractButton *>(widget)
            || qobject_cast<QLabel *>(widget)) {
            widget->update();
        }
    }
}
