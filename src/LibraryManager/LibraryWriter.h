#pragma once

#include "DirectoryListing.h"
#include "LibraryJson.h"
#include "PatchFileMatcher.h"

#include <QCoreApplication>
#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>

/// What a save remembers for the next one.
struct LibraryWriteState {
    QStringList filesToKeep; ///< library files that hold what this program could not load
    QSet<QString> damagedFiles; ///< patch files that cannot be read; they make room for a good one
    QSet<QString> leftAlone; ///< files that could not be moved, and are not tried again
};

/// What a save or a removal came to. Everything that can be done is done, whatever fails before.
struct LibraryWriteResult {
    bool isLibraryFileWritten = false;
    bool arePatchesWritten = true;
    bool areFilesRemoved = true; ///< no file that was found for removal is left
    bool isTidy = true; ///< the directory could be listed, and every file moved as it should
    qsizetype written = 0; ///< patch files written
    QStringList problems; ///< one for each failure, naming the file and the reason; translated
    QStringList keptFiles; ///< where old library files were kept, if any had to be
    LibraryWriteState state;

    /// True when something is for the user to know.
    [[nodiscard]] bool hasError() const
    {
        return !isLibraryFileWritten || !arePatchesWritten || !areFilesRemoved || !isTidy;
    }
};

/// Writes a library to its directory: the library file, then the preset file of every patch that has none, after
/// moving files of renamed patches. Works on values only, so that it can run on any thread, one at a time.
class LibraryWriter {
    Q_DECLARE_TR_FUNCTIONS(LibraryWriter)

public:
    /// Old library files that stay, the oldest going first.
    static constexpr qsizetype keptFileLimit = 5;

    /// `directory` is a path without a slash at its end.
    LibraryWriter(const QString &directory, const LibraryWriteState &state);

    [[nodiscard]] LibraryWriteResult save(const LibraryJson::Content &library);
    /// Removes the files of these patches; a patch without files is no error.
    [[nodiscard]] LibraryWriteResult remove(const QList<quint64> &patchIDs);
    /// Removes what an interrupted program left half written, and the copy of the library file where that is not
    /// needed. Only for the one program that uses the directory.
    static void sweepLeftovers(const QString &directory, bool isCopySpare);

private:
    void encodeLibrary(const LibraryJson::Content &library);
    [[nodiscard]] bool keepOldFiles();
    [[nodiscard]] bool keepOldFile(const QString &name);
    void pruneKeptFiles();
    void setDamagedFileAside(const QString &name, quint64 patchID);
    void savePatches(const QList<VelgorPatch> &patches);
    void renameIfNeeded(const VelgorPatch &patch, const QString &currentName);
    [[nodiscard]] bool canMove(const PatchFileMatcher::Candidate &candidate, const VelgorPatch &patch,
        const QString &currentName, QString &reason) const;
    [[nodiscard]] bool isStored(const QString &name) const;
    [[nodiscard]] bool scan();
    void addProblem(const QString &name, const QString &reason);
    [[nodiscard]] QString pathOf(const QString &name) const;

    QString m_directory;
    LibraryWriteResult m_result;
    std::optional<DirectoryListing> m_listing;
};
