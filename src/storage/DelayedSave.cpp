#include "DelayedSave.h"

#include "Diagnostics.h"
#include "ObservableProperty.h"

DelayedSave::DelayedSave(std::chrono::milliseconds period, QObject *parent)
    : QObject(parent)
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setInterval(period);
    connect(&m_timer, &QTimer::timeout, this, &DelayedSave::endPeriod);
}

void DelayedSave::request()
{
    if (m_waitingToSave) {
        setObservable(this, m_waitMore, true, &DelayedSave::waitMoreChanged);
        return;
    }
    setObservable(this, m_waitingToSave, true, &DelayedSave::waitingToSaveChanged);
    Diagnostics::printLine(QStringLiteral("Waiting to save library..."));
    beginPeriod();
}

void DelayedSave::beginPeriod()
{
    setObservable(this, m_waitMore, false, &DelayedSave::waitMoreChanged);
    m_timer.start();
}

void DelayedSave::endPeriod()
{
    if (m_waitMore) {
        beginPeriod();
        return;
    }
    Diagnostics::printLine(QStringLiteral("Saving library..."));
    Q_EMIT due();
}

void DelayedSave::saveFinished()
{
    setObservable(this, m_waitingToSave, false, &DelayedSave::waitingToSaveChanged);
}

void DelayedSave::cancel()
{
    m_timer.stop();
    saveFinished();
}
