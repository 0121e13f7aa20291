#include "CommandTable.h"
#include "CommandWindow.h"
#include "Commands.h"
#include "ShownWidgets.h"
#include "TestDesk.h"
#include "TestProgram.h"
#include "WebPages.h"
#include "WindowTasks.h"

#include <QAction>
#include <QApplication>
#include <QTest>

using namespace CommandWindow;

namespace {

/// How a library and a list stand when the enabling of commands is looked at.
enum State {
    Empty = 0x1, ///< an empty library and no list
    One = 0x2, ///< one patch, not selected, and a list without a selected slot
    OneSelected = 0x4, ///< one patch, selected
    TwoSelected = 0x8, ///< two patches, one of them selected, and a list with a selected slot in its middle
    TwoTicked = 0x10, ///< two patches, one of them ticked, none selected
    Always = 0x1f,
    Never = 0,
};

void bringTo(Window &window, State state)
{
    window.tasks.canTick = window.tasks.showsPatches = state != Empty;
    window.commands.refresh();
    switch (state) {
    case Empty:
        window.desk.library.setSelection(window.desk.idOf(0));
        break;
    case One:
        window.desk.fillContent(QStringLiteral("x y z"));
        window.desk.content.setSelections({});
        break;
    case OneSelected:
        window.desk.select(0);
        break;
    case TwoSelected:
        window.desk.select(0);
        window.desk.fillContent(QStringLiteral("x y z"));
        window.desk.content.setSelections({window.desk.content.velgorContentPatchList().at(1).id});
        break;
    case TwoTicked:
        window.desk.tick({1});
        break;
    default:
        QFAIL("no such state");
    }
}

QString libraryOf(State state)
{
    return state == Empty                      ? QString()
        : state == One || state == OneSelected ? QStringLiteral("A")
                                               : QStringLiteral("A B");
}

} // namespace

