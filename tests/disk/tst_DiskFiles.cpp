#include "DiskFiles.h"
#include "LibraryDirectory.h"
#include "TemporaryFiles.h"
#include "TestProgram.h"

#include <QElapsedTimer>
#include <QTest>

#include <csignal>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

const QString file = QStringLiteral("file");

void makePipe(const QString &path)
{
    if (mkfifo(QFile::encodeName(path).constData(), 0600) != 0) {
        qFatal("no pipe");
    }
}

qsizetype openHandles()
{
    return QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::AllEntries | QDir::System).size();
}

} // namespace

class TestDiskFiles : public QObject {
    Q_OBJECT

private Q_SLOTS:
    static void wholeFileIsRead()
    {
        const LibraryDirectory directory;
        for (const QByteArray &bytes : {QByteArray(), QByteArray("a\0b\r\n", 5), QByteArray(1 << 20, 'x')}) {
            directory.write(file, bytes);
            const Result<QByteArray> result =
                DiskFiles::readRegular(directory.filePath(file), DiskFiles::Links::Refuse);
            QVERIFY(result);
            QCOMPARE(*result, bytes);
        }
    }

    static void whatIsNoRegularFileIsRefusedAtOnce_data()
    {
        QTest::addColumn<QString>("kind");
        for (const char *kind : {"nothing", "directory", "pipe", "device", "link", "link to a pipe", "link to a device",
                 "link to nothing"}) {
            QTest::newRow(kind) << QString::fromLatin1(kind);
        }
    }
    static void whatIsNoRegularFileIsRefusedAtOnce()
    {
        QFETCH(const QString, kind);
        const LibraryDirectory directory;
        const QString path = directory.filePath(file);
        const QString target = directory.filePath(QStringLiteral("target"));
        if (kind == QStringLiteral("directory")) {
            QDir().mkpath(path);
        } else if (kind == QStringLiteral("pipe")) {
            makePipe(path);
        } else if (kind == QStringLiteral("link to a pipe")) {
            makePipe(target);
            QVERIFY(QFile::link(target, path));
        } else if (kind == QStringLiteral("link")) {
            directory.write(QStringLiteral("target"), "x");
            QVERIFY(QFile::link(target, path));
        } else if (kind == QStringLiteral("link to a device")) {
            QVERIFY(QFile::link(QStringLiteral("/dev/zero"), path));
        } else if (kind == QStringLiteral("link to nothing")) {
            QVERIFY(QFile::link(target, path));
        }
        const QString read = kind == QStringLiteral("device") ? QStringLiteral("/dev/zero") : path;
        QElapsedTimer timer;
        timer.start();
        const Result<QByteArray> refused = DiskFiles::readRegular(read, DiskFiles::Links::Refuse);
        QVERIFY(!refused);
        QCOMPARE(refused.problem().where, read);
        QVERIFY(!refused.problem().why.isEmpty());
        QCOMPARE(refused.problem().what == Problem::What::Absent, kind == QStringLiteral("nothing"));
        const Result<QByteArray> followed = DiskFiles::readRegular(read, DiskFiles::Links::Follow);
        QCOMPARE(bool(followed), kind == QStringLiteral("link"));
        QVERIFY(timer.elapsed() < 2000);
    }

    static void refusalsLeaveNothingOpen()
    {
        const LibraryDirectory directory;
        makePipe(directory.filePath(file));
        const qsizetype before = openHandles();
        for (int i = 0; i < 20; ++i) {
            QVERIFY(!DiskFiles::readRegular(directory.filePath(file), DiskFiles::Links::Refuse));
            QVERIFY(!DiskFiles::readRegular(directory.path(), DiskFiles::Links::Follow));
        }
        QCOMPARE(openHandles(), before);
    }

    static void fileLargerThanAnyPresetFileIsRefused()
    {
        const LibraryDirectory directory;
        directory.write(file, {});
        QVERIFY(truncate(QFile::encodeName(directory.filePath(file)).constData(), DiskFiles::largestFile + 1) == 0);
        QVERIFY(!DiskFiles::readRegular(directory.filePath(file), DiskFiles::Links::Refuse));
    }

