#pragma once

#include <QString>
#include <QStringList>

#include <deque>

/// The last diagnostic lines, for telling afterwards what a run said. However many there are and however long they
/// are, it stays small.
class DiagnosticLog {
public:
    static constexpr qsizetype mostLines = 200;
    /// Characters; a line that has more is cut, which an ellipsis shows.
    static constexpr qsizetype longestLine = 2'000;
    /// UTF-16 units of all lines; the oldest lines go first.
    static constexpr qsizetype mostText = qsizetype(64) * 1024;

    void add(const QString &line);
    /// The oldest first.
    [[nodiscard]] QStringList lines() const;

private:
    std::deque<QString> m_lines;
    qsizetype m_text = 0;
};
