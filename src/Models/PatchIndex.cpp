#include "PatchIndex.h"

qsizetype PatchIndex::positionOf(quint64 id, const QList<VelgorPatch> &patches)
{
    update(patches);
    return m_positions.value(id, -1);
}

bool PatchIndex::containsName(const QString &name, const QList<VelgorPatch> &patches)
{
    update(patches);
    return m_nameCounts.value(name, 0) > 0;
}

void PatchIndex::appended(const VelgorPatch &patch, qsizetype position)
{
    if (!m_isValid) {
        return;
    }
    if (!m_positions.contains(patch.id())) {
        m_positions.insert(patch.id(), position);
    }
    ++m_nameCounts[patch.name];
}

void PatchIndex::renamed(const QString &from, const QString &to)
{
    if (m_isValid) {
        --m_nameCounts[from];
        ++m_nameCounts[to];
    }
}

void PatchIndex::update(const QList<VelgorPatch> &patches)
{
    if (m_isValid) {
        return;
    }
    m_positions.clear();
    m_nameCounts.clear();
    m_positions.reserve(patches.size());
    m_nameCounts.reserve(patches.size());
    m_isValid = true;
    for (qsizetype i = 0; i < patches.size(); ++i) {
        appended(patches.at(i), i);
    }
}
