#pragma once

#include "LibraryJson.h"
#include "VelgorPatch.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

/// Something in a library directory that is not as a library leaves it.
struct LibraryFinding {
    enum class Kind {
        DamagedLibraryFile, ///< the library file cannot be read
        UnlistedDirectory, ///< what is in the directory cannot be told
        PatchWithoutFile, ///< the library file names a patch whose preset file is not there
        FileWithoutEntry, ///< a preset file whose patch the library file does not name
        FileOfOtherContent, ///< a preset file that holds another patch than its name says
        UnreadableFile, ///< a preset file that cannot be read or is damaged
        ForeignFile, ///< not the store's own, but taken for a patch's, with which it is moved and removed
        Leftover, ///< of an interrupted save
        SpareFile, ///< a preset file under another name that holds just what the library has; only a note
    };

    Kind kind = Kind::Leftover;
    QString file; ///< relative to the library directory; empty for a patch without a file
    quint64 id = 0; ///< of the patch that it is about; 0 where there is none
    QString name; ///< of that patch, where it is known
    QString reason; ///< what else there is to know; translated, may be empty
    /// The patch with its preset data, where adding it to the library mends the finding.
    std::optional<VelgorPatch> rescued;

    bool operator==(const LibraryFinding &) const = default;
};

/// A former library file that was kept under a dated name.
struct KeptLibrary {
    QString file; ///< relative to the library directory
    QDateTime keptAt; ///< when it was kept, in UTC
    std::optional<LibraryState> content; ///< nothing when it cannot be read
};

/// What LibraryDoctor found.
struct LibraryHealth {
    QList<LibraryFinding> findings;
    QList<LibraryFinding> notes; ///< what may be of interest, although the library is as it should be
    QList<KeptLibrary> keptLibraries; ///< the latest first
    QStringList keptPatchFiles; ///< damaged preset files that were set aside

    /// The patches that repairing adds to the library, each once.
    [[nodiscard]] QList<VelgorPatch> rescuedPatches() const;
};
