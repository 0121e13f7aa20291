#include "PatchFlags.h"

#include "ClassificationMarks.h"
#include "CommandTable.h"
#include "FilterFlags.h"
#include "FurtherFlag.h"
#include "InstrumentUsageStyleDetailsView.h"
#include "PatchRoles.h"
#include "ShownWidgets.h"
#include "TestDesk.h"
#include "TestProgram.h"
#include "VelgorStyle.h"

#include <QApplication>
#include <QSet>

using namespace ShownWidgets;

/// What the window makes of the table of fields, and of a table with one flag more.
class TestPatchFlags : public QObject {
    Q_OBJECT

private:
    const std::vector<PatchField> m_rows = FurtherFlag::rowsWith();

    static QString labelsOf(const ShownFlags &flags)
    {
        QStringList labels;
        for (const PatchField *field : flags) {
            labels.append(PatchFlags::label(*field));
        }
        return labels.join(u' ');
    }

    static QStringList togglesOf(const QWidget &view)
    {
        QStringList texts;
        const QList<ToggleButton *> toggles = view.findChildren<ToggleButton *>();
        for (const ToggleButton *toggle : toggles) {
            texts.append(toggle->text());
        }
        return texts;
    }

    /// Every toggle is seen whole, and none covers another.
    static void verifyPlaces(const QWidget &view)
    {
        const QList<ToggleButton *> toggles = view.findChildren<ToggleButton *>();
        for (const ToggleButton *toggle : toggles) {
            QVERIFY2(view.rect().contains(toggle->geometry()), qPrintable(toggle->text()));
            for (const ToggleButton *other : toggles) {
                QVERIFY(other == toggle || !other->geometry().intersects(toggle->geometry()));
            }
        }
    }

private Q_SLOTS:
    void initTestCase() { QApplication::setStyle(new VelgorStyle); }

    void flagsHaveTheirOrderAndTone()
    {
        QCOMPARE(labelsOf(PatchFlags::inFilter()),
            QStringLiteral("Guitar Bass Rythm Solo User IR Clean Crunch Drive Higain"));
        QCOMPARE(labelsOf(PatchFlags::marks()), QStringLiteral("Guitar Bass Rythm Solo Clean Crunch Drive Higain"));
        QString tones;
        QString initials;
        for (const PatchField *field : PatchFlags::inFilter()) {
            tones += QString::number(static_cast<int>(PatchFlags::tone(*field)));
            initials += PatchFlags::initial(*field) + u' ';
        }
        QCOMPARE(tones, QStringLiteral("112203333"));
        QCOMPARE(initials, QStringLiteral("G B R S U Cl Cr D H "));
    }

    void aFurtherFlagHasAToggleInTheFilter()
    {
        FilterFlags view(nullptr, m_rows);
        QCOMPARE(togglesOf(view).join(u' '),
            QStringLiteral("Guitar Bass Rythm Solo Live User IR Clean Crunch Drive Higain"));
        view.show();
        for (const int width : {view.minimumSizeHint().width(), 456, 1000}) {
            view.resize(width, view.heightAt(width));
            QCoreApplication::sendPostedEvents();
            verifyPlaces(view);
        }
        PatchFlag pressed = nullptr;
        connect(&view, &FilterFlags::flagToggled, this, [&pressed](PatchFlag flag) { pressed = flag; });
        press(view, QStringLiteral("Filter: Live"));
        QCOMPARE(pressed, FurtherFlag::row.flag);
        VelgorPatch asked(quint64(1));
        asked.solo = true;
        view.showFlags(asked);
        QVERIFY(!named<ToggleButton>(view, QStringLiteral("Filter: Live"))->isChecked());
        asked.empty = true;
        view.showFlags(asked);
        QVERIFY(named<ToggleButton>(view, QStringLiteral("Filter: Live"))->isChecked());
        QVERIFY(!named<ToggleButton>(view, QStringLiteral("Filter: User IR"))->isChecked());
    }

    void aFurtherFlagHasAToggleInTheDetails_data()
    {
        QTest::addColumn<bool>("isStacked");
        QTest::addColumn<int>("togglesInRow");
        QTest::newRow("beside labels") << false << 4;
        QTest::newRow("below labels") << true << 4;
        QTest::newRow("two in a row") << true << 2;
    }

    void aFurtherFlagHasAToggleInTheDetails()
    {
        QFETCH(const bool, isStacked);
        QFETCH(const int, togglesInRow);
        InstrumentUsageStyleDetailsView view(nullptr, m_rows);
        view.setArrangement(isStacked, togglesInRow);
        view.resize(600, 0);
        view.show();
        QCoreApplication::sendPostedEvents();
        view.resize(600, view.sizeHint().height());
        QCOMPARE(togglesOf(view).join(u' '), QStringLiteral("Guitar Bass Rythm Solo Live Clean Crunch Drive Higain"));
        verifyPlaces(view);
        // It stands with its kind, above the first toggle of the next one.
        const auto *live = named<ToggleButton>(view, QStringLiteral("Live"));
        QVERIFY(live->y() > named<ToggleButton>(view, QStringLiteral("Guitar"))->y());
        QVERIFY(live->y() < named<ToggleButton>(view, QStringLiteral("Clean"))->y());
        QCOMPARE(live->x(), named<ToggleButton>(view, QStringLiteral("Guitar"))->x());
        QCOMPARE(live->tone(), ToggleButton::Tone::Usage);
        PatchFlag pressed = nullptr;
        connect(
            &view, &InstrumentUsageStyleDetailsView::flagToggled, this, [&pressed](PatchFlag flag) { pressed = flag; });
        press(view, QStringLiteral("Live"));
        QCOMPARE(pressed, FurtherFlag::row.flag);
        VelgorPatch patch(quint64(1));
        view.showFlags(patch);
        QVERIFY(!live->isChecked());
        patch.empty = true;
        view.showFlags(patch);
        QVERIFY(live->isChecked());
    }

    void aFurtherFlagIsMarkedInTheRows()
    {
        VelgorPatch patch(quint64(1));
        patch.hasUserIR = patch.solo = patch.drive = patch.empty = true;
        QCOMPARE(labelsOf(PatchFlags::classification(patch)), QStringLiteral("Solo Drive"));
        const ShownFlags flags = PatchFlags::classification(patch, m_rows);
        QCOMPARE(PatchRoles::spokenFlags(flags), QStringLiteral("Solo, Live, Drive"));
        QVERIFY(ClassificationMarks::width(flags, true, QFont())
            > ClassificationMarks::width(PatchFlags::classification(patch), true, QFont()));
    }

    void aFurtherFlagIsACommandThatLeavesTheOthersTheirKeys()
    {
        TestDesk desk;
        QStringList said;
        QSet<int> ids;
        for (const Command &command : markCommands(desk.library, desk.libraryEditor, m_rows)) {
            said.append(command.shortcuts.first().toString() + u' ' + command.label());
            ids.insert(static_cast<int>(command.id));
        }
        QCOMPARE(said.join(u';'),
            QStringLiteral("Ctrl+1 &Guitar;Ctrl+2 &Bass;Ctrl+3 &Rythm;Ctrl+4 &Solo; Li&ve;Ctrl+5 &Clean;Ctrl+6 Cr&unch;"
                           "Ctrl+7 &Drive;Ctrl+8 &Higain"));
        QCOMPARE(ids.size(), 9);
        QVERIFY(ids.contains(static_cast<int>(markId(FurtherFlag::row.flag, m_rows))));
    }
};

VELGOR_WIDGET_TEST(TestPatchFlags)
#include "tst_PatchFlags.moc"
