#pragma once

#include "TestLibraries.h"

/// The library of three in a directory, and the names of its files.
namespace StoredThree {

using namespace TestLibraries;

inline const QString libraryFile = LibraryFileNames::libraryFile();
inline const QString libraryCopy = LibraryFileNames::libraryCopy();
inline const QString loading = QStringLiteral("Loading library from directory");
inline const QString leadFile = QStringLiteral("lib-Lead.42.prst");

inline const LibraryWriteState mustKeep{.filesToKeep = {QStringLiteral("velgorlibrary.json")}};
inline const QStringList threeFiles{
    QStringLiteral("lib-A$B.43.prst"), QStringLiteral("lib-Clean.44.prst"), leadFile, libraryFile};

inline LibraryDirectory &stored(LibraryDirectory &directory)
{
    if (save(directory, three()).hasError()) {
        qFatal("cannot store the library");
    }
    return directory;
}

/// A library file's text and a file for each of its patches.
inline void writeEntries(const LibraryDirectory &directory, const QList<VelgorPatch> &patches)
{
    directory.write(libraryFile, LibraryJson::encode({patches, std::nullopt}));
    for (const VelgorPatch &patch : patches) {
        directory.write(LibraryFileNames::patchFile(patch.name, patch.id()), patchBytes(patch));
    }
}

} // namespace StoredThree
