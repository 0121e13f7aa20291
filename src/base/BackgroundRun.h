#pragma once

#include <QObject>
#include <QTimer>

#include <atomic>
#include <chrono>
#include <functional>
#include <future>

/// Does something on a thread of its own, and says how far it has come. User-interface thread only, which must run an
/// event loop.
class BackgroundRun : public QObject {
    Q_OBJECT

public:
    /// For the thread to call, as often as it likes. Does not return, but throws what only this class may catch, once
    /// the run is to end early.
    using Report = std::function<void(qsizetype done, qsizetype total)>;
    using Work = std::function<void(const Report &report)>;

    explicit BackgroundRun(QObject *parent = nullptr);
    /// Ends a run with its next report, and waits for that.
    ~BackgroundRun() override;
    Q_DISABLE_COPY_MOVE(BackgroundRun)

    /// Not while it is running. An exception of the work ends the program. Where no thread is to be had, the work is
    /// done before this returns; finished() comes later all the same.
    void start(const Work &work);
    /// True from start() until right before finished().
    [[nodiscard]] bool isRunning() const { return m_isRunning; }
    /// Waits for the end of a run, and emits finished() before it returns. Does nothing otherwise.
    void finish();
    /// The same, but waits no longer than that. False when it is still running.
    bool finishWithin(std::chrono::milliseconds time);

Q_SIGNALS:
    /// Emitted now and then while that changes.
    void progress(qsizetype done, qsizetype total);
    void finished();

private:
    void reportProgress();

    QTimer m_reportTimer;
    std::future<void> m_end;
    bool m_isRunning = false;
    int m_run = 0;
    qsizetype m_reported = 0;
    std::atomic<qsizetype> m_done = 0;
    std::atomic<qsizetype> m_total = 0;
    std::atomic<bool> m_isUnwanted = false;
};
