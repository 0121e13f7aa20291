#include "DiagnosticRecorder.h"
#include "TemporaryFiles.h"
#include "TestLibraries.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QTest>

using namespace TestLibraries;

namespace {

const QString libraryFile = LibraryFileNames::libraryFile();
const QString libraryCopy = LibraryFileNames::libraryCopy();
const QString leadFile = QStringLiteral("lib-Lead.42.prst");

QStringList sorted(QStringList names)
{
    names.sort();
    return names;
}

} // namespace

class TestLibraryWriterMoves : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<DiagnosticRecorder> m_lines;

private Q_SLOTS:
    void init() { m_lines = std::make_unique<DiagnosticRecorder>(); }
    void cleanup() { m_lines.reset(); }

    // Moving

    void oldAndNewFileStayBoth()
    {
        const LibraryDirectory directory;
        const QByteArray bytes = patchBytes(one(QStringLiteral("New")).patches.first());
        directory.write(QStringLiteral("lib-Old.42.prst"), "old");
        directory.write(QStringLiteral("lib-New.42.prst"), bytes);
        const LibraryWriteResult result = save(directory, one(QStringLiteral("New")));
        QCOMPARE(result.written, 0);
        QVERIFY(!result.hasError());
        QCOMPARE(directory.read(QStringLiteral("lib-Old.42.prst")), QByteArray("old"));
        QCOMPARE(directory.read(QStringLiteral("lib-New.42.prst")), bytes);
    }

    void foreignFileWithTheIdIsNeverThePatchs()
    {
        const LibraryDirectory directory;
        const QString notes = QStringLiteral("notes.42.txt");
        directory.write(notes, "mine");
        const LibraryWriteResult result = save(directory, one(QStringLiteral("Lead")));
        QCOMPARE(result.written, 1);
        QCOMPARE(directory.read(notes), QByteArray("mine"));
        QCOMPARE(directory.read(leadFile), patchBytes(one(QStringLiteral("Lead")).patches.first()));
        QVERIFY(result.hasError() && result.problems.join(u'\n').contains(notes));
        QVERIFY(m_lines->take().contains(
            QStringLiteral("Error renaming item file://") + QDir::currentPath() + u'/' + notes));
        // Told once, later saves leave it in peace.
        QVERIFY(!save(directory, one(QStringLiteral("Lead")), result.state).hasError());
        QCOMPARE(directory.read(notes), QByteArray("mine"));
    }

    void usersCopyOfThePatchBecomesItsFileWhereThereIsNone()
    {
        const LibraryDirectory directory;
        const LibraryState library = one(QStringLiteral("Lead"));
        directory.write(QStringLiteral("x.42.prst"), patchBytes(library.patches.first()));
        const LibraryWriteResult result = save(directory, library);
        QVERIFY(!result.hasError());
        QCOMPARE(result.written, 0);
        QCOMPARE(directory.files(), (QStringList{leadFile, libraryFile}));
    }

    void fileNamedForThePatchGoesBeforeAUsersCopy()
    {
        const LibraryDirectory directory;
        const LibraryState library = one(QStringLiteral("Lead"));
        const QByteArray bytes = patchBytes(library.patches.first());
        directory.write(QStringLiteral("a.42.prst"), bytes);
        directory.write(QStringLiteral("lib-Old.42.prst"), bytes);
        directory.write(QStringLiteral("z.42.prst"), bytes);
        const LibraryWriteResult result = save(directory, library);
        QCOMPARE(result.written, 0);
        QCOMPARE(directory.files(),
            (QStringList{QStringLiteral("a.42.prst"), leadFile, libraryFile, QStringLiteral("z.42.prst")}));
        QVERIFY(!save(directory, library, result.state).hasError());
    }

    void fileOfAnotherPatchIsItsAlone()
    {
        const LibraryDirectory directory;
        const QString name = QStringLiteral("lib-Amp.42.x.77.prst");
        LibraryState library = one(QStringLiteral("Lead"));
        library.patches.append(TestLibraries::patch(QStringLiteral("Amp.42.x"), 77, 2));
        QVERIFY(!save(directory, library).hasError());
        QCOMPARE(directory.files(), (QStringList{name, leadFile, libraryFile}));
        library.patches.first().name = QStringLiteral("Renamed");
        QVERIFY(!save(directory, library).hasError());
        QVERIFY(directory.has(name));
        QVERIFY(!remove(directory, {42}).hasError());
        QCOMPARE(directory.files(), (QStringList{name, libraryFile}));
        QVERIFY(!remove(directory, {77}).hasError());
        QCOMPARE(directory.files(), QStringList{libraryFile});
    }

    void directoryWithTheIdIsNotMoved()
    {
        const LibraryDirectory directory;
        directory.write(QStringLiteral("old.42.d/notes.txt"), "mine");
        const LibraryWriteResult result = save(directory, one(QStringLiteral("Lead")));
        QVERIFY(!result.hasError());
        QCOMPARE(result.written, 1);
        QCOMPARE(directory.read(QStringLiteral("old.42.d/notes.txt")), QByteArray("mine"));
    }

    void linkWithTheIdIsNotMovedNorFollowed()
    {
        const LibraryDirectory directory;
        const LibraryState library = one(QStringLiteral("Lead"));
        const QString outside = directory.parentPath() + QStringLiteral("/outside");
        QFile file(outside);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(patchBytes(library.patches.first())) > 0);
        QVERIFY(QFile::link(outside, directory.filePath(QStringLiteral("lib-Old.42.prst"))));
        QCOMPARE(save(directory, library).written, 1);
        QVERIFY(QFileInfo(directory.filePath(QStringLiteral("lib-Old.42.prst"))).isSymLink());
        QVERIFY(QFileInfo::exists(outside));
        QVERIFY(!QFileInfo(directory.filePath(leadFile)).isSymLink());
    }

    void copyInASubdirectoryIsLookedForAtTheTop()
    {
        const LibraryDirectory directory;
        directory.write(QStringLiteral("sub/lib-Old.42.prst"), "mine");
        const LibraryWriteResult result = save(directory, one(QStringLiteral("Lead")));
        QVERIFY(result.hasError() && !result.isTidy);
        QCOMPARE(result.written, 1);
        QVERIFY(m_lines->take().contains(QStringLiteral("Error renaming item file://") + QDir::currentPath()
            + QStringLiteral("/sub/lib-Old.42.prst")));
        QCOMPARE(directory.read(QStringLiteral("sub/lib-Old.42.prst")), QByteArray("mine"));
        QVERIFY(!save(directory, one(QStringLiteral("Lead")), result.state).hasError());
    }

    // Removing

    void everyFileWithTheIdIsRemoved()
    {
        const LibraryDirectory directory;
        for (const char *name : {"lib-A.42.prst", "lib-B.42.prst", "notes.42.txt", "lib-C.421.prst", "readme.txt"}) {
            directory.write(QString::fromLatin1(name), "x");
        }
        QVERIFY(!remove(directory, {42}).hasError());
        QCOMPARE(directory.files(),
            (QStringList{QStringLiteral("lib-C.421.prst"), QStringLiteral("readme.txt"), libraryFile}));
    }

    void patchWithoutFileIsRemovedSilently()
    {
        const LibraryDirectory directory;
        directory.write(leadFile, "x");
        QVERIFY(!remove(directory, {4, 421, 2}).hasError());
        QVERIFY(!remove(directory, {}).hasError());
        QCOMPARE(directory.files(), (QStringList{leadFile, libraryFile}));
    }

    void removingTouchesNothingElse()
    {
        const LibraryDirectory directory;
        const QStringList others = sorted({LibraryFileNames::lockFile(), LibraryFileNames::datedCopy(0),
            TemporaryFiles::prefix() + QStringLiteral("a.42.b"), QStringLiteral("lib-Amp.42.x.77.prst"),
            QStringLiteral("lib-d.42.prst/inside"), QStringLiteral("old.42.d/lib-notes.txt"),
            QStringLiteral("velgorlibrary-backup.json")});
        for (const QString &name : others) {
            directory.write(name, "x");
        }
        const auto before = directory.stamps();
        QVERIFY(!remove(directory, {42}).hasError());
        auto after = directory.stamps();
        after.remove(libraryFile);
        QCOMPARE(after, before);
    }

    void removedLinkLeavesItsTarget()
    {
        const LibraryDirectory directory;
        const QString outside = directory.parentPath() + QStringLiteral("/outside");
        QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), outside));
        QVERIFY(QFile::link(outside, directory.filePath(leadFile)));
        QVERIFY(!remove(directory, {42}).hasError());
        QVERIFY(QFileInfo::exists(outside));
        QCOMPARE(directory.files(), QStringList{libraryFile});
    }

    void fileInADirectoryBelowIsReportedAndStays()
    {
        const LibraryDirectory directory;
        directory.write(QStringLiteral("sub/x.42.y"), "mine");
        directory.write(leadFile, "x");
        const LibraryWriteResult result = remove(directory, {42});
        QVERIFY(result.hasError() && !result.isTidy);
        // What lies in a directory below is none of the patch's files.
        QVERIFY(result.areFilesRemoved && result.state.idsToRemove.isEmpty());
        QVERIFY(m_lines->take().contains(QStringLiteral("Could not remove file x.42.y")));
        QCOMPARE(directory.files(), (QStringList{QStringLiteral("sub/x.42.y"), libraryFile}));
    }
};

VELGOR_TEST(TestLibraryWriterMoves)
#include "tst_LibraryWriterMoves.moc"
