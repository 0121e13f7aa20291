#include "OneRefresh.h"

#include <QCoreApplication>

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
        QCoreApplication::postEvent(this, new QEvent(dueEvent()));
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

QEvent::Type OneRefresh::dueEvent()
{
    static const auto type = static_cast<QEvent::Type>(QEvent::registerEventType());
    return type;
}

bool OneRefresh::event(QEvent *event)
{
    if (event->type() == dueEvent()) {
        catchUp();
        return true;
    }
    return QObject::event(event);
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
