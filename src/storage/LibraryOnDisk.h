#pragma once

#include "LibraryJson.h"
#include "LibraryLoadResult.h"
#include "LibraryLoader.h"
#include "LibraryWriteResult.h"

#include <QList>
#include <QString>

/// A library directory as one program knows it: what loading, saving and sweeping it leave for each other stays here.
/// Works on any thread, but for one call at a time.
class LibraryOnDisk {
public:
    /// `directory` is a path without a slash at its end. `state` is what a save left that was made without this object.
    explicit LibraryOnDisk(const QString &directory, const LibraryWriteState &state = {});

    /// Of what the save that follows has to know, the result says what cannot be read, no more.
    [[nodiscard]] LibraryLoadResult load(
        const LibraryLoader::Report &report = {}, LibraryLoader::Sounds sounds = LibraryLoader::Sounds::Keep);
    /// The files of removed patches go with it. It keeps the present library file first if so wished. Of what the next
    /// save has to know, the result says what is still to be removed and what cannot be read, no more.
    [[nodiscard]] LibraryWriteResult save(
        const LibraryState &library, const QList<quint64> &removed, bool isFileToKeep);
    /// See LibrarySweeper. The patches whose files are for the next save to remove.
    [[nodiscard]] QList<quint64> sweep();

private:
    /// Leaves in `state` what others have to know.
    void keepState(LibraryWriteState &state);

    QString m_directory;
    LibraryWriteState m_state;
    LibraryLeftovers m_leftovers;
};
