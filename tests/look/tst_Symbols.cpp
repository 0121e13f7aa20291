#include "FatalStop.h"
#include "LookTokens.h"
#include "SymbolShapes.h"
#include "Symbols.h"
#include "TestProgram.h"

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QPushButton>
#include <QTest>

namespace {

/// The colours of the opaque pixels, and how far the drawing reaches.
struct Drawing {
    QSet<QRgb> opaqueColours;
    QRect reach;
    int ink = 0;
};

Drawing drawingOf(const QPixmap &pixmap)
{
    const QImage image = pixmap.toImage().convertToFormat(QImage::Format_ARGB32);
    Drawing drawing;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            if (qAlpha(pixel) == 255) {
                drawing.opaqueColours.insert(pixel);
            }
            // Less than this is the soft edge of a line that ends at the limit.
            if (qAlpha(pixel) > 64) {
                drawing.reach |= QRect(x, y, 1, 1);
                ++drawing.ink;
            }
        }
    }
    return drawing;
}

} // namespace

class TestSymbols : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { applyLook(false); }

    void everySymbolIsThere()
    {
        for (const char *name : {"arrow.up", "arrow.right", "arrow.down", "circle", "circle.badge.checkmark",
                 "checkmark.circle.fill", "trash", "doc.on.doc", "speaker.circle", "speaker.circle.lit",
                 "arrow.up.square", "arrow.down.square", "delete.left", "line.3.horizontal.decrease.circle", "undo",
                 "redo", "search", "settings", "warning", "folder", "star", "star.fill", "swap", "insert", "compare",
                 "print", "chevron.right.2", "xmark", "tray"}) {
            QVERIFY2(SymbolShapes::names().contains(QLatin1String(name)), name);
        }
        QStringList names = SymbolShapes::names();
        QCOMPARE(names.removeDuplicates(), 0);
    }

    void everySymbolIsDrawnInTheAskedColour_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<qreal>("ratio");
        for (const QString &name : SymbolShapes::names()) {
            for (const qreal ratio : {1.0, 1.5, 2.0}) {
                QTest::addRow("%s at %g", qPrintable(name), ratio) << name << ratio;
            }
        }
    }

    void everySymbolIsDrawnInTheAskedColour()
    {
        QFETCH(const QString, name);
        QFETCH(const qreal, ratio);
        const QColor colour(0x123456);
        const QPixmap pixmap = symbolPixmap(name, colour, 48, ratio);
        QCOMPARE(pixmap.size(), QSize(48, 48) * ratio);
        QCOMPARE(pixmap.devicePixelRatio(), ratio);
        QCOMPARE(drawingOf(pixmap).opaqueColours, QSet<QRgb>{colour.rgb()});
        QVERIFY(drawingOf(symbolPixmap(name, colour, 16, ratio)).ink > 12);
    }

    void unknownNameStopsTheProgram()
    {
        const auto stop = fatalStopOf([] {
            qInstallMessageHandler(nullptr);
            (void)symbolPixmap(QStringLiteral("nonsense"), Qt::black, 16, 1);
        });
        QVERIFY(stop);
        QVERIFY(stop->contains("nonsense"));
    }

    void nothingLeavesTheGridsMargin()
    {
        constexpr int scale = 10;
        const QRect inside(2 * scale, 2 * scale, 20 * scale, 20 * scale);
        for (const QString &name : SymbolShapes::names()) {
            const QRect reach = drawingOf(symbolPixmap(name, Qt::black, 24 * scale, 1)).reach;
            QVERIFY2(inside.contains(reach), qPrintable(name));
        }
    }

    void symbolsDiffer()
    {
        QList<QImage> images;
        for (const QString &name : SymbolShapes::names()) {
            const QImage image = symbolPixmap(name, Qt::black, 16, 1).toImage();
            QVERIFY2(!images.contains(image), qPrintable(name));
            images += image;
        }
    }

    void transparentColourIsKept()
    {
        const QImage image = symbolPixmap(QStringLiteral("star.fill"), QColor(10, 20, 30, 128), 24, 1).toImage();
        QVERIFY(std::abs(image.pixelColor(12, 12).alpha() - 128) <= 1);
    }

    void paintingUsesTheDevicesPixels()
    {
        QImage image(48, 48, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(2);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        paintSymbol(&painter, QStringLiteral("tray"), Qt::black, QRectF(0, 0, 24, 24));
        painter.end();
        QImage expected = symbolPixmap(QStringLiteral("tray"), Qt::black, 48, 1).toImage();
        expected.setDevicePixelRatio(2);
        QCOMPARE(image, expected.convertToFormat(QImage::Format_ARGB32_Premultiplied));
    }

    void iconFollowsThePalette()
    {
        const QIcon icon = symbolIcon(QStringLiteral("trash"));
        const QIcon copy = icon;
        const auto colourOf = [](const QIcon &from, QIcon::Mode mode) {
            return drawingOf(from.pixmap(QSize(48, 48), mode)).opaqueColours;
        };
        for (const bool dark : {false, true, false}) {
            applyLook(dark);
            const LookTokens tokens = dark ? LookTokens::dark() : LookTokens::light();
            QCOMPARE(colourOf(icon, QIcon::Normal), QSet<QRgb>{tokens.buttonText.rgb()});
            QCOMPARE(colourOf(copy, QIcon::Disabled), QSet<QRgb>{tokens.disabledText.rgb()});
        }
    }

    void iconWithoutRoleFollowsTheToken()
    {
        const QIcon icon = symbolIcon(QStringLiteral("warning"), &LookTokens::warning);
        applyLook(true);
        QCOMPARE(drawingOf(icon.pixmap(64)).opaqueColours, QSet<QRgb>{LookTokens::dark().warning.rgb()});
    }

    void iconIsSharpAtAnyScale()
    {
        const QIcon icon = symbolIcon(QStringLiteral("search"));
        for (const qreal ratio : {1.0, 1.5, 2.0}) {
            const QPixmap pixmap = icon.pixmap(QSize(16, 16), ratio);
            QCOMPARE(pixmap.size(), QSize(16, 16) * ratio);
            QCOMPARE(pixmap.devicePixelRatio(), ratio);
        }
    }
};

VELGOR_WIDGET_TEST(TestSymbols)
#include "tst_Symbols.moc"
