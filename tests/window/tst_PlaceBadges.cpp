#include "LookTokens.h"
#include "PlaceBadge.h"
#include "PlaceBadges.h"
#include "ShownWidgets.h"
#include "TestProgram.h"
#include "VelgorStyle.h"

#include <QApplication>
#include <QSignalSpy>
#include <QTest>

#include <numeric>

using namespace ShownWidgets;

namespace {

QList<int> firstSlots(int count)
{
    QList<int> slotIndexes(count);
    std::iota(slotIndexes.begin(), slotIndexes.end(), 0);
    return slotIndexes;
}

QList<PlaceBadge *> shownBadges(const PlaceBadges &view)
{
    QList<PlaceBadge *> badges = view.findChildren<PlaceBadge *>();
    badges.removeIf([](const PlaceBadge *badge) { return !badge->isVisible(); });
    return badges;
}

} // namespace

class TestPlaceBadges : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QApplication::setStyle(new VelgorStyle);
        applyLook(false);
    }

    void aSentenceAndABadgeForEveryPlace_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("sentence");
        QTest::newRow("none") << 0 << QStringLiteral("Not used");
        QTest::newRow("one") << 1 << QStringLiteral("Used in 1 position");
        QTest::newRow("two") << 2 << QStringLiteral("Used in 2 positions");
        QTest::newRow("three") << 3 << QStringLiteral("Used in 3 positions");
        QTest::newRow("all") << 99 << QStringLiteral("Used in 99 positions");
    }

    void aSentenceAndABadgeForEveryPlace()
    {
        QFETCH(const int, count);
        PlaceBadges view(nullptr);
        view.setPlaces(firstSlots(count));
        for (const bool isStacked : {false, true}) {
            view.setStacked(isStacked);
            for (const int width : {200, 400}) {
                view.resize(width, view.heightForWidth(width));
                view.show();
                QTEST(labels(view).first(), "sentence");
                if (auto *more = named<QAbstractButton>(view, QStringLiteral("Show all places"))) {
                    more->click();
                    view.resize(width, view.heightForWidth(width));
                }
                const QList<PlaceBadge *> badges = shownBadges(view);
                QCOMPARE(badges.size(), count);
                QRegion taken;
                for (const PlaceBadge *badge : badges) {
                    const QRect seen = badge->geometry().adjusted(3, 3, -3, -3);
                    QVERIFY(view.rect().contains(badge->geometry()));
                    QVERIFY(!taken.intersects(seen));
                    taken += seen;
                    QVERIFY(!view.findChild<QLabel *>()->geometry().intersects(seen));
                }
                view.fold();
            }
        }
    }

    void moreThanTwoLinesAreCountedUntilTheyAreAskedFor_data()
    {
        QTest::addColumn<bool>("isStacked");
        QTest::newRow("beside the sentence") << false;
        QTest::newRow("below the sentence") << true;
    }

    void moreThanTwoLinesAreCountedUntilTheyAreAskedFor()
    {
        QFETCH(const bool, isStacked);
        constexpr int width = 400;
        PlaceBadges view(nullptr);
        view.setStacked(isStacked);
        view.setPlaces(firstSlots(99));
        view.resize(width, view.heightForWidth(width));
        view.show();
        const QList<PlaceBadge *> few = shownBadges(view);
        QSet<int> lines;
        for (const PlaceBadge *badge : few) {
            lines.insert(badge->y());
        }
        QCOMPARE(lines.size(), 2);
        auto *more = named<QAbstractButton>(view, QStringLiteral("Show all places"));
        QVERIFY(more);
        QCOMPARE(more->text(), QStringLiteral("and %1 more").arg(99 - few.size()));
        QVERIFY(view.rect().contains(more->geometry()));
        QVERIFY(more->geometry().left() >= few.last()->geometry().right() - 3);
        QTest::mouseClick(more, Qt::LeftButton);
        QVERIFY(view.heightForWidth(width) > view.height());
        view.resize(width, view.heightForWidth(width));
        QCOMPARE(shownBadges(view).size(), 99);
        QVERIFY(!more->isVisible());
        QVERIFY(view.rect().contains(shownBadges(view).last()->geometry()));
        view.fold();
        QCOMPARE(shownBadges(view).size(), few.size());
    }

    void twoLinesAreNeverFolded()
    {
        constexpr int width = 400;
        PlaceBadges view(nullptr);
        view.resize(width, 100);
        view.show();
        for (int count = 1; count <= 99; ++count) {
            view.setPlaces(firstSlots(count));
            const qsizetype shown = shownBadges(view).size();
            const bool isFolded = named<QAbstractButton>(view, QStringLiteral("Show all places")) != nullptr;
            QCOMPARE(isFolded, shown < count);
            QVERIFY(shown >= std::min(count, 9));
        }
    }

    void fewerPlacesTakeTheirBadgesAway()
    {
        PlaceBadges view(nullptr);
        view.resize(400, 200);
        view.show();
        view.setPlaces(firstSlots(9));
        view.setPlaces({98});
        QCOMPARE(shownBadges(view).size(), 1);
        QCOMPARE(shownBadges(view).first()->text(), QStringLiteral("33.3"));
        view.setPlaces({});
        QCOMPARE(shownBadges(view).size(), 0);
    }

    void aPressTellsTheSlot()
    {
        PlaceBadges view(nullptr);
        view.resize(400, 40);
        view.show();
        view.setPlaces({5, 23});
        QSignalSpy spy(&view, &PlaceBadges::placeActivated);
        press(view, QStringLiteral("Go to slot 8.3"));
        QCOMPARE(spy.takeFirst().first().toInt(), 23);
        QTest::keyClick(named<PlaceBadge>(view, QStringLiteral("Go to slot 2.3")), Qt::Key_Space);
        QCOMPARE(spy.takeFirst().first().toInt(), 5);
    }

    void theBadgesAreOneTabStopWithArrowKeysInside()
    {
        QWidget window;
        window.resize(400, 100);
        QPushButton before(&window);
        PlaceBadges view(&window);
        QPushButton after(&window);
        after.move(0, 60);
        view.setGeometry(0, 30, 400, 24);
        view.setPlaces(firstSlots(5));
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        const QList<PlaceBadge *> badges = shownBadges(view);
        before.setFocus();
        const auto pressed = [](Qt::Key key) {
            QTest::keyClick(QApplication::focusWidget(), key);
            return QApplication::focusWidget();
        };
        QCOMPARE(pressed(Qt::Key_Tab), badges.at(0));
        QCOMPARE(pressed(Qt::Key_Left), badges.at(0));
        QCOMPARE(pressed(Qt::Key_Right), badges.at(1));
        QCOMPARE(pressed(Qt::Key_End), badges.at(4));
        QCOMPARE(pressed(Qt::Key_Down), badges.at(4));
        QCOMPARE(pressed(Qt::Key_Up), badges.at(3));
        QCOMPARE(pressed(Qt::Key_Tab), &after);
        QCOMPARE(pressed(Qt::Key_Backtab), badges.at(3));
        QCOMPARE(pressed(Qt::Key_Home), badges.at(0));
        pressed(Qt::Key_End);
        view.setPlaces(firstSlots(2));
        after.setFocus();
        QCOMPARE(pressed(Qt::Key_Backtab), badges.at(0));
    }
};

VELGOR_WIDGET_TEST(TestPlaceBadges)
#include "tst_PlaceBadges.moc"
