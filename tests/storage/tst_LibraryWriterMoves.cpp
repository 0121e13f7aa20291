#include "StoreFixture.h"
#include "TemporaryFiles.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QTest>

using namespace TestLibraries;

namespace {

QStringList sorted(QStringList names)
{
    names.sort();
    return names;
}

} // namespace

class TestLibraryWriterMoves : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Moving

    void oldAndNewFileStayBoth()
    {
        StoreFixture store;
        const QByteArray bytes = patchBytes(one(QStringLiteral("New")).patches.first());
        store.write(QStringLiteral("lib-Old.42.prst"), "old");
        store.write(QStringLiteral("lib-New.42.prst"), bytes);
        const LibraryWriteResult result = store.save(one(QStringLiteral("New")));
        QCOMPARE(result.written, 0);
        QVERIFY(!result.hasError());
        QCOMPARE(store.read(QStringLiteral("lib-Old.42.prst")), QByteArray("old"));
        QCOMPARE(store.read(QStringLiteral("lib-New.42.prst")), bytes);
    }

    void foreignFileWithTheIdIsNeverThePatchs()
    {
        StoreFixture store;
        const QString notes = QStringLiteral("notes.42.txt");
        store.write(notes, "mine");
        const LibraryWriteResult result = store.save(one(QStringLiteral("Lead")));
        QCOMPARE(result.written, 1);
        QCOMPARE(store.read(notes), QByteArray("mine"));
        QCOMPARE(store.read(leadFile), patchBytes(one(QStringLiteral("Lead")).patches.first()));
        QVERIFY(result.hasError() && result.problems.join(u'\n').contains(notes));
        QVERIFY(store.lines.take().contains(
            QStringLiteral("Error renaming item file://") + QDir::currentPath() + u'/' + notes));
        // Told once, later saves leave it in peace.
        QVERIFY(!store.save(one(QStringLiteral("Lead")), result.state).hasError());
        QCOMPARE(store.read(notes), QByteArray("mine"));
    }

    void usersCopyOfThePatchBecomesItsFileWhereThereIsNone()
    {
        StoreFixture store;
        const LibraryState library = one(QStringLiteral("Lead"));
        store.write(QStringLiteral("x.42.prst"), patchBytes(library.patches.first()));
        const LibraryWriteResult result = store.save(library);
        QVERIFY(!result.hasError());
        QCOMPARE(result.written, 0);
        QCOMPARE(store.files(), (QStringList{leadFile, libraryFile}));
    }

    void fileNamedForThePatchGoesBeforeAUsersCopy()
    {
        StoreFixture store;
        const LibraryState library = one(QStringLiteral("Lead"));
        const QByteArray bytes = patchBytes(library.patches.first());
        store.write(QStringLiteral("a.42.prst"), bytes);
        store.write(QStringLiteral("lib-Old.42.prst"), bytes);
        store.write(QStringLiteral("z.42.prst"), bytes);
        const LibraryWriteResult result = store.save(library);
        QCOMPARE(result.written, 0);
        QCOMPARE(store.files(),
            (QStringList{QStringLiteral("a.42.prst"), leadFile, libraryFile, QStringLiteral("z.42.prst")}));
        QVERIFY(!store.save(library, result.state).hasError());
    }

    void fileOfAnotherPatchIsItsAlone()
    {
        StoreFixture store;
        const QString name = QStringLiteral("lib-Amp.42.x.77.prst");
        LibraryState library = one(QStringLiteral("Lead"));
        library.patches.append(TestLibraries::patch(QStringLiteral("Amp.42.x"), 77, 2));
        QVERIFY(!store.save(library).hasError());
        QCOMPARE(store.files(), (QStringList{name, leadFile, libraryFile}));
        library.patches.first().name = QStringLiteral("Renamed");
        QVERIFY(!store.save(library).hasError());
        QVERIFY(store.has(name));
        QVERIFY(!store.remove({42}).hasError());
        QCOMPARE(store.files(), (QStringList{name, libraryFile}));
        QVERIFY(!store.remove({77}).hasError());
        QCOMPARE(store.files(), QStringList{libraryFile});
    }

    void directoryWithTheIdIsNotMoved()
    {
        StoreFixture store;
        store.write(QStringLiteral("old.42.d/notes.txt"), "mine");
        const LibraryWriteResult result = store.save(one(QStringLiteral("Lead")));
        QVERIFY(!result.hasError());
        QCOMPARE(result.written, 1);
        QCOMPARE(store.read(QStringLiteral("old.42.d/notes.txt")), QByteArray("mine"));
    }

    void linkWithTheIdIsNotMovedNorFollowed()
    {
        StoreFixture store;
        const LibraryState library = one(QStringLiteral("Lead"));
        const QString outside = store.parentPath() + QStringLiteral("/outside");
        QFile file(outside);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(patchBytes(library.patches.first())) > 0);
        QVERIFY(QFile::link(outside, store.filePath(QStringLiteral("lib-Old.42.prst"))));
        QCOMPARE(store.save(library).written, 1);
        QVERIFY(QFileInfo(store.filePath(QStringLiteral("lib-Old.42.prst"))).isSymLink());
        QVERIFY(QFileInfo::exists(outside));
        QVERIFY(!QFileInfo(store.filePath(leadFile)).isSymLink());
    }

    void copyInASubdirectoryIsLookedForAtTheTop()
    {
        StoreFixture store;
        store.write(QStringLiteral("sub/lib-Old.42.prst"), "mine");
        const LibraryWriteResult result = store.save(one(QStringLiteral("Lead")));
        QVERIFY(result.hasError() && !result.isTidy);
        QCOMPARE(result.written, 1);
        QVERIFY(store.lines.take().contains(QStringLiteral("Error renaming item file://") + QDir::currentPath()
            + QStringLiteral("/sub/lib-Old.42.prst")));
        QCOMPARE(store.read(QStringLiteral("sub/lib-Old.42.prst")), QByteArray("mine"));
        QVERIFY(!store.save(one(QStringLiteral("Lead")), result.state).hasError());
    }

    // Removing

    void everyFileWithTheIdIsRemoved()
    {
        StoreFixture store;
        for (const char *name : {"lib-A.42.prst", "lib-B.42.prst", "notes.42.txt", "lib-C.421.prst", "readme.txt"}) {
            store.write(QString::fromLatin1(name), "x");
        }
        QVERIFY(!store.remove({42}).hasError());
        QCOMPARE(
            store.files(), (QStringList{QStringLiteral("lib-C.421.prst"), QStringLiteral("readme.txt"), libraryFile}));
    }

    void patchWithoutFileIsRemovedSilently()
    {
        StoreFixture store;
        store.write(leadFile, "x");
        QVERIFY(!store.remove({4, 421, 2}).hasError());
        QVERIFY(!store.remove({}).hasError());
        QCOMPARE(store.files(), (QStringList{leadFile, libraryFile}));
    }

    void removingTouchesNothingElse()
    {
        StoreFixture store;
        const QStringList others = sorted({LibraryFileNames::lockFile(), LibraryFileNames::datedCopy(0),
            TemporaryFiles::prefix() + QStringLiteral("a.42.b"), QStringLiteral("lib-Amp.42.x.77.prst"),
            QStringLiteral("lib-d.42.prst/inside"), QStringLiteral("old.42.d/lib-notes.txt"),
            QStringLiteral("velgorlibrary-backup.json")});
        for (const QString &name : others) {
            store.write(name, "x");
        }
        const auto before = store.stamps();
        QVERIFY(!store.remove({42}).hasError());
        auto after = store.stamps();
        after.remove(libraryFile);
        QCOMPARE(after, before);
    }

    void removedLinkLeavesItsTarget()
    {
        StoreFixture store;
        const QString outside = store.parentPath() + QStringLiteral("/outside");
        QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), outside));
        QVERIFY(QFile::link(outside, store.filePath(leadFile)));
        QVERIFY(!store.remove({42}).hasError());
        QVERIFY(QFileInfo::exists(outside));
        QCOMPARE(store.files(), QStringList{libraryFile});
    }

    void fileInADirectoryBelowIsReportedAndStays()
    {
        StoreFixture store;
        store.write(QStringLiteral("sub/x.42.y"), "mine");
        store.write(leadFile, "x");
        const LibraryWriteResult result = store.remove({42});
        QVERIFY(result.hasError() && !result.isTidy);
        // What lies in a directory below is none of the patch's files.
        QVERIFY(result.areFilesRemoved && result.state.idsToRemove.isEmpty());
        QVERIFY(store.lines.take().contains(QStringLiteral("Could not remove file x.42.y")));
        QCOMPARE(store.files(), (QStringList{QStringLiteral("sub/x.42.y"), libraryFile}));
    }
};

VELGOR_TEST(TestLibraryWriterMoves)
#include "tst_LibraryWriterMoves.moc"
