#pragma once

#include "TestPatches.h"
#include "VelgorLibrary.h"

/// Libraries of patches without preset data.
namespace StoredLibraries {

inline const QString lead = QStringLiteral("Lead");

inline QString names(const VelgorLibrary &library)
{
    return TestPatches::names(library.patches()).join(u',');
}

/// A library of patches without preset data: id i + 1 for the i-th name.
inline QList<VelgorPatch> storedPatches(const QStringList &patchNames)
{
    QList<VelgorPatch> patches;
    for (const QString &name : patchNames) {
        patches.append(TestPatches::stored(static_cast<quint64>(patches.size()) + 1, name));
    }
    return patches;
}

inline const QList<VelgorPatch> abc = storedPatches({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")});

} // namespace StoredLibraries
