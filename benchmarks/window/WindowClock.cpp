#include "WindowClock.h"

#include <QCoreApplication>
#include <QEvent>

#include <algorithm>
#include <chrono>
#include <ctime>

using namespace std::chrono_literals;

namespace {

double processorMilliseconds()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

} // namespace

WindowClock::WindowClock()
{
    m_ticks.setInterval(1ms);
    m_ticks.setTimerType(Qt::PreciseTimer);
    connect(&m_ticks, &QTimer::timeout, this, &WindowClock::noteGap);
}

WindowClock::Round WindowClock::measure(QWidget &widget, const Action &action, const Condition &isDone)
{
    constexpr double longest = 60'000;
    widget.installEventFilter(this);
    m_isPainted = false;
    m_lastTick = 0;
    m_longestGap = 0;
    m_ticks.start();
    m_clock.start();
    const double processorBefore = processorMilliseconds();
    action();
    while (!m_isPainted || (isDone && !isDone())) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        if (milliseconds() > longest) {
            qFatal("nothing was painted, or what was waited for did not come");
        }
    }
    const double total = milliseconds();
    const double processor = processorMilliseconds() - processorBefore;
    noteGap();
    m_ticks.stop();
    widget.removeEventFilter(this);
    return {.total = total, .longestGap = m_longestGap, .processor = processor};
}

bool WindowClock::eventFilter(QObject *watched, QEvent *event)
{
    m_isPainted = m_isPainted || event->type() == QEvent::Paint;
    return QObject::eventFilter(watched, event);
}

double WindowClock::milliseconds() const
{
    constexpr double nanoseconds = 1e6;
    return static_cast<double>(m_clock.nsecsElapsed()) / nanoseconds;
}

void WindowClock::noteGap()
{
    const double now = milliseconds();
    m_longestGap = std::max(m_longestGap, now - m_lastTick);
    m_lastTick = now;
}
