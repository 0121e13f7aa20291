#pragma once

#include "LibraryEntries.h"
#include "LibraryJournal.h"
#include "LibraryJson.h"
#include "LibraryLoadResult.h"
#include "LibraryPlace.h"
#include "LoadDoubts.h"
#include "PresetRecords.h"
#include "Result.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

/// Reads a library directory: the library file first, then every patch's preset file. Changes nothing on disk. What
/// an interrupted save did not put in place any more is read from where it lies.
class LibraryLoader {
    Q_DECLARE_TR_FUNCTIONS(LibraryLoader)

public:
    /// Called after each patch, readable or not, on the thread that loads. Loading ends when it returns false; what it
    /// came to until then means nothing.
    using Report = std::function<bool(qsizetype loaded, qsizetype total)>;

    /// What a load gives of each sound. Each is read and looked into in any case.
    enum class Sounds {
        Keep,
        Drop, ///< records without the bytes, for those who only want to know what there is
    };

    /// `directory` is a path without a slash at its end.
    explicit LibraryLoader(const QString &directory, Report report = {}, Sounds sounds = Sounds::Keep);

    [[nodiscard]] LibraryLoadResult load();
    /// The same for another library file of this directory, one that was kept: the patches of `stored` whose preset
    /// files are still there.
    [[nodiscard]] LibraryLoadResult loadEntries(const LibraryState &stored);

private:
    void fill(const LibraryState &stored, LibraryLoadResult &result);
    struct Progress {
        bool complete = true;
        bool isStopped = false;
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
    struct Found {
        PresetRecords records;
        QString file;
    };
    // Of a problem that may pass, the entry waits for its file: that cannot be read now, or belongs to another.
    [[nodiscard]] Result<Found> readPatch(const VelgorPatch &entry, LibraryLoadResult &result);
    /// The records in these bytes, if they are the entry's patch and nothing else.
    [[nodiscard]] Result<PresetRecords> ownRecords(const VelgorPatch &entry, const QByteArray &bytes);
    [[nodiscard]] Result<PresetRecords> readFromJournal(
        const VelgorPatch &entry, const QString &fileName, LibraryLoadResult &result);
    [[nodiscard]] Result<Found> readFromOtherFile(const VelgorPatch &entry);
    /// The files that may hold the patch of an id, the most likely first.
    [[nodiscard]] OtherFiles otherFiles(quint64 id);
    [[nodiscard]] Result<PresetRecords> readOnePatch(const QString &name, const VelgorPatch &entry);
    void noteRemoved(LibraryLoadResult &result) const;

    LibraryPlace m_place;
    Report m_report;
    Sounds m_sounds;
    QHash<quint64, QString> m_failures; ///< patch id to the file that could not be loaded, and why
    LoadDoubts m_doubts;
    LibraryEntries m_entries;
    QByteArray m_room; ///< memory of the file that was read before
    QSet<QString> m_expectedNames; ///< the file name of every entry; made with the listing
    QHash<quint64, OtherFiles> m_otherFiles; ///< by id
    LibraryJournal m_journal; ///< of a save that has not ended
    std::optional<DirectoryListing> m_listing; ///< made when the first patch is not under its name
};
