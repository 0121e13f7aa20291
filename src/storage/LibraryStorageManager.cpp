#include "LibraryStorageManager.h"

#include "DirectoryListing.h"
#include "FaultPoint.h"
#include "FileExistence.h"
#include "LibraryManagerPreferences.h"
#include "LibraryMove.h"
#include "LibraryPlace.h"
#include "ObservableProperty.h"

#include <QDir>

#include <utility>

LibraryStorageManager::LibraryStorageManager(
    LibraryManagerPreferences &preferences, std::chrono::milliseconds period, QObject *parent)
    : LibraryStorageManager(&preferences, preferences.libraryDirectory(), period, parent)
{
    createDirectoryLibrary();
}

LibraryStorageManager::LibraryStorageManager(
    const QString &directory, std::chrono::milliseconds period, QObject *parent)
    : LibraryStorageManager(nullptr, directory, period, parent)
{
}

LibraryStorageManager::LibraryStorageManager(
    LibraryManagerPreferences *preferences, const QString &directory, std::chrono::milliseconds period, QObject *parent)
    : QObject(parent)
    , m_preferences(preferences)
    , m_directory(QDir(directory).absolutePath())
    , m_stored(std::make_shared<LibraryOnDisk>(m_directory))
    , m_delay(period)
{
    connect(&m_delay, &DelayedSave::due, this, [this] {
        m_isDelayedSaveDue = true;
        startSavesDue();
    });
    connect(&m_delay, &DelayedSave::waitingToSaveChanged, this, &LibraryStorageManager::waitingToSaveChanged);
    connect(&m_delay, &DelayedSave::waitMoreChanged, this, &LibraryStorageManager::waitMoreChanged);
}

void LibraryStorageManager::setWriteError(bool writeError)
{
    if (!writeError) {
        m_saveProblems.clear();
        m_otherProblems.clear();
    }
    setObservable(this, m_writeError, writeError, &LibraryStorageManager::writeErrorChanged);
}

void LibraryStorageManager::setReadError(bool readError)
{
    setObservable(this, m_readError, readError, &LibraryStorageManager::readErrorChanged);
}

void LibraryStorageManager::createDirectoryLibrary()
{
    Result<> made = LibraryPlace::make(m_directory);
    m_isDirectoryMissed = !made;
    if (made && m_preferences) {
        made = m_preferences->setLibraryDirectory(m_directory);
    }
    if (!made) {
        addWriteError(made.problem().text());
    }
}

void LibraryStorageManager::openLibraryInFinder() const
{
    if (m_showDirectory) {
        m_showDirectory(QUrl::fromLocalFile(m_directory));
    }
}

std::optional<LibraryState> LibraryStorageManager::decodeLibrary(LibraryLoader::Sounds sounds)
{
    finish();
    noteLoad(m_stored->load({}, sounds));
    return takeLoadedLibrary();
}

void LibraryStorageManager::startLoading()
{
    if (m_isLoading) {
        return;
    }
    m_isLoading = true;
    m_load.library.reset();
    const auto load = [stored = m_stored](const Worker::Report &report) { return stored->load(report); };
    const auto end = [this](LibraryLoadResult result) {
        m_isLoading = false;
        noteLoad(std::move(result));
        Q_EMIT loadFinished();
        startSavesDue();
    };
    m_worker.start(this, load, end, [this](qsizetype loaded, qsizetype total) { Q_EMIT loadProgress(loaded, total); });
}

void LibraryStorageManager::noteLoad(LibraryLoadResult result)
{
    m_load = std::move(result);
    if (m_isDirectoryMissed && existence(m_directory) != FileExistence::directory) {
        // Where no directory could be made, that was the problem, and was told.
        m_load.problem.reset();
    }
    m_awaitedPatches = {.patches = m_load.writeState.unread.patches,
        .defaultPatch = m_load.droppedDefault,
        .doubtful = m_load.doubtfulIds,
        .damaged = QSet(m_load.damagedFiles.keyBegin(), m_load.damagedFiles.keyEnd())};
    for (const VelgorPatch &entry : std::as_const(m_load.droppedEntries)) {
        if (!entry.empty && !m_awaitedPatches.patches.contains(entry.id())) {
            m_awaitedPatches.patches.insert(entry.id(), entry);
        }
    }
    m_removalsLeft.clear();
    m_unreadPatches = m_load.writeState.unread.patches.size();
    if (m_load.readError) {
        setReadError(true);
    }
}

void LibraryStorageManager::startMove(const QString &directory, const VelgorLibrary &library, LibraryMove::Steps steps)
{
    if (std::exchange(m_isMoving, true)) {
        return;
    }
    const QString target = QDir(directory).absolutePath();
    const Result<> obstacle = m_unreadPatches == 0
        ? Result<>(Success())
        : Problem{.where = m_directory,
            .why = tr("%1 patch files cannot be read now, and would be left behind").arg(m_unreadPatches),
            .mayPass = true};
    const auto revision = std::make_shared<quint64>();
    steps.library = [this, revision, library = &library] {
        *revision = m_revision;
        return library->state();
    };
    steps.record = [this, target] { return m_preferences ? m_preferences->setLibraryDirectory(target) : Success(); };
    steps.ended = [this, target, revision, ended = steps.ended](
                      const Result<> &moved, const LibraryWriteResult &result) {
        m_isMoving = false;
        if (moved) {
            m_directory = target;
            m_stored = std::make_shared<LibraryOnDisk>(target, result.state);
            noteSave(result, *revision);
            if (!hasUnsavedChanges()) {
                endWaiting();
            }
        }
        ended(moved, result);
        startSavesDue();
    };
    LibraryMove::start(m_worker, this, target, obstacle, steps);
}

