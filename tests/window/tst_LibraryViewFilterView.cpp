#include "LibraryViewFilterView.h"
#include "LookTokens.h"
#include "ShownWidgets.h"
#include "TestPatches.h"
#include "TestProgram.h"
#include "VelgorStyle.h"

#include <QApplication>
#include <QLineEdit>
#include <QShortcut>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

using namespace ShownWidgets;
using Flag = bool VelgorPatch::*;
Q_DECLARE_METATYPE(Flag)

namespace {

VelgorPatch flagged(Flag flag)
{
    VelgorPatch patch(QStringLiteral("Lead"), false);
    patch.*flag = true;
    return patch;
}

} // namespace

class TestLibraryViewFilterView : public QObject {
    Q_OBJECT

private:
    LibraryViewFilterView *m_view = nullptr;
    QSignalSpy *m_spy = nullptr;

    [[nodiscard]] QLineEdit *name() const { return named<QLineEdit>(*m_view, QStringLiteral("Filter by name")); }
    [[nodiscard]] QLineEdit *comment() const { return named<QLineEdit>(*m_view, QStringLiteral("Filter by comment")); }

private Q_SLOTS:
    void initTestCase() { QApplication::setStyle(new VelgorStyle); }

    void init()
    {
        applyLook(false);
        m_view = new LibraryViewFilterView;
        m_view->resize(456, m_view->sizeHint().height());
        m_view->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_view));
        m_spy = new QSignalSpy(m_view, &LibraryViewFilterView::filterChanged);
    }

    void cleanup()
    {
        delete m_spy;
        delete m_view;
    }

    void startsNeutral()
    {
        QCOMPARE(m_view->filter(), LibraryViewFilter());
        QVERIFY(!m_view->isActive());
        QCOMPARE(labels(*m_view), QStringList{QStringLiteral("Filter")});
        QCOMPARE(name()->placeholderText(), QStringLiteral("Name"));
        QCOMPARE(comment()->placeholderText(), QStringLiteral("Comment"));
    }

    void everyKeystrokeChangesTheFilterOnce()
    {
        QTest::keyClicks(name(), QStringLiteral("lead"));
        QCOMPARE(m_spy->count(), 4);
        QCOMPARE(m_spy->at(1).first().value<LibraryViewFilter>().filterPatch.name, QStringLiteral("le"));
        QCOMPARE(m_view->filter().filterPatch.name, QStringLiteral("lead"));
        QTest::keyClick(name(), Qt::Key_Backspace);
        QCOMPARE(m_spy->count(), 5);
        QTest::keyClick(name(), Qt::Key_Left);
        QTest::keyClick(name(), Qt::Key_Return);
        QCOMPARE(m_spy->count(), 5);
        QTest::keyClicks(comment(), QStringLiteral("a b"));
        QCOMPARE(m_spy->count(), 8);
        QCOMPARE(m_view->filter().filterPatch.comment, QStringLiteral("a b"));
        QCOMPARE(m_view->filter().filterPatch.name, QStringLiteral("lea"));
    }

    void aPressFlipsOneFlag_data()
    {
        QTest::addColumn<QString>("label");
        QTest::addColumn<Flag>("flag");
        QTest::newRow("Guitar") << QStringLiteral("Guitar") << &VelgorPatch::guitar;
        QTest::newRow("Bass") << QStringLiteral("Bass") << &VelgorPatch::bass;
        QTest::newRow("Rythm") << QStringLiteral("Rythm") << &VelgorPatch::rythm;
        QTest::newRow("Solo") << QStringLiteral("Solo") << &VelgorPatch::solo;
        QTest::newRow("User IR") << QStringLiteral("User IR") << &VelgorPatch::hasUserIR;
        QTest::newRow("Clean") << QStringLiteral("Clean") << &VelgorPatch::clean;
        QTest::newRow("Crunch") << QStringLiteral("Crunch") << &VelgorPatch::crunch;
        QTest::newRow("Drive") << QStringLiteral("Drive") << &VelgorPatch::drive;
        QTest::newRow("Higain") << QStringLiteral("Higain") << &VelgorPatch::higain;
    }

    void aPressFlipsOneFlag()
    {
        QFETCH(const QString, label);
        QFETCH(const Flag, flag);
        const QString spoken = QStringLiteral("Filter: ") + label;
        press(*m_view, spoken);
        LibraryViewFilter expected;
        expected.filterPatch.*flag = true;
        QCOMPARE(m_spy->count(), 1);
        QCOMPARE(m_view->filter(), expected);
        auto *button = named<QAbstractButton>(*m_view, spoken);
        QVERIFY(button->isCheckable() && button->isChecked());
        QCOMPARE(button->text(), label);
        QVERIFY(!button->toolTip().isEmpty());
        QVERIFY(m_view->filter().show(flagged(flag)));
        QVERIFY(!m_view->filter().show(VelgorPatch(QStringLiteral("Lead"), false)));
        press(*m_view, spoken);
        QCOMPARE(m_spy->count(), 2);
        QCOMPARE(m_view->filter(), LibraryViewFilter());
    }

    void pressingTwiceGivesTheFormerListBack()
    {
        const QList<VelgorPatch> patches{flagged(&VelgorPatch::guitar), flagged(&VelgorPatch::bass)};
        press(*m_view, QStringLiteral("Filter: Guitar"));
        QCOMPARE(m_view->filter().filter(patches).size(), 1);
        press(*m_view, QStringLiteral("Filter: Guitar"));
        QCOMPARE(m_view->filter().filter(patches), patches);
    }

    void escapeClearsItsOwnFieldOnly()
    {
        QTest::keyClicks(name(), QStringLiteral("ab"));
        QTest::keyClicks(comment(), QStringLiteral("cd"));
        m_spy->clear();
        QTest::keyClick(name(), Qt::Key_Escape);
        QCOMPARE(m_spy->count(), 1);
        QCOMPARE(name()->text(), QString());
        QCOMPARE(m_view->filter().filterPatch.comment, QStringLiteral("cd"));
        QTest::keyClick(name(), Qt::Key_Escape);
        QCOMPARE(m_spy->count(), 1);
    }

    void escapeBelongsToAFilledFieldBeforeTheWindow()
    {
        m_view->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_view));
        const QShortcut shortcut(QKeySequence(Qt::Key_Escape), m_view);
        QSignalSpy window(&shortcut, &QShortcut::activated);
        name()->setFocus();
        QTest::keyClicks(name(), QStringLiteral("ab"));
        QTest::keyClick(name(), Qt::Key_Escape);
        QCOMPARE(name()->text(), QString());
        QCOMPARE(window.count(), 0);
        QTest::keyClick(name(), Qt::Key_Escape);
        QCOMPARE(window.count(), 1);
    }

    void theClearButtonStandsInAFilledFieldOnly()
    {
        const QString spoken = QStringLiteral("Clear Name");
        QVERIFY(named<QToolButton>(*m_view, spoken) == nullptr);
        QTest::keyClicks(name(), QStringLiteral("ab"));
        QVERIFY(named<QToolButton>(*m_view, QStringLiteral("Clear Comment")) == nullptr);
        press(*m_view, spoken);
        QCOMPARE(m_view->filter(), LibraryViewFilter());
        QCOMPARE(m_spy->count(), 3);
        QVERIFY(named<QToolButton>(*m_view, spoken) == nullptr);
    }

    void clearShowsWhileAFilterIsActiveAndMovesNothing()
    {
        const QString clear = QStringLiteral("Clear");
        QVERIFY(named<QPushButton>(*m_view, clear) == nullptr);
        const QRect before = named<QAbstractButton>(*m_view, QStringLiteral("Filter: Higain"))->geometry();
        const QSize size = m_view->sizeHint();
        press(*m_view, QStringLiteral("Filter: Bass"));
        QTest::keyClicks(name(), QStringLiteral("a"));
        QTest::keyClicks(comment(), QStringLiteral(" "));
        QVERIFY(m_view->isActive());
        QVERIFY(named<QPushButton>(*m_view, clear) != nullptr);
        QCOMPARE(named<QAbstractButton>(*m_view, QStringLiteral("Filter: Higain"))->geometry(), before);
        QCOMPARE(m_view->sizeHint(), size);
        m_spy->clear();
        press(*m_view, clear);
        QCOMPARE(m_spy->count(), 1);
        QCOMPARE(m_view->filter(), LibraryViewFilter());
        QCOMPARE(name()->text() + comment()->text(), QString());
        QVERIFY(!named<QAbstractButton>(*m_view, QStringLiteral("Filter: Bass"))->isChecked());
        QVERIFY(named<QPushButton>(*m_view, clear) == nullptr);
    }

    void aFilterFromOutsideIsShownAndToldOnce()
    {
        LibraryViewFilter filter;
        filter.filterPatch.name = QStringLiteral("choir");
        filter.filterPatch.comment = QStringLiteral("long");
        filter.filterPatch.solo = true;
        m_view->setFilter(filter);
        m_view->setFilter(filter);
        QCOMPARE(m_spy->count(), 1);
        QCOMPARE(name()->text(), QStringLiteral("choir"));
        QCOMPARE(comment()->text(), QStringLiteral("long"));
        QVERIFY(named<QAbstractButton>(*m_view, QStringLiteral("Filter: Solo"))->isChecked());
        QCOMPARE(m_view->filter(), filter);
    }

    void typingInTheMiddleKeepsTheCursor()
    {
        QTest::keyClicks(name(), QStringLiteral("lad"));
        name()->setCursorPosition(1);
        QTest::keyClicks(name(), QStringLiteral("e"));
        QTest::keyClicks(name(), QStringLiteral("x"));
        QCOMPARE(m_view->filter().filterPatch.name, QStringLiteral("lexad"));
    }

    void theHeaderStaysWhileNothingCanBeFiltered()
    {
        m_view->setControlsEnabled(false);
        QVERIFY(!name()->isEnabled() && !comment()->isEnabled());
        QVERIFY(!named<QAbstractButton>(*m_view, QStringLiteral("Filter: Bass"))->isEnabled());
        QVERIFY(m_view->findChild<QLabel *>()->isEnabled());
    }

    void aSwitchOfTheSchemeLeavesNoColourBehind()
    {
        press(*m_view, QStringLiteral("Filter: Bass"));
        QTest::keyClicks(name(), QStringLiteral("a"));
        QTest::mouseMove(m_view, QPoint(1, 1));
        applyLook(true);
        QTest::qWait(1);
        LibraryViewFilterView fresh;
        fresh.setFilter(m_view->filter());
        fresh.resize(m_view->size());
        fresh.show();
        QVERIFY(QTest::qWaitForWindowExposed(&fresh));
        m_view->setFocusPolicy(Qt::StrongFocus);
        fresh.setFocusPolicy(Qt::StrongFocus);
        m_view->setFocus();
        fresh.setFocus();
        QCOMPARE(m_view->grab().toImage(), fresh.grab().toImage());
    }
};

VELGOR_WIDGET_TEST(TestLibraryViewFilterView)
#include "tst_LibraryViewFilterView.moc"
