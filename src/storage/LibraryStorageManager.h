#pragma once

#include "DelayedSave.h"
#include "LibraryLoading.h"
#include "LibraryStorage.h"
#include "LibrarySweeper.h"
#include "LibraryWriteResult.h"
#include "VelgorLibrary.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <functional>
#include <optional>
#include <thread>
#include <utility>

class LibraryManagerPreferences;

/// Keeps a patch library in a directory: loads and saves it, at once or in the background, and removes patch files.
///
/// A background save works on a snapshot taken on the user-interface thread; loads and saves never overlap. All
/// functions belong to that thread, which must run an event loop for what happens in the background. Failures set a
/// flag that stays until the user has seen it, and the texts that go with it.
class LibraryStorageManager : public QObject, public LibraryStorage {
    Q_OBJECT

public:
    using TakeDirectory = std::function<Result<>(const QString &directory)>;
    using GiveDirectoryBack = std::function<void()>;
    using ShowDirectory = std::function<void(const QUrl &directory)>;

    /// The directory of the preferences, made if it is missing and recorded there if it can be used.
    /// `preferences` must outlive the manager.
    explicit LibraryStorageManager(LibraryManagerPreferences &preferences,
        std::chrono::milliseconds period = DelayedSave::usualPeriod, QObject *parent = nullptr);
    /// A directory that is neither made nor recorded.
    explicit LibraryStorageManager(const QString &directory,
        std::chrono::milliseconds period = DelayedSave::usualPeriod, QObject *parent = nullptr);
    /// Ends a load, and waits for a save that is being written. What is not on disk yet is for saveUnsaved().
    ~LibraryStorageManager() override;
    Q_DISABLE_COPY_MOVE(LibraryStorageManager)

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
    /// Why the last load found a library file but no library; empty otherwise.
    [[nodiscard]] QString readProblem() const { return m_readProblem; }
    /// Names of the patches that the last load had to leave out.
    [[nodiscard]] QStringList droppedPatches() const { return m_droppedPatches; }
    /// For each of them its name, why it could not be loaded, and its file.
    [[nodiscard]] QStringList droppedProblems() const { return m_droppedProblems; }
    /// For each patch of the last load whose file may hold another one: its name, the name in the file, and the file.
    [[nodiscard]] QStringList doubtfulPatches() const { return m_doubtfulPatches; }
    /// How many of them stay in the library file, as their files may be readable another time.
    [[nodiscard]] qsizetype unreadPatches() const { return m_writeState.unread.patches.size(); }
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
    [[nodiscard]] QList<quint64> removalsDue() const { return m_writeState.idsToRemove; }

    /// Makes sure that the directory exists, and records it in the preferences, if there are any.
    void createDirectoryLibrary();
    /// Shows the directory in the desktop's file viewer, through the function set here.
    void setShowDirectory(ShowDirectory showDirectory) { m_showDirectory = std::move(showDirectory); }
    void openLibraryInFinder() const;

    /// The stored library, complete with preset data; nothing when there is none, it is empty or not readable.
    [[nodiscard]] std::optional<LibraryState> decodeLibrary();
    /// Does the same in the background; does nothing while a load is under way. The library is to be taken, and put
    /// where it will be saved from, by what loadFinished() calls: a save requested during the load comes right
    /// after that. save(), remove() and sweepLeftovers() wait for the load, and loadFinished() comes before they act.
    void startLoading();
    /// True from startLoading() until right before loadFinished().
    [[nodiscard]] bool isLoading() const { return m_loading.isRunning(); }
    /// What decodeLibrary() would have returned, once.
    [[nodiscard]] std::optional<LibraryState> takeLoadedLibrary() { return std::exchange(m_loadedLibrary, {}); }
    /// Saves the library in another directory, which is made if need be, and keeps it there from then on; the former
    /// directory stays as it is. Refuses a directory that holds a library or cannot be listed. `take` is called once
    /// the directory is there, to keep other programs from it. When that or the move
    /// failed, after `giveBack` undid what `take` did, the library is where it was, the preferences say so, and the
    /// other directory is as it was.
    [[nodiscard]] Result<> moveTo(const QString &directory, const VelgorLibrary &library,
        const TakeDirectory &take = {}, const GiveDirectoryBack &giveBack = {});
    /// Finishes what an interrupted program began, and removes what it left behind. To be called after loading, which
    /// finds out what is still needed, and only while this program alone uses the directory.
    void sweepLeftovers();
    /// Relative paths of the files that carry this patch id.
    [[nodiscard]] QStringList getPathsForPatchID(quint64 patchID);

    /// The files go with the next save, once the library file does not hold the patches any more.
    void remove(const QList<quint64> &patchIDs) override;
    /// The next save keeps the present library file under a dated name, for a change that may be taken back by it.
    void keepLibraryFile();
    void save(const VelgorLibrary &library) override;
    void delayedSave(const VelgorLibrary &library) override;

    /// A change was handed to delayedSave() that no finished save holds.
    [[nodiscard]] bool hasUnsavedChanges() const { return !m_unsaved.isNull() || m_thread.joinable(); }
    /// Ends the waiting and writes what is not on disk yet, before the program ends. False when that failed.
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

private:
    LibraryStorageManager(LibraryManagerPreferences *preferences, const QString &directory,
        std::chrono::milliseconds period, QObject *parent);

    void testWrite();
    [[nodiscard]] std::optional<LibraryState> takeLoad(LibraryLoadResult result);
    void endLoading();
    void finishBackgroundWork();
    void startBackgroundSave();
    void finishBackgroundSave();
    void setLibraryToSave(const VelgorLibrary *library);
    void takeResult(const LibraryWriteResult &result, const VelgorLibrary *library);
    void addWriteError(const QString &problem);

    LibraryManagerPreferences *m_preferences;
    QString m_directory;
    ShowDirectory m_showDirectory;
    DelayedSave m_delay;
    QPointer<const VelgorLibrary> m_libraryToSave;
    QPointer<const VelgorLibrary> m_unsaved;
    bool m_writeError = false;
    bool m_readError = false;
    bool m_isDirectoryMissed = false; ///< it could not be made
    QStringList m_saveProblems; ///< of the last save
    QStringList m_otherProblems; ///< of directories and removals, since writeError was last cleared
    QString m_readProblem;
    QStringList m_droppedPatches;
    QStringList m_droppedProblems;
    QStringList m_doubtfulPatches;
    AwaitedPatches m_awaitedPatches;
    QStringList m_keptFiles;
    bool m_wasLastSaveWritten = true;
    bool m_wereFilesRemoved = true;
    bool m_wasChangedByOthers = false;
    LibraryLeftovers m_leftovers;
    LibraryWriteState m_writeState;
    LibraryLoading m_loading;
    std::optional<LibraryState> m_loadedLibrary;
    bool m_isSaveDue = false; ///< the delay is over, but a load is not

    std::thread m_thread;
    QPointer<const VelgorLibrary> m_libraryBeingSaved;
    std::optional<LibraryWriteResult> m_backgroundResult; ///< written by the thread, read after joining it
};
