#pragma once

#include "DirectoryListing.h"
#include "LibraryHealth.h"
#include "LibraryLoader.h"
#include "LibraryPlace.h"

#include <QCoreApplication>
#include <QHash>
#include <QMap>
#include <QSet>
#include <QString>

#include <optional>

/// Examines a library directory: what the library file names against what is there. Changes nothing on disk.
class LibraryDoctor {
    Q_DECLARE_TR_FUNCTIONS(LibraryDoctor)

public:
    /// `directory` is a path without a slash at its end. `report` is called on the thread that examines, for each
    /// patch of the library file, and goes on with the last number while what follows takes its time. The examination
    /// ends when it returns false.
    explicit LibraryDoctor(const QString &directory, LibraryLoader::Report report = {});

    [[nodiscard]] LibraryHealth examine();

private:
    /// False when the examination is to end.
    [[nodiscard]] bool reportStillBusy() const;
    void noteLibraryFile(const LibraryLoadResult &loaded);
    void noteJournal();
    void examineFile(const QString &name);
    void examinePatchFile(const QString &name, quint64 id);
    void examineFileWithoutEntry(const QString &name, quint64 id, const VelgorPatch &patch);
    void examineStaged();
    void examineContents();
    void addOtherContent(const VelgorPatch &entry, const VelgorPatch &content);
    void examineSubdirectories();
    void noteDropped();
    /// Nobody is writing this file.
    [[nodiscard]] bool isLeftover(const QString &name) const;
    void noteKeptFiles();
    void add(LibraryFinding::Kind kind, const QString &file, quint64 id, const QString &name = {},
        const QString &reason = {}, const std::optional<VelgorPatch> &rescued = std::nullopt);

    LibraryPlace m_place;
    LibraryLoader::Report m_report;
    LibraryHealth m_health;
    std::optional<DirectoryListing> m_listing;
    QMap<quint64, VelgorPatch> m_loaded; ///< by id, with preset data
    QMap<quint64, VelgorPatch> m_dropped; ///< by id, without
    QHash<quint64, VelgorPatch> m_former; ///< by id, what the latest of the kept library files that knows it says
    QHash<quint64, QString> m_damaged; ///< patches that were loaded from a file whose checksum is wrong, to that file
    QHash<QString, quint64> m_staged; ///< temporary files of a save that has not ended, to the ids of their patches
    QSet<quint64> m_unreadable; ///< ids in the names of files that cannot be read
    QHash<quint64, VelgorPatch> m_spare; ///< what files hold that belong to no patch of the library, by content
};
