#pragma once

#include "FileStamp.h"
#include "UnreadPatches.h"
#include "VerifiedFiles.h"

#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>

/// What a save remembers for the next one.
struct LibraryWriteState {
    QStringList filesToKeep = {}; ///< library files that hold what this program could not load
    VerifiedFiles verified = {}; ///< any other file in the place of a patch's own is looked into
    QSet<QString> leftAlone = {}; ///< files that could not be moved, and are not tried again
    QList<quint64> idsToRemove = {}; ///< their files go once the library file no longer holds them
    QStringList prepared = {}; ///< temporary files that could not be put in place; spare once a later save did it
    UnreadPatches unread = {};
    bool isForeignChangeToKeep = false; ///< among filesToKeep is a library file that another program changed
    bool isJournalOrphaned = false; ///< the library file that the journal belongs to could not be decoded
    std::optional<FileContentStamp> libraryFile = {}; ///< as last read or written; nothing when there was none
};

/// Two names in a directory.
struct RenamedFile {
    QString from;
    QString to;
};

/// What a save came to. Everything that can be done is done, whatever fails before.
struct LibraryWriteResult {
    bool isLibraryFileWritten = false;
    bool arePatchesWritten = true;
    bool areFilesRemoved = true; ///< no file of a removed patch that was found is left
    bool isTidy = true; ///< the directory could be listed, and every file moved or removed as it should
    bool wasChangedByOthers = false; ///< the library file was no longer the one that was read; it was kept
    qsizetype written = 0; ///< patch files written
    QStringList problems; ///< one for each failure, naming the file and the reason; translated
    QList<RenamedFile> renamed; ///< files that were there before, in the order in which they got other names
    QStringList keptFiles; ///< where old library files and damaged patch files were kept, if any had to be
    LibraryWriteState state;

    /// True when something failed.
    [[nodiscard]] bool hasError() const
    {
        return !isLibraryFileWritten || !arePatchesWritten || !areFilesRemoved || !isTidy;
    }
};
