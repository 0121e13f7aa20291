#include "LibraryStorageManager.h"

#include "Diagnostics.h"
#include "DirectoryListing.h"
#include "DiskFiles.h"
#include "FaultPoint.h"
#include "FileExistence.h"
#include "LibraryFileNames.h"
#include "LibraryManagerPreferences.h"
#include "LibraryMove.h"
#include "LibraryPlace.h"
#include "LibrarySnapshot.h"
#include "LibraryWriter.h"
#include "ObservableProperty.h"

#include <QDir>

#include <system_error>
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
    , m_delay(period)
{
    connect(&m_delay, &DelayedSave::due, this, &LibraryStorageManager::startBackgroundSave);
    connect(&m_delay, &DelayedSave::waitingToSaveChanged, this, &LibraryStorageManager::waitingToSaveChanged);
    connect(&m_delay, &DelayedSave::waitMoreChanged, this, &LibraryStorageManager::waitMoreChanged);
    connect(&m_loading, &LibraryLoading::progress, this, &LibraryStorageManager::loadProgress);
    connect(&m_loading, &LibraryLoading::finished, this, &LibraryStorageManager::endLoading);
}

LibraryStorageManager::~LibraryStorageManager()
{
    if (m_thread.joinable()) {
        m_thread.join();
    }
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
    if (existence(m_directory) != FileExistence::directory) {
        if (const Result<> made = DiskFiles::makeDirectory(m_directory); !made) {
            Diagnostics::printLine(QStringLiteral("Cannot create library directory"));
            m_isDirectoryMissed = true;
            addWriteError(made.problem().text());
            return;
        }
        testWrite();
    }
    m_isDirectoryMissed = false;
    const bool isRecorded = !m_writeError && m_preferences;
    const Result<> recorded = isRecorded ? m_preferences->setLibraryDirectory(m_directory) : Success();
    if (!recorded) {
        addWriteError(recorded.problem().text());
    }
}

void LibraryStorageManager::testWrite()
{
    const QString path = LibraryFileNames::writeTestFile(m_directory);
    const Result<QByteArray> there = DiskFiles::readRegular(path, DiskFiles::Links::Refuse);
    if (there && !LibraryFileNames::writeTestText().startsWith(*there)) {
        // Somebody else's; that the directory could be made says enough.
        return;
    }
    const auto written = DiskFiles::overwriteInPlace(path, LibraryFileNames::writeTestText());
    const Result<> removed = written ? DiskFiles::remove(path) : written.problem();
    if (!removed) {
        addWriteError(removed.problem().text());
    }
}

void LibraryStorageManager::openLibraryInFinder() const
{
    if (m_showDirectory) {
        m_showDirectory(QUrl::fromLocalFile(m_directory));
    }
}

std::optional<LibraryState> LibraryStorageManager::decodeLibrary()
{
    finishBackgroundWork();
    return takeLoad(LibraryLoader(m_directory).load());
}

void LibraryStorageManager::startLoading()
{
    if (!isLoading()) {
        finishBackgroundSave();
        m_loadedLibrary.reset();
        m_loading.start(m_directory);
    }
}

void LibraryStorageManager::endLoading()
{
    m_loadedLibrary = takeLoad(m_loading.takeResult());
    Q_EMIT loadFinished();
    if (std::exchange(m_isSaveDue, false)) {
        startBackgroundSave();
    }
}

std::optional<LibraryState> LibraryStorageManager::takeLoad(LibraryLoadResult result)
{
    // Where no directory could be made, that was the problem, and was told.
    m_readProblem =
        m_isDirectoryMissed && existence(m_directory) != FileExistence::directory ? QString() : result.problem;
    m_droppedPatches = result.droppedPatches;
    m_droppedProblems = result.droppedProblems;
    m_doubtfulPatches = result.doubtfulPatches;
    m_awaitedPatches = {.patches = result.writeState.unread.patches,
        .defaultPatch = result.droppedDefault,
        .doubtful = result.doubtfulIds,
        .damaged = QSet(result.damagedFiles.keyBegin(), result.damagedFiles.keyEnd())};
    for (const VelgorPatch &entry : std::as_const(result.droppedEntries)) {
        if (!entry.empty && !m_awaitedPatches.patches.contains(entry.id())) {
            m_awaitedPatches.patches.insert(entry.id(), entry);
        }
    }
    m_leftovers = result.leftovers;
    m_writeState = result.writeState;
    if (result.readError) {
        setReadError(true);
    }
    return std::move(result.library);
}

