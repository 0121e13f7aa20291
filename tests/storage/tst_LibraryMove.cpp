#include "DiagnosticRecorder.h"
#include "LibraryDirectory.h"
#include "LibraryFileNames.h"
#include "LibraryManagerPreferences.h"
#include "LibraryMoving.h"
#include "LoadedLibrary.h"
#include "StoredEdits.h"
#include "TestLibraries.h"
#include "TestPatches.h"
#include "TestProgram.h"
#include "ThreadGate.h"

#include <QCoreApplication>
#include <QTest>

using namespace std::chrono_literals;

/// A library moves to another directory, and the former one stays as it is.
class TestLibraryMove : public QObject {
    Q_OBJECT

    const DiagnosticRecorder m_silence;

    static std::unique_ptr<QSettings> settingsIn(const LibraryDirectory &directory)
    {
        return std::make_unique<QSettings>(directory.parentPath() + QStringLiteral("/settings"), QSettings::IniFormat);
    }

    static void fill(VelgorLibrary &library)
    {
        library.append(TestPatches::imported(QStringLiteral("Lead"), 1), false, false);
        library.append(TestPatches::imported(QStringLiteral("Clean"), 2), false, false);
    }

private Q_SLOTS:
    void theLibraryIsKeptInTheNewDirectoryFromThenOn()
    {
        const LibraryDirectory former(QStringLiteral("my library"));
        const LibraryDirectory place;
        LibraryManagerPreferences preferences(settingsIn(place));
        QVERIFY(preferences.setLibraryDirectory(former.path()));
        LibraryStorageManager storage(preferences);
        VelgorLibrary library;
        fill(library);
        storage.save(library);
        const QStringList formerFiles = former.files();

        const QString target = place.filePath(QStringLiteral("moved"));
        QVERIFY(moveLibrary(storage, target, library));
        QCOMPARE(storage.libDirectory(), target);
        QCOMPARE(preferences.libraryDirectory(), target);
        QCOMPARE(former.files(), formerFiles);

        library.append(TestPatches::imported(QStringLiteral("Later"), 3), false, false);
        storage.save(library);
        QCOMPARE(former.files(), formerFiles);
        LibraryStorageManager again(target);
        const std::unique_ptr<VelgorLibrary> loaded = libraryOf(again.decodeLibrary());
        QVERIFY(loaded);
        QCOMPARE(TestPatches::names(loaded->patches()),
            QStringList({QStringLiteral("Lead"), QStringLiteral("Clean"), QStringLiteral("Later")}));
    }

    void whatIsSavedDuringTheMoveIsInTheNewDirectory_data()
    {
        QTest::addColumn<bool>("isQuitting");
        QTest::newRow("and the move goes on") << false;
        QTest::newRow("and the program ends") << true;
    }
    void whatIsSavedDuringTheMoveIsInTheNewDirectory()
    {
        QFETCH(const bool, isQuitting);
        const LibraryDirectory former;
        const LibraryDirectory place;
        LibraryStorageManager storage(former.path(), 1ms);
        VelgorLibrary library;
        fill(library);
        storage.save(library);
        const auto formerFiles = former.stamps();
        ThreadGate gate(isQuitting ? 50ms : 10s);
        LibraryMove::Steps steps;
        QList<bool> ends;
        steps.ended = [&ends](const Result<> &moved, const LibraryWriteResult &) { ends.append(bool(moved)); };
        storage.startMove(place.path(), library, steps);
        storage.startMove(former.path(), library, steps);
        QTRY_VERIFY(gate.isHolding());
        library.append(TestPatches::imported(QStringLiteral("Later"), 3), false, false);
        storage.delayedSave(library);
        StoredEdits::deletePatches(library, {library.patches().first().id()}, storage);
        QTest::qWait(5);
        QVERIFY(storage.hasUnsavedChanges() && !storage.isSaving());
        QCOMPARE(storage.libDirectory(), former.path());
        if (isQuitting) {
            QVERIFY(storage.saveUnsaved());
        } else {
            gate.open();
            QTRY_VERIFY(!storage.hasUnsavedChanges());
        }
        QCOMPARE(ends, QList{true});
        QCOMPARE(storage.libDirectory(), place.path());
        QCOMPARE(former.stamps(), formerFiles);
        QCOMPARE(TestLibraries::loadedNames(place), (QStringList{QStringLiteral("Clean"), QStringLiteral("Later")}));
    }

    void directoryThatAnotherProgramUsesIsNotWrittenTo()
    {
        const LibraryDirectory former;
        const LibraryDirectory place;
        LibraryStorageManager storage(former.path());
        VelgorLibrary library;
        fill(library);
        QString taken;
        LibraryMove::Steps steps;
        steps.acquire = [&taken](const QString &directory) {
            taken = directory;
            return Problem{.why = QStringLiteral("in use")};
        };
        const Result<> moved = moveLibrary(storage, place.path(), library, steps);
        QCOMPARE(moved.problem().text(), QStringLiteral("in use"));
        QCOMPARE(taken, place.path());
        QCOMPARE(place.files(), QStringList());
        QCOMPARE(storage.libDirectory(), former.path());
    }

