#include "DirectoryWatch.h"
#include "StoreFixture.h"
#include "TemporaryFiles.h"
#include "TestProgram.h"

#include <QElapsedTimer>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace TestLibraries;

namespace {

const QString loading = QStringLiteral("Loading library from directory");

} // namespace

class TestLibraryLoader : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void storedLibraryComesBackComplete()
    {
        StoreFixture store(three());
        const LibraryLoadResult result = store.load();
        QVERIFY(result.library);
        QVERIFY(areIdentical(result.library->patches, three().patches));
        QCOMPARE(result.library->defaultPatch, std::optional(quint64(43)));
        const QList<quint64> ids = TestPatches::ids(three().patches);
        VelgorLibrary &library = store.library;
        library.adopt(*result.library);
        QCOMPARE(library.order(), ids);
        library.sort();
        QVERIFY(TestPatches::ids(library.patches()) != ids);
        library.sort();
        QCOMPARE(TestPatches::ids(library.patches()), ids);
        QVERIFY(!result.readError && result.writeState.filesToKeep.isEmpty());
        QCOMPARE(store.lines.take(), QStringList{loading});
    }

    void patchNamedWithASlashIsLoadedFromItsFile()
    {
        StoreFixture store(three());
        QVERIFY(store.has(QStringLiteral("lib-A$B.43.prst")));
        QVERIFY(store.loadedNames().contains(QStringLiteral("A/B")));
    }

    void directoryWithoutLibraryFileIsANewLibrary()
    {
        StoreFixture store;
        const LibraryLoadResult result = store.load();
        QVERIFY(!result.library);
        QVERIFY(!result.readError && result.writeState.filesToKeep.isEmpty());
        QVERIFY(!result.problem);
        QCOMPARE(store.lines.take(), (QStringList{loading, QStringLiteral("New library")}));
        QCOMPARE(store.files(), QStringList());
    }

    void garbledLibraryFileIsAReadErrorAndStays()
    {
        StoreFixture store;
        store.write(libraryFile, "{\"patches\":[{");
        const LibraryLoadResult result = store.load();
        QVERIFY(!result.library);
        QVERIFY(result.readError && !result.writeState.filesToKeep.isEmpty());
        QCOMPARE(result.problem.value_or(Problem()).where, store.filePath(libraryFile));
        QCOMPARE(store.lines.take(), (QStringList{loading, QStringLiteral("Cannot decode library")}));
        QCOMPARE(store.read(libraryFile), QByteArray("{\"patches\":[{"));
    }

    void emptyPatchListGivesNoLibrary()
    {
        StoreFixture store;
        store.write(libraryFile, LibraryJson::encode({}));
        const LibraryLoadResult result = store.load();
        QVERIFY(!result.library);
        QVERIFY(!result.readError && result.writeState.filesToKeep.isEmpty());
        QCOMPARE(store.lines.take(),
            (QStringList{loading, QStringLiteral("Nothing to load into library"),
                QStringLiteral("Incomplete library loading: 0 out of 0")}));
    }

    void missingPatchFileDropsThatPatchOnly()
    {
        StoreFixture store(three());
        QFile::remove(store.filePath(QStringLiteral("lib-A$B.43.prst")));
        store.lines.take();
        const LibraryLoadResult result = store.load();
        QVERIFY(result.library);
        QCOMPARE(TestPatches::ids(result.library->patches), (QList<quint64>{42, 44}));
        store.library.adopt(*result.library);
        QCOMPARE(store.library.order(), (QList<quint64>{42, 44}));
        QCOMPARE(result.droppedPatches, QStringList{QStringLiteral("A/B")});
        QVERIFY(!result.writeState.filesToKeep.isEmpty() && !result.readError);
        QCOMPARE(store.lines.take(),
            (QStringList{loading,
                QStringLiteral("Could not open file://") + store.filePath(QStringLiteral("lib-A$B.43.prst")),
                QStringLiteral("Incomplete library loading: 2 out of 3")}));
    }

    void unreadablePatchFileDropsThePatch()
    {
        StoreFixture store(three());
        store.write(leadFile, store.read(leadFile).chopped(10));
        store.lines.take();
        const LibraryLoadResult result = store.load();
        QCOMPARE(result.droppedPatches, QStringList{QStringLiteral("Lead")});
        const QStringList lines = store.lines.take();
        QCOMPARE(lines.last(), QStringLiteral("Incomplete library loading: 2 out of 3"));
        QVERIFY(lines.filter(QStringLiteral("Could not open")).isEmpty());
    }

    void allPatchesMissingGivesNoLibraryButKeepsTheFile()
    {
        StoreFixture store;
        store.write(libraryFile, LibraryJson::encode(three()));
        const LibraryLoadResult result = store.load();
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
        StoreFixture store(three());
        QVERIFY(QFile::rename(store.filePath(leadFile), store.filePath(name)));
        const auto before = store.stamps();
        store.lines.take();
        const LibraryLoadResult result = store.load();
        QVERIFY(result.library);
        QVERIFY(areIdentical(result.library->patches, three().patches));
        QVERIFY(result.writeState.filesToKeep.isEmpty());
        QCOMPARE(store.lines.take(), QStringList{loading});
        QCOMPARE(store.stamps(), before);
    }

    void damagedFileGivesWayToAGoodOneOfItsId()
    {
        StoreFixture store(three());
        store.write(QStringLiteral("lib-Old.42.prst"), store.read(leadFile));
        store.write(leadFile, "damaged");
        QVERIFY(store.holds(three().patches));
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
        StoreFixture store(three());
        QFile::remove(store.filePath(leadFile));
        store.write(name, bytes);
        QCOMPARE(store.load().droppedPatches, QStringList{QStringLiteral("Lead")});
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
        StoreFixture store(three());
        const QString path = store.filePath(name);
        const QString outside = store.parentPath() + QStringLiteral("/outside");
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
        const LibraryLoadResult result = store.load();
        QVERIFY(timer.elapsed() < 2000);
        // The link may be to a disk that is back tomorrow.
        const bool isUnread = name == leadFile && kind.startsWith(QStringLiteral("link"));
        QCOMPARE(result.writeState.unread.patches.contains(42), isUnread);
        QCOMPARE(result.writeState.filesToKeep.isEmpty(), isUnread);
        if (name == libraryFile) {
            QVERIFY(!result.library && !result.readError);
            QCOMPARE(result.problem.value_or(Problem()).where, path);
            QCOMPARE(store.lines.take().last(), QStringLiteral("New library"));
        } else {
            QCOMPARE(result.droppedPatches, QStringList{QStringLiteral("Lead")});
        }
    }

    void loadingChangesNothing()
    {
        StoreFixture store(three());
        QFile::remove(store.filePath(leadFile));
        store.write(libraryCopy, "{");
        store.write(QStringLiteral("notes.43.txt"), "mine");
        store.write(TemporaryFiles::prefix() + QStringLiteral("x"), "left over");
        const auto before = store.stamps();
        QVERIFY(store.load().library);
        QCOMPARE(store.stamps(), before);
    }

    void directoryThatIsReplacedMeanwhileIsLoadedWhole()
    {
        StoreFixture store(three());
        const QString former = store.path() + QStringLiteral(".former");
        // As a program does that restores the directory from a backup.
        const auto replace = [&] {
            QVERIFY(QDir().rename(store.path(), former));
            QVERIFY(QDir().mkdir(store.path()));
            for (const QString &name : QDir(former).entryList(QDir::Files)) {
                QVERIFY(QFile::copy(former + u'/' + name, store.filePath(name)));
            }
            QVERIFY(QDir(former).removeRecursively());
        };
        const auto replaceOnce = [&replace](qsizetype loaded, qsizetype) {
            if (loaded == 1) {
                replace();
            }
            return true;
        };
        const LibraryLoadResult result = LibraryLoader(store.path(), replaceOnce).load();
        QVERIFY(result.library);
        QVERIFY(areIdentical(result.library->patches, three().patches));
        QVERIFY(result.droppedPatches.isEmpty());
    }

    void directoryIsListedAtMostOnce()
    {
        StoreFixture store(three());
        DirectoryWatch watch(store.path());
        QVERIFY(watch.isWatching());
        QVERIFY(store.load().library);
        watch.look();
        QCOMPARE(watch.scans, 0);
        QCOMPARE(watch.opened.size(), 4);
        for (const char *name : {"lib-Lead.42.prst", "lib-Clean.44.prst"}) {
            const QString file = QString::fromLatin1(name);
            QVERIFY(QFile::rename(store.filePath(file), store.filePath(QStringLiteral("x") + file)));
        }
        watch.look();
        QVERIFY(store.holds(three().patches));
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
        StoreFixture store;
        LibraryState library = one(QStringLiteral("Plain"));
        library.patches.append(TestLibraries::patch(QStringLiteral("Neighbour"), 77, 5));
        QVERIFY(!store.save(library).hasError());
        library.patches.first().name = name;
        const LibraryWriteResult result = store.save(library);
        QVERIFY2(!result.hasError(), qPrintable(result.problems.join(u'\n')));
        QCOMPARE(result.written, 0);
        QCOMPARE(store.files().size(), 3);
        QVERIFY(store.holds(library.patches));
        const auto before = store.stamps();
        QCOMPARE(store.save(library).written, 0);
        auto after = store.stamps();
        after.insert(libraryFile, before.value(libraryFile));
        QCOMPARE(after, before);
    }
};

VELGOR_TEST(TestLibraryLoader)
#include "tst_LibraryLoader.moc"