    static void replacingPutsANewFileInPlace()
    {
        const LibraryDirectory directory;
        const QString path = directory.filePath(file);
        QVERIFY(DiskFiles::replace(path, "first"));
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
        const auto before = directory.stamps();
        QVERIFY(DiskFiles::replace(path, "second"));
        QCOMPARE(directory.read(file), QByteArray("second"));
        QCOMPARE(directory.files(), QStringList{file});
        QVERIFY(directory.stamps().value(file).section(u' ', 0, 0) != before.value(file).section(u' ', 0, 0));
        QCOMPARE(QFile::permissions(path) & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
    }

    static void replacingTakesThePlaceOfALinkOnly()
    {
        const LibraryDirectory directory;
        directory.write(QStringLiteral("target"), "mine");
        QVERIFY(QFile::link(directory.filePath(QStringLiteral("target")), directory.filePath(file)));
        QVERIFY(DiskFiles::replace(directory.filePath(file), "new"));
        QCOMPARE(directory.read(QStringLiteral("target")), QByteArray("mine"));
        QVERIFY(!QFileInfo(directory.filePath(file)).isSymLink());
        QCOMPARE(directory.read(file), QByteArray("new"));
    }

    static void replacingRefusesAnythingElse()
    {
        const LibraryDirectory directory;
        QDir(directory.path()).mkdir(file);
        makePipe(directory.filePath(QStringLiteral("pipe")));
        QVERIFY(!DiskFiles::replace(directory.filePath(file), "x"));
        QVERIFY(!DiskFiles::replace(directory.filePath(QStringLiteral("pipe")), "x"));
        QVERIFY(!DiskFiles::replace(directory.filePath(QStringLiteral("missing/file")), "x"));
        QCOMPARE(directory.files(), QStringList{QStringLiteral("pipe")});
        QVERIFY(QFileInfo(directory.filePath(file)).isDir());
    }

    static void overwritingKeepsTheFileItself()
    {
        const LibraryDirectory directory;
        directory.write(file, "a longer text");
        const QString before = directory.stamps().value(file).section(u' ', 0, 0);
        QVERIFY(DiskFiles::overwriteInPlace(directory.filePath(file), "short"));
        QCOMPARE(directory.read(file), QByteArray("short"));
        QCOMPARE(directory.stamps().value(file).section(u' ', 0, 0), before);
    }

    static void overwritingRefusesWithoutTouching()
    {
        const LibraryDirectory directory;
        directory.write(QStringLiteral("target"), "mine");
        QVERIFY(QFile::link(directory.filePath(QStringLiteral("target")), directory.filePath(QStringLiteral("link"))));
        makePipe(directory.filePath(QStringLiteral("pipe")));
        QDir(directory.path()).mkdir(QStringLiteral("directory"));
        for (const char *name : {"link", "pipe", "directory", "missing/file"}) {
            const auto written = DiskFiles::overwriteInPlace(directory.filePath(QString::fromLatin1(name)), "x");
            QVERIFY(!written && written.problem().what != Problem::What::Touched);
        }
        QCOMPARE(directory.read(QStringLiteral("target")), QByteArray("mine"));
    }

    static void fullDiskIsReportedAndLeavesTheOldFile()
    {
        // A limit on the size of files fails a write half way, as a full disk does.
        const LibraryDirectory directory;
        directory.write(file, "old");
        const QByteArray many(1 << 20, 'x');
        const pid_t child = fork();
        if (child == 0) {
            std::signal(SIGXFSZ, SIG_IGN);
            const rlimit limit{.rlim_cur = 1000, .rlim_max = 1000};
            setrlimit(RLIMIT_FSIZE, &limit);
            _exit(DiskFiles::replace(directory.filePath(file), many) ? 1 : 0);
        }
        int status = 0;
        waitpid(child, &status, 0);
        QCOMPARE(WEXITSTATUS(status), 0);
        QCOMPARE(directory.files(), QStringList{file});
        QCOMPARE(directory.read(file), QByteArray("old"));
    }

    static void stagedFileIsHiddenBesideItsTarget()
    {
        const LibraryDirectory directory;
        const OpenDirectory open(directory.path());
        const QString name = QStringLiteral("lib-A.42.prst");
        const Result<DiskFiles::Staged> staged = DiskFiles::stage(open, name, "x", {});
        QVERIFY(staged);
        QCOMPARE(directory.files(), QStringList{staged->name});
        QVERIFY(staged->name.startsWith(TemporaryFiles::prefix()));
        QVERIFY(DiskFiles::commit(open, staged->name, name));
        QCOMPARE(directory.files(), QStringList{QStringLiteral("lib-A.42.prst")});
        QCOMPARE(FileStamp::of(open, name), std::optional(staged->stamp));
    }

    static void failedCommitKeepsTheStagedFile()
    {
        const LibraryDirectory directory;
        const OpenDirectory open(directory.path());
        const Result<DiskFiles::Staged> staged = DiskFiles::stage(open, file, "x", {});
        QVERIFY(staged);
        directory.write(file + QStringLiteral("/inside"), "x");
        QVERIFY(!DiskFiles::commit(open, staged->name, file));
        QVERIFY(QFile::remove(directory.filePath(staged->name)));
        QCOMPARE(directory.files(), QStringList{file + QStringLiteral("/inside")});
    }

    static void movingNeverReplaces()
    {
        const LibraryDirectory directory;
        directory.write(QStringLiteral("a"), "a");
        directory.write(QStringLiteral("b"), "b");
        QVERIFY(QFile::link(directory.filePath(QStringLiteral("nothing")), directory.filePath(QStringLiteral("c"))));
        QDir(directory.path()).mkdir(QStringLiteral("d"));
        for (const char *to : {"b", "d"}) {
            QVERIFY(
                !DiskFiles::move(directory.filePath(QStringLiteral("a")), directory.filePath(QString::fromLatin1(to))));
        }
        QCOMPARE(directory.read(QStringLiteral("a")), QByteArray("a"));
        QCOMPARE(directory.read(QStringLiteral("b")), QByteArray("b"));
        QVERIFY(DiskFiles::move(directory.filePath(QStringLiteral("a")), directory.filePath(QStringLiteral("e"))));
        QCOMPARE(directory.read(QStringLiteral("e")), QByteArray("a"));
        QVERIFY(!directory.has(QStringLiteral("a")));
    }

    static void movingNeverWritesThroughALink()
    {
        const LibraryDirectory directory;
        const QString outside = directory.parentPath() + QStringLiteral("/outside");
        directory.write(QStringLiteral("a"), "a");
        QVERIFY(QFile::link(outside, directory.filePath(QStringLiteral("link"))));
        std::ignore =
            DiskFiles::move(directory.filePath(QStringLiteral("a")), directory.filePath(QStringLiteral("link")));
        QVERIFY(!QFileInfo::exists(outside));
    }

    static void removingTakesTheLinkAndNotItsTarget()
    {
        const LibraryDirectory directory;
        directory.write(QStringLiteral("target"), "x");
        QVERIFY(QFile::link(directory.filePath(QStringLiteral("target")), directory.filePath(file)));
        QVERIFY(DiskFiles::remove(directory.filePath(file)));
        QCOMPARE(directory.files(), QStringList{QStringLiteral("target")});
        QVERIFY(!DiskFiles::remove(directory.filePath(file)));
        QVERIFY(!DiskFiles::remove(directory.path()));
    }

    static void directoriesAreMadeWithThoseAbove()
    {
        const LibraryDirectory directory;
        const QString path = directory.filePath(QStringLiteral("a/b c/ü"));
        QVERIFY(DiskFiles::makeDirectory(path));
        QVERIFY(QFileInfo(path).isDir());
        QVERIFY(DiskFiles::makeDirectory(path));
        directory.write(file, "x");
        QVERIFY(!DiskFiles::makeDirectory(directory.filePath(file)));
        QVERIFY(!DiskFiles::makeDirectory(directory.filePath(file + QStringLiteral("/below"))));
        QCOMPARE(directory.read(file), QByteArray("x"));
    }
};

VELGOR_TEST(TestDiskFiles)
#include "tst_DiskFiles.moc"
