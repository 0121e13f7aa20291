#pragma once

#include "LibraryStorage.h"
#include "VelgorLibrary.h"

/// Changes of a library together with what its storage is asked for then.
namespace StoredEdits {

inline void deletePatches(VelgorLibrary &library, const QList<quint64> &ids, LibraryStorage &storage)
{
    library.deletePatches(ids);
    storage.remove(ids);
    storage.startSave(library);
}

inline void duplicate(VelgorLibrary &library, quint64 id, LibraryStorage &storage)
{
    library.duplicateSelection(id);
    storage.delayedSave(library);
}

inline void setDefault(VelgorLibrary &library, quint64 id, LibraryStorage &storage)
{
    library.setDefaultPatch(id);
    storage.delayedSave(library);
}

} // namespace StoredEdits
