#include "StoreFixture.h"
#include "TestProgram.h"
#include "WorkerGate.h"

#include <QCoreApplication>
#include <QTest>

using namespace std::chrono_literals;

/// A library moves to another directory, and the former one stays as it is.
class TestLibraryMove : public QObject {
    Q_OBJECT

    /// A program with a library of two that nothing asked to save yet.
    struct Former : StoreFixture {
        explicit Former(std::chrono::milliseconds period = never, const LibraryDirectory &place = LibraryDirectory(),
            bool isPreferred = false)
            : StoreFixture(place, period, isPreferred)
        {
            append(QStringLiteral("Lead"), 1);
            append(QStringLiteral("Clean"), 2);
        }
        void append(const QString &name, int seed) { library.append(TestPatches::imported(name, seed), false, false); }
    };

private Q_SLOTS:
    void theLibraryIsKeptInTheNewDirectoryFromThenOn()
    {
        Former former(Former::never, LibraryDirectory(QStringLiteral("my library")), true);
        former.storage.save(former.library);
        const LibraryDirectory place;
        const QStringList formerFiles = former.files();

        const QString target = place.filePath(QStringLiteral("moved"));
        QVERIFY(former.move(target));
        QCOMPARE(former.storage.libDirectory(), target);
        QCOMPARE(former.preferences.libraryDirectory(), target);
        QCOMPARE(former.files(), formerFiles);

        former.append(QStringLiteral("Later"), 3);
        former.storage.save(former.library);
        QCOMPARE(former.files(), formerFiles);
        const auto loaded = LibraryStorageManager(target).decodeLibrary();
        QVERIFY(loaded);
        QCOMPARE(TestPatches::names(loaded->patches),
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
        Former former(1ms);
        former.storage.save(former.library);
        const auto formerFiles = former.stamps();
        const StoreFixture place;
        LibraryMove::Steps steps;
        std::optional<WorkerGate> gate;
        // What is written then is known by that time.
        steps.acquire = [&](const QString &) {
            gate.emplace(former.storage.worker(), isQuitting ? 200ms : 10s);
            return Success();
        };
        QList<bool> ends;
        steps.ended = [&ends](const Result<> &moved, const LibraryWriteResult &) { ends.append(bool(moved)); };
        former.storage.startMove(place.path(), former.library, steps);
        former.storage.startMove(former.path(), former.library, steps);
        QTRY_VERIFY(gate);
        former.append(QStringLiteral("Later"), 3);
        former.storage.delayedSave(former.library);
        former.deletePatches({former.library.patches().first().id()});
        QTest::qWait(5);
        QVERIFY(former.storage.hasUnsavedChanges() && !former.storage.isSaving());
        QCOMPARE(former.storage.libDirectory(), former.path());
        if (isQuitting) {
            QVERIFY(former.storage.saveUnsaved());
        } else {
            gate->open();
            QTRY_VERIFY(!former.storage.hasUnsavedChanges());
        }
        QCOMPARE(ends, QList{true});
        QCOMPARE(former.storage.libDirectory(), place.path());
        QCOMPARE(former.stamps(), formerFiles);
        QCOMPARE(place.loadedNames(), (QStringList{QStringLiteral("Clean"), QStringLiteral("Later")}));
    }

    void directoryThatAnotherProgramUsesIsNotWrittenTo()
    {
        Former former;
        const LibraryDirectory place;
        QString taken;
        LibraryMove::Steps steps;
        steps.acquire = [&taken](const QString &directory) {
            taken = directory;
            return Problem{.why = QStringLiteral("in use")};
        };
        const Result<> moved = former.move(place.path(), steps);
        QCOMPARE(moved.problem().text(), QStringLiteral("in use"));
        QCOMPARE(taken, place.path());
        QCOMPARE(place.files(), QStringList());
        QCOMPARE(former.storage.libDirectory(), former.path());
    }

    void moveThatThePreferencesCannotRecordIsTakenBack()
    {
        const LibraryDirectory place;
        // Preferences that can be read and not written.
        place.write(QStringLiteral("file"), "x");
        LibraryManagerPreferences preferences(
            std::make_unique<QSettings>(place.filePath(QStringLiteral("file/settings")), QSettings::IniFormat));
        LibraryStorageManager recorded(preferences);
        const Former former;
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
        const Result<> moved = StoreFixture::moveOf(recorded, former.library, target, steps);
        QVERIFY(!moved && moved.problem().text().contains(QStringLiteral("file/settings")));
        QCOMPARE(taken, 0);
        QCOMPARE(place.files(), QStringList{QStringLiteral("file")});
        QVERIFY(!QFileInfo::exists(place.filePath(QStringLiteral("a"))));
        QCOMPARE(recorded.libDirectory(), before);
        QCOMPARE(preferences.libraryDirectory(), before);
    }

    void fileOfTheUserThatNamesAPatchDoesNotEndTheMove()
    {
        Former former;
        const LibraryDirectory place;
        former.storage.save(former.library);
        const QString notes = QStringLiteral("notes.%1.txt").arg(former.library.patches().first().id());
        place.write(notes, "mine");
        QVERIFY(former.move(place.path()));
        QCOMPARE(former.storage.libDirectory(), place.path());
        QCOMPARE(place.read(notes), QByteArray("mine"));
        QVERIFY(former.storage.wasLastSaveWritten());
    }

    void unsavedChangesGoAlong()
    {
        Former former;
        const LibraryDirectory place;
        former.storage.delayedSave(former.library);
        QVERIFY(former.move(place.path()));
        QVERIFY(!former.storage.hasUnsavedChanges());
        QVERIFY(!former.storage.waitingToSave());
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
        Former former;
        const LibraryDirectory place;
        QDir().mkpath(place.filePath(QStringLiteral("taken")));
        LibraryStorageManager(place.filePath(QStringLiteral("taken"))).save(former.library);
        place.write(QStringLiteral("cut/") + LibraryFileNames::libraryCopy(), "{}");
        place.write(QStringLiteral("begun/") + LibraryFileNames::journalFile(), "end\n");
        place.write(QStringLiteral("file"), "x");
        const QStringList files = place.files();

        former.storage.save(former.library);
        const Result<> moved = former.move(place.filePath(name));
        QVERIFY(!moved && moved.problem().text().contains(place.filePath(name)));
        QCOMPARE(former.storage.libDirectory(), former.path());
        QCOMPARE(place.files(), files);
        QVERIFY(!former.storage.writeError());
    }
};

VELGOR_TEST(TestLibraryMove)
#include "tst_LibraryMove.moc"
