#include "DiagnosticRecorder.h"
#include "StoredThree.h"
#include "TestLibraries.h"
#include "TestProgram.h"

#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace StoredThree;

class TestLoaderCopies : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<DiagnosticRecorder> m_lines;

private Q_SLOTS:
    void init() { m_lines = std::make_unique<DiagnosticRecorder>(); }
    void cleanup() { m_lines.reset(); }

    void secondOfTwoEqualIdsGetsAFreshOneAndItsOwnFile()
    {
        const LibraryDirectory directory;
        const VelgorPatch first = TestLibraries::patch(QStringLiteral("First"), 42, 1);
        const VelgorPatch second = TestLibraries::patch(QStringLiteral("Second"), 42, 2);
        const VelgorPatch third = TestLibraries::patch(QStringLiteral("Third"), 42, 3);
        writeEntries(directory, {first, second, third});
        const LibraryLoadResult result = load(directory);
        QVERIFY(result.library);
        const QList<VelgorPatch> patches = result.library->patches;
        QCOMPARE(TestPatches::names(patches), TestPatches::names({first, second, third}));
        QCOMPARE(patches.at(0).id(), quint64(42));
        QVERIFY(patches.at(1).id() != 42 && patches.at(2).id() != 42 && patches.at(1).id() != patches.at(2).id());
        QCOMPARE(patches.at(0).records->patchData, first.records->patchData);
        QCOMPARE(patches.at(1).records->patchData, second.records->patchData);
        QCOMPARE(patches.at(2).records->patchData, third.records->patchData);

        QVERIFY(!save(directory, {patches, std::nullopt}, stateAfter(result)).hasError());
        QVERIFY(areIdentical(loaded(directory), patches));
    }

    void firstOfTwoEqualIdsKeepsItsSoundWhenRenamed()
    {
        // In which order a directory gives its names is open: several pairs, so that some are in the wrong one.
        const LibraryDirectory directory;
        QList<VelgorPatch> entries;
        for (quint64 id = 1; id <= 8; ++id) {
            entries.append(TestLibraries::patch(QStringLiteral("First"), id, static_cast<int>(id)));
            entries.append(TestLibraries::patch(QStringLiteral("Second"), id, static_cast<int>(id) + 100));
        }
        writeEntries(directory, entries);
        const LibraryLoadResult result = load(directory);
        QVERIFY(result.library);
        QList<VelgorPatch> patches = result.library->patches;
        for (VelgorPatch &patch : patches) {
            patch.name += QStringLiteral(" renamed");
        }
        QVERIFY(!save(directory, {patches, std::nullopt}, stateAfter(result)).hasError());
        QVERIFY(areIdentical(loaded(directory), patches));
    }

    void equalIdsWithEqualNamesShareTheFile()
    {
        const LibraryDirectory directory;
        const VelgorPatch patch = TestLibraries::patch(QStringLiteral("Same"), 42, 1);
        writeEntries(directory, {patch, patch});
        const LibraryLoadResult result = load(directory);
        QVERIFY(result.library);
        QCOMPARE(result.library->patches.size(), 2);
        QVERIFY(!save(directory, {result.library->patches, std::nullopt}, stateAfter(result)).hasError());
        QVERIFY(areIdentical(loaded(directory), result.library->patches));
    }

    void secondOfTwoEqualIdsDoesNotTakeTheFirstOnesSound()
    {
        const LibraryDirectory directory;
        const VelgorPatch first = TestLibraries::patch(QStringLiteral("First"), 42, 1);
        const VelgorPatch second = TestLibraries::patch(QStringLiteral("Second"), 42, 2);
        writeEntries(directory, {first, second});
        QFile::remove(directory.filePath(QStringLiteral("lib-Second.42.prst")));
        QCOMPARE(load(directory).droppedPatches, QStringList{QStringLiteral("Second")});
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
        LibraryDirectory directory;
        stored(directory);
        const QByteArray text = directory.read(libraryFile);
        QVERIFY(QFile::rename(directory.filePath(libraryFile), directory.filePath(libraryCopy)));
        if (left != -1) {
            directory.write(libraryFile, left < 0 ? text.chopped(1) : text.first(left));
        }
        m_lines->take();
        const LibraryLoadResult result = load(directory);
        QVERIFY(result.library);
        QVERIFY(areIdentical(result.library->patches, three().patches));
        QVERIFY(!result.readError);
        // A part of the copy holds nothing that the copy does not.
        QVERIFY(result.writeState.filesToKeep.isEmpty());
        const QStringList lines = m_lines->take();
        QCOMPARE(lines.size(), 2);
        QVERIFY(lines.last().contains(directory.filePath(libraryCopy)));
        QCOMPARE(directory.read(libraryCopy), text);
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
        LibraryDirectory directory;
        stored(directory);
        directory.write(libraryCopy, copy);
        QVERIFY(areIdentical(loaded(directory), three().patches));
    }

    void damagedLibraryFileAndDamagedCopyAreAReadError()
    {
        const LibraryDirectory directory;
        directory.write(libraryFile, "{");
        directory.write(libraryCopy, "{");
        const LibraryLoadResult result = load(directory);
        QVERIFY(!result.library && result.readError && !result.writeState.filesToKeep.isEmpty());
        QCOMPARE(directory.files().size(), 2);
    }

    void copyThatIsALinkIsNotFollowed()
    {
        LibraryDirectory directory;
        stored(directory);
        const QString outside = directory.parentPath() + QStringLiteral("/outside");
        QVERIFY(QFile::rename(directory.filePath(libraryFile), outside));
        QVERIFY(QFile::link(outside, directory.filePath(libraryCopy)));
        QVERIFY(!load(directory).library);
    }
};

VELGOR_TEST(TestLoaderCopies)
#include "tst_LoaderCopies.moc"
