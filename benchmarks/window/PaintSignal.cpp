#include "PaintSignal.h"

#include <QCoreApplication>
#include <QEvent>

#include <cstdio>
#include <utility>

PaintSignal::PaintSignal(std::function<bool(const QObject *)> counts)
    : m_counts(std::move(counts))
{
    QCoreApplication::instance()->installEventFilter(this);
}

void PaintSignal::writeLine()
{
    std::puts("done");
    std::fflush(stdout);
}

bool PaintSignal::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Paint && m_counts && m_counts(watched)) {
        m_counts = nullptr;
        // The other widgets are painted before control is back in the event loop. Whatever else waits there is no part
        // of it.
        QCoreApplication::postEvent(this, new QEvent(QEvent::User), Qt::HighEventPriority);
    }
    return QObject::eventFilter(watched, event);
}

void PaintSignal::customEvent(QEvent * /*event*/)
{
    writeLine();
    QCoreApplication::quit();
}
