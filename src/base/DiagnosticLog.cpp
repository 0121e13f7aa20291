#include "DiagnosticLog.h"

#include "Utf8Text.h"

void DiagnosticLog::add(const QString &line)
{
    const QString start = Utf8Text::firstCharacters(line, longestLine);
    m_lines.push_back(start.size() < line.size() ? start + u'\u2026' : start);
    m_text += m_lines.back().size();
    while (qsizetype(m_lines.size()) > mostLines || m_text > mostText) {
        m_text -= m_lines.front().size();
        m_lines.pop_front();
    }
}

QStringList DiagnosticLog::lines() const
{
    return {m_lines.begin(), m_lines.end()};
}
