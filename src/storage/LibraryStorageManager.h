#pragma once

#include "AwaitedPatches.h"
#include "DelayedSave.h"
#include "LibraryMove.h"
#include "LibraryOnDisk.h"
#include "LibraryStorage.h"
#include "VelgorLibrary.h"
#include "Worker.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <functional>
#include <memory>

class LibraryManagerPreferences;

/// Keeps a patch library in a directory: loads and saves it, and removes patch files.
///
/// What touches the directory is a job of one worker, so that loads, saves and whatever else is given to that worker
/// never overlap. A save works on a snapshot taken on the user-interface thread. All functions belong to that thread,
/// which must run an event loop; those that begin with "start" return at once, the others wait for what is under way.
/// Failures set a flag that stays until the user has seen it, and the texts that go with it.
class LibraryStorageManager : public QObject, public LibraryStorage {
    Q_OBJECT

public:
    using ShowDirectory = std::function<void(const QUrl &directory)>;

    /// The directory of the preferences, made if it is missing and recorded there if it can be used.
    /// `preferences` must outlive the manager.
    explicit LibraryStorageManager(LibraryManagerPreferences &preferences,
        std::chrono::milliseconds period = DelayedSave::usualPeriod, QObject *parent = nullptr);
    /// A directory that is neither made nor recorded.
    explicit LibraryStorageManager(const QString &directory,
        std::chrono::milliseconds period = DelayedSave::usualPeriod, QObject *parent = nullptr);
    /// Ends a load, and waits for saves that were begun. What is not on disk yet is for saveUnsaved().
    ~LibraryStorageManager() override = default;
    Q_DISABLE_COPY_MOVE(LibraryStorageManager)

    /// For whatever else looks into the directory or changes it.
    [[nodiscard]] Worker &worker() { return m_worker; }

    /// An absolute path without a slash at its end.
    [[nodiscard]] QString libDirectory() const { return m_directory; }
    [[nodiscard]] bool waitingToSave() const { return m_delay.waitingToSave(); }
    [[nodiscard]] bool waitMore() const { return m_delay.waitMore(); }
    [[nodiscard]] const VelgorLibrary *libraryToSave() const { return m_libraryToSave; }
    [[nodiscard]] bool writeError() const { return m_writeError; }
    [[nodiscard]] bool readError() const { return m_readError; }
    void setWriteError(bool writeError);
    void setReadError(bool readError);
    /// What is behind writeError since it was last cleared: one text for each failure, naming file and reason.
    [[nodiscard]] QStringList writeProblems() const { return m_otherProblems + m_saveProblems; }
    /// Why the last load found a library file but no library, if it did.
    [[nodiscard]] const std::optional<Problem> &readProblem() const { return m_load.problem; }
    /// Names of the patches that the last load had to leave out.
    [[nodiscard]] QStringList droppedPatches() const { return m_load.droppedPatches; }
    /// For each of them its name, why it could not be loaded, and its file.
    [[nodiscard]] QStringList droppedProblems() const { return m_load.droppedProblems; }
    /// For each patch of the last load whose file may hold another one: its name, the name in the file, and the file.
    [[nodiscard]] QStringList doubtfulPatches() const { return m_load.doubtfulPatches; }
    /// How many of them stay in the library file, as their files may be readable another time.
    [[nodiscard]] qsizetype unreadPatches() const { return m_unreadPatches; }
    /// What the library file says of the patches that the last load had to leave out, by their ids.
    [[nodiscard]] const AwaitedPatches &awaitedPatches() const { return m_awaitedPatches; }
    /// Where the last save that had to keep something aside put it: old library files under dated names, and patch
    /// files that cannot be read; empty when none had to.
    [[nodiscard]] QStringList keptFiles() const { return m_keptFiles; }
    /// The last save wrote everything; what failed, if anything, was tidying up.
    [[nodiscard]] bool wasLastSaveWritten() const { return m_wasLastSaveWritten; }

    /// Among keptFiles() is a library file that another program had changed since this one read or wrote it.
    [[nodiscard]] bool wasChangedByOthers() const { return m_wasChangedByOthers; }
    /// The last save left none of the files of removed patches behind.
    [[nodiscard]] bool wereFilesRemoved() const { return m_wereFilesRemoved; }
    /// The removed patches whose files the next save is to remove.
    [[nodiscard]] QList<quint64> removalsDue() const { return m_removalsLeft + m_removalsWanted; }

    /// Makes sure that the directory exists, and records it in the preferences, if there are any.
    void createDirectoryLibrary();
    /// Shows the directory in the desktop's file viewer, through the function set here.
    void setShowDirectory(ShowDirectory showDirectory) { m_showDirectory = std::move(showDirectory); }
    void openLibraryInFinder() const;

