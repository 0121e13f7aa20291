#include "FailingCall.h"
#include "LibraryManagerPreferences.h"
#include "StoreFixture.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QTest>

using namespace TestLibraries;
using Call = FailingCall::Call;

namespace {

std::unique_ptr<QSettings> settingsIn(const LibraryDirectory &place)
{
    return std::make_unique<QSettings>(place.filePath(QStringLiteral("settings.ini")), QSettings::IniFormat);
}

/// What a start of the program would take the library's directory for.
QString storedDirectory(const LibraryDirectory &place)
{
    const LibraryDirectory elsewhere;
    elsewhere.write(QStringLiteral("settings.ini"), place.read(QStringLiteral("settings.ini")));
    return LibraryManagerPreferences(settingsIn(elsewhere)).libraryDirectory();
}

} // namespace

/// Removing, moving and remembering a library when the system fails a call once.
class TestStorageFaults : public QObject {
    Q_OBJECT

    /// A library of three whose first patch was deleted; its file could not be.
    struct AfterAFailedRemoval : StoreFixture {
        AfterAFailedRemoval()
            : StoreFixture(never, three())
        {
            storage.save(library);
            // The first that is removed is the copy of the library file.
            const FailingCall failing(Call::Unlink, EIO, 1);
            deletePatches({42});
            storage.finish();
            if (!failing.wasMade() || !storage.writeError()) {
                qFatal("the removal does not fail");
            }
        }
    };

private Q_SLOTS:
    static void fileThatCannotBeSetAsideCostsNoPatch()
    {
        StoreFixture store(StoreFixture::never, three());
        store.write(leadFile, "something else");
        {
            const FailingCall failing(Call::MoveOnly, EPERM);
            store.storage.save(store.library);
            QVERIFY(failing.wasMade());
        }
        QVERIFY(store.storage.writeError());
        QCOMPARE(store.storage.writeProblems().size(), 1);
        QCOMPARE(store.read(leadFile), QByteArray("something else"));
        QVERIFY(store.holds(three().patches));

        {
            const FailingCall failing(Call::MoveOnly, EPERM);
            store.sweep();
        }
        QCOMPARE(store.read(leadFile), QByteArray("something else"));
        QVERIFY(store.holds(three().patches));

        store.sweep();
        QCOMPARE(store.read(leadFile), patchBytes(three().patches.first()));
        QCOMPARE(store.read(LibraryFileNames::damagedFile(42, 0)), QByteArray("something else"));
        const QString told = QStringLiteral("%1 was in the place of a patch's file, and is kept as %2");
        QVERIFY2(store.lines.lines().contains(told.arg(store.filePath(leadFile), LibraryFileNames::damagedFile(42, 0))),
            qPrintable(store.lines.lines().join(u'\n')));
        QVERIFY(store.holds(three().patches));
    }

    static void patchThatIsImportedAgainAfterAFailedRemovalKeepsItsFile()
    {
        AfterAFailedRemoval store;
        QVERIFY(store.has(leadFile));
        store.library.append(three().patches.first(), false, false);
        store.storage.setWriteError(false);
        store.storage.save(store.library);
        QVERIFY(!store.storage.writeError());
        QVERIFY(store.has(leadFile));
        QVERIFY(store.holds(store.library.patches()));
        QVERIFY(!store.has(journalFile));

        // As a synchronised folder may bring it back.
        const QList<VelgorPatch> former(store.library.patches().first(2));
        QVERIFY(former.first().id() != 42 && former.last().id() != 42);
        store.write(libraryFile, LibraryJson::encode({former, std::nullopt}));
        store.sweep();
        QVERIFY(store.has(leadFile));
    }

    static void fileThatAFailedRemovalLeftIsNoFileOfAnotherPatchWithItsId()
    {
        AfterAFailedRemoval store;
        const QByteArray former = store.read(leadFile);
        const VelgorPatch other = TestLibraries::patch(QStringLiteral("Lead"), 42, 9);
        store.library.append(other, false, false);
        store.storage.save(store.library);
        QCOMPARE(store.read(leadFile), patchBytes(other));
        QCOMPARE(store.read(LibraryFileNames::damagedFile(42, 0)), former);
    }

    static void fileThatAFailedRemovalLeftGoesWithTheNextSave()
    {
        AfterAFailedRemoval store;
        QVERIFY(store.has(leadFile));
        store.storage.save(store.library);
        QVERIFY(!store.has(leadFile));
    }

