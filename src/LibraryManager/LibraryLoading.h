#pragma once

#include "LibraryLoader.h"

#include <QObject>
#include <QTimer>

#include <atomic>
#include <thread>

/// Reads a library directory on a thread of its own. User-interface thread only, which must run an event loop.
class LibraryLoading : public QObject {
    Q_OBJECT

public:
    explicit LibraryLoading(QObject *parent = nullptr);
    /// Waits for the end of a run.
    ~LibraryLoading() override;
    Q_DISABLE_COPY_MOVE(LibraryLoading)

    /// Not while it is running. `directory` is a path without a slash at its end.
    void start(const QString &directory);
    /// True from start() until right before finished().
    [[nodiscard]] bool isRunning() const { return m_isRunning; }
    /// Waits for the end of a run, and emits finished() before it returns. Does nothing otherwise.
    void finish();
    /// What the last run gave, once. The library in it belongs to the thread of this object.
    [[nodiscard]] LibraryLoadResult takeResult();

Q_SIGNALS:
    /// How many of the patches have been looked at; emitted now and then while that changes.
    void progress(qsizetype loaded, qsizetype total);
    void finished();

private:
    void reportProgress();

    QTimer m_reportTimer;
    std::thread m_thread;
    bool m_isRunning = false;
    int m_run = 0;
    qsizetype m_reported = 0;
    std::atomic<qsizetype> m_loaded = 0;
    std::atomic<qsizetype> m_total = 0;
    LibraryLoadResult m_result; ///< written by the thread, read after joining it
};
