#pragma once

#include <QObject>
#include <QTimer>

#include <chrono>

/// Turns a burst of requests into one save: periods go by until one ends in which nothing was requested.
/// User-interface thread only; needs its event loop.
class DelayedSave : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds usualPeriod{1000};

    explicit DelayedSave(std::chrono::milliseconds period = usualPeriod, QObject *parent = nullptr);

    /// True from the first request until saveFinished().
    [[nodiscard]] bool waitingToSave() const { return m_waitingToSave; }
    /// A request came in since the present period began.
    [[nodiscard]] bool waitMore() const { return m_waitMore; }

    void request();
    /// The save that due() asked for has ended. A request made meanwhile is dropped: the next one serves it too.
    void saveFinished();
    /// Ends the waiting without a save.
    void cancel();

Q_SIGNALS:
    void due();
    void waitingToSaveChanged();
    void waitMoreChanged();

private:
    void beginPeriod();
    void endPeriod();

    QTimer m_timer;
    bool m_waitingToSave = false;
    bool m_waitMore = false;
};
