#include "PaintSignal.h"

#include <QCoreApplication>
#include <QEvent>
#include <QTimer>

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
        // The other widgets are painted before control is back in the event loop.
        QTimer::singleShot(0, this, [] {
            writeLine();
            QCoreApplication::quit();
        });
    }
    return QObject::eventFilter(watched, event);
}
