#include "LibrarySnapshot.h"

#include "VelgorLibrary.h"

LibraryState LibrarySnapshot::take(const VelgorLibrary &library)
{
    return {library.count() == 0 ? QList<VelgorPatch>() : library.patchesInOwnOrder(), library.defaultPatch()};
}
