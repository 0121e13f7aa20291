#include "DiagnosticRecorder.h"
#include "DirectoryListing.h"
#include "DiskFiles.h"
#include "DiskSync.h"
#include "FailingCall.h"
#include "LibraryJournal.h"
#include "LibraryMoving.h"
#include "LoadedLibrary.h"
#include "TestLibraries.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTest>

using namespace TestLibraries;
using Call = FailingCall::Call;

namespace {

const QString file = QStringLiteral("file");
const QString leadFile = QStringLiteral("lib-Lead.42.prst");

/// The library of three patches with one renamed, one removed and one added.
LibraryState changed()
{
    LibraryState library = three();
    library.patches.removeAt(1);
    library.patches.first().name = QStringLiteral("Solo");
    library.patches.append(TestLibraries::patch(QStringLiteral("Added"), 45, 4));
    library.defaultPatch = std::nullopt;
    return library;
}

QStringList leftovers(const LibraryDirectory &directory)
{
    QStringList names = directory.files();
    names.removeIf([](const QString &name) {
        return !LibraryFileNames::isReserved(name) || name == LibraryFileNames::libraryFile();
    });
    return names;
}

} // namespace

/// The store when the system fails a call once: nothing is lost, and the next save brings everything.
class TestSystemFaults : public QObject {
    Q_OBJECT

    const DiagnosticRecorder m_silence;

private Q_SLOTS:
    // Single files

    static void fileThatCannotBeReadForTheMomentIsToldFromADamagedOne()
    {
        const LibraryDirectory directory;
        directory.write(file, "bytes");
        const FailingCall failing(Call::Read, EIO);
        const Result<QByteArray> result = DiskFiles::readRegular(directory.filePath(file), DiskFiles::Links::Refuse);
        QVERIFY(!result && result.problem().mayPass);
        QCOMPARE(result.problem().why, QString::fromLocal8Bit(strerror(EIO)));
    }

    static void interruptedReadingGoesOn()
    {
        const LibraryDirectory directory;
        directory.write(file, "bytes");
        const FailingCall failing(Call::Read, EINTR);
        const Result<QByteArray> result = DiskFiles::readRegular(directory.filePath(file), DiskFiles::Links::Refuse);
        QVERIFY(failing.wasMade());
        QCOMPARE(*result, QByteArray("bytes"));
    }

    static void fileThatShrinksMeanwhileIsReadToItsEnd()
    {
        const LibraryDirectory directory;
        directory.write(file, "bytes");
        const FailingCall failing(Call::Read, FailingCall::endOfFile);
        const Result<QByteArray> result = DiskFiles::readRegular(directory.filePath(file), DiskFiles::Links::Refuse);
        QCOMPARE(*result, QByteArray());
    }

    static void fileOfUnknownKindIsNotRead()
    {
        const LibraryDirectory directory;
        directory.write(file, "bytes");
        const FailingCall failing(Call::Stat, EIO);
        QVERIFY(!DiskFiles::readRegular(directory.filePath(file), DiskFiles::Links::Refuse));
    }

    static void failedReplacementLeavesTheOldFileAndNothingElse_data()
    {
        QTest::addColumn<Call>("call");
        QTest::newRow("making") << Call::Open;
        QTest::newRow("writing") << Call::Write;
        QTest::newRow("synchronising") << Call::Sync;
        QTest::newRow("renaming") << Call::Rename;
    }
    static void failedReplacementLeavesTheOldFileAndNothingElse()
    {
        QFETCH(const Call, call);
        const LibraryDirectory directory;
        directory.write(file, "old");
        const FailingCall failing(call, EIO);
        QCOMPARE(
            DiskFiles::replace(directory.filePath(file), "new").problem().why, QString::fromLocal8Bit(strerror(EIO)));
        QCOMPARE(directory.read(file), QByteArray("old"));
        QCOMPARE(directory.files(), QStringList{file});
    }

    static void interruptedWritingGoesOn()
    {
        const LibraryDirectory directory;
        const FailingCall failing(Call::Write, EINTR);
        QVERIFY(DiskFiles::replace(directory.filePath(file), "new"));
        QVERIFY(failing.wasMade());
        QCOMPARE(directory.read(file), QByteArray("new"));
    }

    static void fileThatCannotBeMeasuredIsNotTakenForWritten()
    {
        const LibraryDirectory directory;
        directory.write(file, "old");
        const FailingCall failing(Call::Stat, EIO);
        QVERIFY(!DiskFiles::replace(directory.filePath(file), "new"));
        QVERIFY(failing.wasMade());
        QCOMPARE(directory.read(file), QByteArray("old"));
        QCOMPARE(directory.files(), QStringList{file});
    }