    /// The stored library, complete with preset data unless told otherwise, and not to be saved then; nothing when
    /// there is none, it is empty or not readable.
    [[nodiscard]] std::optional<LibraryState> decodeLibrary(LibraryLoader::Sounds sounds = LibraryLoader::Sounds::Keep);
    /// Begins to do the same; does nothing while a load is under way. The library is to be taken, and put where it will
    /// be saved from, by what loadFinished() calls: a save asked for during the load comes right after that.
    void startLoading();
    /// True from startLoading() until right before loadFinished().
    [[nodiscard]] bool isLoading() const { return m_isLoading; }
    /// What decodeLibrary() would have returned, once.
    [[nodiscard]] std::optional<LibraryState> takeLoadedLibrary() { return std::exchange(m_load.library, {}); }
    /// Begins to save the library, which must live until then, in another directory, and keeps it there once that is
    /// done; the former directory stays as it is, and saves wait. Of the steps, `library` and `record` need not be
    /// given. Where the move failed, the library is where it was, and the preferences say so. Does nothing while the
    /// library is moving already.
    void startMove(const QString &directory, const VelgorLibrary &library, LibraryMove::Steps steps);
    /// Finishes what an interrupted program began, and removes what it left behind. To be called after loading, which
    /// finds out what is still needed, and only while this program alone uses the directory.
    void sweepLeftovers();
    void startSweeping();
    /// Waits for all that was begun, and for what comes of it.
    void finish() { m_worker.finish(); }
    /// Relative paths of the files that carry this patch id.
    [[nodiscard]] QStringList getPathsForPatchID(quint64 patchID);

    /// The files go with the next save, once the library file does not hold the patches any more.
    void remove(const QList<quint64> &patchIDs) override { m_removalsWanted.append(patchIDs); }
    /// The next save keeps the present library file under a dated name, for a change that may be taken back by it.
    void keepLibraryFile() { m_isFileToKeep = true; }
    void startSave(const VelgorLibrary &library) override;
    /// Saves before it returns.
    void save(const VelgorLibrary &library);
    void delayedSave(const VelgorLibrary &library) override;

    /// A save was begun that has not ended.
    [[nodiscard]] bool isSaving() const { return m_savesUnderWay > 0; }
    /// A change was handed to delayedSave() or startSave() that no finished save holds.
    [[nodiscard]] bool hasUnsavedChanges() const;
    /// Ends the waiting and begins to write what is not on disk yet.
    void startSavingUnsaved();
    /// The same, and waits for it, before the program ends. False when that failed.
    bool saveUnsaved();

Q_SIGNALS:
    void waitingToSaveChanged();
    void waitMoreChanged();
    void libraryToSaveChanged();
    void writeErrorChanged();
    void readErrorChanged();
    /// How many patches have been looked at, at most thirty times a second.
    void loadProgress(qsizetype loaded, qsizetype total);
    void loadFinished();
    /// A save has ended, whether it succeeded or not, and what it came to is known.
    void saveFinished();

private:
    LibraryStorageManager(LibraryManagerPreferences *preferences, const QString &directory,
        std::chrono::milliseconds period, QObject *parent);

    void noteLoad(LibraryLoadResult result);
    void note(const VelgorLibrary &library);
    /// What is to be done to save this library now.
    [[nodiscard]] std::function<LibraryWriteResult()> saveJob(const VelgorLibrary &library);
    void startSaveJob(const VelgorLibrary &library, bool isDelayed);
    /// Unless a load or a move comes first.
    void startSavesDue();
    /// No delayed save comes any more.
    void endWaiting();
    void setLibraryToSave(const VelgorLibrary *library);
    void noteSave(const LibraryWriteResult &result, quint64 revision);
    void addWriteError(const QString &problem);

    LibraryManagerPreferences *m_preferences;
    QString m_directory;
    std::shared_ptr<LibraryOnDisk> m_stored; ///< for jobs, and for whoever has waited for all of them
    ShowDirectory m_showDirectory;
    DelayedSave m_delay;
    QPointer<const VelgorLibrary> m_libraryToSave;
    QPointer<const VelgorLibrary> m_latest; ///< the last one that was to be saved
    quint64 m_revision = 0; ///< of m_latest: each request is one
    quint64 m_startedRevision = 0; ///< of the last save that was begun
    quint64 m_savedRevision = 0;
    int m_savesUnderWay = 0;
    bool m_isDelayedSaveUnderWay = false;
    bool m_isSaveDue = false; ///< as soon as saves need not wait
    bool m_isDelayedSaveDue = false; ///< the same
    bool m_isLoading = false;
    bool m_isMoving = false;
    bool m_isFileToKeep = false; ///< by the next save
    QList<quint64> m_removalsWanted; ///< for the next save
    QList<quint64> m_removalsLeft; ///< by the last one
    qsizetype m_unreadPatches = 0;
    bool m_writeError = false;
    bool m_readError = false;
    bool m_isDirectoryMissed = false; ///< it could not be made, or not used
    QStringList m_saveProblems; ///< of the last save
    QStringList m_otherProblems; ///< of directories and removals, since writeError was last cleared
    LibraryLoadResult m_load; ///< what the last load gave
    AwaitedPatches m_awaitedPatches;
    QStringList m_keptFiles;
    bool m_wasLastSaveWritten = true;
    bool m_wereFilesRemoved = true;
    bool m_wasChangedByOthers = false;
    Worker m_worker; ///< last, so that what it tells finds the rest
};
