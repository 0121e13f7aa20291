#include "StoreFixture.h"
#include "TemporaryFiles.h"
#include "TestProgram.h"

#include <QElapsedTimer>
#include <QTest>

#include <sys/stat.h>

using namespace TestLibraries;

class TestLibraryWriter : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void firstSaveWritesTheLibraryFileAndEveryPatch()
    {
        StoreFixture store;
        const LibraryWriteResult result = store.save(three());
        QVERIFY(!result.hasError());
        QCOMPARE(result.written, 3);
        QCOMPARE(store.files(), threeFiles);
        QCOMPARE(store.read(libraryFile), LibraryJson::encode(three()));
        QCOMPARE(store.read(leadFile), patchBytes(three().patches.first()));
        QCOMPARE(store.lines.take(),
            (QStringList{QStringLiteral("Saving in progress..."), QStringLiteral("Saving done 3 patches")}));
    }

    void savingAgainRewritesTheLibraryFileOnly()
    {
        StoreFixture store(three());
        const auto before = store.stamps();
        store.lines.take();
        QCOMPARE(store.save(three()).written, 0);
        auto after = store.stamps();
        QVERIFY(after.value(libraryFile) != before.value(libraryFile));
        QCOMPARE(after.take(libraryFile).section(u' ', 0, 0), before.value(libraryFile).section(u' ', 0, 0));
        for (const QString &name : after.keys()) {
            QCOMPARE(after.value(name), before.value(name));
        }
        QCOMPARE(store.files(), threeFiles);
        QCOMPARE(store.lines.take().last(), QStringLiteral("Saving done 0 patches"));
    }

    void renamedPatchMovesItsFile()
    {
        StoreFixture store;
        LibraryState library = one(QStringLiteral("Old"));
        QVERIFY(!store.save(library).hasError());
        const QString number = store.stamps().value(QStringLiteral("lib-Old.42.prst")).section(u' ', 0, 0);
        library.patches.first().name = QStringLiteral("New");
        const LibraryWriteResult result = store.save(library);
        QVERIFY(!result.hasError());
        QCOMPARE(result.written, 0);
        QCOMPARE(store.files(), (QStringList{QStringLiteral("lib-New.42.prst"), libraryFile}));
        QCOMPARE(store.stamps().value(QStringLiteral("lib-New.42.prst")).section(u' ', 0, 0), number);
        QVERIFY(store.read(libraryFile).contains("\"New\""));
        // The record inside stays as it was hashed.
        QCOMPARE(store.loaded().first().records->patchData.name, QStringLiteral("Old"));
    }

    void patchesCanSwapTheirNames()
    {
        StoreFixture store;
        LibraryState library = three();
        QVERIFY(!store.save(library).hasError());
        std::swap(library.patches[0].name, library.patches[2].name);
        QVERIFY(!store.save(library).hasError());
        QVERIFY(store.holds(library.patches));
    }

    void emptyLibraryIsAnEmptyList()
    {
        StoreFixture store;
        QVERIFY(!store.save({}).hasError());
        QCOMPARE(store.files(), QStringList{libraryFile});
        QCOMPARE(store.read(libraryFile), QByteArray(R"({"patches":[],"defaultPatch":null})"));
        QCOMPARE(store.lines.take(),
            (QStringList{QStringLiteral("Saving in progress..."), QStringLiteral("Nothing to save in library"),
                QStringLiteral("Saving done 0 patches")}));
    }

    void patchWithoutPresetDataFailsAloneWithALine()
    {
        StoreFixture store;
        LibraryState library = three();
        library.patches.insert(1, TestPatches::stored(50, QStringLiteral("Without")));
        const LibraryWriteResult result = store.save(library);
        QVERIFY(result.hasError() && !result.arePatchesWritten && result.isLibraryFileWritten);
        QCOMPARE(result.written, 3);
        QCOMPARE(store.files(), threeFiles);
        QCOMPARE(store.lines.take().last(), QStringLiteral("Error: 3 patches stored out of 4"));
        QVERIFY(result.problems.join(u'\n').contains(QStringLiteral("Without")));
    }

    void directoryInThePlaceOfAPatchFileFailsThatPatch()
    {
        StoreFixture store;
        QDir(store.path()).mkdir(leadFile);
        const LibraryWriteResult result = store.save(three());
        QVERIFY(!result.arePatchesWritten);
        QCOMPARE(result.written, 2);
        QVERIFY(QFileInfo(store.filePath(leadFile)).isDir());
        QCOMPARE(store.lines.take().last(), QStringLiteral("Error: 2 patches stored out of 3"));
        QVERIFY(QDir(store.path()).rmdir(leadFile));
        QCOMPARE(store.save(three(), result.state).written, 1);
    }

    void pipeInThePlaceOfAPatchFileFailsAtOnce()
    {
        StoreFixture store;
        QVERIFY(mkfifo(QFile::encodeName(store.filePath(leadFile)).constData(), 0600) == 0);
        QElapsedTimer timer;
        timer.start();
        const LibraryWriteResult result = store.save(three());
        QVERIFY(timer.elapsed() < 2000);
        QVERIFY(!result.arePatchesWritten);
        QCOMPARE(result.written, 2);
    }

    void linkInThePlaceOfAPatchFileMakesRoomWithoutBeingFollowed()
    {
        StoreFixture store;
        const QString outside = store.parentPath() + QStringLiteral("/outside");
        QVERIFY(QFile::link(outside, store.filePath(leadFile)));
        QCOMPARE(store.save(three()).written, 3);
        QVERIFY(!QFileInfo::exists(outside));
        QVERIFY(!QFileInfo(store.filePath(leadFile)).isSymLink());
        QVERIFY(store.holds(three().patches));
    }

    void libraryFileThatIsNoFileIsNotWritten_data()
    {
        QTest::addColumn<QString>("kind");
        for (const char *kind : {"directory", "pipe", "link"}) {
            QTest::newRow(kind) << QString::fromLatin1(kind);
        }
    }

    void libraryFileThatIsNoFileIsNotWritten()
    {
        QFETCH(const QString, kind);
        StoreFixture store;
        const QString outside = store.parentPath() + QStringLiteral("/outside");
        const QString path = store.filePath(libraryFile);
        if (kind == QStringLiteral("directory")) {
            QVERIFY(QDir().mkdir(path));
        } else if (kind == QStringLiteral("pipe")) {
            QVERIFY(mkfifo(QFile::encodeName(path).constData(), 0600) == 0);
        } else {
            QVERIFY(QFile::link(outside, path));
        }
        const LibraryWriteResult result = store.save(three());
        QVERIFY(!result.isLibraryFileWritten && result.arePatchesWritten && result.hasError());
        QCOMPARE(result.written, 3);
        QVERIFY(store.lines.take().contains(QStringLiteral("cannot encode library")));
        QVERIFY(!QFileInfo::exists(outside));
        QVERIFY(!store.has(libraryCopy));
    }

    void directoryWithASpaceCannotBeListed()
    {
        StoreFixture store(LibraryDirectory(QStringLiteral("my library")));
        for (int i = 0; i < 2; ++i) {
            const LibraryWriteResult result = store.save(three());
            QVERIFY(!result.isTidy && result.hasError());
            QVERIFY(result.isLibraryFileWritten && result.arePatchesWritten);
            QCOMPARE(result.written, i == 0 ? 3 : 0);
            QVERIFY(result.problems.join(u'\n').contains(store.path()));
        }
        QVERIFY(store.holds(three().patches));
        QVERIFY(store.remove({42}).hasError());
        QVERIFY(store.has(leadFile));
        QVERIFY(!store.has(journalFile));
    }

    void missingDirectoryFailsEverything()
    {
        StoreFixture store;
        QVERIFY(QDir(store.path()).removeRecursively());
        const LibraryWriteResult result = store.save(three());
        QVERIFY(!result.isLibraryFileWritten && !result.arePatchesWritten && !result.isTidy);
        QCOMPARE(result.written, 0);
        QVERIFY(!QFileInfo::exists(store.path()));
    }

    // Keeping what could not be loaded

    // Interruptions

    void saveAfterAnInterruptionLeavesNothingBehind_data()
    {
        QTest::addColumn<int>("libraryBytes");
        QTest::addColumn<int>("copyBytes");
        QTest::newRow("copy half written over") << -1 << 10;
        QTest::newRow("copy complete") << -1 << -1;
        QTest::newRow("library file cut") << 50 << -1;
        QTest::newRow("library file empty") << 0 << -1;
    }

    void saveAfterAnInterruptionLeavesNothingBehind()
    {
        QFETCH(const int, libraryBytes);
        QFETCH(const int, copyBytes);
        StoreFixture store(three());
        const QByteArray text = store.read(libraryFile);
        store.write(libraryFile, libraryBytes < 0 ? text : text.first(libraryBytes));
        store.write(libraryCopy, copyBytes < 0 ? text : text.first(copyBytes));
        const LibraryLoadResult result = store.load();
        QVERIFY(areIdentical(result.library->patches, three().patches));
        QVERIFY(!store.save(three(), result.writeState).hasError());
        QCOMPARE(store.read(libraryFile), text);
        QCOMPARE(store.files(), threeFiles);
    }

    void leftoversAreSweptAndNothingElse()
    {
        StoreFixture store(three());
        QDir(store.path()).mkdir(TemporaryFiles::prefix() + QStringLiteral("d"));
        store.write(QStringLiteral("sub/") + TemporaryFiles::prefix() + QStringLiteral("x"), "x");
        const auto before = store.stamps();
        store.write(TemporaryFiles::prefix() + QStringLiteral("1"), "x");
        store.write(TemporaryFiles::prefix() + QStringLiteral("2"), {});
        store.write(journalFile, "remove 42\nremove 77\nend\n");
        store.sweep();
        QCOMPARE(store.stamps(), before);
        QVERIFY(QFileInfo(store.filePath(TemporaryFiles::prefix() + QStringLiteral("d"))).isDir());
    }

    void libraryFileIsCompletedFromTheCopyThatServed_data()
    {
        QTest::addColumn<bool>("isThere");
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("missing") << false << QByteArray();
        QTest::newRow("empty") << true << QByteArray();
        QTest::newRow("cut") << true << LibraryJson::encode(three()).first(50);
        QTest::newRow("whole") << true << LibraryJson::encode(three());
    }

    void libraryFileIsCompletedFromTheCopyThatServed()
    {
        QFETCH(const bool, isThere);
        QFETCH(const QByteArray, text);
        StoreFixture store(three());
        store.write(libraryCopy, LibraryJson::encode(three()));
        QFile::remove(store.filePath(libraryFile));
        if (isThere) {
            store.write(libraryFile, text);
        }
        store.sweep();
        QCOMPARE(store.files(), threeFiles);
        QCOMPARE(store.read(libraryFile), LibraryJson::encode(three()));
    }

    void damagedLibraryFileAndTheCopyThatServedStayUntilTheNextSave()
    {
        StoreFixture store(three());
        store.write(libraryCopy, LibraryJson::encode(three()));
        store.write(libraryFile, "something else");
        const auto before = store.stamps();
        store.sweep();
        QCOMPARE(store.stamps(), before);
    }

    void nothingIsSweptWhileTheLibraryCannotBeRead()
    {
        StoreFixture store(three());
        store.write(libraryFile, "garbled");
        store.write(journalFile, "remove 42\nend\n");
        store.write(TemporaryFiles::prefix() + QStringLiteral("1"), "x");
        const auto before = store.stamps();
        store.sweep();
        QCOMPARE(store.stamps(), before);
    }

    void sweepingAMissingDirectoryDoesNothing()
    {
        LibraryLeftovers leftovers;
        leftovers.areKnown = true;
        leftovers.isCopySpare = true;
        LibrarySweeper(QStringLiteral("/no/such/directory"), leftovers).sweep();
        QVERIFY(!QFileInfo::exists(QStringLiteral("/no/such/directory")));
    }

    // What could not be read

    void entryThatCouldNotBeReadStaysInTheLibraryFile()
    {
        StoreFixture store(three());
        LibraryWriteState state = store.state();
        VelgorPatch unread = three().patches.at(1);
        unread.records.reset();
        state.unread = {.patches = {{unread.id(), unread}}, .order = TestPatches::ids(three().patches)};
        LibraryState rest = three();
        rest.patches.removeAt(1);
        const LibraryWriteResult result = store.save(rest, state);
        QVERIFY(!result.hasError() && result.keptFiles.isEmpty());
        QVERIFY(store.holds(three().patches));
        rest.patches.clear();
        QVERIFY(!store.save(rest, result.state).hasError());
        QCOMPARE(store.loadedNames(), QStringList{QStringLiteral("A/B")});
    }

    void entryThatCouldNotBeReadGivesWayToTheImportedPatchAndIsKept()
    {
        StoreFixture store(three());
        const QByteArray old = store.read(libraryFile);
        LibraryWriteState state = store.state();
        const VelgorPatch unread = three().patches.at(1);
        state.unread = {.patches = {{unread.id(), unread}}, .order = TestPatches::ids(three().patches)};
        const LibraryWriteResult result = store.save(three(), state);
        QVERIFY(!result.hasError() && result.state.unread.isEmpty());
        QVERIFY(store.holds(three().patches));
        QCOMPARE(store.read(store.datedCopies().value(0)), old);
    }

    // Another program at work
};

VELGOR_TEST(TestLibraryWriter)
#include "tst_LibraryWriter.moc"
