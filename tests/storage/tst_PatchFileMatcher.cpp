#include "LibraryDirectory.h"
#include "PatchFileMatcher.h"
#include "SinglePatchFile.h"
#include "TestPatches.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QTest>

class TestPatchFileMatcher : public QObject {
    Q_OBJECT

private:
    static QStringList namesFor(const LibraryDirectory &directory, quint64 id)
    {
        const auto listing = DirectoryListing::scan(directory.path());
        QStringList names;
        for (const PatchFileMatcher::Candidate &candidate : PatchFileMatcher::candidates(*listing, id)) {
            names.append(candidate.name);
        }
        return names;
    }

private Q_SLOTS:
    static void candidatesOfAnId_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("isCandidate");
        QTest::newRow("patch file") << QStringLiteral("lib-A.42.prst") << true;
        QTest::newRow("user's own file") << QStringLiteral("notes.42.txt") << true;
        QTest::newRow("user's copy") << QStringLiteral("copy of lib-A.42.prst") << true;
        QTest::newRow("below the directory") << QStringLiteral("sub/lib-A.42.prst") << true;
        QTest::newRow("in a hidden directory") << QStringLiteral(".trash/x.42.prst") << true;
        QTest::newRow("file of another patch") << QStringLiteral("lib-Amp.42.x.77.prst") << false;
        QTest::newRow("longer id") << QStringLiteral("lib-A.421.prst") << false;
        QTest::newRow("id in the name of a directory only") << QStringLiteral("sub.42.d/notes.txt") << false;
        QTest::newRow("id across the directory's name") << QStringLiteral("sub.42/x.prst") << false;
        QTest::newRow("half-written file") << QStringLiteral(".velgor-writing-a.42.b") << false;
    }
    static void candidatesOfAnId()
    {
        QFETCH(const QString, path);
        const LibraryDirectory directory;
        directory.write(path, "x");
        QTEST(!namesFor(directory, 42).isEmpty(), "isCandidate");
    }

    static void fileNamedForAnotherPatchBelongsToThatOneOnly()
    {
        const LibraryDirectory directory;
        directory.write(QStringLiteral("lib-Amp.42.x.77.prst"), "x");
        QCOMPARE(namesFor(directory, 42), QStringList());
        QCOMPARE(namesFor(directory, 77), QStringList{QStringLiteral("lib-Amp.42.x.77.prst")});
    }

    static void filesNamedForThePatchComeFirst()
    {
        const LibraryDirectory directory;
        for (const char *name : {"a.42.x", "lib-Old.42.prst", "z.42.x", "lib-.42.prst"}) {
            directory.write(QString::fromLatin1(name), "x");
        }
        const QStringList names = namesFor(directory, 42);
        QCOMPARE(names.size(), 4);
        QVERIFY(names.at(0).startsWith(QStringLiteral("lib-")));
        QVERIFY(names.at(1).startsWith(QStringLiteral("lib-")));
    }

    static void directoriesAreNoCandidates()
    {
        const LibraryDirectory directory;
        QDir(directory.path()).mkdir(QStringLiteral("lib-A.42.prst"));
        QCOMPARE(namesFor(directory, 42), QStringList());
    }

    static void directoriesFurtherDownAreNoCandidates()
    {
        const LibraryDirectory directory;
        QDir(directory.path()).mkpath(QStringLiteral("sub/old.42.d"));
        QCOMPARE(namesFor(directory, 42), QStringList());
    }

    static void sameNameTwiceIsOneCandidate()
    {
        const LibraryDirectory directory;
        directory.write(QStringLiteral("bak/lib-A.42.prst"), "x");
        directory.write(QStringLiteral("lib-A.42.prst"), "x");
        const auto listing = DirectoryListing::scan(directory.path());
        const auto candidates = PatchFileMatcher::candidates(*listing, 42);
        QCOMPARE(candidates.size(), 1);
        QCOMPARE(candidates.first().path, QStringLiteral("lib-A.42.prst"));
    }

    static void patchIsKnownByEveryByteThatIsExported_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("isHeld");
        const SPatch patch = TestRecords::patch(QStringLiteral("Lead"));
        const SPatch renamed = TestRecords::patch(QStringLiteral("Other name"));
        const SPatch other = TestRecords::patch(QStringLiteral("Lead"), 2);
        QTest::newRow("same") << TestRecords::fileBytes({patch}) << true;
        QTest::newRow("under another name") << TestRecords::fileBytes({renamed}) << false;
        QTest::newRow("of another firmware") << TestRecords::fileBytes({patch}, {}, "V9.99") << false;
        QTest::newRow("with bytes behind its end") << TestRecords::fileBytes({patch}) + "more" << true;
        QTest::newRow("another sound") << TestRecords::fileBytes({other}) << false;
        QTest::newRow("with an impulse response") << TestRecords::fileBytes({patch}, {TestRecords::userIR(1)}) << false;
        QTest::newRow("twice") << TestRecords::fileBytes({patch, patch}) << false;
        QTest::newRow("cut") << TestRecords::fileBytes({patch}).chopped(4) << false;
        QTest::newRow("foreign") << QByteArray("notes") << false;
        QTest::newRow("empty") << QByteArray() << false;
    }
    static void patchIsKnownByEveryByteThatIsExported()
    {
        QFETCH(const QByteArray, bytes);
        const VelgorPatch patch = TestPatches::imported(QStringLiteral("Lead")).withId(42);
        QTEST(SinglePatchFile::holds(bytes, patch), "isHeld");
    }
};

VELGOR_TEST(TestPatchFileMatcher)
#include "tst_PatchFileMatcher.moc"
