#include "LibraryDirectory.h"
#include "LibraryFileNames.h"
#include "TemporaryFiles.h"
#include "TestProgram.h"
#include "UserFiles.h"

#include <QSysInfo>
#include <QTest>

#include <sys/wait.h>
#include <unistd.h>

namespace {

const QString file = QStringLiteral("file");

} // namespace

/// The files that the user names, read and written outside of libraries.
class TestUserFiles : public QObject {
    Q_OBJECT

private Q_SLOTS:
    static void writingFollowsALink()
    {
        const LibraryDirectory directory;
        directory.write(QStringLiteral("target"), "old");
        QVERIFY(QFile::link(QStringLiteral("target"), directory.filePath(file)));
        UserFiles files;
        QVERIFY(files.write(directory.filePath(file), "new"));
        QVERIFY(QFileInfo(directory.filePath(file)).isSymLink());
        QCOMPARE(directory.read(QStringLiteral("target")), QByteArray("new"));
    }

    static void writingFollowsALinkToALink()
    {
        const LibraryDirectory directory;
        directory.write(QStringLiteral("target"), "old");
        QVERIFY(QFile::link(QStringLiteral("target"), directory.filePath(QStringLiteral("between"))));
        QVERIFY(QFile::link(QStringLiteral("between"), directory.filePath(file)));
        UserFiles files;
        QVERIFY(files.write(directory.filePath(file), "new"));
        QCOMPARE(directory.read(QStringLiteral("target")), QByteArray("new"));
    }

    static void exportSparesALibraryThatWasInterrupted_data()
    {
        QTest::addColumn<QString>("left");
        QTest::newRow("copy") << LibraryFileNames::libraryCopy();
        QTest::newRow("journal") << LibraryFileNames::journalFile();
    }

    static void exportSparesALibraryThatWasInterrupted()
    {
        QFETCH(const QString, left);
        const LibraryDirectory directory;
        const pid_t child = fork();
        if (child == 0) {
            _exit(0);
        }
        QCOMPARE(waitpid(child, nullptr, 0), child);
        const QString prepared = TemporaryFiles::prefix(QSysInfo::machineHostName(), child) + QStringLiteral("a");
        directory.write(left, "library");
        directory.write(prepared, "patch");
        QVERIFY(UserFiles().write(directory.filePath(file), "x"));
        QVERIFY(!UserFiles().write(directory.filePath(left), "x"));
        QCOMPARE(directory.read(left), QByteArray("library"));
        QCOMPARE(directory.read(prepared), QByteArray("patch"));
    }

    static void exportSweepsWhatADeadProgramLeftAndNothingElse()
    {
        const LibraryDirectory directory;
        const pid_t child = fork();
        if (child == 0) {
            _exit(0);
        }
        QCOMPARE(waitpid(child, nullptr, 0), child);
        const QString host = QSysInfo::machineHostName();
        const QString own = TemporaryFiles::prefix(host, getpid()) + QStringLiteral("a");
        const QString elsewhere = TemporaryFiles::prefix(QStringLiteral("another host"), child) + QStringLiteral("a");
        const QString other = TemporaryFiles::prefix() + QStringLiteral("a");
        directory.write(TemporaryFiles::prefix(host, child) + QStringLiteral("a"), "left");
        for (const QString &name : {own, elsewhere, other}) {
            directory.write(name, "in use");
        }
        QVERIFY(UserFiles().write(directory.filePath(file), "x"));
        QStringList expected{own, elsewhere, other, file};
        expected.sort();
        QCOMPARE(directory.files(), expected);
    }
};

VELGOR_TEST(TestUserFiles)
#include "tst_UserFiles.moc"
