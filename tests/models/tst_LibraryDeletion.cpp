#include "LibraryAnnouncements.h"
#include "StoredLibraries.h"
#include "TestPatches.h"
#include "TestProgram.h"
#include "VelgorLibrary.h"

#include <QSignalSpy>
#include <QTest>

using namespace StoredLibraries;
using TestPatches::imported;

class TestLibraryDeletion : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void deletingUnticksAndClearsTheDefault()
    {
        VelgorLibrary library(abc, 2);
        library.setIsMultiSel(true);
        library.setMultiSelections({{{1, true}, {2, true}}});
        library.deletePatch(2);
        QVERIFY(!library.defaultPatch());
        QCOMPARE(library.multiSelections(), (MultiSelections{{{1, true}, {2, false}}}));
        QCOMPARE(library.order(), (QList<quint64>{1, 3}));
        QVERIFY(library.isMultiSel());
    }

    void tickedCountAndTheFirstTickedFollowTheTicks()
    {
        VelgorLibrary library(abc, 2);
        QCOMPARE(library.tickedCount(), 0);
        library.setMultiSelections({{{1, true}, {2, false}, {3, true}}});
        QCOMPARE(library.tickedCount(), 2);
        QCOMPARE(TestPatches::ids(library.getMultiSelection()), (QList<quint64>{1, 3}));
        QCOMPARE(TestPatches::ids(library.getMultiSelection(1)), QList<quint64>{1});
        QCOMPARE(library.getMultiSelection(0).size(), 0);
        library.deletePatch(1);
        QCOMPARE(library.tickedCount(), 1);
        library.adopt({.patches = abc, .defaultPatch = 2});
        QCOMPARE(library.tickedCount(), 0);
    }

    void deletingAnUnknownPatchChangesNoOther()
    {
        VelgorLibrary library(abc, 2);
        library.deletePatch(9);
        QCOMPARE(library.defaultPatch(), std::optional<quint64>(2));
        QCOMPARE(library.multiSelections(), (MultiSelections{{{9, false}}}));
        QCOMPARE(library.order(), (QList<quint64>{1, 2, 3}));
    }

    void deletingTheOnlyPatchBringsBackThePlaceholder()
    {
        VelgorLibrary library;
        const VelgorPatch patch = imported(lead);
        library.append(patch, false, false);
        library.setIsMultiSel(true);
        library.setDefaultPatch(patch.id());
        library.deletePatch(patch.id());
        QCOMPARE(names(library), QStringLiteral("Empty library"));
        QCOMPARE(library.count(), 0);
        QVERIFY(!library.isMultiSel() && !library.defaultPatch());
        QCOMPARE(library.order(), QList{patch.id()});
    }

    void deletingManyIsAnnouncedOnce()
    {
        VelgorLibrary library(abc, 3);
        LibraryAnnouncements announcements(library);
        library.deletePatches({3, 1, 3, 9});
        QCOMPARE(names(library), QStringLiteral("b"));
        QCOMPARE(announcements.take(), QStringLiteral("+reset; reset; default; ticks"));
        QCOMPARE(library.multiSelections().count(false), 3);
    }

    void theDefaultIsARealPatch_data()
    {
        QTest::addColumn<std::optional<quint64>>("id");
        QTest::addColumn<bool>("isTaken");
        QTest::newRow("a patch") << std::optional<quint64>(2) << true;
        QTest::newRow("absent") << std::optional<quint64>() << false;
        QTest::newRow("unknown") << std::optional<quint64>(9) << false;
    }

    void theDefaultIsARealPatch()
    {
        QFETCH(const std::optional<quint64>, id);
        QFETCH(const bool, isTaken);
        VelgorLibrary library(abc, 3);
        QSignalSpy spy(&library, &VelgorLibrary::defaultPatchChanged);
        QCOMPARE(library.setDefaultPatch(id), isTaken);
        QCOMPARE(library.defaultPatch(), isTaken ? id : std::optional<quint64>(3));
        QCOMPARE(spy.count(), isTaken ? 1 : 0);
        library.setDefaultPatch(id);
        QCOMPARE(spy.count(), isTaken ? 1 : 0);
    }

    void thePlaceholderIsNoDefault()
    {
        VelgorLibrary library;
        library.setDefaultPatch(library.patches().first().id());
        QVERIFY(!library.defaultPatch());
    }
};

VELGOR_TEST(TestLibraryDeletion)
#include "tst_LibraryDeletion.moc"