    static void temporaryNameThatIsTakenIsPassedOver()
    {
        const LibraryDirectory directory;
        const FailingCall failing(Call::Open, EEXIST);
        QVERIFY(DiskFiles::replace(directory.filePath(file), "new"));
        QVERIFY(failing.wasMade());
        QCOMPARE(directory.files(), QStringList{file});
    }

    static void directoryBelowThatVanishesWhileItIsListedIsNoEmptyOne()
    {
        const LibraryDirectory directory;
        directory.write(QStringLiteral("below/file"), "x");
        const FailingCall failing(Call::Open, ENOENT, 1);
        QVERIFY(!DirectoryListing::scan(directory.path()));
        QVERIFY(failing.wasMade());
    }

    static void directoryBelowThatMayNotBeListedIsPassedOver()
    {
        const LibraryDirectory directory;
        directory.write(QStringLiteral("below/file"), "x");
        directory.write(leadFile, "x");
        const FailingCall failing(Call::Open, EACCES, 1);
        const auto listing = DirectoryListing::scan(directory.path());
        QVERIFY(failing.wasMade());
        QVERIFY(listing);
        QCOMPARE(listing->pathsFor(42), QStringList{leadFile});
    }

    static void directoryThatMayNotBeListedIsNoEmptyOne()
    {
        const LibraryDirectory directory;
        const FailingCall failing(Call::Open, EACCES);
        QVERIFY(!DirectoryListing::scan(directory.path()));
    }

    static void directoryThatKnowsNoSynchronisingIsNoFailure_data()
    {
        QTest::addColumn<int>("error");
        QTest::addColumn<bool>("isFailure");
        QTest::newRow("no such thing") << EINVAL << false;
        QTest::newRow("failing disk") << EIO << true;
    }
    static void directoryThatKnowsNoSynchronisingIsNoFailure()
    {
        QFETCH(const int, error);
        const LibraryDirectory directory;
        const FailingCall failing(Call::Sync, error);
        QTEST(!DiskSync::syncDirectory(directory.path()), "isFailure");
    }

    static void movingNeverReplacesWhereTheSystemHasNoSuchMove_data()
    {
        QTest::addColumn<int>("error");
        QTest::newRow("file system") << EINVAL;
        QTest::newRow("kernel") << ENOSYS;
    }
    static void movingNeverReplacesWhereTheSystemHasNoSuchMove()
    {
        QFETCH(const int, error);
        const LibraryDirectory directory;
        directory.write(QStringLiteral("a"), "a");
        directory.write(QStringLiteral("b"), "b");
        const QString a = directory.filePath(QStringLiteral("a"));
        {
            const FailingCall failing(Call::MoveOnly, error);
            QVERIFY(!DiskFiles::move(a, directory.filePath(QStringLiteral("b"))));
            QVERIFY(failing.wasMade());
        }
        QCOMPARE(directory.read(QStringLiteral("b")), QByteArray("b"));
        const FailingCall failing(Call::MoveOnly, error);
        QVERIFY(DiskFiles::move(a, directory.filePath(QStringLiteral("c"))));
        QCOMPARE(directory.read(QStringLiteral("c")), QByteArray("a"));
        QVERIFY(!directory.has(QStringLiteral("a")));
    }

    // Whole saves

    static void saveWithoutRoomForEveryPatchLeavesTheFormerState()
    {
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        QVERIFY(!save(directory, one(QStringLiteral("Lead"))).hasError());
        const QByteArray text = directory.read(LibraryFileNames::libraryFile());
        const QStringList files = directory.files();
        // One is prepared, the next one finds no room.
        const FailingCall failing(Call::Write, ENOSPC, 1);
        const LibraryWriteResult result = save(directory, three());
        QVERIFY(failing.wasMade());
        QVERIFY(result.hasError() && !result.isLibraryFileWritten && !result.arePatchesWritten);
        QCOMPARE(directory.read(LibraryFileNames::libraryFile()), text);
        QCOMPARE(directory.files(), files);
    }

