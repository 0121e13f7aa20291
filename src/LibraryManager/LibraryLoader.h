#pragma once

#include "LibraryJson.h"
#include "VelgorLibrary.h"

#include <QCoreApplication>
#include <QSet>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

class DirectoryListing;

/// What loading a library directory gave.
struct LibraryLoadResult {
    std::unique_ptr<VelgorLibrary> library; ///< none for a new, empty or undecodable library
    bool readError = false; ///< the library file is there and could not be decoded, nor its copy
    QString problem; ///< why the library file could not be read or decoded; names the file; translated
    QStringList droppedPatches; ///< names of the entries that are not in the library, mostly for want of a file
    /// The next save loses something that these library files hold now, so they have to be kept under other names.
    QStringList filesToKeep;
    QSet<QString> damagedFiles; ///< patch files that are there and cannot be read
    bool isCopySpare = false; ///< the library file itself was good; a copy beside it serves nothing
    QSet<QString> leftAlone; ///< files that saves shall not touch
};

/// Reads a library directory: the library file first, then every patch's preset file. Changes nothing on disk.
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

private:
    struct Progress {
        bool complete = true;
        qsizetype loaded = 0;
    };
    /// A patch and the id under which its file is stored, which differs for the second of two equal ids.
    struct Entry {
        VelgorPatch patch;
        quint64 storedId = 0;
    };

    [[nodiscard]] std::optional<LibraryJson::Content> readLibraryFile(LibraryLoadResult &result);
    /// The patches that have preset data, as a library; none when there are none.
    [[nodiscard]] static std::unique_ptr<VelgorLibrary> withoutUnfilled(const VelgorLibrary &library);
    static void noteDropped(const QList<Entry> &stored, LibraryLoadResult &result);
    [[nodiscard]] static QList<Entry> withUniqueIds(const QList<VelgorPatch> &patches);
    Progress loadPatches(VelgorLibrary &library, const QList<Entry> &entries, LibraryLoadResult &result);
    [[nodiscard]] std::optional<SPresetFile> readPatch(
        const Entry &entry, QString &fileName, LibraryLoadResult &result);
    [[nodiscard]] std::optional<SPresetFile> readFromOtherFile(const Entry &entry, QString &fileName);
    [[nodiscard]] QString pathOf(const QString &name) const;

    QString m_directory;
    Report m_report;
    QSet<QString> m_expectedNames; ///< the file name of every entry
    std::unique_ptr<DirectoryListing> m_listing; ///< made when the first patch is not under its name
};
