#pragma once

#include "VelgorPatch.h"

#include <QList>

#include <optional>

/// A library as a value: on its way from the disk or to it, kept, or rescued.
struct LibraryState {
    QList<VelgorPatch> patches;
    std::optional<quint64> defaultPatch;
    /// The library file held something that is not in here and that will not be written again.
    bool hasUnknown = false;
};