Result<> LibraryStorageManager::moveTo(const QString &directory, const VelgorLibrary &library,
    const TakeDirectory &take, const GiveDirectoryBack &giveBack)
{
    const QString target = QDir(directory).absolutePath();
    finishBackgroundWork();
    if (!m_writeState.unread.isEmpty()) {
        return Problem{.where = m_directory,
            .why = tr("%1 patch files cannot be read now, and would be left behind")
                       .arg(m_writeState.unread.patches.size()),
            .mayPass = true};
    }
    LibraryMove move(target);
    Result<> moved = move.makeDirectory();
    const bool isTaken = moved && take;
    if (isTaken) {
        moved = take(target);
    }
    if (moved) {
        moved = move.write(LibrarySnapshot::take(library));
    }
    if (moved && m_preferences) {
        moved = m_preferences->setLibraryDirectory(target);
    }
    if (!moved) {
        const Result<> undone = move.takeBackFiles();
        if (isTaken && giveBack) {
            giveBack();
        }
        move.removeDirectories();
        return undone ? moved : Problem{.why = moved.problem().text() + u'\n' + undone.problem().text()};
    }
    m_delay.cancel();
    setLibraryToSave(nullptr);
    m_directory = target;
    takeResult(move.result(), &library);
    return Success();
}

void LibraryStorageManager::sweepLeftovers()
{
    finishBackgroundWork();
    LibrarySweeper sweeper(m_directory, m_leftovers);
    sweeper.sweep();
    m_writeState.idsToRemove.append(sweeper.notRemoved());
    if (sweeper.isLibraryFileCompleted()) {
        m_writeState.libraryFile = sweeper.stamp();
        // What the copy held that could not be loaded is in the library file now.
        if (m_writeState.filesToKeep.removeAll(LibraryFileNames::libraryCopy()) > 0) {
            m_writeState.filesToKeep.append(LibraryFileNames::libraryFile());
        }
    }
    m_leftovers = {};
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

void LibraryStorageManager::remove(const QList<quint64> &patchIDs)
{
    finishBackgroundWork();
    m_writeState.idsToRemove.append(patchIDs);
}

void LibraryStorageManager::keepLibraryFile()
{
    finishBackgroundWork();
    if (!m_writeState.filesToKeep.contains(LibraryFileNames::libraryFile())) {
        m_writeState.filesToKeep.append(LibraryFileNames::libraryFile());
    }
}

void LibraryStorageManager::save(const VelgorLibrary &library)
{
    finishBackgroundWork();
    takeResult(LibraryWriter(m_directory, m_writeState).save(LibrarySnapshot::take(library)), &library);
}

void LibraryStorageManager::delayedSave(const VelgorLibrary &library)
{
    m_unsaved = &library;
    setLibraryToSave(&library);
    m_delay.request();
}

bool LibraryStorageManager::saveUnsaved()
{
    finishBackgroundSave();
    m_delay.cancel();
    setLibraryToSave(nullptr);
    if (m_unsaved) {
        save(*m_unsaved);
    }
    return m_unsaved.isNull();
}

void LibraryStorageManager::finishBackgroundWork()
{
    // The end of a load may start a save.
    m_loading.finish();
    finishBackgroundSave();
}

void LibraryStorageManager::startBackgroundSave()
{
    if (isLoading()) {
        m_isSaveDue = true;
        return;
    }
    if (!m_libraryToSave) {
        m_delay.saveFinished();
        return;
    }
    m_libraryBeingSaved = m_libraryToSave;
    m_unsaved.clear();
    const LibraryState content = LibrarySnapshot::take(*m_libraryToSave);
    const auto write = [directory = m_directory, state = m_writeState, content] {
        return LibraryWriter(directory, state).save(content);
    };
    try {
        m_thread = std::thread([this, write] {
            m_backgroundResult = write();
            QMetaObject::invokeMethod(this, &LibraryStorageManager::finishBackgroundSave, Qt::QueuedConnection);
        });
    } catch (const std::system_error &) {
        // Without another thread to be had, the save takes place on this one.
        const LibraryWriteResult result = write();
        setLibraryToSave(nullptr);
        m_delay.saveFinished();
        takeResult(result, m_libraryBeingSaved);
    }
}

void LibraryStorageManager::finishBackgroundSave()
{
    if (!m_thread.joinable()) {
        return;
    }
    m_thread.join();
    const LibraryWriteResult result = *std::exchange(m_backgroundResult, std::nullopt);
    const bool wasChangedMeanwhile = !m_unsaved.isNull();
    setLibraryToSave(nullptr);
    m_delay.saveFinished();
    const bool isSaved = !wasChangedMeanwhile || FaultPoint::isSet("saved-too-early");
    takeResult(result, isSaved ? m_libraryBeingSaved.data() : nullptr);
}

void LibraryStorageManager::setLibraryToSave(const VelgorLibrary *library)
{
    if (m_libraryToSave != library) {
        m_libraryToSave = library;
        Q_EMIT libraryToSaveChanged();
    }
}

void LibraryStorageManager::takeResult(const LibraryWriteResult &result, const VelgorLibrary *library)
{
    m_writeState = result.state;
    m_wasLastSaveWritten = result.isLibraryFileWritten && result.arePatchesWritten;
    m_wereFilesRemoved = result.areFilesRemoved;
    if (!result.keptFiles.isEmpty()) {
        m_keptFiles = result.keptFiles;
        m_wasChangedByOthers = result.wasChangedByOthers;
    }
    if (library) {
        m_unsaved = m_wasLastSaveWritten ? nullptr : library;
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
