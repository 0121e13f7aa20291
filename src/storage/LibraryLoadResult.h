#pragma once

#include "LibraryState.h"
#include "LibrarySweeper.h"
#include "LibraryWriteResult.h"
#include "Result.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>

/// What loading a library directory gave.
struct LibraryLoadResult {
    std::optional<LibraryState> library; ///< nothing for a new, empty or undecodable library
    bool readError = false; ///< the library file is there and could not be decoded, nor its copy
    std::optional<Problem> problem; ///< why the library file, which is there, could not be read or decoded
    QStringList droppedPatches; ///< names of the entries that are not in the library, mostly for want of a file
    QStringList droppedProblems; ///< for each of them its name, the reason and its file; translated
    /// For each patch whose file holds something that cannot have got its id: its name, the name in the file, the file;
    /// translated. It was loaded all the same.
    QStringList doubtfulPatches;
    QSet<quint64> doubtfulIds; ///< of the same patches
    QHash<quint64, QString> damagedFiles; ///< of them those with a wrong checksum: the patch's id to its file
    QList<VelgorPatch> droppedEntries; ///< the same entries whole, without preset data
    std::optional<quint64> droppedDefault; ///< the default patch, where it is one of them
    LibraryWriteState writeState; ///< what the save that follows has to know
    LibraryLeftovers leftovers;
};
