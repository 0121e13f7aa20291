#pragma once

#include "LibraryState.h"

#include <QList>
#include <QString>

class VelgorLibrary;

/// Patches that come back into a library.
namespace RescuedPatches {

/// What says where they were: the library file of a directory and its copy, then the kept ones, the latest first.
[[nodiscard]] QList<LibraryState> libraryFiles(const QString &directory);
/// Adds those that the library does not have, each behind its nearest predecessor of the first of the files that names
/// it; at the beginning where that file names only successors of it, and at the end where nothing of that file is left,
/// or none names it. In several places they are announced as a reset; selection and ticks stay.
void addTo(VelgorLibrary &library, const QList<VelgorPatch> &patches, const QList<LibraryState> &files);

} // namespace RescuedPatches
