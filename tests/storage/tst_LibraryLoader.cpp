#include "DiagnosticRecorder.h"
#include "DirectoryWatch.h"
#include "LoadedLibrary.h"
#include "StoredThree.h"
#include "TemporaryFiles.h"
#include "TestLibraries.h"
#include "TestProgram.h"

#include <QElapsedTimer>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace StoredThree;

class TestLibraryLoader : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<DiagnosticRecorder> m_lines;

private Q_SLOTS:
    void init() { m_lines = std::make_unique<DiagnosticRecorder>(); }
    void cleanup() { m_lines.reset(); }

    void storedLibraryComesBackComplete()
    {
        LibraryDirectory directory;
        stored(directory);
        m_lines->take();
        const LibraryLoadResult result = load(directory);
        QVERIFY(result.library);
        QVERIFY(areIdentical(result.library->patches, three().patches));
        QCOMPARE(result.library->defaultPatch, std::optional(quint64(43)));
        const QList<quint64> ids = TestPatches::ids(three().patches);
        const auto library = libraryOf(result.library);
        QCOMPARE(library->order(), ids);
        library->sort();
        QVERIFY(TestPatches::ids(library->patches()) != ids);
        library->sort();
        QCOMPARE(TestPatches::ids(library->patches()), ids);
        QVERIFY(!result.readError && result.writeState.filesToKeep.isEmpty());
        QCOMPARE(m_lines->take(), QStringList{loading});
    }

    void patchNamedWithASlashIsLoadedFromItsFile()
    {
        LibraryDirectory directory;
        stored(directory);
        QVERIFY(directory.has(QStringLiteral("lib-A$B.43.prst")));
        QVERIFY(loadedNames(directory).contains(QStringLiteral("A/B")));
    }

    void directoryWithoutLibraryFileIsANewLibrary()
    {
        const LibraryDirectory directory;
        const LibraryLoadResult result = load(directory);
        QVERIFY(!result.library);
        QVERIFY(!result.readError && result.writeState.filesToKeep.isEmpty());
        QVERIFY(!result.problem);
        QCOMPARE(m_lines->take(), (QStringList{loading, QStringLiteral("New library")}));
        QCOMPARE(directory.files(), QStringList());
    }

    void garbledLibraryFileIsAReadErrorAndStays()
    {
        const LibraryDirectory directory;
        directory.write(libraryFile, "{\"patches\":[{");
        const LibraryLoadResult result = load(directory);
        QVERIFY(!result.library);
        QVERIFY(result.readError && !result.writeState.filesToKeep.isEmpty());
        QCOMPARE(result.problem.value_or(Problem()).where, directory.filePath(libraryFile));
        QCOMPARE(m_lines->take(), (QStringList{loading, QStringLiteral("Cannot decode library")}));
        QCOMPARE(directory.read(libraryFile), QByteArray("{\"patches\":[{"));
    }

    void emptyPatchListGivesNoLibrary()
    {
        const LibraryDirectory directory;
        directory.write(libraryFile, LibraryJson::encode({}));
        const LibraryLoadResult result = load(directory);
        QVERIFY(!result.library);
        QVERIFY(!result.readError && result.writeState.filesToKeep.isEmpty());
        QCOMPARE(m_lines->take(),
            (QStringList{loading, QStringLiteral("Nothing to load into library"),
                QStringLiteral("Incomplete library loading: 0 out of 0")}));
    }

    void missingPatchFileDropsThatPatchOnly()
    {
        LibraryDirectory directory;
        stored(directory);
        QFile::remove(directory.filePath(QStringLiteral("lib-A$B.43.prst")));
        m_lines->take();
        const LibraryLoadResult result = load(directory);
        QVERIFY(result.library);
        QCOMPARE(TestPatches::ids(result.library->patches), (QList<quint64>{42, 44}));
        QCOMPARE(libraryOf(result.library)->order(), (QList<quint64>{42, 44}));
        QCOMPARE(result.droppedPatches, QStringList{QStringLiteral("A/B")});
        QVERIFY(!result.writeState.filesToKeep.isEmpty() && !result.readError);
        QCOMPARE(m_lines->take(),
            (QStringList{loading,
                QStringLiteral("Could not open file://") + directory.filePath(QStringLiteral("lib-A$B.43.prst")),
                QStringLiteral("Incomplete library loading: 2 out of 3")}));
    }

    void unreadablePatchFileDropsThePatch()
    {
        LibraryDirectory directory;
        stored(directory);
        directory.write(leadFile, directory.read(leadFile).chopped(10));
        m_lines->take();
        const LibraryLoadResult result = load(directory);
        QCOMPARE(result.droppedPatches, QStringList{QStringLiteral("Lead")});
        const QStringList lines = m_lines->take();
        QCOMPARE(lines.last(), QStringLiteral("Incomplete library loading: 2 out of 3"));
        QVERIFY(lines.filter(QStringLiteral("Could not open")).isEmpty());
    }

    void allPatchesMissingGivesNoLibraryButKeepsTheFile()
    {
        const LibraryDirectory directory;
        directory.write(libraryFile, LibraryJson::encode(three()));
        const LibraryLoadResult result = load(directory);
        QVERIFY(!result.library);
        QVERIFY(!result.writeState.filesToKeep.isEmpty() && !result.readError);
        QCOMPARE(result.droppedPatches.size(), 3);
    }

    void fileUnderAnOldNameIsFoundByItsId_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("old patch name") << QStringLiteral("lib-Old name.42.prst");
        QTest::newRow("renamed by the user") << QStringLiteral("my.42.backup");
        QTest::newRow("hidden") << QStringLiteral(".42.prst");
    }

    void fileUnderAnOldNameIsFoundByItsId()
    {
        QFETCH(const QString, name);
        LibraryDirectory directory;
        stored(directory);
        QVERIFY(QFile::rename(directory.filePath(leadFile), directory.filePath(name)));
        const auto before = directory.stamps();
        m_lines->take();
        const LibraryLoadResult result = load(directory);
        QVERIFY(result.library);
        QVERIFY(areIdentical(result.library->patches, three().patches));
        QVERIFY(result.writeState.filesToKeep.isEmpty());
        QCOMPARE(m_lines->take(), QStringList{loading});
        QCOMPARE(directory.stamps(), before);
    }

    void damagedFileGivesWayToAGoodOneOfItsId()
    {
        LibraryDirectory directory;
        stored(directory);
        directory.write(QStringLiteral("lib-Old.42.prst"), directory.read(leadFile));
        directory.write(leadFile, "damaged");
        QVERIFY(areIdentical(loaded(directory), three().patches));
    }

    void whatIsNotThePatchsFileIsNotTaken_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("bytes");
        const QByteArray good = patchBytes(three().patches.first());
        QTest::newRow("file of another patch") << QStringLiteral("lib-Amp.42.x.77.prst") << good;
        QTest::newRow("another id") << QStringLiteral("lib-Lead.421.prst") << good;
        QTest::newRow("notes") << QStringLiteral("notes.42.txt") << QByteArray("notes");
        QTest::newRow("a list of patches") << QStringLiteral("list.42.prst")
                                           << TestRecords::fileBytes({TestRecords::patch(QStringLiteral("a")),
                                                  TestRecords::patch(QStringLiteral("b"))});
    }

    void whatIsNotThePatchsFileIsNotTaken()
    {
        QFETCH(const QString, name);
        QFETCH(const QByteArray, bytes);
        LibraryDirectory directory;
        stored(directory);
        QFile::remove(directory.filePath(leadFile));
        directory.write(name, bytes);
        QCOMPARE(load(directory).droppedPatches, QStringList{QStringLiteral("Lead")});
    }

    void whatIsNoRegularFileIsRefusedAtOnce_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("kind");
        for (const QString &name : {leadFile, libraryFile}) {
            for (const char *kind : {"pipe", "directory", "link", "link to a device", "link to nothing"}) {
                QTest::addRow("%s as %s", qPrintable(name), kind) << name << QString::fromLatin1(kind);
            }
        }
    }

    void whatIsNoRegularFileIsRefusedAtOnce()
    {
        QFETCH(const QString, name);
        QFETCH(const QString, kind);
        LibraryDirectory directory;
        stored(directory);
        const QString path = directory.filePath(name);
        const QString outside = directory.parentPath() + QStringLiteral("/outside");
        QVERIFY(QFile::rename(path, outside));
        if (kind == QStringLiteral("pipe")) {
            QVERIFY(mkfifo(QFile::encodeName(path).constData(), 0600) == 0);
        } else if (kind == QStringLiteral("directory")) {
            QVERIFY(QDir().mkdir(path));
        } else if (kind == QStringLiteral("link to a device")) {
            QVERIFY(QFile::link(QStringLiteral("/dev/zero"), path));
        } else {
            QVERIFY(QFile::link(kind == QStringLiteral("link") ? outside : outside + u'x', path));
        }
        QElapsedTimer timer;
        timer.start();
        const LibraryLoadResult result = load(directory);
        QVERIFY(timer.elapsed() < 2000);
        // The link may be to a disk that is back tomorrow.
        const bool isUnread = name == leadFile && kind.startsWith(QStringLiteral("link"));
        QCOMPARE(result.writeState.unread.patches.contains(42), isUnread);
        QCOMPARE(result.writeState.filesToKeep.isEmpty(), isUnread);
        if (name == libraryFile) {
            QVERIFY(!result.library && !result.readError);
            QCOMPARE(result.problem.value_or(Problem()).where, path);
            QCOMPARE(m_lines->take().last(), QStringLiteral("New library"));
        } else {
            QCOMPARE(result.droppedPatches, QStringList{QStringLiteral("Lead")});
        }
    }

    void loadingChangesNothing()
    {
        LibraryDirectory directory;
        stored(directory);
        QFile::remove(directory.filePath(leadFile));
        directory.write(libraryCopy, "{");
        directory.write(QStringLiteral("notes.43.txt"), "mine");
        directory.write(TemporaryFiles::prefix() + QStringLiteral("x"), "left over");
        const auto before = directory.stamps();
        QVERIFY(load(directory).library);
        QCOMPARE(directory.stamps(), before);
    }

    void directoryThatIsReplacedMeanwhileIsLoadedWhole()
    {
        LibraryDirectory directory;
        stored(directory);
        const QString former = directory.path() + QStringLiteral(".former");
        // As a program does that restores the directory from a backup.
        const auto replace = [&] {
            QVERIFY(QDir().rename(directory.path(), former));
            QVERIFY(QDir().mkdir(directory.path()));
            for (const QString &name : QDir(former).entryList(QDir::Files)) {
                QVERIFY(QFile::copy(former + u'/' + name, directory.filePath(name)));
            }
            QVERIFY(QDir(former).removeRecursively());
        };
        const auto replaceOnce = [&replace](qsizetype loaded, qsizetype) {
            if (loaded == 1) {
                replace();
            }
            return true;
        };
        const LibraryLoadResult result = LibraryLoader(directory.path(), replaceOnce).load();
        QVERIFY(result.library);
        QVERIFY(areIdentical(result.library->patches, three().patches));
        QVERIFY(result.droppedPatches.isEmpty());
    }

    void directoryIsListedAtMostOnce()
    {
        LibraryDirectory directory;
        stored(directory);
        DirectoryWatch watch(directory.path());
        QVERIFY(watch.isWatching());
        QVERIFY(load(directory).library);
        watch.look();
        QCOMPARE(watch.scans, 0);
        QCOMPARE(watch.opened.size(), 4);
        for (const char *name : {"lib-Lead.42.prst", "lib-Clean.44.prst"}) {
            const QString file = QString::fromLatin1(name);
            QVERIFY(QFile::rename(directory.filePath(file), directory.filePath(QStringLiteral("x") + file)));
        }
        watch.look();
        QVERIFY(areIdentical(loaded(directory), three().patches));
        watch.look();
        QCOMPARE(watch.scans, 1);
    }

    void namesThatFileSystemsDoNotTakeAreFoundAgain_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("slash") << QStringLiteral("a/b/../c");
        QTest::newRow("NUL") << QString(QStringLiteral("a") + QChar(u'\0') + QStringLiteral("b"));
        QTest::newRow("newline") << QStringLiteral("a\nb\r");
        QTest::newRow("another id") << QStringLiteral("Amp.77.x");
        QTest::newRow("its own id") << QStringLiteral("Amp.42.x");
        QTest::newRow("emoji") << QString::fromUtf8("🎸👩‍🎤");
        QTest::newRow("composed and decomposed") << QString::fromUtf8("ä\u0061\u0308");
        QTest::newRow("byte-order mark") << QString(QChar(0xFEFF));
        QTest::newRow("empty") << QString();
        QTest::newRow("dots") << QStringLiteral("...");
        QTest::newRow("too long") << QString(1000, u'x');
        QTest::newRow("too long, four bytes each") << QString::fromUtf8("🎸").repeated(200);
        QTest::newRow("pattern") << QStringLiteral("*?[a]\\");
    }

    void namesThatFileSystemsDoNotTakeAreFoundAgain()
    {
        QFETCH(const QString, name);
        const LibraryDirectory directory;
        LibraryState library = one(QStringLiteral("Plain"));
        library.patches.append(TestLibraries::patch(QStringLiteral("Neighbour"), 77, 5));
        QVERIFY(!save(directory, library).hasError());
        library.patches.first().name = name;
        const LibraryWriteResult result = save(directory, library);
        QVERIFY2(!result.hasError(), qPrintable(result.problems.join(u'\n')));
        QCOMPARE(result.written, 0);
        QCOMPARE(directory.files().size(), 3);
        QVERIFY(areIdentical(loaded(directory), library.patches));
        const auto before = directory.stamps();
        QCOMPARE(save(directory, library).written, 0);
        auto after = directory.stamps();
        after.insert(libraryFile, before.value(libraryFile));
        QCOMPARE(after, before);
    }
};

VELGOR_TEST(TestLibraryLoader)
#include "tst_LibraryLoader.moc"
