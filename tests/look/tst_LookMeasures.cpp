#include "LookMeasures.h"
#include "TestProgram.h"

#include <QApplication>
#include <QTest>

using namespace LookMeasures;

class TestLookMeasures : public QObject {
    Q_OBJECT

private:
    static QFont fontOf(int points)
    {
        QFont font;
        font.setPointSize(points);
        return font;
    }

private Q_SLOTS:
    void smallFontsKeepTheFloors()
    {
        const QFontMetrics metrics(fontOf(7));
        QCOMPARE(rowHeight(metrics), 24);
        QCOMPARE(symbolSize(metrics), 16);
        QCOMPARE(tickSize(metrics), 18);
        QCOMPARE(buttonHeight(metrics), 28);
        QCOMPARE(toggleHeight(metrics), 26);
        QCOMPARE(fieldHeight(metrics), 28);
        QCOMPARE(badgeHeight(QFontMetrics(badgeFont(fontOf(7)))), 18);
    }

    void largeFontsGrowEverything()
    {
        const QFontMetrics metrics(fontOf(30));
        const int line = metrics.height();
        QCOMPARE(rowHeight(metrics), line + 8);
        QCOMPARE(symbolSize(metrics), line - line % 2);
        QCOMPARE(buttonHeight(metrics), line + 12);
        QCOMPARE(toggleHeight(metrics), line + 10);
        QCOMPARE(fieldHeight(metrics), line + 12);
        const QFontMetrics badgeMetrics(badgeFont(fontOf(30)));
        QCOMPARE(badgeHeight(badgeMetrics), badgeMetrics.height() + 4);
    }

    void windowWithLargerTextStartsLarger()
    {
        const QSize usual(1280, 800);
        QCOMPARE(scaledToText(usual, QFontMetrics(fontOf(7))), usual);
        const QFontMetrics large(fontOf(24));
        QVERIFY(large.height() > 32);
        QCOMPARE(scaledToText(usual, large), QSize(80 * large.height(), 50 * large.height()));
    }

    void badgeOfARowLeavesRoomAroundIt()
    {
        const QFontMetrics metrics(fontOf(10));
        const QFontMetrics badgeMetrics(badgeFont(fontOf(10)));
        QVERIFY(rowBadgeHeight(metrics, badgeMetrics) <= rowHeight(metrics) - 8);
        QVERIFY(rowBadgeHeight(metrics, badgeMetrics) >= badgeMetrics.ascent());
    }

    void fontsAreRelativeToTheBase()
    {
        const QFont base = fontOf(20);
        QCOMPARE(titleFont(base).pointSizeF(), 30.0);
        QCOMPARE(titleFont(base).weight(), int(QFont::DemiBold));
        QCOMPARE(strongFont(base).pointSizeF(), 20.0);
        QCOMPARE(strongFont(base).weight(), int(QFont::DemiBold));
        QCOMPARE(footnoteFont(base).pointSizeF(), 17.0);
        QCOMPARE(footnoteFont(base).weight(), base.weight());
        QCOMPARE(badgeFont(base).pointSizeF(), 17.0);
        QCOMPARE(badgeFont(fontOf(9)).pointSizeF(), 8.0);
        QCOMPARE(badgeFont(base).family(), base.family());
    }

    void fontInPixelsIsScaledToo()
    {
        QFont base;
        base.setPixelSize(40);
        QVERIFY(std::abs(QFontMetrics(titleFont(base)).height() - 1.5 * QFontMetrics(base).height()) < 3);
    }
};

VELGOR_WIDGET_TEST(TestLookMeasures)
#include "tst_LookMeasures.moc"
