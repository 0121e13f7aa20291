#pragma once

#include "LibraryDirectory.h"
#include "LibraryFileNames.h"
#include "LibraryJson.h"
#include "TestPatches.h"

#include <algorithm>

/// Libraries that can be stored, for tests, and the names of their files.
namespace TestLibraries {

inline const QString libraryFile = LibraryFileNames::libraryFile();
inline const QString libraryCopy = LibraryFileNames::libraryCopy();
inline const QString journalFile = LibraryFileNames::journalFile();
/// That of the first of three().
inline const QString leadFile = QStringLiteral("lib-Lead.42.prst");

inline QString fileOf(const VelgorPatch &patch)
{
    return LibraryFileNames::patchFile(patch.name, patch.id());
}

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

inline const QStringList threeFiles{
    QStringLiteral("lib-A$B.43.prst"), QStringLiteral("lib-Clean.44.prst"), leadFile, libraryFile};

/// The same, with ids as an import gives them and without a default.
inline LibraryState importedThree()
{
    return {
        {imported(QStringLiteral("Lead"), 1), imported(QStringLiteral("A/B"), 2), imported(QStringLiteral("Clean"), 3)},
        std::nullopt};
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

inline bool areIdentical(const QList<VelgorPatch> &a, const QList<VelgorPatch> &b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), TestPatches::isIdentical);
}

} // namespace TestLibraries
