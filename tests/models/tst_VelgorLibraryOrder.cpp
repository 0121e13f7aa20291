#include "LibraryAnnouncements.h"
#include "TestPatches.h"
#include "TestProgram.h"
#include "VelgorLibrary.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTest>

using TestPatches::imported;
using TestPatches::stored;

namespace {

QString names(const VelgorLibrary &library)
{
    return TestPatches::names(library.patches()).join(u',');
}

/// A library with ids 1, 2, 3, ... and the order remembered.
std::unique_ptr<VelgorLibrary> libraryOf(const QString &patchNames)
{
    QList<VelgorPatch> patches;
    for (const QString &name : patchNames.split(u',')) {
        patches.append(stored(static_cast<quint64>(patches.size()) + 1, name));
    }
    auto library = std::make_unique<VelgorLibrary>(patches, std::nullopt);
    library->saveOrder();
    return library;
}

} // namespace

class TestVelgorLibraryOrder : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void sortingCyclesThroughThreeOrders()
    {
        const auto library = libraryOf(QStringLiteral("b,c,a"));
        for (int round = 0; round < 2; ++round) {
            library->sort();
            QCOMPARE(names(*library), QStringLiteral("a,b,c"));
            QCOMPARE(library->inverseSort(), TripleBool::tripleNeutral);
            library->sort();
            QCOMPARE(names(*library), QStringLiteral("b,c,a"));
            QCOMPARE(library->inverseSort(), TripleBool::tripleTrue);
            library->sort();
            QCOMPARE(names(*library), QStringLiteral("c,b,a"));
            QCOMPARE(library->inverseSort(), TripleBool::tripleFalse);
            QCOMPARE(library->order(), (QList<quint64>{1, 2, 3}));
        }
    }

    void aChangeWhileSortedIsAnnounced_data()
    {
        QTest::addColumn<int>("sorts");
        QTest::addColumn<bool>("isAnnounced");
        QTest::newRow("not sorted") << 0 << false;
        QTest::newRow("upwards") << 1 << true;
        QTest::newRow("back again") << 2 << false;
        QTest::newRow("downwards") << 3 << true;
    }

    void aChangeWhileSortedIsAnnounced()
    {
        QFETCH(const int, sorts);
        QFETCH(const bool, isAnnounced);
        const auto library = libraryOf(QStringLiteral("b,c,a"));
        const QSignalSpy kept(library.get(), &VelgorLibrary::sortedOrderKept);
        for (int i = 0; i < sorts; ++i) {
            library->sort();
        }
        QCOMPARE(kept.count(), 0);
        const QString order = names(*library);
        library->append(stored(4, QStringLiteral("d")), false, false);
        QCOMPARE(kept.count(), isAnnounced ? 1 : 0);
        library->saveOrder();
        QCOMPARE(kept.count(), isAnnounced ? 1 : 0);
        QCOMPARE(library->order(), TestPatches::ids(library->patches()));
        QCOMPARE(names(*library), order + QStringLiteral(",d"));
    }

    void aSortThatChangesNothingLeavesNothingToAnnounce()
    {
        const auto library = libraryOf(QStringLiteral("a,b,c"));
        const QSignalSpy kept(library.get(), &VelgorLibrary::sortedOrderKept);
        library->sort();
        library->saveOrder();
        QCOMPARE(kept.count(), 0);
    }

    void deletingASortedLibraryWholeAnnouncesNothing()
    {
        const auto library = libraryOf(QStringLiteral("b,a"));
        const QSignalSpy kept(library.get(), &VelgorLibrary::sortedOrderKept);
        library->sort();
        library->deletePatches({1, 2});
        library->append(stored(4, QStringLiteral("d")), false, false);
        QCOMPARE(kept.count(), 0);
    }

    void namesAreComparedByCodePointInLowerCase_data()
    {
        QTest::addColumn<QString>("given");
        QTest::addColumn<QString>("ascending");
        QTest::addColumn<QString>("descending");
        QTest::newRow("case keeps the order") << "lead,Lead,LEAD"
                                              << "lead,Lead,LEAD"
                                              << "lead,Lead,LEAD";
        QTest::newRow("case between others") << "b,Lead,lead,A"
                                             << "A,b,Lead,lead"
                                             << "Lead,lead,b,A";
        QTest::newRow("no numbers") << "x 10,x 9"
                                    << "x 10,x 9"
                                    << "x 9,x 10";
        QTest::newRow("a prefix first") << "ab,a,abc"
                                        << "a,ab,abc"
                                        << "abc,ab,a";
        QTest::newRow("underscore before letters") << "a,_,B"
                                                   << "_,a,B"
                                                   << "B,a,_";
        const QString umlaut = QString::fromUtf8("\u00e4");
        QTest::newRow("umlaut behind z") << umlaut + QStringLiteral(",z") << QStringLiteral("z,") + umlaut
                                         << umlaut + QStringLiteral(",z");
        // In UTF-16 units the character beyond the basic plane would come first.
        const QString high = QString::fromUtf8("\U0001F3B8");
        const QString wide = QString::fromUtf8("\uFF5E");
        QTest::newRow("beyond the basic plane") << high + u',' + wide << wide + u',' + high << high + u',' + wide;
        QTest::newRow("empty first") << "a,"
                                     << ",a"
                                     << "a,";
    }

    void namesAreComparedByCodePointInLowerCase()
    {
        QFETCH(const QString, given);
        const auto library = libraryOf(given);
        library->sort();
        QTEST(names(*library), "ascending");
        library->sort();
        QCOMPARE(names(*library), given);
        library->sort();
        QTEST(names(*library), "descending");
    }

    void equalNamesKeepTheirPresentOrder()
    {
        const auto library = libraryOf(QStringLiteral("lead,Lead,a"));
        library->move(1, 0);
        library->sort();
        QCOMPARE(names(*library), QStringLiteral("a,Lead,lead"));
    }

    void patchesThatAreNotRememberedGoToTheEnd()
    {
        const auto library = libraryOf(QStringLiteral("b,a"));
        VelgorLibrary unknown(library->patches(), std::nullopt);
        unknown.sort();
        unknown.sort();
        QCOMPARE(names(unknown), QStringLiteral("a,b"));
    }

    void anUnrememberedPatchGoesBehindTheOthers()
    {
        auto library = libraryOf(QStringLiteral("c,b,a"));
        bool isFirst = true;
        // While a row is announced, the remembered order does not know it yet.
        connect(library.get(), &VelgorLibrary::rowsInserted, this, [&] {
            if (std::exchange(isFirst, false)) {
                library->sort();
                library->sort();
            }
        });
        (void)library->order();
        library->append(stored(4, QStringLiteral("0")), false, false, 0);
        QCOMPARE(names(*library), QStringLiteral("c,b,a,0"));
    }

    void theOrderFollowsInsertionsAndDeletionsOnly()
    {
        const auto library = libraryOf(QStringLiteral("b,c,a"));
        library->move(0, 3);
        QCOMPARE(library->order(), (QList<quint64>{1, 2, 3}));
        library->sort();
        QCOMPARE(library->order(), (QList<quint64>{1, 2, 3}));
        library->append(stored(4, QStringLiteral("d")), false, false);
        QCOMPARE(library->order(), (QList<quint64>{3, 1, 2, 4}));
        library->sort();
        library->sort();
        QCOMPARE(library->order(), (QList<quint64>{3, 1, 2, 4}));
        library->deletePatch(1);
        QCOMPARE(library->order(), (QList<quint64>{4, 2, 3}));
        library->move(0, 3);
        library->saveOrder();
        QCOMPARE(library->order(), (QList<quint64>{2, 3, 4}));
    }

    void deletingEveryPatchKeepsTheOrderFromBeforeTheLastDeletion()
    {
        const auto library = libraryOf(QStringLiteral("a,b,c"));
        library->deletePatch(1);
        library->deletePatch(3);
        QCOMPARE(library->order(), QList<quint64>{2});
        library->deletePatch(2);
        QCOMPARE(library->order(), QList<quint64>{2});
        library->saveOrder();
        QCOMPARE(library->order(), QList<quint64>{2});
    }

    void aSortIsOneReordering()
    {
        const auto library = libraryOf(QStringLiteral("b,c,a"));
        LibraryAnnouncements announcements(*library);
        QList<qsizetype> rows;
        connect(library.get(), &VelgorLibrary::reordered, this,
            [&rows](const QList<qsizetype> &formerRows) { rows = formerRows; });
        library->sort();
        QCOMPARE(announcements.take(), QStringLiteral("+reorder; reorder; step"));
        QCOMPARE(rows, (QList<qsizetype>{2, 0, 1}));
        QCOMPARE(library->getPatchFromId(3)->index, 0);
    }

    void aSortThatMovesNothingOnlyAdvances()
    {
        const auto library = libraryOf(QStringLiteral("a,b,c"));
        LibraryAnnouncements announcements(*library);
        library->sort();
        QCOMPARE(announcements.take(), QStringLiteral("step"));
        VelgorLibrary empty;
        empty.sort();
        QCOMPARE(names(empty), QStringLiteral("Empty library"));
        QCOMPARE(empty.inverseSort(), TripleBool::tripleNeutral);
    }

    void similarPatchesHaveTheSameSoundWhateverTheName()
    {
        VelgorLibrary library;
        const SUserIR userIR = TestRecords::userIR(1);
        const VelgorPatch patch = imported(QStringLiteral("Lead"), 1, userIR);
        VelgorPatch renumbered = imported(QStringLiteral("Third"), 1, TestRecords::userIR(2));
        renumbered.records->patchData.pos = 9;
        library.appendNew({patch, imported(QStringLiteral("Second"), 1, userIR), renumbered,
            imported(QStringLiteral("Lead"), 2, userIR), imported(QStringLiteral("No IR"), 1),
            imported(QStringLiteral("Other IR"), 1, TestRecords::userIR(1, 5)), stored(7, QStringLiteral("No data"))});
        const MultiSelections similar = library.findSimilarPatches(patch.id());
        QCOMPARE(similar.multiSelections.size(), 7);
        QCOMPARE(similar.count(true), 3);
        for (int row = 0; row < 7; ++row) {
            QCOMPARE(similar.isTicked(library.patches().at(row).id()), row < 3);
        }
    }

    void sameNameAndOtherBytesAreNotSimilar()
    {
        VelgorLibrary library;
        library.appendNew({imported(QStringLiteral("Lead"), 1), imported(QStringLiteral("Lead"), 2)});
        QCOMPARE(library.findSimilarPatches(library.patches().first().id()).count(true), 1);
    }

    void copiesMadeHereAreSimilar()
    {
        VelgorLibrary library;
        const VelgorPatch patch = imported(QStringLiteral("Lead xx"));
        library.append(patch, false, false);
        library.duplicateSelection(patch.id());
        library.duplicateSelection(patch.id());
        for (const VelgorPatch &each : library.patches()) {
            QCOMPARE(library.findSimilarPatches(each.id()).count(true), 3);
        }
    }

    void aPatchWithoutPresetDataIsSimilarToItselfOnly()
    {
        const auto library = libraryOf(QStringLiteral("a,b"));
        QCOMPARE(library->findSimilarPatches(1), (MultiSelections{{{1, true}, {2, false}}}));
    }

    void thePlaceholderAndUnknownIdsHaveNoSimilarPatches()
    {
        VelgorLibrary library;
        QCOMPARE(library.findSimilarPatches(library.patches().first().id()), MultiSelections());
        library.append(imported(QStringLiteral("Lead")), false, false);
        QCOMPARE(library.findSimilarPatches(1), MultiSelections());
    }

    void tickedPatchesComeInLibraryOrder()
    {
        const auto library = libraryOf(QStringLiteral("d,c,b,a"));
        library->setMultiSelections({{{4, true}, {9, true}, {2, true}, {1, false}}});
        QCOMPARE(TestPatches::names(library->getMultiSelection()).join(u','), QStringLiteral("c,a"));
        library->sort();
        QCOMPARE(TestPatches::names(library->getMultiSelection()).join(u','), QStringLiteral("a,c"));
        library->deletePatch(4);
        QCOMPARE(TestPatches::names(library->getMultiSelection()).join(u','), QStringLiteral("c"));
        QCOMPARE(library->multiSelections().count(false), 2);
    }
};

VELGOR_TEST(TestVelgorLibraryOrder)
#include "tst_VelgorLibraryOrder.moc"
