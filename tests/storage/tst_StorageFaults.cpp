#include "DiagnosticRecorder.h"
#include "FailingCall.h"
#include "LibraryManagerPreferences.h"
#include "LibraryMoving.h"
#include "LoadedLibrary.h"
#include "StoredEdits.h"
#include "TestLibraries.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QTest>

using namespace TestLibraries;
using Call = FailingCall::Call;

namespace {

const QString leadFile = QStringLiteral("lib-Lead.42.prst");

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

    const DiagnosticRecorder m_silence;

    /// A library of three whose first patch was deleted; its file could not be.
    static std::unique_ptr<VelgorLibrary> afterAFailedRemoval(LibraryStorageManager &storage)
    {
        auto library = std::make_unique<VelgorLibrary>(three().patches, three().defaultPatch);
        storage.save(*library);
        // The first that is removed is the copy of the library file.
        const FailingCall failing(Call::Unlink, EIO, 1);
        StoredEdits::deletePatches(*library, {42}, storage);
        storage.finish();
        return failing.wasMade() && storage.writeError() ? std::move(library) : nullptr;
    }

private Q_SLOTS:
    static void fileThatCannotBeSetAsideCostsNoPatch()
    {
        const LibraryDirectory directory;
        directory.write(leadFile, "something else");
        LibraryStorageManager storage(directory.path());
        {
            const FailingCall failing(Call::MoveOnly, EPERM);
            storage.save(VelgorLibrary(three().patches, three().defaultPatch));
            QVERIFY(failing.wasMade());
        }
        QVERIFY(storage.writeError());
        QCOMPARE(storage.writeProblems().size(), 1);
        QCOMPARE(directory.read(leadFile), QByteArray("something else"));
        QVERIFY(areIdentical(loaded(directory), three().patches));

        {
            const FailingCall failing(Call::MoveOnly, EPERM);
            sweep(directory);
        }
        QCOMPARE(directory.read(leadFile), QByteArray("something else"));
        QVERIFY(areIdentical(loaded(directory), three().patches));

        const DiagnosticRecorder recorder;
        sweep(directory);
        QCOMPARE(directory.read(leadFile), patchBytes(three().patches.first()));
        QCOMPARE(directory.read(LibraryFileNames::damagedFile(42, 0)), QByteArray("something else"));
        const QString told = QStringLiteral("%1 was in the place of a patch's file, and is kept as %2");
        QVERIFY2(
            recorder.lines().contains(told.arg(directory.filePath(leadFile), LibraryFileNames::damagedFile(42, 0))),
            qPrintable(recorder.lines().join(u'\n')));
        QVERIFY(areIdentical(loaded(directory), three().patches));
    }

    static void patchThatIsImportedAgainAfterAFailedRemovalKeepsItsFile()
    {
        const LibraryDirectory directory;
        LibraryStorageManager storage(directory.path());
        const auto library = afterAFailedRemoval(storage);
        QVERIFY(library && directory.has(leadFile));
        library->append(three().patches.first(), false, false);
        storage.setWriteError(false);
        storage.save(*library);
        QVERIFY(!storage.writeError());
        QVERIFY(directory.has(leadFile));
        QVERIFY(areIdentical(loaded(directory), library->patches()));
        QVERIFY(!directory.has(LibraryFileNames::journalFile()));

        // As a synchronised folder may bring it back.
        const QList<VelgorPatch> former(library->patches().first(2));
        QVERIFY(former.first().id() != 42 && former.last().id() != 42);
        directory.write(LibraryFileNames::libraryFile(), LibraryJson::encode({former, std::nullopt}));
        sweep(directory);
        QVERIFY(directory.has(leadFile));
    }

    static void fileThatAFailedRemovalLeftIsNoFileOfAnotherPatchWithItsId()
    {
        const LibraryDirectory directory;
        LibraryStorageManager storage(directory.path());
        const auto library = afterAFailedRemoval(storage);
        QVERIFY(library);
        const QByteArray former = directory.read(leadFile);
        const VelgorPatch other = TestLibraries::patch(QStringLiteral("Lead"), 42, 9);
        library->append(other, false, false);
        storage.save(*library);
        QCOMPARE(directory.read(leadFile), patchBytes(other));
        QCOMPARE(directory.read(LibraryFileNames::damagedFile(42, 0)), former);
    }

    static void fileThatAFailedRemovalLeftGoesWithTheNextSave()
    {
        const LibraryDirectory directory;
        LibraryStorageManager storage(directory.path());
        const auto library = afterAFailedRemoval(storage);
        QVERIFY(library && directory.has(leadFile));
        storage.save(*library);
        QVERIFY(!directory.has(leadFile));
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
            const LibraryDirectory former;
            const LibraryDirectory place;
            LibraryManagerPreferences preferences(settingsIn(place));
            QVERIFY(preferences.setLibraryDirectory(former.path()));
            LibraryStorageManager storage(preferences);
            const VelgorLibrary library(three().patches, three().defaultPatch);
            storage.save(library);
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
                result = moveLibrary(storage, target, library);
                wasMade = failing.wasMade();
            }
            QCOMPARE(former.stamps(), formerFiles);
            const QString expected = result ? target : former.path();
            QCOMPARE(storage.libDirectory(), expected);
            QCOMPARE(preferences.libraryDirectory(), expected);
            QCOMPARE(storedDirectory(place), expected);
            LibraryStorageManager again(expected);
            const auto found = libraryOf(again.decodeLibrary());
            QVERIFY(found && areIdentical(found->patches(), three().patches));
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
