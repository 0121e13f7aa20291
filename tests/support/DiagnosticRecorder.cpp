#include "DiagnosticRecorder.h"

#include <QMutexLocker>

#include <utility>

DiagnosticRecorder::DiagnosticRecorder()
    : m_previous(Diagnostics::setSink([this](const QString &line) {
        const QMutexLocker lock(&m_mutex);
        m_lines.append(line);
    }))
{
}

DiagnosticRecorder::~DiagnosticRecorder()
{
    Diagnostics::setSink(std::move(m_previous));
}

QStringList DiagnosticRecorder::lines() const
{
    const QMutexLocker lock(&m_mutex);
    return m_lines;
}

QStringList DiagnosticRecorder::take()
{
    const QMutexLocker lock(&m_mutex);
    return std::exchange(m_lines, {});
}
