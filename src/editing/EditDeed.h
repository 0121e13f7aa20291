#pragma once

#include "ContentMarks.h"
#include "LibraryMarks.h"

#include <QList>

class VelgorLibrary;

/// What one deed of the user did to library and list. A value.
struct EditDeed {
    LibraryChange sorting; ///< how the library was shown in another order since the deed before
    LibraryChange library;
    ContentChange content;

    /// Nothing that is stored or exported differs, though the library may be shown in another order.
    [[nodiscard]] bool isEmpty() const;
    /// The library is to be stored anew.
    [[nodiscard]] static bool concernsStorage(const LibraryChange &change);
    /// The patches that it took from the library, which has not got them now.
    [[nodiscard]] static QList<quint64> removedIds(const LibraryChange &change, const VelgorLibrary &library);
};
