#pragma once

#include "Diagnostics.h"

#include <QMutex>
#include <QStringList>

/// Collects the diagnostic lines printed during its life, from all threads, in place of printing them.
class DiagnosticRecorder {
public:
    DiagnosticRecorder();
    ~DiagnosticRecorder();
    Q_DISABLE_COPY_MOVE(DiagnosticRecorder)

    [[nodiscard]] QStringList lines() const;
    /// The lines so far, which are then forgotten.
    QStringList take();

private:
    mutable QMutex m_mutex;
    QStringList m_lines;
    Diagnostics::Sink m_previous;
};
