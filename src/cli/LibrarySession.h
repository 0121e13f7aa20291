#pragma once

#include "Arguments.h"
#include "FileExistence.h"
#include "LibraryLock.h"
#include "LibraryStorageManager.h"
#include "VelgorLibrary.h"

#include <QCoreApplication>

#include <memory>
#include <optional>

/// One command's hold on a library directory.
///
/// Reading takes no lock and changes nothing on disk. Changing locks the directory for the life of the session, so
/// that nothing but the library stays behind.
class LibrarySession {
    Q_DECLARE_TR_FUNCTIONS(LibrarySession)

public:
    enum class Access {
        Read, ///< a missing directory that was not asked for by name is an empty library
        List, ///< the same, but the patches come without their sounds
        Change, ///< as Read, locked
        Create, ///< locked, and made if it is missing
        Inspect, ///< as Read, but a library file that cannot be decoded is an empty library
        Rescue, ///< the same, locked; the library file is kept when saving
    };

    explicit LibrarySession(const Arguments &arguments);

    /// Says on standard error what is wrong when there is no library directory.
    [[nodiscard]] bool exists() const;
    /// Loads the library. On failure says why on standard error and returns false; nothing was touched then.
    [[nodiscard]] bool open(Access access);

    [[nodiscard]] VelgorLibrary &library() { return m_library; }
    [[nodiscard]] LibraryStorageManager &storage() { return m_storage; }

    /// The patch with the id that a user typed. Says on standard error what is wrong with an id that has none.
    [[nodiscard]] std::optional<VelgorPatch> patch(const QString &id) const;
    /// All of them, or nothing when any is unknown.
    [[nodiscard]] std::optional<QList<VelgorPatch>> patches(const QStringList &ids) const;

    /// Saves, says what went wrong, and returns the exit status.
    [[nodiscard]] int save();
    /// Says what went wrong in the saving and removing so far, and returns the exit status.
    [[nodiscard]] int report();

private:
    [[nodiscard]] bool isUsable(FileExistence found) const;
    [[nodiscard]] bool create();
    [[nodiscard]] bool lock();
    [[nodiscard]] std::optional<LibraryState> load(Access access);
    void warnOfDoubtfulPatches() const;
    void warnOfOrphans() const;

    bool m_isNamed; ///< the directory was asked for by name
    bool m_isNameEmpty;
    LibraryStorageManager m_storage;
    std::unique_ptr<LibraryLock> m_lock;
    VelgorLibrary m_library;
    QList<quint64> m_removalsDueBefore; ///< left by former commands, whose concern they were
};
