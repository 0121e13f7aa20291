#include "DiagnosticRecorder.h"
#include "FatalStop.h"
#include "LibraryAnnouncements.h"
#include "StoredLibraries.h"
#include "TestPatches.h"
#include "TestProgram.h"
#include "VelgorLibrary.h"

#include <QTest>

using namespace StoredLibraries;
using TestPatches::imported;
using TestPatches::stored;

class TestVelgorLibrary : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aNewLibraryHoldsOnlyThePlaceholder()
    {
        VelgorLibrary library;
        QCOMPARE(names(library), QStringLiteral("Empty library"));
        QVERIFY(library.patches().first().empty && !library.patches().first().hasUserIR);
        QCOMPARE(library.count(), 0);
        QVERIFY(library.order().isEmpty());
        QVERIFY(!library.selection() && !library.defaultPatch());
        QVERIFY(!library.isMultiSel() && !library.deleteConfirm());
        QVERIFY(library.multiSelections().multiSelections.isEmpty());
        QCOMPARE(library.inverseSort(), TripleBool::tripleFalse);
    }

    void aStoredLibraryGetsNoPlaceholder()
    {
        VelgorLibrary empty({}, std::nullopt);
        QCOMPARE(empty.patches().size(), 0);
        QCOMPARE(empty.count(), 0);
        VelgorLibrary library(abc, 2);
        QCOMPARE(library.count(), 3);
        QCOMPARE(library.defaultPatch(), std::optional<quint64>(2));
        QVERIFY(library.order().isEmpty());
    }

    void countLeavesOutOnlyALonePlaceholder()
    {
        VelgorPatch dummy(QStringLiteral("Empty library"), false);
        dummy.empty = true;
        QCOMPARE(VelgorLibrary({dummy}, std::nullopt).count(), 0);
        QCOMPARE(VelgorLibrary({dummy, abc.first()}, std::nullopt).count(), 2);
    }

    void patchesAreFoundById()
    {
        const VelgorLibrary library(abc, std::nullopt);
        QCOMPARE(library.getPatchFromId(2)->index, 1);
        QCOMPARE(library.getPatchFromId(2)->patch, &library.patches().at(1));
        QVERIFY(!library.getPatchFromId(9));
        QVERIFY(!library.getPatchFromId(std::nullopt));
    }

    void theFirstRealPatchReplacesThePlaceholder()
    {
        VelgorLibrary library;
        const VelgorPatch patch = imported(lead);
        library.append(patch, false, false);
        QCOMPARE(library.patches().size(), 1);
        QVERIFY(TestPatches::isIdentical(library.patches().first(), patch));
        QCOMPARE(library.order(), QList{patch.id()});
    }

    void appendInsertsAtItsLocation_data()
    {
        QTest::addColumn<qsizetype>("location");
        QTest::addColumn<QString>("expected");
        QTest::newRow("the end") << qsizetype(-1) << "a,b,c,new";
        QTest::newRow("the start") << qsizetype(0) << "new,a,b,c";
        QTest::newRow("between") << qsizetype(2) << "a,b,new,c";
        QTest::newRow("the count") << qsizetype(3) << "a,b,c,new";
        QTest::newRow("beyond the count") << qsizetype(4) << "a,b,c,new";
        QTest::newRow("far beyond") << std::numeric_limits<qsizetype>::max() << "a,b,c,new";
    }

    void appendInsertsAtItsLocation()
    {
        QFETCH(const qsizetype, location);
        VelgorLibrary library(abc, std::nullopt);
        library.append(stored(9, QStringLiteral("new")), false, false, location);
        QTEST(names(library), "expected");
        QCOMPARE(library.order(), TestPatches::ids(library.patches()));
        QCOMPARE(library.getPatchFromId(9)->index, names(library).split(u',').indexOf(QStringLiteral("new")));
    }

    void aLocationBelowZeroStopsTheProgram()
    {
        VelgorLibrary library(abc, std::nullopt);
        QVERIFY(fatalStopOf([&] { library.append(stored(9, lead), false, false, -2); }));
        QVERIFY(!fatalStopOf([&] { library.append(stored(1, lead), false, false, -2); }));
    }

    void aKnownPatchIsNotInsertedTwice()
    {
        VelgorLibrary library(abc, std::nullopt);
        LibraryAnnouncements announcements(library);
        library.append(stored(2, QStringLiteral("other")), false, false, 0);
        QCOMPARE(names(library), QStringLiteral("a,b,c"));
        QCOMPARE(library.order(), (QList<quint64>{1, 2, 3}));
        QCOMPARE(announcements.take(), QString());
    }

    void replacingTakesOnlyThePresetData()
    {
        VelgorLibrary library;
        VelgorPatch kept = imported(lead);
        kept.comment = QStringLiteral("fat");
        kept.solo = true;
        kept.date = {5};
        library.append(kept, false, false);
        const VelgorPatch incoming = imported(QStringLiteral("Other"), 2, TestRecords::userIR(1), "V1.21");
        library.append(incoming, false, true, VelgorLibrary::atEnd, kept.id());
        kept.records = incoming.records;
        QCOMPARE(library.patches().size(), 1);
        QVERIFY(TestPatches::isIdentical(library.patches().first(), kept));
    }

    void aPatchThatIsNotKnownKeepsItsOwnId()
    {
        VelgorLibrary library(abc, std::nullopt);
        library.append(stored(9, lead), false, true, VelgorLibrary::atEnd, 77);
        QVERIFY(library.getPatchFromId(9) && !library.getPatchFromId(77));
    }

    void anUnknownSynonymNeverDoublesAnId()
    {
        VelgorLibrary library(abc, std::nullopt);
        library.append(stored(2, lead), false, true, VelgorLibrary::atEnd, 77);
        QCOMPARE(names(library), QStringLiteral("a,b,c"));
    }

    void thePlaceholderIsNeitherReplacedNorDuplicated()
    {
        VelgorLibrary library;
        const quint64 dummy = library.patches().first().id();
        library.append(imported(lead), true, true, VelgorLibrary::atEnd, dummy);
        QCOMPARE(names(library), QStringLiteral("Empty library"));
        QVERIFY(!library.patches().first().records);
    }

    void aFileIsAppendedPatchByPatch()
    {
        VelgorLibrary library(abc, std::nullopt);
        const SPresetFile file = TestRecords::file({TestRecords::patch(QStringLiteral("x"), 1),
            TestRecords::patch(QStringLiteral("y"), 2), TestRecords::patch(QStringLiteral("x"), 1)});
        library.append(file, false);
        QCOMPARE(names(library), QStringLiteral("a,b,c,x,y"));
        QVERIFY(library.patches().last().records->headerData == file.headerDesc);
    }

    void aFileWithoutMatchingRecordsIsRefused_data()
    {
        QTest::addColumn<int>("patches");
        QTest::addColumn<int>("userIRs");
        QTest::newRow("no patches") << 0 << 0;
        QTest::newRow("no patches, one user IR") << 0 << 1;
        QTest::newRow("fewer user IRs") << 2 << 1;
        QTest::newRow("more user IRs") << 1 << 2;
    }

    void aFileWithoutMatchingRecordsIsRefused()
    {
        QFETCH(const int, patches);
        QFETCH(const int, userIRs);
        SPresetFile file;
        file.patches.fill(TestRecords::patch(lead), patches);
        file.userIRs.resize(userIRs);
        VelgorLibrary library(abc, std::nullopt);
        DiagnosticRecorder recorder;
        library.append(file, true);
        QCOMPARE(recorder.take(), QStringList{QStringLiteral("Nothing to put into library")});
        QCOMPARE(names(library), QStringLiteral("a,b,c"));
        QVERIFY(library.order().isEmpty());
    }

    void appendingSeveralIsOneInsertion()
    {
        VelgorLibrary library;
        LibraryAnnouncements announcements(library);
        library.appendNew(abc + abc.first(2));
        QCOMPARE(names(library), QStringLiteral("a,b,c"));
        QCOMPARE(announcements.take(), QStringLiteral("+insert 0 2; insert 0 2; +remove 3 3; remove 3 3"));
        library.appendNew(QList{abc.last()} + storedPatches(QStringList(5, QStringLiteral("new"))));
        QCOMPARE(announcements.take(), QStringLiteral("+insert 3 4; insert 3 4"));
        library.appendNew(abc);
        QCOMPARE(announcements.take(), QString());
        QCOMPARE(library.order(), (QList<quint64>{1, 2, 3, 4, 5}));
    }

    void anEditIsTakenOver()
    {
        VelgorLibrary library(abc, std::nullopt);
        LibraryAnnouncements announcements(library);
        VelgorPatch edited = abc.at(1);
        edited.comment = QStringLiteral("fat");
        QVERIFY(library.update(edited));
        QCOMPARE(announcements.take(), QStringLiteral("change 1 1"));
        QVERIFY(TestPatches::isIdentical(library.patches().at(1), edited));
        QVERIFY(library.update(edited));
        QVERIFY(!library.update(stored(9, lead)));
        QCOMPARE(announcements.take(), QString());
    }

    void anEditOfThePresetDataIsTakenOver()
    {
        VelgorLibrary library(abc, std::nullopt);
        VelgorPatch edited = abc.at(1);
        edited.records = {TestRecords::patch(lead), SUserIR(), SHeaderDesc()};
        QVERIFY(library.update(edited));
        QVERIFY(library.patches().at(1).records);
    }

    void aRenamedPatchFreesItsName()
    {
        VelgorLibrary library;
        const VelgorPatch patch = imported(lead);
        library.append(patch, false, false);
        library.append(patch, true, false);
        VelgorPatch copy = library.patches().last();
        copy.name = QStringLiteral("Solo");
        QVERIFY(library.update(copy));
        library.append(patch, true, false);
        QCOMPARE(library.patches().last().name, QStringLiteral("Lead-1"));
        QVERIFY(library.getPatchFromId(copy.id()));
    }

    void moveCountsItsOffsetBeforeTheMove_data()
    {
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("offset");
        QTest::addColumn<QString>("expected");
        QTest::newRow("down") << 0 << 2 << "b,a,c";
        QTest::newRow("to the end") << 0 << 3 << "b,c,a";
        QTest::newRow("up") << 2 << 0 << "c,a,b";
        QTest::newRow("onto itself") << 1 << 1 << "a,b,c";
        QTest::newRow("just below itself") << 1 << 2 << "a,b,c";
    }

    void moveCountsItsOffsetBeforeTheMove()
    {
        QFETCH(const int, from);
        QFETCH(const int, offset);
        QFETCH(const QString, expected);
        VelgorLibrary library(abc, std::nullopt);
        library.saveOrder();
        LibraryAnnouncements announcements(library);
        library.move(from, offset);
        QCOMPARE(names(library), expected);
        QCOMPARE(library.order(), (QList<quint64>{1, 2, 3}));
        QCOMPARE(announcements.take(),
            expected == QStringLiteral("a,b,c") ? QString()
                                                : QStringLiteral("+move %1 %2; move %1 %2").arg(from).arg(offset));
        QCOMPARE(library.getPatchFromId(1)->index, expected.split(u',').indexOf(QStringLiteral("a")));
    }

    void aMoveBeyondTheListStopsTheProgram()
    {
        VelgorLibrary library(abc, std::nullopt);
        QVERIFY(fatalStopOf([&] { library.move(3, 0); }));
        QVERIFY(fatalStopOf([&] { library.move(-1, 0); }));
        QVERIFY(fatalStopOf([&] { library.move(0, 4); }));
        QVERIFY(fatalStopOf([&] { library.move(0, -1); }));
    }

    void everyChangeIsAnnouncedOnce()
    {
        VelgorLibrary library;
        LibraryAnnouncements announcements(library);
        const VelgorPatch patch = imported(lead);
        library.append(patch, false, false);
        QCOMPARE(announcements.take(), QStringLiteral("+insert 0 0; insert 0 0; +remove 1 1; remove 1 1"));
        library.append(imported(QStringLiteral("B"), 2), false, false, 0);
        QCOMPARE(announcements.take(), QStringLiteral("+insert 0 0; insert 0 0"));
        library.append(patch, false, true);
        QCOMPARE(announcements.take(), QStringLiteral("change 1 1"));
        library.duplicateSelection(patch.id());
        QCOMPARE(announcements.take(), QStringLiteral("+insert 2 2; insert 2 2"));
        library.setDefaultPatch(patch.id());
        QCOMPARE(announcements.take(), QStringLiteral("default"));
        library.setIsMultiSel(true);
        QCOMPARE(announcements.take(), QStringLiteral("mode"));
        library.deletePatches({patch.id(), library.patches().last().id()});
        QCOMPARE(announcements.take(), QStringLiteral("+remove 1 2; remove 1 2; default; ticks"));
        library.deletePatch(library.patches().first().id());
        QCOMPARE(announcements.take(), QStringLiteral("+remove 0 0; remove 0 0; ticks; +insert 0 0; insert 0 0; mode"));
        library.saveOrder();
        QCOMPARE(announcements.take(), QString());
    }

    void aSetterThatChangesNothingAnnouncesNothing()
    {
        VelgorLibrary library(abc, std::nullopt);
        LibraryAnnouncements announcements(library);
        for (int twice = 0; twice < 2; ++twice) {
            library.setSelection(2);
            library.setIsMultiSel(true);
            library.setMultiSelections({{{1, true}}});
            library.setDeleteConfirm(true);
        }
        QCOMPARE(announcements.take(), QStringLiteral("selection; mode; ticks; confirm"));
        for (int twice = 0; twice < 2; ++twice) {
            library.setSelection(std::nullopt);
            library.setIsMultiSel(false);
            library.setMultiSelections({});
            library.setDeleteConfirm(false);
        }
        QCOMPARE(announcements.take(), QStringLiteral("selection; mode; ticks; confirm"));
    }

    void aLibraryOfPlaceholdersOnlyKeepsOne()
    {
        VelgorLibrary library;
        VelgorPatch second(QStringLiteral("Empty library"), false);
        second.empty = true;
        library.append(second, false, false);
        QCOMPARE(library.patches().size(), 1);
    }
};

VELGOR_TEST(TestVelgorLibrary)
#include "tst_VelgorLibrary.moc"
