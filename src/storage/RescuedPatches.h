#pragma once

#include "VelgorPatch.h"

#include <QList>
#include <QString>

class VelgorLibrary;

/// Patches that come back into a library.
namespace RescuedPatches {

/// Adds those that the library does not have, each behind its nearest predecessor of the library file of `directory`
/// that names it, or of the latest of the kept ones; at the beginning where that file names only successors of it,
/// and at the end where nothing of that file is left, or none names it. In several places they are announced as a
/// reset; selection and ticks stay.
void addTo(VelgorLibrary &library, const QString &directory, const QList<VelgorPatch> &patches);

} // namespace RescuedPatches
