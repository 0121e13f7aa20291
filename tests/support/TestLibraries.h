#pragma once

#include "LibraryDirectory.h"
#include "LibraryFileNames.h"
#include "LibraryJson.h"
#include "LibraryLoader.h"
#include "LibraryWriter.h"
#include "TestPatches.h"

#include <algorithm>

/// Stored libraries for tests.
namespace TestLibraries {

/// A patch with the records that a file of this patch alone holds, so that it is the same after it was stored.
inline VelgorPatch patch(const QString &name, quint64 id, int seed = 1, const SUserIR &userIR = {})
{
    const auto file = SPresetFile::fromData(TestRecords::fileBytes({TestRecords::patch(name, seed)}, {userIR}));
    VelgorPatch patch(file->patches.first(), file->userIRs.first(), file->headerDesc);
    patch.date = {700'000'000.25 + seed};
    return patch.withId(id);
}

/// A patch whose id is the hash of its content, as an import gives it.
inline VelgorPatch imported(const QString &name, int seed)
{
    const VelgorPatch any = patch(name, 1, seed);
    VelgorPatch patch(any.records->patchData, any.records->userIRData, any.records->headerData);
    patch.date = any.date;
    patch.comment = QStringLiteral("words about ") + name;
    patch.guitar = true;
    return patch;
}

/// Three patches with ids of their own; the default is the second.
inline LibraryState three()
{
    return {{patch(QStringLiteral("Lead"), 42), patch(QStringLiteral("A/B"), 43, 2, TestRecords::userIR(7)),
                patch(QStringLiteral("Clean"), 44, 3)},
        43};
}

inline LibraryState one(const QString &name)
{
    return {{patch(name, 42)}, std::nullopt};
}

/// The bytes of a patch's own file.
inline QByteArray patchBytes(const VelgorPatch &patch)
{
    return TestRecords::fileBytes({patch.records->patchData}, {patch.records->userIRData});
}

/// What a program remembers that has just read or written the library file.
inline LibraryWriteState stateOf(const LibraryDirectory &directory)
{
    const QString path = directory.filePath(LibraryFileNames::libraryFile());
    // A pipe would be waited for.
    const bool isFile = QFileInfo(path).isFile();
    std::optional<FileContentStamp> stamp = FileContentStamp::of(path);
    if (stamp) {
        stamp->setBytes(isFile ? directory.read(LibraryFileNames::libraryFile()) : QByteArray());
    }
    return {.libraryFile = stamp};
}

inline LibraryWriteResult save(const LibraryDirectory &directory, const LibraryState &content,
    const std::optional<LibraryWriteState> &state = std::nullopt)
{
    return LibraryWriter(directory.path(), state.value_or(stateOf(directory))).save(content);
}

/// Saves the library of the directory without these patches.
inline LibraryWriteResult remove(const LibraryDirectory &directory, const QList<quint64> &ids)
{
    const LibraryLoadResult before = LibraryLoader(directory.path()).load();
    LibraryState content;
    if (before.library) {
        content.patches = before.library->patches;
    }
    content.patches.removeIf([&ids](const VelgorPatch &patch) { return ids.contains(patch.id()); });
    LibraryWriteState state = stateOf(directory);
    state.idsToRemove = ids;
    return LibraryWriter(directory.path(), state).save(content);
}

/// Starts as a program does that alone uses the directory: loads, and sweeps what was left.
inline void sweep(const LibraryDirectory &directory)
{
    LibrarySweeper(directory.path(), LibraryLoader(directory.path()).load().leftovers).sweep();
}

inline LibraryLoadResult load(const LibraryDirectory &directory)
{
    return LibraryLoader(directory.path()).load();
}

/// The patches that loading gives.
inline QList<VelgorPatch> loaded(const LibraryDirectory &directory)
{
    const LibraryLoadResult result = load(directory);
    return result.library ? result.library->patches : QList<VelgorPatch>();
}

inline QStringList loadedNames(const LibraryDirectory &directory)
{
    return TestPatches::names(loaded(directory));
}

inline bool areIdentical(const QList<VelgorPatch> &a, const QList<VelgorPatch> &b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), TestPatches::isIdentical);
}

/// The files kept under a dated name.
inline QStringList datedCopies(const LibraryDirectory &directory)
{
    QStringList names = directory.files();
    names.removeIf([](const QString &name) { return !LibraryFileNames::isDatedCopy(name); });
    return names;
}

/// What the loader remembers for the save that follows it.
inline LibraryWriteState stateAfter(const LibraryLoadResult &result)
{
    return result.writeState;
}

} // namespace TestLibraries
