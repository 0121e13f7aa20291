#include "LibraryHealth.h"

QList<VelgorPatch> LibraryHealth::rescuedPatches() const
{
    QList<VelgorPatch> patches;
    for (const LibraryFinding &finding : findings) {
        if (finding.rescued) {
            patches.append(*finding.rescued);
        }
    }
    return patches;
}