    static void writeTestWritesItsText()
    {
        // It is gone at once, unless it cannot be removed.
        const LibraryDirectory place;
        LibraryManagerPreferences preferences(settingsIn(place));
        QVERIFY(preferences.setLibraryDirectory(place.filePath(QStringLiteral("new"))));
        const FailingCall failing(Call::Unlink, EIO);
        const LibraryStorageManager storage(preferences);
        QVERIFY(failing.wasMade() && storage.writeError());
        QCOMPARE(place.read(QStringLiteral("new.testfile.txt")), QByteArray("Test file that can be removed"));
        QCOMPARE(storage.writeProblems().size(), 1);
    }

    static void preferencesThatCannotBeStoredStay_data()
    {
        QTest::addColumn<Call>("call");
        QTest::newRow("writing") << Call::Write;
        QTest::newRow("renaming") << Call::Rename;
        QTest::newRow("synchronising") << Call::Sync;
        QTest::newRow("reading") << Call::Read;
    }
    static void preferencesThatCannotBeStoredStay()
    {
        QFETCH(const Call, call);
        bool wasMade = true;
        int failures = 0;
        for (int before = 0; wasMade; ++before) {
            const LibraryDirectory place;
            const QString former = place.filePath(QStringLiteral("former"));
            const QString other = place.filePath(QStringLiteral("other"));
            LibraryManagerPreferences preferences(settingsIn(place));
            QVERIFY(preferences.setLibraryDirectory(former));
            Result<> result = Success();
            {
                const FailingCall failing(call, ENOSPC, before);
                result = preferences.setLibraryDirectory(other);
                wasMade = failing.wasMade();
            }
            const QString expected = result ? other : former;
            failures += result ? 0 : 1;
            QCOMPARE(preferences.libraryDirectory(), expected);
            QCOMPARE(storedDirectory(place), expected);
        }
        QVERIFY(failures > 0);
    }

    static void moveThatFailsLeavesEverythingAsItWas_data()
    {
        QTest::addColumn<Call>("call");
        for (const auto &[call, name] : {std::pair(Call::Open, "opening"), std::pair(Call::Write, "writing"),
                 std::pair(Call::Rename, "renaming"), std::pair(Call::MoveOnly, "moving"),
                 std::pair(Call::Sync, "synchronising a file"), std::pair(Call::SyncAll, "synchronising all"),
                 std::pair(Call::Stat, "measuring"), std::pair(Call::Read, "reading")}) {
            QTest::newRow(name) << call;
        }
    }
    static void moveThatFailsLeavesEverythingAsItWas()
    {
        QFETCH(const Call, call);
        bool wasMade = true;
        int failures = 0;
        for (int before = 0; wasMade; ++before) {
            const StoreFixture former(StoreFixture::never, three());
            const LibraryDirectory place;
            LibraryManagerPreferences preferences(settingsIn(place));
            QVERIFY(preferences.setLibraryDirectory(former.path()));
            LibraryStorageManager storage(preferences);
            storage.save(former.library);
            // Somebody's own files, two of which are in the way.
            const QString target = place.filePath(QStringLiteral("new"));
            place.write(QStringLiteral("new/notes.txt"), "mine");
            place.write(QStringLiteral("new/lib-Lead.42.prst"), "mine");
            place.write(QStringLiteral("new/x.43.prst"), patchBytes(three().patches.at(1)));
            const auto formerFiles = former.stamps();
            auto files = place.contents();
            Result<> result = Success();
            {
                const FailingCall failing(call, EIO, before);
                result = StoreFixture::moveOf(storage, former.library, target);
                wasMade = failing.wasMade();
            }
            QCOMPARE(former.stamps(), formerFiles);
            const QString expected = result ? target : former.path();
            QCOMPARE(storage.libDirectory(), expected);
            QCOMPARE(preferences.libraryDirectory(), expected);
            QCOMPARE(storedDirectory(place), expected);
            const auto found = LibraryStorageManager(expected).decodeLibrary();
            QVERIFY(found && areIdentical(found->patches, three().patches));
            if (!result) {
                ++failures;
                auto left = place.contents();
                left.insert(QStringLiteral("settings.ini"), files.value(QStringLiteral("settings.ini")));
                QCOMPARE(left.keys(), files.keys());
                QCOMPARE(left, files);
            }
        }
        QVERIFY(failures > 0);
    }
};

VELGOR_TEST(TestStorageFaults)
#include "tst_StorageFaults.moc"
