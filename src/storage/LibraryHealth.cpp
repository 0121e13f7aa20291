#include "LibraryHealth.h"

#include <QSet>

QList<VelgorPatch> LibraryHealth::rescuedPatches() const
{
    QList<VelgorPatch> patches;
    QSet<quint64> ids;
    for (const LibraryFinding &finding : findings) {
        if (finding.rescued && !ids.contains(finding.rescued->id())) {
            ids.insert(finding.rescued->id());
            patches.append(*finding.rescued);
        }
    }
    return patches;
}