class TestCommandTable : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyCommandStandsInTheTableOnce()
    {
        const Window window;
        QList<int> ids;
        for (const Command &command : window.commands.table()) {
            QVERIFY(!ids.contains(static_cast<int>(command.id)));
            ids.append(static_cast<int>(command.id));
            QVERIFY(command.label && command.run);
        }
        QCOMPARE(ids.size(), static_cast<int>(CommandId::FirstMark) + PatchFlags::marks().size());
    }

    void aCommandIsAsItIsToldOf_data()
    {
        QTest::addColumn<int>("id");
        QTest::addColumn<QString>("label");
        QTest::addColumn<QString>("shortcuts");
        QTest::addColumn<int>("enabledIn");
        const auto row = [](CommandId id, const char *label, const char *shortcuts, int enabledIn) {
            QTest::newRow(label) << static_cast<int>(id) << QString::fromUtf8(label) << QString::fromLatin1(shortcuts)
                                 << enabledIn;
        };
        constexpr int selected = OneSelected | TwoSelected;
        constexpr int several = selected | TwoTicked;
        constexpr int list = One | TwoSelected;
        row(CommandId::NewVelgorFile, "New Velgor file", "", Always);
        row(CommandId::Import, "Import...", "Ctrl+O", Always);
        row(CommandId::ClearRecentFiles, "Clear List", "", Never);
        row(CommandId::Export, "Export...", "Ctrl+S", list);
        row(CommandId::NormalTailBit, "Normal tail bit", "", Always);
        row(CommandId::InvertedTailBit, "Inverted tail bit", "", Always);
        row(CommandId::Quit, "Quit", "Ctrl+Q", Always);
        row(CommandId::Reset, "Reset to Default Patch", "", Always);
        row(CommandId::PutIntoSlot, "Put Library Patch into Slot", "Return; Enter", TwoSelected);
        row(CommandId::ReplaceSlots, "Replace Every Selected Slot with Library Patch", "Shift+Return; Shift+Enter",
            TwoSelected);
        row(CommandId::KeepInLibrary, "Keep Selected Slots in Library", "Ctrl+K", TwoSelected);
        row(CommandId::MoveSlotUp, "Move Selected Slots Up", "Alt+Up", TwoSelected);
        row(CommandId::MoveSlotDown, "Move Selected Slots Down", "Alt+Down", TwoSelected);
        row(CommandId::MovePatchUp, "Move Library Patch Up", "Alt+Up", Never);
        row(CommandId::MovePatchDown, "Move Library Patch Down", "Alt+Down", Never);
        row(CommandId::Select, "Tick Several Library Patches", "", Always & ~Empty);
        row(CommandId::Tick, "Tick Library Patch", "Ctrl+T", Always & ~Empty);
        row(CommandId::Rename, "Rename Library Patch", "F2", selected);
        row(CommandId::FocusFilter, "Go to Filter", "Ctrl+L", Always);
        row(markId(&VelgorPatch::guitar), "Guitar", "Ctrl+1", several);
        row(markId(&VelgorPatch::bass), "Bass", "Ctrl+2", several);
        row(markId(&VelgorPatch::rythm), "Rythm", "Ctrl+3", several);
        row(markId(&VelgorPatch::solo), "Solo", "Ctrl+4", several);
        row(markId(&VelgorPatch::clean), "Clean", "Ctrl+5", several);
        row(markId(&VelgorPatch::crunch), "Crunch", "Ctrl+6", several);
        row(markId(&VelgorPatch::drive), "Drive", "Ctrl+7", several);
        row(markId(&VelgorPatch::higain), "Higain", "Ctrl+8", several);
        row(CommandId::SystemScheme, "System", "", Always);
        row(CommandId::DarkScheme, "Dark", "", Always);
        row(CommandId::LightScheme, "Light", "", Always);
        row(CommandId::Sort, "Sort ascend", "", TwoSelected | TwoTicked);
        row(CommandId::NextColumn, "Next Column", "F6", Always);
        row(CommandId::PreviousColumn, "Previous Column", "Shift+F6", Always);
        row(CommandId::ShowLibraryFolder, "Show library folder", "", Always);
        row(CommandId::CheckLibrary, "Check Library...", "", Always);
        row(CommandId::ExportOnePatch, "Export One Patch", "Ctrl+Shift+S", selected);
        row(CommandId::SetAsDefault, "Set as Default Patch", "Ctrl+Return; Ctrl+Enter", selected);
        row(CommandId::Duplicate, "Duplicate Patch", "Ctrl+D", several);
        row(CommandId::FindSimilar, "Find Similar Patches", "Ctrl+F", TwoSelected);
        row(CommandId::SelectAll, "Select All", "Ctrl+Shift+A", Always & ~Empty);
        row(CommandId::Delete, "Delete patch", "Ctrl+Del", several);
        row(CommandId::Donate, "Send Mon\u20ACy to $upport Development", "", Always);
        row(CommandId::OnlineHelp, "Online help", "", Always);
        row(CommandId::ColumnHelp, "Help for This Column", "F1", Always);
        row(CommandId::About, "About Velgor Library Manager", "", Always);
    }

    void aCommandIsAsItIsToldOf()
    {
        QFETCH(const int, id);
        QFETCH(const QString, label);
        QFETCH(const QString, shortcuts);
        QFETCH(const int, enabledIn);
        const auto command = static_cast<CommandId>(id);
        QCOMPARE(Window().label(command), label);
        QCOMPARE(QKeySequence::listToString(Window().action(command).shortcuts()), shortcuts);
        for (const State state : {Empty, One, OneSelected, TwoSelected, TwoTicked}) {
            Window window(libraryOf(state));
            bringTo(window, state);
            QVERIFY2(window.action(command).isEnabled() == ((enabledIn & state) != 0),
                qPrintable(QStringLiteral("state %1").arg(state)));
        }
    }

    void aSelectedPatchThatIsGoneEnablesNothingOfPatches()
    {
        Window window(QStringLiteral("A B"));
        window.desk.library.setSelection(12);
        for (const CommandId id :
            {CommandId::ExportOnePatch, CommandId::SetAsDefault, CommandId::Duplicate, markId(&VelgorPatch::guitar)}) {
            QVERIFY(!window.action(id).isEnabled());
        }
    }

    void whereNothingWouldHappenNothingIsEnabled()
    {
        Window window(QStringLiteral("A B"));
        window.tasks.canTick = window.tasks.showsPatches = false;
        window.desk.tick({0, 1});
        window.desk.library.setIsMultiSel(false);
        for (const CommandId id : {CommandId::Tick, CommandId::SelectAll, CommandId::Delete, CommandId::Duplicate,
                 markId(&VelgorPatch::guitar), CommandId::Rename}) {
            QVERIFY2(!window.action(id).isEnabled(), qPrintable(window.label(id)));
        }
        QCOMPARE(window.commands.command(CommandId::Delete).button().toolTip, QStringLiteral("Select a patch first"));
    }

    void aCommandOnManyRefreshesTheOthersOnce()
    {
        Window window(QStringLiteral("A B C D"));
        window.desk.tick({0, 1, 2, 3});
        ShownWidgets::catchUp();
        int refreshes = 0;
        connect(&window.commands, &Commands::refreshed, this, [&refreshes] { ++refreshes; });
        window.action(CommandId::Duplicate).trigger();
        ShownWidgets::catchUp();
        QCOMPARE(window.desk.library.count(), 8);
        QCOMPARE(refreshes, 1);
    }

    void deleteIsInThePluralFromOneTickOn_data()
    {
        QTest::addColumn<QList<qsizetype>>("ticked");
        QTest::addColumn<QString>("label");
        QTest::newRow("none") << QList<qsizetype>() << QStringLiteral("Delete patch");
        QTest::newRow("one") << QList<qsizetype>{1} << QStringLiteral("Delete patches");
        QTest::newRow("two") << QList<qsizetype>{0, 1} << QStringLiteral("Delete patches");
    }

    void deleteIsInThePluralFromOneTickOn()
    {
        QFETCH(const QList<qsizetype>, ticked);
        QFETCH(const QString, label);
        Window window(QStringLiteral("A B"));
        window.desk.tick(ticked);
        QCOMPARE(window.label(CommandId::Delete), label);
        QCOMPARE(window.action(CommandId::Delete).isEnabled(), !ticked.isEmpty());
        QCOMPARE(window.buttonLabel(CommandId::Delete), QStringLiteral("Delete"));
        QCOMPARE(window.buttonLabel(CommandId::Select), QStringLiteral("Select (%1)").arg(ticked.size()));
        window.desk.library.setIsMultiSel(false);
        QCOMPARE(window.label(CommandId::Delete), label);
        QCOMPARE(window.buttonLabel(CommandId::Select), QStringLiteral("Select (0)"));
    }

    void sortSaysWhatComesNext()
    {
        Window window(QStringLiteral("B A"));
        const auto sort = [&window] { window.action(CommandId::Sort).trigger(); };
        const auto said = [&window] {
            return window.label(CommandId::Sort) + u' ' + window.symbol(CommandId::Sort) + u' ' + window.desk.shown();
        };
        QCOMPARE(said(), QStringLiteral("Sort ascend arrow.up B A"));
        sort();
        QCOMPARE(said(), QStringLiteral("Sort previous arrow.right A B"));
        sort();
        QCOMPARE(said(), QStringLiteral("Sort descend arrow.down B A"));
        sort();
        QCOMPARE(said(), QStringLiteral("Sort ascend arrow.up B A"));
        QCOMPARE(window.buttonLabel(CommandId::Sort), QStringLiteral("Sort"));
    }

    void buttonsHaveTheirLabelAndSymbol_data()
    {
        QTest::addColumn<int>("id");
        QTest::addColumn<QString>("said");
        const auto row = [](CommandId id, const char *said) {
            QTest::newRow(said) << static_cast<int>(id) << QString::fromLatin1(said);
        };
        row(CommandId::Import, "Import arrow.up.square");
        row(CommandId::Export, "Export arrow.down.square");
        row(CommandId::Reset, "Reset delete.left");
        row(CommandId::Select, "Select (0) circle");
        row(CommandId::Delete, "Delete trash");
        row(CommandId::Duplicate, "Duplicate doc.on.doc");
    }

    void buttonsHaveTheirLabelAndSymbol()
    {
        QFETCH(const int, id);
        QFETCH(const QString, said);
        Window window(QStringLiteral("A"));
        const auto command = static_cast<CommandId>(id);
        QCOMPARE(window.buttonLabel(command) + u' ' + window.symbol(command), said);
    }

    void theMarkOfSelectShowsTheMode()
    {
        Window window(QStringLiteral("A"));
        window.action(CommandId::Select).trigger();
        QCOMPARE(window.symbol(CommandId::Select), QStringLiteral("circle.badge.checkmark"));
        QVERIFY(window.action(CommandId::Select).isChecked());
        window.action(CommandId::Select).trigger();
        QVERIFY(!window.action(CommandId::Select).isChecked());
    }

    void whileTheLibraryLoadsOnlyWhatNeedsItIsDisabled()
    {
        Window window(QStringLiteral("A B"));
        window.desk.select(0);
        window.desk.fillContent(QStringLiteral("x y"));
        window.commands.setLibraryUsable(false);
        for (const CommandId id :
            {CommandId::NewVelgorFile, CommandId::Reset, CommandId::PutIntoSlot, CommandId::ReplaceSlots,
                CommandId::KeepInLibrary, CommandId::Select, CommandId::Tick, markId(&VelgorPatch::guitar),
                CommandId::Sort, CommandId::CheckLibrary, CommandId::ExportOnePatch, CommandId::SetAsDefault,
                CommandId::Duplicate, CommandId::FindSimilar, CommandId::SelectAll, CommandId::Delete}) {
            QVERIFY2(!window.action(id).isEnabled(), qPrintable(window.label(id)));
        }
        for (const CommandId id : {CommandId::Import, CommandId::Export, CommandId::Quit, CommandId::MoveSlotDown,
                 CommandId::ShowLibraryFolder, CommandId::OnlineHelp}) {
            QVERIFY2(window.action(id).isEnabled(), qPrintable(window.label(id)));
        }
        window.commands.setLibraryUsable(true);
        QVERIFY(window.action(CommandId::Sort).isEnabled());
    }

    void aListOwnsTheKeysThatItUses()
    {
        Window window(QStringLiteral("A"));
        QWidget widget;
        QWidget contentList;
        QWidget libraryList;
        window.commands.addShortcuts(widget, contentList, libraryList);
        const auto places = [&](CommandId id) {
            QAction *const action = &window.action(id);
            return QStringLiteral("%1%2%3")
                .arg(widget.actions().contains(action))
                .arg(contentList.actions().contains(action))
                .arg(libraryList.actions().contains(action));
        };
        QCOMPARE(places(CommandId::Import), QStringLiteral("100"));
        QCOMPARE(places(CommandId::Delete), QStringLiteral("100"));
        QCOMPARE(places(CommandId::PutIntoSlot), QStringLiteral("011"));
        QCOMPARE(places(CommandId::MoveSlotUp), QStringLiteral("010"));
        QCOMPARE(places(CommandId::MovePatchUp), QStringLiteral("001"));
        // Two commands with one key in one place would block each other.
        for (const QWidget *place : {&widget, &contentList, &libraryList}) {
            QSet<QKeySequence> keys;
            const QList<QAction *> actions = place->actions();
            for (const QAction *action : actions) {
                for (const QKeySequence &key : action->shortcuts()) {
                    QVERIFY2(!keys.contains(key), qPrintable(key.toString()));
                    keys.insert(key);
                }
            }
        }
    }
};

VELGOR_WIDGET_TEST(TestCommandTable)
#include "tst_CommandTable.moc"
