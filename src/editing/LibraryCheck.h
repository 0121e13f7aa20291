#pragma once

#include "KeptLibraries.h"
#include "LibraryHealth.h"

#include <QList>
#include <QObject>
#include <QString>

#include <chrono>
#include <functional>
#include <optional>

class EditHistory;
class LibraryStorageManager;
class VelgorLibrary;

/// Compares the library with its directory, adds what can be rescued, and restores former libraries: all of it beside
/// the window, in the order in which it is asked for. A save that fails raises the write error of the storage.
/// User-interface thread only.
class LibraryCheck : public QObject {
    Q_OBJECT

public:
    using Preview = std::optional<KeptLibraries::Preview>;

    /// All three must outlive the check. The library must have been loaded.
    LibraryCheck(VelgorLibrary &library, LibraryStorageManager &storage, EditHistory &history);

    /// Begins to write what is not on disk yet, and then to look at the directory.
    void examine();
    /// Waits for what was begun and what comes of it, but no longer than that. False when it is still under way.
    bool finishWithin(std::chrono::milliseconds time);
    /// What the last examination found.
    [[nodiscard]] const LibraryHealth &health() const { return m_health; }
    /// What addRescued() would add.
    [[nodiscard]] QList<VelgorPatch> rescued() const;
    void addRescued();
    /// Begins to find out what restoring a former library file would come to, and calls `then` unless `asking` is gone:
    /// with nothing when the file cannot be read.
    void preview(const QString &file, QObject *asking, const std::function<void(const Preview &)> &then) const;
    /// Begins to put a former library in the place of the present one, whose file is kept as well. Does nothing while
    /// the present one cannot be saved, and when no patch would come back.
    void restore(const QString &file);

Q_SIGNALS:
    /// How many patches have been looked at.
    void progress(qsizetype examined, qsizetype total);
    void examined();
    /// addRescued() or restore() has ended. The library was changed and saved, or that failed; or nothing was done.
    void ended(bool isDone);

private:
    struct Examination;

    void save();
    [[nodiscard]] bool isMissing(const VelgorPatch &patch) const;
    void adoptFindings(const Examination &examination);

    VelgorLibrary &m_library;
    LibraryStorageManager &m_storage;
    EditHistory &m_history;
    LibraryHealth m_health;
    bool m_isSaving = false; ///< what was added or restored
};
