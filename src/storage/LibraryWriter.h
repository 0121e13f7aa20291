#pragma once

#include "BatchFiles.h"
#include "DirectoryListing.h"
#include "LibraryJournal.h"
#include "LibraryPlace.h"
#include "LibraryState.h"
#include "LibraryWriteResult.h"
#include "PatchFileMatcher.h"

#include <QCoreApplication>
#include <QString>

#include <optional>

/// Writes a library to its directory: the library file, and the preset file of every patch that has none, moving the
/// files of renamed patches and removing those of removed ones. Works on values only, so that it can run on any
/// thread, one at a time.
///
/// The new state counts from the moment in which the library file is written. Everything that needs room on the disk
/// is there by then, under temporary names, and the journal says what is still to be done with it; so a program that
/// is killed at any point leaves the old state or the new one. See LibraryLoader and LibrarySweeper.
class LibraryWriter {
    Q_DECLARE_TR_FUNCTIONS(LibraryWriter)

public:
    /// `directory` is a path without a slash at its end.
    LibraryWriter(const QString &directory, const LibraryWriteState &state);

    [[nodiscard]] LibraryWriteResult save(const LibraryState &library);

private:
    struct Move {
        PatchFileMatcher::Candidate candidate;
        QString to;
        VelgorPatch patch;
    };

    /// The library with what could not be read of it, where it was.
    [[nodiscard]] LibraryState withUnread(const LibraryState &library);
    void forgetRemovalsOf(const QList<VelgorPatch> &patches);

    // The steps of a save, but for those of the library file.
    [[nodiscard]] bool prepareFiles(const QList<VelgorPatch> &patches);
    /// False when no other file could be prepared either.
    [[nodiscard]] bool prepareFile(const VelgorPatch &patch);
    [[nodiscard]] bool writeJournal();
    void putFilesInPlace();
    void removeFiles();
    void endJournal();

    /// Gives the name under which the file stands.
    [[nodiscard]] Result<QString> stage(const VelgorPatch &patch, const QString &name, BatchFiles &files);
    void setDisplacedFilesAside();
    void moveFiles();
    void finish(BatchFiles &files, bool isInJournal);

    /// True when a file of the patch will be moved to its present name.
    [[nodiscard]] bool planMoves(const VelgorPatch &patch, const QString &currentName);
    [[nodiscard]] Result<> checkMove(
        const PatchFileMatcher::Candidate &candidate, const VelgorPatch &patch, const QString &currentName);
    void reportMove(const PatchFileMatcher::Candidate &candidate, const QString &reason);
    [[nodiscard]] bool isStored(const QString &name) const;
    [[nodiscard]] bool isLink(const QString &name) const;
    [[nodiscard]] bool scan();
    /// About the directory itself without a name.
    void addProblem(const QString &name, const QString &reason);

    LibraryPlace m_place;
    LibraryWriteResult m_result;
    BatchFiles m_files;
    std::optional<DirectoryListing> m_listing; ///< as it will be once everything planned is done
    QHash<QString, quint64> m_displaced; ///< what stands in the place of a patch's file and is not it, to the id
    QList<Move> m_moves;
    QStringList m_unfinished; ///< temporary files of the journal that are not in place
    LibraryJournal m_journal;
    bool m_hasJournal = false; ///< the journal is on the disk
};
