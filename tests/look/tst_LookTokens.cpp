#include "ColourMix.h"
#include "Contrast.h"
#include "LookTokens.h"
#include "TestProgram.h"

#include <QApplication>
#include <QTest>
#include <QToolTip>

namespace {

using Token = QColor LookTokens::*;

constexpr double forText = 4.5;
constexpr double forMarks = 3;

} // namespace

class TestLookTokens : public QObject {
    Q_OBJECT

private:
    static void addPairs(const char *name, const QList<Token> &above, const QList<Token> &below, double limit)
    {
        for (const bool dark : {false, true}) {
            const LookTokens tokens = dark ? LookTokens::dark() : LookTokens::light();
            for (qsizetype i = 0; i < above.size() * below.size(); ++i) {
                QTest::addRow("%s %lld, %s", name, i, dark ? "dark" : "light")
                    << tokens.*above[i / below.size()] << tokens.*below[i % below.size()] << limit;
            }
        }
    }

private Q_SLOTS:
    void whatIsReadStandsOut_data()
    {
        using T = LookTokens;
        QTest::addColumn<QColor>("above");
        QTest::addColumn<QColor>("below");
        QTest::addColumn<double>("limit");
        addPairs("text", {&T::text}, {&T::base, &T::window, &T::bankBand, &T::rowHover}, forText);
        addPairs("secondary", {&T::secondary}, {&T::base, &T::window, &T::bankBand, &T::unsetFlag}, forText);
        addPairs("selected text", {&T::highlightedText}, {&T::selection}, forText);
        addPairs("text without focus", {&T::text}, {&T::selectionInactive}, forText);
        addPairs("drop", {&T::text, &T::secondary}, {&T::dropFill}, forText);
        addPairs("button", {&T::buttonText}, {&T::button, &T::buttonHover, &T::buttonPressed}, forText);
        addPairs("unset toggle", {&T::buttonText}, {&T::unsetFlag, &T::unsetFlagHover}, forText);
        addPairs("accent text", {&T::accentText}, {&T::base, &T::window, &T::selection}, forText);
        addPairs("white", {&T::badgeText},
            {&T::accent, &T::instrument, &T::usage, &T::style, &T::strong, &T::strongHover}, forText);
        addPairs("destructive", {&T::destructive}, {&T::button, &T::window}, forText);
        addPairs("tool tip", {&T::toolTipText}, {&T::toolTip}, forText);
        addPairs("field border", {&T::fieldBorder}, {&T::base, &T::window}, forMarks);
        addPairs("mark off", {&T::markOff}, {&T::base, &T::bankBand, &T::rowHover}, forMarks);
        addPairs("mark off, selected", {&T::secondary}, {&T::selection}, forMarks);
        addPairs("pill", {&T::selectionPill}, {&T::selection, &T::base, &T::dropFill}, forMarks);
        addPairs("pill without focus", {&T::selectionInactivePill}, {&T::selectionInactive}, forMarks);
        addPairs("focus ring", {&T::focusRing}, {&T::base, &T::window, &T::selection}, forMarks);
        addPairs("warning", {&T::warning}, {&T::window}, forMarks);
        addPairs("set tones", {&T::accent, &T::instrument, &T::usage, &T::style}, {&T::window}, forMarks);
    }

    void whatIsReadStandsOut()
    {
        QFETCH(const QColor, above);
        QFETCH(const QColor, below);
        QFETCH(const double, limit);
        const double contrast = Contrast::between(above, below);
        QVERIFY2(contrast >= limit, qPrintable(QString::number(contrast)));
    }

    void whiteStandsOnToneUnderThePointerAndPressed()
    {
        for (const LookTokens &tokens : {LookTokens::light(), LookTokens::dark()}) {
            for (const QColor &tone : {tokens.accent, tokens.instrument, tokens.usage, tokens.style}) {
                QVERIFY(Contrast::between(tokens.badgeText, hovered(tone)) >= forText);
                QVERIFY(Contrast::between(tokens.badgeText, pressed(tone)) >= forText);
            }
        }
        QCOMPARE(hovered(LookTokens::light().accent), QColor(0x0B6D67));
        QCOMPARE(hovered(LookTokens::dark().accent), QColor(0x15716B));
    }

    void paletteSetsEveryRoleOfEveryGroup()
    {
        for (const LookTokens &tokens : {LookTokens::light(), LookTokens::dark()}) {
            const QPalette palette = tokens.palette();
            for (int group = 0; group < QPalette::NColorGroups; ++group) {
                for (int role = 0; role < QPalette::NColorRoles; ++role) {
                    if (role != QPalette::NoRole) {
                        QVERIFY2(palette.isBrushSet(
                                     static_cast<QPalette::ColorGroup>(group), static_cast<QPalette::ColorRole>(role)),
                            qPrintable(QStringLiteral("%1 %2").arg(group).arg(role)));
                    }
                }
            }
        }
    }

    void paletteTellsFocusedAndDisabledFromTheRest()
    {
        const LookTokens tokens = LookTokens::light();
        const QPalette palette = tokens.palette();
        QCOMPARE(palette.color(QPalette::Active, QPalette::Highlight), tokens.selection);
        QCOMPARE(palette.color(QPalette::Inactive, QPalette::Highlight), tokens.selectionInactive);
        QCOMPARE(palette.color(QPalette::Disabled, QPalette::Base), tokens.window);
        QCOMPARE(palette.color(QPalette::Active, QPalette::Base), tokens.base);
        QCOMPARE(palette.color(QPalette::Disabled, QPalette::WindowText), tokens.disabledText);
    }

    void schemeReachesTokensPaletteAndToolTips()
    {
        for (const bool dark : {true, false, true}) {
            applyLook(dark);
            QCOMPARE(LookTokens::current().isDark, dark);
            const QColor window = dark ? LookTokens::dark().window : LookTokens::light().window;
            QCOMPARE(LookTokens::current().window, window);
            QCOMPARE(QApplication::palette().color(QPalette::Window), window);
            QCOMPARE(QToolTip::palette().color(QPalette::ToolTipBase), LookTokens::current().toolTip);
        }
    }
};

VELGOR_WIDGET_TEST(TestLookTokens)
#include "tst_LookTokens.moc"