void LibraryStorageManager::sweepLeftovers()
{
    startSweeping();
    finish();
}

void LibraryStorageManager::startSweeping()
{
    m_worker.start(
        this, [stored = m_stored] { return stored->sweep(); },
        [this](const QList<quint64> &left) { m_removalsLeft = left; });
}

QStringList LibraryStorageManager::getPathsForPatchID(quint64 patchID)
{
    const auto listing = LibraryPlace::isListable(m_directory) ? DirectoryListing::scan(m_directory) : std::nullopt;
    if (!listing) {
        addWriteError(tr("%1: the directory cannot be listed").arg(m_directory));
        return {};
    }
    return listing->pathsFor(patchID);
}

void LibraryStorageManager::startSave(const VelgorLibrary &library)
{
    note(library);
    m_isSaveDue = true;
    startSavesDue();
}

void LibraryStorageManager::save(const VelgorLibrary &library)
{
    finish();
    note(library);
    noteSave(saveJob(library)(), m_revision);
}

void LibraryStorageManager::delayedSave(const VelgorLibrary &library)
{
    note(library);
    setLibraryToSave(&library);
    m_delay.request();
}

bool LibraryStorageManager::hasUnsavedChanges() const
{
    return m_savesUnderWay > 0 || (m_latest && m_savedRevision != m_revision);
}

void LibraryStorageManager::startSavingUnsaved()
{
    if (!m_isDelayedSaveUnderWay) {
        endWaiting();
    }
    const bool isUnderWay = m_savesUnderWay > 0 && m_startedRevision == m_revision;
    m_isSaveDue = m_isSaveDue || (hasUnsavedChanges() && !isUnderWay);
    startSavesDue();
}

bool LibraryStorageManager::saveUnsaved()
{
    // What is under way may fail, and is tried again then. A move that is not ended leaves the library in two places.
    if (hasUnsavedChanges() || m_isMoving) {
        finish();
    }
    startSavingUnsaved();
    if (hasUnsavedChanges()) {
        finish();
    }
    return !hasUnsavedChanges();
}

void LibraryStorageManager::endWaiting()
{
    m_isDelayedSaveDue = false;
    m_delay.cancel();
    setLibraryToSave(nullptr);
}

void LibraryStorageManager::note(const VelgorLibrary &library)
{
    m_latest = &library;
    ++m_revision;
}

std::function<LibraryWriteResult()> LibraryStorageManager::saveJob(const VelgorLibrary &library)
{
    m_startedRevision = m_revision;
    return [stored = m_stored, content = library.state(), removed = std::exchange(m_removalsWanted, {}),
               isFileToKeep = std::exchange(m_isFileToKeep, false)] {
        return stored->save(content, removed, isFileToKeep);
    };
}

void LibraryStorageManager::startSaveJob(const VelgorLibrary &library, bool isDelayed)
{
    ++m_savesUnderWay;
    m_isDelayedSaveUnderWay = m_isDelayedSaveUnderWay || isDelayed;
    const auto end = [this, isDelayed, revision = m_revision](const LibraryWriteResult &result) {
        --m_savesUnderWay;
        noteSave(result, revision);
        if (isDelayed) {
            m_isDelayedSaveUnderWay = false;
            setLibraryToSave(nullptr);
            m_delay.saveFinished();
        }
        Q_EMIT saveFinished();
    };
    m_worker.start(this, saveJob(library), end);
}

void LibraryStorageManager::startSavesDue()
{
    if (m_isLoading || m_isMoving) {
        return;
    }
    if (std::exchange(m_isSaveDue, false) && m_latest) {
        startSaveJob(*m_latest, false);
    }
    if (!std::exchange(m_isDelayedSaveDue, false)) {
        return;
    }
    if (m_libraryToSave) {
        startSaveJob(*m_libraryToSave, true);
    } else {
        m_delay.saveFinished();
    }
}

void LibraryStorageManager::setLibraryToSave(const VelgorLibrary *library)
{
    if (m_libraryToSave != library) {
        m_libraryToSave = library;
        Q_EMIT libraryToSaveChanged();
    }
}

void LibraryStorageManager::noteSave(const LibraryWriteResult &result, quint64 revision)
{
    m_removalsLeft = result.state.idsToRemove;
    m_unreadPatches = result.state.unread.patches.size();
    m_wasLastSaveWritten = result.isLibraryFileWritten && result.arePatchesWritten;
    m_wereFilesRemoved = result.areFilesRemoved;
    if (!result.keptFiles.isEmpty()) {
        m_keptFiles = result.keptFiles;
        m_wasChangedByOthers = result.wasChangedByOthers;
    }
    if (m_wasLastSaveWritten) {
        m_savedRevision = FaultPoint::isSet("saved-too-early") ? m_revision : revision;
    }
    m_saveProblems = result.problems;
    if (result.hasError()) {
        setWriteError(true);
    }
}

void LibraryStorageManager::addWriteError(const QString &problem)
{
    m_otherProblems.append(problem);
    setWriteError(true);
}
