#include "MultiSelections.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QTest>

class TestMultiSelections : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void countsEntriesOfAValue()
    {
        const MultiSelections selections{{{1, true}, {2, false}, {3, true}, {4, true}}};
        QCOMPARE(selections.count(true), 3);
        QCOMPARE(selections.count(false), 1);
        QCOMPARE(MultiSelections().count(true), 0);
        QCOMPARE(MultiSelections().count(false), 0);
    }

    void absentAndFalseAreNotTicked()
    {
        const MultiSelections selections{{{1, true}, {2, false}}};
        QVERIFY(selections.isTicked(1));
        QVERIFY(!selections.isTicked(2));
        QVERIFY(!selections.isTicked(3));
        QCOMPARE(selections.multiSelections.size(), 2);
    }

    void walkYieldsEveryEntryOnce()
    {
        MultiSelections selections;
        for (quint64 id = 0; id < 1000; ++id) {
            selections.multiSelections.insert(~id, id % 3 == 0);
        }
        QHash<quint64, bool> walked;
        MultiSelectionsIterator iterator = selections.makeIterator();
        while (const auto entry = iterator.next()) {
            QVERIFY(!walked.contains(entry->first));
            walked.insert(entry->first, entry->second);
        }
        QCOMPARE(walked, selections.multiSelections);
        QVERIFY(!iterator.next());
    }

    void walkOverNothingEndsAtOnce() { QVERIFY(!MultiSelections().makeIterator().next()); }

    void walkKeepsWhatItWalksOver()
    {
        MultiSelections selections{{{1, true}, {2, false}}};
        MultiSelectionsIterator iterator = selections.makeIterator();
        MultiSelectionsIterator copy = iterator;
        selections.multiSelections.clear();
        int steps = 0;
        while (iterator.next()) {
            ++steps;
        }
        QCOMPARE(steps, 2);
        QVERIFY(copy.next());
    }

    void falseAndAbsentAreDifferentSelections()
    {
        QVERIFY((MultiSelections{{{1, true}}} == MultiSelections{{{1, true}}}));
        QVERIFY(!(MultiSelections{{{1, false}}} == MultiSelections()));
    }
};

VELGOR_TEST(TestMultiSelections)
#include "tst_MultiSelections.moc"
