#include "ColourMix.h"
#include "LookMeasures.h"
#include "LookTokens.h"
#include "Painted.h"
#include "TestProgram.h"
#include "ToggleButton.h"
#include "VelgorStyle.h"

#include <QApplication>
#include <QHelpEvent>
#include <QTest>
#include <QToolTip>

#include <algorithm>

using namespace LookMeasures;
using Tone = ToggleButton::Tone;

class TestToggleButton : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setStyle(new VelgorStyle); }
    void init() { applyLook(false); }

    void everyStateIsPaintedDifferently()
    {
        for (const bool dark : {false, true}) {
            applyLook(dark);
            QList<QImage> images;
            for (const bool set : {false, true}) {
                for (const QStyle::State state : {QStyle::State_None, QStyle::State_MouseOver, QStyle::State_Sunken}) {
                    InState<ToggleButton> toggle(QStringLiteral("Guitar"), Tone::Accent);
                    toggle.extra = state;
                    toggle.setChecked(set);
                    images += painted(toggle);
                }
                ToggleButton disabled(QStringLiteral("Guitar"), Tone::Accent);
                disabled.setChecked(set);
                disabled.setEnabled(false);
                images += painted(disabled);
            }
            for (qsizetype i = 0; i < images.size(); ++i) {
                QCOMPARE(images.indexOf(images[i]), i);
            }
        }
    }

    void toneFillsASetToggle_data()
    {
        QTest::addColumn<Tone>("tone");
        QTest::addColumn<QColor>("light");
        QTest::addColumn<QColor>("dark");
        QTest::newRow("accent") << Tone::Accent << LookTokens::light().accent << LookTokens::dark().accent;
        QTest::newRow("instrument") << Tone::Instrument << LookTokens::light().instrument
                                    << LookTokens::dark().instrument;
        QTest::newRow("usage") << Tone::Usage << LookTokens::light().usage << LookTokens::dark().usage;
        QTest::newRow("style") << Tone::Style << LookTokens::light().style << LookTokens::dark().style;
    }

    void toneFillsASetToggle()
    {
        QFETCH(const Tone, tone);
        QFETCH(const QColor, light);
        QFETCH(const QColor, dark);
        ToggleButton toggle(QStringLiteral("Solo"), tone);
        const QPoint fillPoint(focusGutter + 3, focusGutter + 8);
        QCOMPARE(painted(toggle).pixelColor(fillPoint), LookTokens::light().unsetFlag);
        toggle.setChecked(true);
        QCOMPARE(painted(toggle).pixelColor(fillPoint), light);
        applyLook(true);
        QCOMPARE(painted(toggle).pixelColor(fillPoint), dark);
    }

    void theMarkIsABoxThatIsTickedWhenSet()
    {
        ToggleButton toggle(QString(), Tone::Accent);
        toggle.resize(toggle.sizeHint());
        const QRect mark(focusGutter + 5, toggle.height() / 2 - 5, 12, 10);
        const QImage unset = painted(toggle).copy(mark);
        // A straight side, which a ring has not.
        int longest = 0;
        for (int x = 0; x < unset.width(); ++x) {
            int run = 0;
            for (int y = 0; y < unset.height(); ++y) {
                run = unset.pixelColor(x, y) == LookTokens::light().unsetFlag ? 0 : run + 1;
                longest = std::max(longest, run);
            }
        }
        QVERIFY(longest >= 7);
        QCOMPARE(unset.pixelColor(unset.rect().center()), LookTokens::light().unsetFlag);
        toggle.setChecked(true);
        const QImage set = painted(toggle).copy(mark);
        bool isTicked = false;
        for (int x = 0; x < set.width() && !isTicked; ++x) {
            for (int y = 0; y < set.height() && !isTicked; ++y) {
                isTicked = set.pixelColor(x, y).lightness() > 230;
            }
        }
        QVERIFY(isTicked);
        QCOMPARE(set.pixelColor(0, 0), LookTokens::light().accent);
    }

    void sizeFollowsTheFont()
    {
        for (const int points : {8, 10, 13, 24}) {
            ToggleButton toggle(QStringLiteral("User IR"), Tone::Accent);
            QFont font = toggle.font();
            font.setPointSize(points);
            toggle.setFont(font);
            const QFontMetrics metrics(font);
            QCOMPARE(toggle.sizeHint().height(), toggleHeight(metrics) + 2 * focusGutter);
            QVERIFY(toggle.sizeHint().width()
                >= metrics.horizontalAdvance(QStringLiteral("User IR")) + 23 + 2 * focusGutter);
            QCOMPARE(toggle.minimumSizeHint(), toggle.sizeHint());
        }
    }

    void onlyAnElidedLabelHasAToolTip()
    {
        ToggleButton toggle(QStringLiteral("&Rythm"), Tone::Usage);
        toggle.resize(toggle.sizeHint());
        toggle.show();
        QHelpEvent help(QEvent::ToolTip, QPoint(5, 5), toggle.mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(&toggle, &help);
        QCOMPARE(QToolTip::text(), QString());
        toggle.resize(toggle.width() - 10, toggle.height());
        QApplication::sendEvent(&toggle, &help);
        QCOMPARE(QToolTip::text(), QStringLiteral("Rythm"));
        QToolTip::hideText();
    }

    void pressAndSpaceFlipIt()
    {
        ToggleButton toggle(QStringLiteral("Bass"), Tone::Instrument);
        toggle.show();
        QTest::mouseClick(&toggle, Qt::LeftButton);
        QVERIFY(toggle.isChecked());
        QTest::keyClick(&toggle, Qt::Key_Space);
        QVERIFY(!toggle.isChecked());
    }
};

VELGOR_WIDGET_TEST(TestToggleButton)
#include "tst_ToggleButton.moc"
