#pragma once

#include "LibraryJson.h"
#include "VelgorPatch.h"

#include <QHash>
#include <QList>

#include <optional>

/// The patches of a library file whose preset files are there but could not be read when the library was loaded: they
/// may be readable tomorrow. Until then they stay in the library file as they are.
struct UnreadPatches {
    /// As they were stored, without preset data. The keys are their ids, but for the second of two equal ones a fresh
    /// id.
    QHash<quint64, VelgorPatch> patches = {};
    QList<quint64> order = {}; ///< the ids of the whole library file, fresh ones like the keys
    std::optional<quint64> defaultPatch = {}; ///< of the library file, where it is one of them

    [[nodiscard]] bool isEmpty() const { return patches.isEmpty(); }
    /// The patches have preset data by now, as they were imported anew: takes them off the list. False when there was
    /// none of them.
    bool forget(const QList<VelgorPatch> &stored);
    /// The library together with them, each behind the nearest of its former predecessors that is still there.
    [[nodiscard]] LibraryState joinedWith(const LibraryState &library);
};
