#include "DeskFixture.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QTest>

namespace {

/// Names in capital letters are of the library.
const QString fiveSlots = QStringLiteral("v w x y z");

} // namespace

/// What the buttons and keys do with the selected slots.
class TestSelectedSlots : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theSelectedPatchGoesIntoTheFirstSelectedSlot()
    {
        DeskFixture desk(QStringLiteral("A B"), fiveSlots);
        QVERIFY(!desk.contentEditor.canPut());
        desk.selectSlots({3, 1});
        QVERIFY(!desk.contentEditor.canPut());
        desk.contentEditor.putIntoSelectedSlot();
        QCOMPARE(desk.slotNames(), fiveSlots);
        desk.select(1);
        QVERIFY(desk.contentEditor.canPut());
        desk.contentEditor.putIntoSelectedSlot();
        QCOMPARE(desk.slotNames(), QStringLiteral("v B x y z"));
        QCOMPARE(desk.contentEditor.selectedRows(), QList<qsizetype>{2});
        desk.contentEditor.putIntoSelectedSlot();
        QCOMPARE(desk.slotNames(), QStringLiteral("v B B y z"));
    }

    void puttingIntoTheLastSlotKeepsItSelected()
    {
        DeskFixture desk(QStringLiteral("A"), fiveSlots);
        desk.select(0);
        desk.selectSlots({4});
        desk.contentEditor.putIntoSelectedSlot();
        QCOMPARE(desk.slotNames(), QStringLiteral("v w x y A"));
        QCOMPARE(desk.contentEditor.selectedRows(), QList<qsizetype>{4});
    }

    void tickedPatchesArePutAndTheSlotBehindIsSelected()
    {
        DeskFixture desk(QStringLiteral("A B C"), fiveSlots);
        desk.selectSlots({1});
        desk.library.setIsMultiSel(true);
        QVERIFY(!desk.contentEditor.canPut());
        desk.select(1);
        QVERIFY(desk.contentEditor.canPut());
        desk.tick({0, 2});
        QVERIFY(desk.contentEditor.canPut());
        desk.contentEditor.putIntoSelectedSlot();
        QCOMPARE(desk.slotNames(), QStringLiteral("v A C y z"));
        QCOMPARE(desk.contentEditor.selectedRows(), QList<qsizetype>{3});
    }

    void everySelectedSlotIsReplacedAndStaysSelected()
    {
        DeskFixture desk(QStringLiteral("A B"), fiveSlots);
        desk.select(1);
        QVERIFY(!desk.contentEditor.canReplace());
        desk.contentEditor.replaceSelectedSlots();
        desk.selectSlots({0, 2, 4});
        QVERIFY(desk.contentEditor.canReplace());
        desk.contentEditor.replaceSelectedSlots();
        QCOMPARE(desk.slotNames(), QStringLiteral("B w B y B"));
        QCOMPARE(desk.contentEditor.selectedRows(), (QList<qsizetype>{0, 2, 4}));
        QVERIFY(desk.isNumbered());
    }

    void thePlaceholderIsNotPut()
    {
        DeskFixture desk(QString(), fiveSlots);
        desk.select(0);
        desk.selectSlots({0});
        QVERIFY(!desk.contentEditor.canPut() && !desk.contentEditor.canReplace());
        desk.contentEditor.putIntoSelectedSlot();
        desk.contentEditor.replaceSelectedSlots();
        QCOMPARE(desk.slotNames(), fiveSlots);
    }

    void selectedSlotsMoveByOneAsFarAsTheyCan_data()
    {
        QTest::addColumn<QList<qsizetype>>("selected");
        QTest::addColumn<int>("step");
        QTest::addColumn<QString>("shown");
        QTest::newRow("up") << QList<qsizetype>{2} << -1 << QStringLiteral("v x w y z");
        QTest::newRow("down") << QList<qsizetype>{2} << 1 << QStringLiteral("v w y x z");
        QTest::newRow("first up") << QList<qsizetype>{0} << -1 << fiveSlots;
        QTest::newRow("last down") << QList<qsizetype>{4} << 1 << fiveSlots;
        QTest::newRow("a block up") << QList<qsizetype>{2, 3} << -1 << QStringLiteral("v x y w z");
        QTest::newRow("a block down") << QList<qsizetype>{2, 3} << 1 << QStringLiteral("v w z x y");
        QTest::newRow("block at the end down") << QList<qsizetype>{3, 4} << 1 << fiveSlots;
        QTest::newRow("none") << QList<qsizetype>() << 1 << fiveSlots;
    }

    void selectedSlotsMoveByOneAsFarAsTheyCan()
    {
        QFETCH(const QList<qsizetype>, selected);
        QFETCH(const int, step);
        QFETCH(const QString, shown);
        DeskFixture desk(QStringLiteral("A"), fiveSlots);
        desk.selectSlots(selected);
        const QSet<QUuid> before = desk.content.selections();
        QCOMPARE(desk.contentEditor.canMoveSelected(step), shown != fiveSlots);
        desk.contentEditor.moveSelectedSlots(step);
        QCOMPARE(desk.slotNames(), shown);
        QCOMPARE(desk.content.selections(), before);
        QVERIFY(desk.isNumbered());
    }

    void slotsThatAreGoneAreNotSelected()
    {
        DeskFixture desk(QStringLiteral("A"), fiveSlots);
        desk.content.setSelections({QUuid::createUuid(), desk.slotId(3)});
        QCOMPARE(desk.contentEditor.selectedRows(), QList<qsizetype>{3});
        desk.content.setSelections({QUuid::createUuid()});
        desk.select(0);
        QVERIFY(
            !desk.contentEditor.canPut() && !desk.contentEditor.canReplace() && !desk.contentEditor.canMoveSelected(1));
    }
};

VELGOR_TEST(TestSelectedSlots)
#include "tst_SelectedSlots.moc"
