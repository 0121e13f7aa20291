#include "StoreFixture.h"
#include "TestProgram.h"

#include <QTest>

#include <sys/stat.h>

using namespace TestLibraries;

namespace {

const LibraryWriteState mustKeep{.filesToKeep = {QStringLiteral("velgorlibrary.json")}};

} // namespace

class TestWriterKeepsFiles : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void undecodableLibraryFileIsKeptBeforeItIsOverwritten()
    {
        StoreFixture store;
        store.write(libraryFile, "{\"patches\":[garbled");
        const LibraryWriteResult result = store.save(three(), store.load().writeState);
        QVERIFY(!result.hasError());
        const QStringList kept = store.datedCopies();
        QCOMPARE(kept.size(), 1);
        QCOMPARE(result.keptFiles, QStringList{store.filePath(kept.first())});
        QCOMPARE(store.read(kept.first()), QByteArray("{\"patches\":[garbled"));
        QVERIFY(store.holds(three().patches));
        const LibraryWriteResult second = store.save(three(), result.state);
        QCOMPARE(second.keptFiles, QStringList());
        QCOMPARE(store.datedCopies(), kept);
    }

    void droppedPatchKeepsTheOldLibraryFile()
    {
        StoreFixture store(three());
        QFile::remove(store.filePath(leadFile));
        const QByteArray old = store.read(libraryFile);
        const LibraryLoadResult result = store.load();
        QVERIFY(!store.save({result.library->patches, std::nullopt}, result.writeState).hasError());
        QCOMPARE(store.datedCopies().size(), 1);
        QCOMPARE(store.read(store.datedCopies().first()), old);
    }

    void sameSecondKeepsBoth()
    {
        StoreFixture store;
        for (const char *text : {"first", "second", "third"}) {
            store.write(libraryFile, text);
            QVERIFY(!store.save(three(), mustKeep).hasError());
        }
        QList<QByteArray> kept;
        for (const QString &name : store.datedCopies()) {
            kept.append(store.read(name));
        }
        QCOMPARE(kept, (QList<QByteArray>{"first", "second", "third"}));
    }

    void twentyKeptFilesStayAndNoneOfTheUsers()
    {
        StoreFixture store;
        const QString users = QStringLiteral("velgorlibrary-backup.json");
        store.write(users, "mine");
        QStringList old;
        for (int i = 10; i < 32; ++i) {
            old.append(QStringLiteral("velgorlibrary-202001%1T000000-00.json").arg(i));
            store.write(old.last(), "old");
        }
        store.write(libraryFile, "garbled");
        QVERIFY(!store.save(three(), mustKeep).hasError());
        const QStringList kept = store.datedCopies();
        QCOMPARE(kept.size(), 20);
        QCOMPARE(kept.first(19), old.last(19));
        QCOMPARE(store.read(kept.last()), QByteArray("garbled"));
        QCOMPARE(store.read(users), QByteArray("mine"));
    }

    void keptFileThatCannotBeWrittenStopsTheOverwriting()
    {
        StoreFixture store;
        QVERIFY(QDir(store.path()).mkdir(libraryFile));
        const LibraryWriteResult result = store.save(three(), mustKeep);
        QVERIFY(!result.isLibraryFileWritten && !result.state.filesToKeep.isEmpty());
        QCOMPARE(result.written, 3);
    }

    void nothingToKeepIsNoObstacle()
    {
        // The user took the damaged file away after it could not be loaded.
        StoreFixture store;
        const LibraryWriteResult result = store.save(three(), mustKeep);
        QVERIFY(!result.hasError());
    }

    void libraryFileChangedByAnotherProgramIsKept()
    {
        StoreFixture store;
        const LibraryWriteResult first = store.save(three());
        LibraryState others = three();
        others.patches.first().comment = QStringLiteral("theirs");
        const QByteArray text = LibraryJson::encode(others);
        store.write(libraryFile, text);
        const LibraryWriteResult second = store.save(three(), first.state);
        QVERIFY(!second.hasError() && second.wasChangedByOthers);
        QCOMPARE(store.datedCopies().size(), 1);
        QCOMPARE(second.keptFiles, QStringList{store.filePath(store.datedCopies().first())});
        QCOMPARE(store.read(store.datedCopies().first()), text);
        const LibraryWriteResult third = store.save(three(), second.state);
        QVERIFY(!third.wasChangedByOthers && third.keptFiles.isEmpty());
    }

    void libraryFileThatAppearedSinceLoadingIsKept()
    {
        StoreFixture store;
        const LibraryLoadResult result = store.load();
        const QByteArray text = LibraryJson::encode(one(QStringLiteral("Theirs")));
        store.write(libraryFile, text);
        QVERIFY(store.save(three(), result.writeState).wasChangedByOthers);
        QCOMPARE(store.read(store.datedCopies().first()), text);
    }

    void touchedLibraryFileIsNotKept()
    {
        StoreFixture store;
        const LibraryWriteResult first = store.save(three());
        store.write(libraryFile, store.read(libraryFile));
        QVERIFY(!store.save(three(), first.state).wasChangedByOthers);
        QCOMPARE(store.files(), threeFiles);
    }
};

VELGOR_TEST(TestWriterKeepsFiles)
#include "tst_WriterKeepsFiles.moc"
