#include "StoreFixture.h"
#include "TestProgram.h"

#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace TestLibraries;

class TestLoaderCopies : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void secondOfTwoEqualIdsGetsAFreshOneAndItsOwnFile()
    {
        StoreFixture store;
        const VelgorPatch first = TestLibraries::patch(QStringLiteral("First"), 42, 1);
        const VelgorPatch second = TestLibraries::patch(QStringLiteral("Second"), 42, 2);
        const VelgorPatch third = TestLibraries::patch(QStringLiteral("Third"), 42, 3);
        store.writeEntries({{first, second, third}, std::nullopt});
        const LibraryLoadResult result = store.load();
        QVERIFY(result.library);
        const QList<VelgorPatch> patches = result.library->patches;
        QCOMPARE(TestPatches::names(patches), TestPatches::names({first, second, third}));
        QCOMPARE(patches.at(0).id(), quint64(42));
        QVERIFY(patches.at(1).id() != 42 && patches.at(2).id() != 42 && patches.at(1).id() != patches.at(2).id());
        QCOMPARE(patches.at(0).records->patchData, first.records->patchData);
        QCOMPARE(patches.at(1).records->patchData, second.records->patchData);
        QCOMPARE(patches.at(2).records->patchData, third.records->patchData);

        QVERIFY(!store.save({patches, std::nullopt}, result.writeState).hasError());
        QVERIFY(store.holds(patches));
    }

    void firstOfTwoEqualIdsKeepsItsSoundWhenRenamed()
    {
        // In which order a directory gives its names is open: several pairs, so that some are in the wrong one.
        StoreFixture store;
        QList<VelgorPatch> entries;
        for (quint64 id = 1; id <= 8; ++id) {
            entries.append(TestLibraries::patch(QStringLiteral("First"), id, static_cast<int>(id)));
            entries.append(TestLibraries::patch(QStringLiteral("Second"), id, static_cast<int>(id) + 100));
        }
        store.writeEntries({entries, std::nullopt});
        const LibraryLoadResult result = store.load();
        QVERIFY(result.library);
        QList<VelgorPatch> patches = result.library->patches;
        for (VelgorPatch &patch : patches) {
            patch.name += QStringLiteral(" renamed");
        }
        QVERIFY(!store.save({patches, std::nullopt}, result.writeState).hasError());
        QVERIFY(store.holds(patches));
    }

    void equalIdsWithEqualNamesShareTheFile()
    {
        StoreFixture store;
        const VelgorPatch patch = TestLibraries::patch(QStringLiteral("Same"), 42, 1);
        store.writeEntries({{patch, patch}, std::nullopt});
        const LibraryLoadResult result = store.load();
        QVERIFY(result.library);
        QCOMPARE(result.library->patches.size(), 2);
        QVERIFY(!store.save({result.library->patches, std::nullopt}, result.writeState).hasError());
        QVERIFY(store.holds(result.library->patches));
    }

    void secondOfTwoEqualIdsDoesNotTakeTheFirstOnesSound()
    {
        StoreFixture store;
        const VelgorPatch first = TestLibraries::patch(QStringLiteral("First"), 42, 1);
        const VelgorPatch second = TestLibraries::patch(QStringLiteral("Second"), 42, 2);
        store.writeEntries({{first, second}, std::nullopt});
        QFile::remove(store.filePath(QStringLiteral("lib-Second.42.prst")));
        QCOMPARE(store.load().droppedPatches, QStringList{QStringLiteral("Second")});
    }

    void completeCopyStandsInForADamagedLibraryFile_data()
    {
        QTest::addColumn<int>("left");
        QTest::newRow("missing") << -1;
        QTest::newRow("empty") << 0;
        QTest::newRow("one byte") << 1;
        QTest::newRow("half") << 300;
        QTest::newRow("all but one byte") << -2;
    }

    void completeCopyStandsInForADamagedLibraryFile()
    {
        QFETCH(const int, left);
        StoreFixture store(three());
        const QByteArray text = store.read(libraryFile);
        QVERIFY(QFile::rename(store.filePath(libraryFile), store.filePath(libraryCopy)));
        if (left != -1) {
            store.write(libraryFile, left < 0 ? text.chopped(1) : text.first(left));
        }
        store.lines.take();
        const LibraryLoadResult result = store.load();
        QVERIFY(result.library);
        QVERIFY(areIdentical(result.library->patches, three().patches));
        QVERIFY(!result.readError);
        // A part of the copy holds nothing that the copy does not.
        QVERIFY(result.writeState.filesToKeep.isEmpty());
        const QStringList lines = store.lines.take();
        QCOMPARE(lines.size(), 2);
        QVERIFY(lines.last().contains(store.filePath(libraryCopy)));
        QCOMPARE(store.read(libraryCopy), text);
    }

    void wholeLibraryFileComesBeforeAnyCopy_data()
    {
        QTest::addColumn<QByteArray>("copy");
        const QByteArray text = LibraryJson::encode(one(QStringLiteral("Newer")));
        QTest::newRow("cut") << text.first(20);
        QTest::newRow("whole") << text;
    }

    void wholeLibraryFileComesBeforeAnyCopy()
    {
        QFETCH(const QByteArray, copy);
        StoreFixture store(three());
        store.write(libraryCopy, copy);
        QVERIFY(store.holds(three().patches));
    }

    void damagedLibraryFileAndDamagedCopyAreAReadError()
    {
        StoreFixture store;
        store.write(libraryFile, "{");
        store.write(libraryCopy, "{");
        const LibraryLoadResult result = store.load();
        QVERIFY(!result.library && result.readError && !result.writeState.filesToKeep.isEmpty());
        QCOMPARE(store.files().size(), 2);
    }

    void copyThatIsALinkIsNotFollowed()
    {
        StoreFixture store(three());
        const QString outside = store.parentPath() + QStringLiteral("/outside");
        QVERIFY(QFile::rename(store.filePath(libraryFile), outside));
        QVERIFY(QFile::link(outside, store.filePath(libraryCopy)));
        QVERIFY(!store.load().library);
    }
};

VELGOR_TEST(TestLoaderCopies)
#include "tst_LoaderCopies.moc"