    void moveThatThePreferencesCannotRecordIsTakenBack()
    {
        const LibraryDirectory former;
        const LibraryDirectory place;
        // Preferences that can be read and not written.
        place.write(QStringLiteral("file"), "x");
        LibraryManagerPreferences preferences(
            std::make_unique<QSettings>(place.filePath(QStringLiteral("file/settings")), QSettings::IniFormat));
        LibraryStorageManager recorded(preferences);
        VelgorLibrary library;
        fill(library);
        const QString before = recorded.libDirectory();
        int taken = 0;
        const QString target = place.filePath(QStringLiteral("a/b/moved"));
        LibraryMove::Steps steps;
        steps.acquire = [&taken](const QString &directory) -> Result<> {
            ++taken;
            QFile lock(directory + u'/' + LibraryFileNames::lockFile());
            return lock.open(QIODevice::WriteOnly) ? Result<>(Success())
                                                   : Problem{.why = QStringLiteral("cannot be locked")};
        };
        steps.release = [&taken, &target] {
            --taken;
            QFile::remove(target + u'/' + LibraryFileNames::lockFile());
        };
        const Result<> moved = moveLibrary(recorded, target, library, steps);
        QVERIFY(!moved && moved.problem().text().contains(QStringLiteral("file/settings")));
        QCOMPARE(taken, 0);
        QCOMPARE(place.files(), QStringList{QStringLiteral("file")});
        QVERIFY(!QFileInfo::exists(place.filePath(QStringLiteral("a"))));
        QCOMPARE(recorded.libDirectory(), before);
        QCOMPARE(preferences.libraryDirectory(), before);
    }

    void fileOfTheUserThatNamesAPatchDoesNotEndTheMove()
    {
        const LibraryDirectory former;
        const LibraryDirectory place;
        LibraryStorageManager storage(former.path());
        VelgorLibrary library;
        fill(library);
        storage.save(library);
        const QString notes = QStringLiteral("notes.%1.txt").arg(library.patches().first().id());
        place.write(notes, "mine");
        QVERIFY(moveLibrary(storage, place.path(), library));
        QCOMPARE(storage.libDirectory(), place.path());
        QCOMPARE(place.read(notes), QByteArray("mine"));
        QVERIFY(storage.wasLastSaveWritten());
    }

    void unsavedChangesGoAlong()
    {
        const LibraryDirectory former;
        const LibraryDirectory place;
        LibraryStorageManager storage(former.path(), std::chrono::hours(1));
        VelgorLibrary library;
        fill(library);
        storage.delayedSave(library);
        QVERIFY(moveLibrary(storage, place.path(), library));
        QVERIFY(!storage.hasUnsavedChanges());
        QVERIFY(!storage.waitingToSave());
        QVERIFY(QFile::exists(place.filePath(LibraryFileNames::libraryFile())));
        QCOMPARE(former.files(), QStringList());
    }

    void aDirectoryThatCannotTakeTheLibraryIsRefused_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("path that cannot be listed") << QStringLiteral("with space");
        QTest::newRow("holds a library") << QStringLiteral("taken");
        QTest::newRow("holds the copy of a library") << QStringLiteral("cut");
        QTest::newRow("holds the journal of a library") << QStringLiteral("begun");
        QTest::newRow("a file is in its place") << QStringLiteral("file");
        QTest::newRow("below a file") << QStringLiteral("file/library");
    }

    void aDirectoryThatCannotTakeTheLibraryIsRefused()
    {
        QFETCH(const QString, name);
        const LibraryDirectory former;
        const LibraryDirectory place;
        VelgorLibrary library;
        fill(library);
        QDir().mkpath(place.filePath(QStringLiteral("taken")));
        LibraryStorageManager(place.filePath(QStringLiteral("taken"))).save(library);
        place.write(QStringLiteral("cut/") + LibraryFileNames::libraryCopy(), "{}");
        place.write(QStringLiteral("begun/") + LibraryFileNames::journalFile(), "end\n");
        place.write(QStringLiteral("file"), "x");
        const QStringList files = place.files();

        LibraryStorageManager storage(former.path());
        storage.save(library);
        const Result<> moved = moveLibrary(storage, place.filePath(name), library);
        QVERIFY(!moved && moved.problem().text().contains(place.filePath(name)));
        QCOMPARE(storage.libDirectory(), former.path());
        QCOMPARE(place.files(), files);
        QVERIFY(!storage.writeError());
    }
};

VELGOR_TEST(TestLibraryMove)
#include "tst_LibraryMove.moc"
