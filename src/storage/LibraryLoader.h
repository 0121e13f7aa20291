#pragma once

#include "LibraryEntries.h"
#include "LibraryJournal.h"
#include "LibraryJson.h"
#include "LibraryLoadResult.h"
#include "LoadDoubts.h"
#include "OpenDirectory.h"
#include "SPresetFile.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

class DirectoryListing;
struct FileReadResult;
struct FileStamp;

/// Reads a library directory: the library file first, then every patch's preset file. Changes nothing on disk. What
/// an interrupted save did not put in place any more is read from where it lies.
class LibraryLoader {
    Q_DECLARE_TR_FUNCTIONS(LibraryLoader)

public:
    using Report = std::function<void(qsizetype loaded, qsizetype total)>;

    /// `directory` is a path without a slash at its end. `report` is called after each patch, readable or not, on
    /// the thread that loads.
    explicit LibraryLoader(const QString &directory, Report report = {});
    ~LibraryLoader();
    Q_DISABLE_COPY_MOVE(LibraryLoader)

    [[nodiscard]] LibraryLoadResult load();
    /// The same for another library file of this directory, one that was kept: the patches of `stored` whose preset
    /// files are still there.
    [[nodiscard]] LibraryLoadResult loadEntries(const LibraryState &stored);

private:
    void readJournal();
    void fill(const LibraryState &stored, LibraryLoadResult &result);
    struct Progress {
        bool complete = true;
        qsizetype loaded = 0;
    };

    /// The files of other names that may hold the patch of an id, without those that proved not to.
    struct OtherFiles {
        QStringList names;
        bool areUnreadable = false; ///< at least one was, for the moment
    };

    void noteDropped(LibraryLoadResult &result) const;
    /// What was read is kept before it is overwritten.
    static void keepSource(LibraryLoadResult &result);
    /// Gives each entry that can be read its preset data.
    Progress loadPatches(QList<VelgorPatch> &patches, LibraryLoadResult &result);
    [[nodiscard]] std::optional<SPresetFile> readPatch(
        const VelgorPatch &entry, QString &fileName, LibraryLoadResult &result);
    /// The preset file of these bytes, if it is the entry's patch and nothing else; else `reason` says why not, and
    /// `isUnreadable` becomes true when the entry is to wait for its file: what is there belongs to another.
    [[nodiscard]] std::optional<SPresetFile> ownPreset(
        const VelgorPatch &entry, const QByteArray &bytes, bool &isUnreadable, QString &reason);
    [[nodiscard]] std::optional<SPresetFile> readFromJournal(
        const VelgorPatch &entry, const QString &fileName, LibraryLoadResult &result, bool &isUnreadable);
    [[nodiscard]] std::optional<SPresetFile> readFromOtherFile(
        const VelgorPatch &entry, QString &fileName, bool &isUnreadable);
    /// The files that may hold the patch of an id, the most likely first.
    [[nodiscard]] OtherFiles otherFiles(quint64 id);
    /// `isUnreadable` becomes true when there is a file that cannot be read for the moment.
    [[nodiscard]] std::optional<SPresetFile> readOnePatch(
        const QString &name, const VelgorPatch &entry, bool &isUnreadable);
    void noteRemoved(LibraryLoadResult &result) const;
    [[nodiscard]] FileReadResult readFile(const QString &name, QByteArray room, FileStamp *stamp = nullptr) const;
    [[nodiscard]] QString pathOf(const QString &name) const;

    QString m_directory;
    OpenDirectory m_openDirectory;
    Report m_report;
    QHash<quint64, QString> m_failures; ///< patch id to the file that could not be loaded, and why
    LoadDoubts m_doubts;
    LibraryEntries m_entries;
    QByteArray m_room; ///< memory of the file that was read before
    QSet<QString> m_expectedNames; ///< the file name of every entry; made with the listing
    QHash<quint64, OtherFiles> m_otherFiles; ///< by id
    LibraryJournal m_journal; ///< of a save that has not ended
    std::unique_ptr<DirectoryListing> m_listing; ///< made when the first patch is not under its name
};
