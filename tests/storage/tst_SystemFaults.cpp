#include "DirectoryListing.h"
#include "FailingCall.h"
#include "LibraryJournal.h"
#include "StoreFixture.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTest>

using namespace TestLibraries;
using Call = FailingCall::Call;

namespace {

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
    names.removeIf([](const QString &name) { return !LibraryFileNames::isReserved(name) || name == libraryFile; });
    return names;
}

} // namespace

/// The store when the system fails a call once: nothing is lost, and the next save brings everything.
class TestSystemFaults : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Listing

    static void directoryBelowThatVanishesWhileItIsListedIsNoEmptyOne()
    {
        StoreFixture store;
        store.write(QStringLiteral("below/file"), "x");
        const FailingCall failing(Call::Open, ENOENT, 1);
        QVERIFY(!DirectoryListing::scan(store.path()));
        QVERIFY(failing.wasMade());
    }

    static void directoryBelowThatMayNotBeListedIsPassedOver()
    {
        StoreFixture store;
        store.write(QStringLiteral("below/file"), "x");
        store.write(leadFile, "x");
        const FailingCall failing(Call::Open, EACCES, 1);
        const auto listing = DirectoryListing::scan(store.path());
        QVERIFY(failing.wasMade());
        QVERIFY(listing);
        QCOMPARE(listing->pathsFor(42), QStringList{leadFile});
    }

    static void directoryThatMayNotBeListedIsNoEmptyOne()
    {
        StoreFixture store;
        const FailingCall failing(Call::Open, EACCES);
        QVERIFY(!DirectoryListing::scan(store.path()));
    }

    // Whole saves

    static void saveWithoutRoomForEveryPatchLeavesTheFormerState()
    {
        StoreFixture store(one(QStringLiteral("Lead")));
        const QByteArray text = store.read(libraryFile);
        const QStringList files = store.files();
        // One is prepared, the next one finds no room.
        const FailingCall failing(Call::Write, ENOSPC, 1);
        const LibraryWriteResult result = store.save(three());
        QVERIFY(failing.wasMade());
        QVERIFY(result.hasError() && !result.isLibraryFileWritten && !result.arePatchesWritten);
        QCOMPARE(store.read(libraryFile), text);
        QCOMPARE(store.files(), files);
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
            StoreFixture store(three());
            LibraryWriteState state = store.state();
            state.idsToRemove = {43};
            LibraryWriteResult result;
            {
                const FailingCall failing(call, EIO, before);
                result = store.save(changed(), state);
                wasMade = failing.wasMade();
            }
            const QList<VelgorPatch> now = store.loaded();
            const bool isNew = areIdentical(now, changed().patches);
            QVERIFY2(isNew || areIdentical(now, three().patches), qPrintable(QString::number(before)));
            QVERIFY2(isNew || result.hasError(), qPrintable(QString::number(before)));

            const LibraryWriteResult again = store.save(changed(), result.state);
            QVERIFY2(!again.hasError(), qPrintable(again.problems.join(u'\n')));
            QVERIFY(store.holds(changed().patches));
            store.sweep();
            QCOMPARE(leftovers(store), QStringList());
            QVERIFY(store.holds(changed().patches));
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
            StoreFixture store(three());
            LibraryWriteState state = store.state();
            state.idsToRemove = {43};
            {
                // Those of the journal and of the copy of the library file come before that of the new patch.
                const FailingCall interruption(Call::Rename, EIO, 2);
                QVERIFY(store.save(changed(), state).hasError());
            }
            store.write(libraryCopy, store.read(libraryFile));
            store.write(libraryFile, "{");
            const LibraryLoadResult found = store.load();
            {
                const FailingCall failing(call, EIO, before);
                LibrarySweeper(store.path(), found.leftovers).sweep();
                wasMade = failing.wasMade();
            }
            QVERIFY2(store.holds(changed().patches), qPrintable(QString::number(before)));
            store.sweep();
            QCOMPARE(leftovers(store), QStringList());
            QVERIFY(store.holds(changed().patches));
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
        StoreFixture store;
        LibraryState library = one(QStringLiteral("Lead"));
        QVERIFY(!store.save(library).hasError());
        library.patches.first().name = QStringLiteral("Solo");
        LibraryWriteResult result;
        {
            const FailingCall moving(Call::MoveOnly, EIO);
            const FailingCall failing(call, EIO, before);
            result = store.save(library);
            QVERIFY(moving.wasMade() && failing.wasMade());
            QVERIFY(!result.arePatchesWritten && !result.problems.isEmpty());
        }
        QVERIFY(store.has(leadFile));
        QCOMPARE(leftovers(store), QStringList());
        QVERIFY(store.holds(library.patches));

        // Nothing stands in the way any more.
        QVERIFY(!store.save(library, result.state).hasError());
        QVERIFY(store.has(QStringLiteral("lib-Solo.42.prst")));
    }

    static void damagedFileThatCannotBeSetAsideStays()
    {
        StoreFixture store(three());
        store.write(leadFile, "damaged");
        store.write(LibraryFileNames::damagedFile(42, 0), "an earlier one");
        LibraryWriteResult result;
        {
            const LibraryWriteState state = store.load().writeState;
            const FailingCall failing(Call::MoveOnly, EIO);
            result = store.save(three(), state);
        }
        QVERIFY(!result.arePatchesWritten);
        QCOMPARE(store.read(leadFile), QByteArray("damaged"));
        QVERIFY(!store.save(three(), result.state).hasError());
        QCOMPARE(store.read(LibraryFileNames::damagedFile(42, 0)), QByteArray("an earlier one"));
        QCOMPARE(store.read(LibraryFileNames::damagedFile(42, 1)), QByteArray("damaged"));
        QVERIFY(store.holds(three().patches));
    }

    static void oldLibraryFileThatCannotBeKeptIsNotOverwritten()
    {
        StoreFixture store;
        store.write(libraryFile, "garbled");
        const LibraryWriteState state = store.load().writeState;
        // The first is that of the journal.
        const FailingCall failing(Call::Rename, EIO, 1);
        const LibraryWriteResult result = store.save(three(), state);
        QVERIFY(failing.wasMade() && !result.isLibraryFileWritten && !result.problems.isEmpty());
        QCOMPARE(store.read(libraryFile), QByteArray("garbled"));
    }

    static void patchThatCannotBeReadForTheMomentComesBack()
    {
        StoreFixture store(three());
        LibraryLoadResult result;
        {
            // The first is that of the library file.
            const FailingCall failing(Call::Read, EIO, 1);
            result = store.load();
        }
        QCOMPARE(result.droppedPatches, QStringList{QStringLiteral("Lead")});
        const LibraryState without{result.library->patches, result.library->defaultPatch};
        QVERIFY(!store.save(without, result.writeState).hasError());
        QVERIFY(store.holds(three().patches));
        QCOMPARE(store.datedCopies(), QStringList());
    }

    // The storage

    static void fileOfARemovedPatchThatStaysAtTheStartGoesWithTheNextSave()
    {
        StoreFixture store;
        LibraryState rest = three();
        QVERIFY(!store.save(rest).hasError());
        rest.patches.removeFirst();
        store.write(libraryFile, LibraryJson::encode(rest));
        store.write(journalFile, LibraryJournal{.staged = {}, .removed = {42}}.encode());
        QVERIFY(store.start());
        {
            const FailingCall failing(Call::Unlink, EIO);
            store.storage.sweepLeftovers();
            QVERIFY(failing.wasMade());
        }
        QVERIFY(store.has(leadFile) && store.has(journalFile));
        store.storage.save(store.library);
        QVERIFY(!store.has(leadFile) && !store.has(journalFile));
        QVERIFY(!store.storage.writeError());
    }

    static void libraryStaysWhereItIsIfItsNewDirectoryFails()
    {
        StoreFixture store(StoreFixture::never, three());
        const LibraryDirectory target;
        const FailingCall failing(Call::Sync, EIO);
        QVERIFY(!store.move(target.path()));
        QCOMPARE(store.storage.libDirectory(), store.path());
    }

    static void loadAndSaveTakePlaceWithoutAnotherThread()
    {
        StoreFixture store(std::chrono::milliseconds(1), three());
        LibraryStorageManager &storage = store.storage;
        {
            const FailingCall failing(Call::Thread, EAGAIN);
            store.requestSave();
            QTRY_VERIFY(!storage.waitingToSave());
            QVERIFY(failing.wasMade());
        }
        QVERIFY(store.holds(three().patches));
        const FailingCall failing(Call::Thread, EAGAIN);
        QSignalSpy finished(&storage, &LibraryStorageManager::loadFinished);
        storage.startLoading();
        QTRY_COMPARE(finished.size(), 1);
        QVERIFY(failing.wasMade() && storage.takeLoadedLibrary()->patches.size() == 3);
    }
};

VELGOR_TEST(TestSystemFaults)
#include "tst_SystemFaults.moc"
