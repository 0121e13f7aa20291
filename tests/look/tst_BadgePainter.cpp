#include "BadgePainter.h"
#include "Contrast.h"
#include "LookMeasures.h"
#include "LookTokens.h"
#include "TestProgram.h"

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QTest>

namespace {

/// The colour of a firmware version as the versions are coloured; nothing for the first.
std::optional<QColor> colourOfVersion(int id)
{
    if (id == 1) {
        return std::nullopt;
    }
    const auto part = [](double wave) { return static_cast<float>((wave + 1) / 2.5); };
    return QColor::fromRgbF(part(std::sin(id)), part(std::cos(id + 1.5)), part(std::sin(id + 1.0)));
}

QImage paintedFirmwareBadge(const QString &text, const std::optional<QColor> &colour)
{
    QImage image(40, 18, QImage::Format_RGB32);
    image.fill(LookTokens::current().base);
    QPainter painter(&image);
    paintFirmwareBadge(&painter, QRectF(0, 0, 40, 18), text, colour, LookTokens::current().text);
    return image;
}

} // namespace

class TestBadgePainter : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyVersionIsReadable_data()
    {
        QTest::addColumn<bool>("dark");
        QTest::addColumn<double>("textLimit");
        QTest::addColumn<double>("edgeLimit");
        QTest::newRow("light") << false << 11.0 << 3.0;
        QTest::newRow("dark") << true << 5.4 << 3.0;
    }

    void everyVersionIsReadable()
    {
        QFETCH(const bool, dark);
        QFETCH(const double, textLimit);
        QFETCH(const double, edgeLimit);
        applyLook(dark);
        const LookTokens &tokens = LookTokens::current();
        for (int id = 1; id <= 999; ++id) {
            const FirmwareBadgeColours colours = firmwareBadgeColours(colourOfVersion(id));
            for (const auto &[text, ground] :
                {std::pair{tokens.text, tokens.base}, {tokens.text, tokens.window}, {tokens.text, tokens.rowHover},
                    {tokens.highlightedText, tokens.selection}, {tokens.text, tokens.selectionInactive}}) {
                const double contrast = Contrast::between(text, Contrast::on(ground, colours.fill));
                QVERIFY2(contrast >= textLimit, qPrintable(QStringLiteral("%1: %2").arg(id).arg(contrast)));
            }
            const double contrast = Contrast::between(colours.edge, tokens.base);
            QVERIFY2(contrast >= edgeLimit, qPrintable(QStringLiteral("%1: %2").arg(id).arg(contrast)));
        }
    }

    void badgeIsTintedWithinItsEdge()
    {
        applyLook(false);
        const FirmwareBadgeColours colours = firmwareBadgeColours(QColor(Qt::red));
        const QImage badge = paintedFirmwareBadge(QString(), QColor(Qt::red));
        QCOMPARE(badge.pixelColor(20, 0), colours.edge);
        QCOMPARE(badge.pixelColor(20, 17), colours.edge);
        const QColor tint = Contrast::on(LookTokens::current().base, colours.fill);
        QVERIFY(std::abs(badge.pixelColor(20, 9).green() - tint.green()) <= 1);
        QCOMPARE(badge.pixelColor(0, 0), LookTokens::current().base);
    }

    void firstVersionHasTheAccent()
    {
        applyLook(false);
        QCOMPARE(paintedFirmwareBadge(QStringLiteral("1"), std::nullopt),
            paintedFirmwareBadge(QStringLiteral("1"), LookTokens::current().accent));
    }

    void spacesAroundTheTextDoNotCount()
    {
        QCOMPARE(firmwareBadgeSize(QStringLiteral(" 7 "), QFont()), firmwareBadgeSize(QStringLiteral("7"), QFont()));
        QCOMPARE(paintedFirmwareBadge(QStringLiteral("12 "), std::nullopt),
            paintedFirmwareBadge(QStringLiteral("12"), std::nullopt));
    }

    void textFits()
    {
        for (const double points : {8.0, 10.0, 13.0, 24.0}) {
            QFont font;
            font.setPointSizeF(points);
            const QFontMetrics metrics(LookMeasures::badgeFont(font));
            for (const QString &text : {QStringLiteral("1"), QStringLiteral("33.3"), QStringLiteral("999")}) {
                for (const QSize size : {firmwareBadgeSize(text, font), placeBadgeSize(text, font)}) {
                    QVERIFY(size.width() >= metrics.horizontalAdvance(text) + 2 * LookMeasures::badgePadding);
                    QVERIFY(size.height() >= metrics.height());
                }
            }
        }
    }

    void placeIsWhiteOnTheAccent()
    {
        applyLook(true);
        QImage image(40, 18, QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        paintPlaceBadge(&painter, QRectF(0, 0, 40, 18), QStringLiteral("3.2"));
        painter.end();
        QCOMPARE(image.pixelColor(3, 9), LookTokens::dark().accent);
        QCOMPARE(image.pixelColor(0, 0).alpha(), 0);
        bool hasText = false;
        for (int x = 0; x < image.width(); ++x) {
            hasText = hasText || image.pixelColor(x, 9) != LookTokens::dark().accent;
        }
        QVERIFY(hasText);
    }
};

VELGOR_WIDGET_TEST(TestBadgePainter)
#include "tst_BadgePainter.moc"
