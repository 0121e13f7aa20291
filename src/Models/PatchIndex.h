#pragma once

#include "VelgorPatch.h"

#include <QHash>
#include <QList>

/// Finds patches of a list by id and by name without walking through it.
///
/// It copies what it needs, lazily: after invalidate() the next question rebuilds it in one pass. The owner of the
/// list reports every change.
class PatchIndex {
public:
    /// Position of the first patch with this id in `patches`, or -1.
    [[nodiscard]] qsizetype positionOf(quint64 id, const QList<VelgorPatch> &patches);
    [[nodiscard]] bool containsName(const QString &name, const QList<VelgorPatch> &patches);

    /// `patch` was added behind the last one and now stands at `position`.
    void appended(const VelgorPatch &patch, qsizetype position);
    void renamed(const QString &from, const QString &to);
    void invalidate() { m_isValid = false; }

private:
    void update(const QList<VelgorPatch> &patches);

    QHash<quint64, qsizetype> m_positions;
    QHash<QString, int> m_nameCounts;
    bool m_isValid = false;
};
