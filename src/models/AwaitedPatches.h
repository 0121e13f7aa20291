#pragma once

#include "VelgorPatch.h"

#include <QHash>
#include <QSet>

#include <optional>

/// Patches that a library file names and that could not be loaded for now: what the user had said about each, by id.
struct AwaitedPatches {
    QHash<quint64, VelgorPatch> patches = {};
    std::optional<quint64> defaultPatch = {}; ///< of the library file, where it is one of them
    QSet<quint64> doubtful = {}; ///< patches that are there, from files that may be damaged: their originals may come
    QSet<quint64> damaged = {}; ///< of them those whose files are damaged for certain
};