    static void saveWithAnyCallFailingLosesNothing_data()
    {
        QTest::addColumn<Call>("call");
        for (const auto &[call, name] :
            {std::pair(Call::Sync, "synchronising a file"), std::pair(Call::SyncAll, "synchronising all"),
                std::pair(Call::Rename, "renaming"), std::pair(Call::MoveOnly, "moving"),
                std::pair(Call::Unlink, "removing"), std::pair(Call::Read, "reading"),
                std::pair(Call::Write, "writing"), std::pair(Call::Stat, "measuring")}) {
            QTest::newRow(name) << call;
        }
    }
    static void saveWithAnyCallFailingLosesNothing()
    {
        QFETCH(const Call, call);
        bool wasMade = true;
        for (int before = 0; wasMade; ++before) {
            const LibraryDirectory directory;
            QVERIFY(!save(directory, three()).hasError());
            LibraryWriteState state = stateOf(directory);
            state.idsToRemove = {43};
            LibraryWriteResult result;
            {
                const FailingCall failing(call, EIO, before);
                result = save(directory, changed(), state);
                wasMade = failing.wasMade();
            }
            const QList<VelgorPatch> now = loaded(directory);
            const bool isNew = areIdentical(now, changed().patches);
            QVERIFY2(isNew || areIdentical(now, three().patches), qPrintable(QString::number(before)));
            QVERIFY2(isNew || result.hasError(), qPrintable(QString::number(before)));

            const LibraryWriteResult again = save(directory, changed(), result.state);
            QVERIFY2(!again.hasError(), qPrintable(again.problems.join(u'\n')));
            QVERIFY(areIdentical(loaded(directory), changed().patches));
            sweep(directory);
            QCOMPARE(leftovers(directory), QStringList());
            QVERIFY(areIdentical(loaded(directory), changed().patches));
            QVERIFY(before > 0 || wasMade);
        }
    }

    static void startAfterAnInterruptionWithAnyCallFailingLosesNothing_data()
    {
        saveWithAnyCallFailingLosesNothing_data();
    }
    static void startAfterAnInterruptionWithAnyCallFailingLosesNothing()
    {
        QFETCH(const Call, call);
        bool wasMade = true;
        for (int before = 0; wasMade; ++before) {
            const LibraryDirectory directory;
            QVERIFY(!save(directory, three()).hasError());
            LibraryWriteState state = stateOf(directory);
            state.idsToRemove = {43};
            {
                // Those of the journal and of the copy of the library file come before that of the new patch.
                const FailingCall interruption(Call::Rename, EIO, 2);
                QVERIFY(save(directory, changed(), state).hasError());
            }
            directory.write(LibraryFileNames::libraryCopy(), directory.read(LibraryFileNames::libraryFile()));
            directory.write(LibraryFileNames::libraryFile(), "{");
            const LibraryLoadResult found = load(directory);
            {
                const FailingCall failing(call, EIO, before);
                LibrarySweeper(directory.path(), found.leftovers).sweep();
                wasMade = failing.wasMade();
            }
            QVERIFY2(areIdentical(loaded(directory), changed().patches), qPrintable(QString::number(before)));
            sweep(directory);
            QCOMPARE(leftovers(directory), QStringList());
            QVERIFY(areIdentical(loaded(directory), changed().patches));
        }
    }

    static void patchThatCanNeitherBeMovedNorStoredAnewKeepsItsFile_data()
    {
        QTest::addColumn<Call>("call");
        QTest::addColumn<int>("before");
        QTest::newRow("synchronising") << Call::SyncAll << 0;
        // The first is that of the copy of the library file.
        QTest::newRow("renaming") << Call::Rename << 1;
    }
    static void patchThatCanNeitherBeMovedNorStoredAnewKeepsItsFile()
    {
        QFETCH(const Call, call);
        QFETCH(const int, before);
        const LibraryDirectory directory;
        LibraryState library = one(QStringLiteral("Lead"));
        QVERIFY(!save(directory, library).hasError());
        library.patches.first().name = QStringLiteral("Solo");
        LibraryWriteResult result;
        {
            const FailingCall moving(Call::MoveOnly, EIO);
            const FailingCall failing(call, EIO, before);
            result = save(directory, library);
            QVERIFY(moving.wasMade() && failing.wasMade());
            QVERIFY(!result.arePatchesWritten && !result.problems.isEmpty());
        }
        QVERIFY(directory.has(leadFile));
        QCOMPARE(leftovers(directory), QStringList());
        QVERIFY(areIdentical(loaded(directory), library.patches));

        // Nothing stands in the way any more.
        QVERIFY(!save(directory, library, result.state).hasError());
        QVERIFY(directory.has(QStringLiteral("lib-Solo.42.prst")));
    }

