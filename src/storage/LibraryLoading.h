#pragma once

#include "BackgroundRun.h"
#include "LibraryLoader.h"

#include <QObject>

/// Reads a library directory on a thread of its own. User-interface thread only, which must run an event loop.
class LibraryLoading : public QObject {
    Q_OBJECT

public:
    explicit LibraryLoading(QObject *parent = nullptr);

    /// Not while it is running. `directory` is a path without a slash at its end.
    void start(const QString &directory);
    /// True from start() until right before finished().
    [[nodiscard]] bool isRunning() const { return m_run.isRunning(); }
    /// Waits for the end of a run, and emits finished() before it returns. Does nothing otherwise.
    void finish() { m_run.finish(); }
    /// What the last run gave, once.
    [[nodiscard]] LibraryLoadResult takeResult();

Q_SIGNALS:
    /// How many of the patches have been looked at; emitted now and then while that changes.
    void progress(qsizetype loaded, qsizetype total);
    void finished();

private:
    LibraryLoadResult m_result; ///< written by the run, read after it
    BackgroundRun m_run; ///< after what it writes, so that it ends first
};
