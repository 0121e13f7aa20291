#include "DirectoryListing.h"
#include "LibraryDirectory.h"
#include "OrdinaryUser.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using Kind = DirectoryListing::Kind;

class TestDirectoryListing : public QObject {
    Q_OBJECT

private Q_SLOTS:
    static void pathsAreFoundById()
    {
        const LibraryDirectory directory;
        for (const QString &name :
            {QStringLiteral("lib-A.42.prst"), QStringLiteral("notes.42.txt"), QStringLiteral("sub/x.42.y"),
                QStringLiteral(".42.hidden"), QStringLiteral("lib-B.421.prst"), QStringLiteral("readme.txt")}) {
            directory.write(name, "x");
        }
        QDir(directory.path()).mkdir(QStringLiteral("dir.42.d"));
        const auto listing = DirectoryListing::scan(directory.path());
        QVERIFY(listing);
        QStringList paths = listing->pathsFor(42);
        paths.sort();
        QCOMPARE(paths,
            (QStringList{QStringLiteral(".42.hidden"), QStringLiteral("lib-A.42.prst"), QStringLiteral("notes.42.txt"),
                QStringLiteral("sub/x.42.y")}));
        QCOMPARE(listing->pathsFor(421), QStringList{QStringLiteral("lib-B.421.prst")});
        QCOMPARE(listing->pathsFor(4), QStringList());
    }

    static void kindsAreThoseOfTheTopLevel()
    {
        const LibraryDirectory directory;
        directory.write(QStringLiteral("file"), "x");
        directory.write(QStringLiteral("sub/below"), "x");
        QVERIFY(symlink("file", QFile::encodeName(directory.filePath(QStringLiteral("link"))).constData()) == 0);
        QVERIFY(symlink("/", QFile::encodeName(directory.filePath(QStringLiteral("root"))).constData()) == 0);
        QVERIFY(mkfifo(QFile::encodeName(directory.filePath(QStringLiteral("pipe"))).constData(), 0600) == 0);
        const auto listing = DirectoryListing::scan(directory.path());
        QVERIFY(listing);
        QCOMPARE(listing->kindOf(QStringLiteral("file")), std::optional(Kind::RegularFile));
        QCOMPARE(listing->kindOf(QStringLiteral("sub")), std::optional(Kind::Directory));
        QCOMPARE(listing->kindOf(QStringLiteral("link")), std::optional(Kind::Other));
        QCOMPARE(listing->kindOf(QStringLiteral("root")), std::optional(Kind::Other));
        QCOMPARE(listing->kindOf(QStringLiteral("pipe")), std::optional(Kind::Other));
        QCOMPARE(listing->kindOf(QStringLiteral("below")), std::nullopt);
        QCOMPARE(listing->kindOf(QStringLiteral("nothing")), std::nullopt);
    }

    static void linksToDirectoriesAreNotFollowed()
    {
        const LibraryDirectory directory;
        const LibraryDirectory elsewhere;
        elsewhere.write(QStringLiteral("lib-A.42.prst"), "x");
        QVERIFY(QFile::link(elsewhere.path(), directory.filePath(QStringLiteral("there"))));
        QVERIFY(QFile::link(directory.path(), directory.filePath(QStringLiteral("loop"))));
        const auto listing = DirectoryListing::scan(directory.path());
        QVERIFY(listing);
        QCOMPARE(listing->pathsFor(42), QStringList());
        QCOMPARE(listing->names().size(), 2);
    }

    static void theDirectoryItselfMayBeALink()
    {
        const LibraryDirectory directory;
        directory.write(QStringLiteral("lib-A.42.prst"), "x");
        const QString link = directory.parentPath() + QStringLiteral("/link");
        QVERIFY(QFile::link(directory.path(), link));
        const auto listing = DirectoryListing::scan(link);
        QVERIFY(listing);
        QCOMPARE(listing->pathsFor(42), QStringList{QStringLiteral("lib-A.42.prst")});
    }

    static void whatIsNoDirectoryGivesNothing()
    {
        const LibraryDirectory directory;
        directory.write(QStringLiteral("file"), "x");
        QVERIFY(!DirectoryListing::scan(directory.filePath(QStringLiteral("file"))));
        QVERIFY(!DirectoryListing::scan(directory.filePath(QStringLiteral("missing"))));
        QVERIFY(DirectoryListing::scan(directory.path()));
    }

    static void directoryThatMayNotBeListedGivesNothingAndIsNoEmptyOne()
    {
        const LibraryDirectory directory;
        directory.write(QStringLiteral("lib-A.42.prst"), "x");
        const OrdinaryUser user(directory, 0300);
        QVERIFY(!DirectoryListing::scan(directory.path()));
    }

    static void namesThatAreNoUtf8DoNotStopTheScan()
    {
        const LibraryDirectory directory;
        directory.write(QStringLiteral("lib-A.42.prst"), "x");
        const QByteArray odd = QFile::encodeName(directory.path()) + "/odd\xff.43.x";
        QVERIFY(mkfifo(odd.constData(), 0600) == 0);
        const auto listing = DirectoryListing::scan(directory.path());
        QVERIFY(listing);
        QCOMPARE(listing->pathsFor(42), QStringList{QStringLiteral("lib-A.42.prst")});
        QCOMPARE(listing->pathsFor(43).size(), 1);
    }

    static void movesAndAdditionsAreKept()
    {
        const LibraryDirectory directory;
        directory.write(QStringLiteral("lib-A.42.prst"), "x");
        auto listing = DirectoryListing::scan(directory.path());
        QVERIFY(listing);
        listing->moved(QStringLiteral("lib-A.42.prst"), QStringLiteral("lib-B.43.prst"));
        QCOMPARE(listing->pathsFor(42), QStringList());
        QCOMPARE(listing->pathsFor(43), QStringList{QStringLiteral("lib-B.43.prst")});
        QCOMPARE(listing->kindOf(QStringLiteral("lib-A.42.prst")), std::nullopt);
        QCOMPARE(listing->kindOf(QStringLiteral("lib-B.43.prst")), std::optional(Kind::RegularFile));
        listing->added(QStringLiteral("lib-C.44.prst"));
        listing->added(QStringLiteral("lib-C.44.prst"));
        QCOMPARE(listing->pathsFor(44), QStringList{QStringLiteral("lib-C.44.prst")});
    }
};

VELGOR_TEST(TestDirectoryListing)
#include "tst_DirectoryListing.moc"