    static void damagedFileThatCannotBeSetAsideStays()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        directory.write(leadFile, "damaged");
        directory.write(LibraryFileNames::damagedFile(42, 0), "an earlier one");
        LibraryWriteResult result;
        {
            const LibraryWriteState state = stateAfter(load(directory));
            const FailingCall failing(Call::MoveOnly, EIO);
            result = save(directory, three(), state);
        }
        QVERIFY(!result.arePatchesWritten);
        QCOMPARE(directory.read(leadFile), QByteArray("damaged"));
        QVERIFY(!save(directory, three(), result.state).hasError());
        QCOMPARE(directory.read(LibraryFileNames::damagedFile(42, 0)), QByteArray("an earlier one"));
        QCOMPARE(directory.read(LibraryFileNames::damagedFile(42, 1)), QByteArray("damaged"));
        QVERIFY(areIdentical(loaded(directory), three().patches));
    }

    static void oldLibraryFileThatCannotBeKeptIsNotOverwritten()
    {
        const LibraryDirectory directory;
        directory.write(LibraryFileNames::libraryFile(), "garbled");
        const LibraryWriteState state = stateAfter(load(directory));
        // The first is that of the journal.
        const FailingCall failing(Call::Rename, EIO, 1);
        const LibraryWriteResult result = save(directory, three(), state);
        QVERIFY(failing.wasMade() && !result.isLibraryFileWritten && !result.problems.isEmpty());
        QCOMPARE(directory.read(LibraryFileNames::libraryFile()), QByteArray("garbled"));
    }

    static void patchThatCannotBeReadForTheMomentComesBack()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        LibraryLoadResult result;
        {
            // The first is that of the library file.
            const FailingCall failing(Call::Read, EIO, 1);
            result = load(directory);
        }
        QCOMPARE(result.droppedPatches, QStringList{QStringLiteral("Lead")});
        const LibraryState without{result.library->patches, result.library->defaultPatch};
        QVERIFY(!save(directory, without, stateAfter(result)).hasError());
        QVERIFY(areIdentical(loaded(directory), three().patches));
        QCOMPARE(datedCopies(directory), QStringList());
    }

    // The storage

    static void fileOfARemovedPatchThatStaysAtTheStartGoesWithTheNextSave()
    {
        const LibraryDirectory directory;
        LibraryState rest = three();
        QVERIFY(!save(directory, rest).hasError());
        rest.patches.removeFirst();
        directory.write(LibraryFileNames::libraryFile(), LibraryJson::encode(rest));
        directory.write(LibraryFileNames::journalFile(), LibraryJournal{.staged = {}, .removed = {42}}.encode());
        LibraryStorageManager storage(directory.path());
        const auto library = libraryOf(storage.decodeLibrary());
        {
            const FailingCall failing(Call::Unlink, EIO);
            storage.sweepLeftovers();
            QVERIFY(failing.wasMade());
        }
        QVERIFY(directory.has(leadFile) && directory.has(LibraryFileNames::journalFile()));
        storage.save(*library);
        QVERIFY(!directory.has(leadFile) && !directory.has(LibraryFileNames::journalFile()));
        QVERIFY(!storage.writeError());
    }

    static void libraryStaysWhereItIsIfItsNewDirectoryFails()
    {
        const LibraryDirectory directory;
        const LibraryDirectory target;
        LibraryStorageManager storage(directory.path());
        const VelgorLibrary library(three().patches, three().defaultPatch);
        const FailingCall failing(Call::Sync, EIO);
        QVERIFY(!moveLibrary(storage, target.path(), library));
        QCOMPARE(storage.libDirectory(), directory.path());
    }

    static void loadAndSaveTakePlaceWithoutAnotherThread()
    {
        const LibraryDirectory directory;
        LibraryStorageManager storage(directory.path(), std::chrono::milliseconds(1));
        const VelgorLibrary library(three().patches, three().defaultPatch);
        {
            const FailingCall failing(Call::Thread, EAGAIN);
            storage.delayedSave(library);
            QTRY_VERIFY(!storage.waitingToSave());
            QVERIFY(failing.wasMade());
        }
        QVERIFY(areIdentical(loaded(directory), three().patches));
        const FailingCall failing(Call::Thread, EAGAIN);
        QSignalSpy finished(&storage, &LibraryStorageManager::loadFinished);
        storage.startLoading();
        QTRY_COMPARE(finished.size(), 1);
        QVERIFY(failing.wasMade() && storage.takeLoadedLibrary()->patches.size() == 3);
    }
};

VELGOR_TEST(TestSystemFaults)
#include "tst_SystemFaults.moc"
