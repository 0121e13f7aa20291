#include "OneRefresh.h"

#include <QCoreApplication>
#include <QEvent>

#include <utility>

OneRefresh::OneRefresh(std::function<void()> refresh, QObject *parent)
    : QObject(parent)
    , m_refresh(std::move(refresh))
{
}

void OneRefresh::ask()
{
    if (!std::exchange(m_isDue, true)) {
        qApp->installEventFilter(this);
        QMetaObject::invokeMethod(this, &OneRefresh::catchUp, Qt::QueuedConnection);
    }
}

void OneRefresh::catchUp()
{
    if (std::exchange(m_isDue, false)) {
        qApp->removeEventFilter(this);
        m_refresh();
        Q_EMIT done();
    }
}

bool OneRefresh::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::ShortcutOverride:
    case QEvent::KeyPress:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::TouchBegin:
    case QEvent::Expose:
    case QEvent::UpdateRequest:
        catchUp();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}
