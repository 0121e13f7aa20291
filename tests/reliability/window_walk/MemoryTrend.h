#pragma once

#include <QList>
#include <QString>

/// Whether the memory in use grows from one visit of the same state to the next.
class MemoryTrend {
public:
    /// What a healthy walk may hold more at its end than early on: caches of fonts and of the allocator.
    static constexpr qint64 allowedGrowth = qint64(1024) * 1024;

    /// Bytes that are allocated now, in all threads.
    [[nodiscard]] static qint64 bytesInUse();

    void sample() { m_samples.append(bytesInUse()); }
    /// The first quarter is for warming up. Growth is what the least of the last quarter is above the least of the
    /// second, because caches come and go on top of it. A short walk says nothing. Empty when there is none to tell
    /// of.
    [[nodiscard]] QString problem() const;
    [[nodiscard]] QString summary() const;

private:
    [[nodiscard]] qint64 growth() const;

    QList<qint64> m_samples;
};
