#pragma once

#include "BackgroundRun.h"
#include "KeptLibraries.h"
#include "LibraryHealth.h"

#include <QList>
#include <QString>

#include <optional>

class EditHistory;
class LibraryStorageManager;
class VelgorLibrary;

/// Compares the library with its directory, adds what can be rescued, and restores former libraries. A save that
/// fails raises the write error of the storage.
class LibraryCheck {
public:
    /// All three must outlive the check. The library must have been loaded.
    LibraryCheck(VelgorLibrary &library, LibraryStorageManager &storage, EditHistory &history);
    /// Writes what is not on disk yet and begins to look at the directory, on a thread of its own.
    void examine();
    /// Its progress counts patches. When it has finished, takeFindings() is to be called.
    [[nodiscard]] BackgroundRun &examination() { return m_examination; }
    void takeFindings();
    /// What the last examination found whose findings were taken.
    [[nodiscard]] const LibraryHealth &health() const { return m_health; }
    /// What addRescued() would add.
    [[nodiscard]] QList<VelgorPatch> rescued() const;
    void addRescued();
    /// What restoring a former library file would come to; nothing when it cannot be read.
    [[nodiscard]] std::optional<KeptLibraries::Preview> preview(const QString &file) const;
    /// Puts a former library in the place of the present one, whose file is kept as well. Does nothing while
    /// the present one cannot be saved, and when no patch would come back. False when nothing was done.
    bool restore(const QString &file);

private:
    [[nodiscard]] bool isMissing(const VelgorPatch &patch) const;
    void notePatchesThatCanBeReadAgain();

    VelgorLibrary &m_library;
    LibraryStorageManager &m_storage;
    EditHistory &m_history;
    LibraryHealth m_health;
    LibraryHealth m_found; ///< written by the examination, read after it
    BackgroundRun m_examination; ///< after what it writes, so that it ends first
};
