#pragma once

#include "LibraryDoctor.h"
#include "LibraryStorageManager.h"
#include "LoadedLibrary.h"
#include "RescuedPatches.h"
#include "TestLibraries.h"

/// A library directory as the doctor finds it.
namespace ExaminedLibrary {

using namespace TestLibraries;

inline const QString libraryFile = LibraryFileNames::libraryFile();

inline LibraryState importedThree()
{
    return {
        {imported(QStringLiteral("Lead"), 1), imported(QStringLiteral("A/B"), 2), imported(QStringLiteral("Clean"), 3)},
        std::nullopt};
}

inline QString fileOf(const VelgorPatch &patch)
{
    return LibraryFileNames::patchFile(patch.name, patch.id());
}

inline LibraryHealth examine(const LibraryDirectory &directory)
{
    return LibraryDoctor(directory.path()).examine();
}

/// The one finding that there is to be.
inline LibraryFinding only(const LibraryHealth &health)
{
    return health.findings.size() == 1 ? health.findings.first() : LibraryFinding();
}

/// Does what repairing does: loads, sweeps, adds what was rescued, saves.
inline void repair(const LibraryDirectory &directory)
{
    LibraryStorageManager manager(directory.path());
    auto library = libraryOf(manager.decodeLibrary());
    if (!library) {
        library = std::make_unique<VelgorLibrary>();
    }
    manager.sweepLeftovers();
    RescuedPatches::addTo(
        *library, examine(directory).rescuedPatches(), RescuedPatches::libraryFiles(directory.path()));
    manager.save(*library);
}

} // namespace ExaminedLibrary
