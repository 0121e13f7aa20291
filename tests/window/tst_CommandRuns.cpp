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

class TestCommandRuns : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void newAndResetFillAListOrAskForADefault_data()
    {
        QTest::addColumn<int>("id");
        QTest::newRow("new") << static_cast<int>(CommandId::NewVelgorFile);
        QTest::newRow("reset") << static_cast<int>(CommandId::Reset);
    }

    void newAndResetFillAListOrAskForADefault()
    {
        QFETCH(const int, id);
        Window window(QStringLiteral("A"));
        QAction &action = window.action(static_cast<CommandId>(id));
        action.trigger();
        QVERIFY(window.desk.content.selectDefault());
        QVERIFY(window.desk.content.velgorContentPatchList().isEmpty());
        window.desk.libraryEditor.setDefaultPatch(window.desk.idOf(0));
        window.desk.content.setSelectDefault(false);
        action.trigger();
        QVERIFY(!window.desk.content.selectDefault());
        QCOMPARE(window.desk.content.velgorContentPatchList().size(), 99);
    }

    void importFillsTheList()
    {
        Window window;
        window.desk.memory.files.insert(
            QStringLiteral("in"), TestRecords::fileBytes({TestRecords::patch(QStringLiteral("Lead"))}));
        window.desk.dialogs.answer = QStringLiteral("in");
        window.action(CommandId::Import).trigger();
        QCOMPARE(window.desk.content.velgorContentPatchList().size(), 1);
        QVERIFY(window.action(CommandId::Export).isEnabled());
    }

    void exportAsksForTheDisclaimerAndWritesNothing()
    {
        Window window(QStringLiteral("A"));
        window.desk.fillContent(QStringLiteral("x"));
        window.desk.dialogs.answer = QStringLiteral("out");
        window.action(CommandId::Export).trigger();
        QCOMPARE(window.tasks.asked, QStringList{QStringLiteral("confirmExport")});
        QVERIFY(window.desk.memory.files.isEmpty());
    }

    void withoutAListThereIsNothingToExport()
    {
        Window window(QStringLiteral("A"));
        window.action(CommandId::Export).trigger();
        QCOMPARE(window.tasks.asked, QStringList());
        QVERIFY(!window.desk.content.saveError());
    }

    void exportOfOnePatchIsThatOfTheSelectedOne()
    {
        Window window(QStringLiteral("A B"));
        window.desk.select(1);
        window.desk.dialogs.answer = QStringLiteral("out");
        window.action(CommandId::ExportOnePatch).trigger();
        QCOMPARE(window.desk.dialogs.asked, QStringList{QStringLiteral("Save patch: B.prst")});
        const auto file = SPresetFile::fromData(window.desk.memory.files.value(QStringLiteral("out")));
        QVERIFY(file && file->patches.size() == 1);
        QCOMPARE(file->patches.first().name, QStringLiteral("B"));
    }

    void theTailBitIsOneOfTwo()
    {
        Window window;
        const auto checked = [&window] {
            return std::pair(window.action(CommandId::NormalTailBit).isChecked(),
                window.action(CommandId::InvertedTailBit).isChecked());
        };
        QCOMPARE(checked(), std::pair(true, false));
        window.action(CommandId::InvertedTailBit).trigger();
        QVERIFY(window.desk.content.inverseTailBit());
        QCOMPARE(checked(), std::pair(false, true));
        window.action(CommandId::InvertedTailBit).trigger();
        QCOMPARE(checked(), std::pair(false, true));
        window.action(CommandId::NormalTailBit).trigger();
        QVERIFY(!window.desk.content.inverseTailBit());
        QCOMPARE(checked(), std::pair(true, false));
    }

    void theColourSchemeIsOneOfThree()
    {
        Window window;
        const QList<CommandId> ids{CommandId::SystemScheme, CommandId::DarkScheme, CommandId::LightScheme};
        QVERIFY(window.action(CommandId::SystemScheme).isChecked());
        for (int scheme = 2; scheme >= 0; --scheme) {
            window.action(ids.at(scheme)).trigger();
            QCOMPARE(static_cast<int>(window.desk.preferences.colorScheme()), scheme);
            for (const CommandId id : ids) {
                QCOMPARE(window.action(id).isChecked(), id == ids.at(scheme));
            }
        }
    }

    void libraryCommandsActOnTheSelectedPatch()
    {
        Window window(QStringLiteral("A B"));
        window.desk.select(1);
        window.action(CommandId::SetAsDefault).trigger();
        QVERIFY(window.desk.libraryEditor.isDefaultPatch(window.desk.idOf(1)));
        window.action(CommandId::Duplicate).trigger();
        QCOMPARE(window.desk.shown(), QStringLiteral("A B B-1"));
        window.action(CommandId::FindSimilar).trigger();
        QVERIFY(window.desk.library.isMultiSel());
        QCOMPARE(TestPatches::names(window.desk.library.getMultiSelection()).join(u' '), QStringLiteral("B B-1"));
        window.action(CommandId::SelectAll).trigger();
        QCOMPARE(window.desk.library.multiSelections().count(true), 3);
    }

    void deleteOnlyAsksForConfirmation()
    {
        Window window(QStringLiteral("A B"));
        window.desk.select(1);
        window.action(CommandId::Delete).trigger();
        QVERIFY(window.desk.library.deleteConfirm());
        QCOMPARE(window.desk.shown(), QStringLiteral("A B"));
    }

    void aFlagCommandFlipsItsFlag_data()
    {
        using Flag = bool VelgorPatch::*;
        QTest::addColumn<int>("id");
        QTest::addColumn<Flag>("flag");
        QTest::newRow("Guitar") << static_cast<int>(markId(&VelgorPatch::guitar)) << &VelgorPatch::guitar;
        QTest::newRow("Bass") << static_cast<int>(markId(&VelgorPatch::bass)) << &VelgorPatch::bass;
        QTest::newRow("Rythm") << static_cast<int>(markId(&VelgorPatch::rythm)) << &VelgorPatch::rythm;
        QTest::newRow("Solo") << static_cast<int>(markId(&VelgorPatch::solo)) << &VelgorPatch::solo;
        QTest::newRow("Clean") << static_cast<int>(markId(&VelgorPatch::clean)) << &VelgorPatch::clean;
        QTest::newRow("Crunch") << static_cast<int>(markId(&VelgorPatch::crunch)) << &VelgorPatch::crunch;
        QTest::newRow("Drive") << static_cast<int>(markId(&VelgorPatch::drive)) << &VelgorPatch::drive;
        QTest::newRow("Higain") << static_cast<int>(markId(&VelgorPatch::higain)) << &VelgorPatch::higain;
    }

    void aFlagCommandFlipsItsFlag()
    {
        using Flag = bool VelgorPatch::*;
        QFETCH(const int, id);
        QFETCH(const Flag, flag);
        Window window(QStringLiteral("A"));
        window.desk.select(0);
        QAction &action = window.action(static_cast<CommandId>(id));
        QVERIFY(!action.isChecked());
        VelgorPatch expected = window.desk.library.patches().first();
        expected.*flag = true;
        action.trigger();
        QVERIFY(window.desk.library.patches().first() == expected);
        QVERIFY(action.isChecked());
        action.trigger();
        QVERIFY(!(window.desk.library.patches().first().*flag));
        QVERIFY(!action.isChecked());
    }

    void slotCommandsActOnTheSelectedSlots()
    {
        Window window(QStringLiteral("A"));
        window.desk.select(0);
        window.desk.fillContent(QStringLiteral("x y z"));
        const auto slotNames = [&window] {
            QStringList names;
            for (const VelgorContentPatch &slot : window.desk.content.velgorContentPatchList()) {
                names.append(slot.patch.name);
            }
            return names.join(u' ');
        };
        QVERIFY(!window.action(CommandId::MoveSlotUp).isEnabled());
        window.action(CommandId::MoveSlotDown).trigger();
        QCOMPARE(slotNames(), QStringLiteral("y x z"));
        window.action(CommandId::MoveSlotUp).trigger();
        QCOMPARE(slotNames(), QStringLiteral("x y z"));
        window.action(CommandId::KeepInLibrary).trigger();
        QCOMPARE(window.desk.shown(), QStringLiteral("A x"));
        window.desk.select(0);
        window.action(CommandId::PutIntoSlot).trigger();
        QCOMPARE(slotNames(), QStringLiteral("A y z"));
        window.action(CommandId::ReplaceSlots).trigger();
        QCOMPARE(slotNames(), QStringLiteral("A A z"));
    }

    void whatTheWindowDoesIsAskedOfIt()
    {
        Window window(QStringLiteral("A B"));
        window.tasks.canMove = window.tasks.hasFiles = true;
        window.commands.refresh();
        for (const CommandId id : {CommandId::Quit, CommandId::Tick, CommandId::FocusFilter, CommandId::MovePatchUp,
                 CommandId::MovePatchDown, CommandId::ClearRecentFiles, CommandId::CheckLibrary, CommandId::NextColumn,
                 CommandId::PreviousColumn, CommandId::About}) {
            window.action(id).trigger();
        }
        QCOMPARE(window.tasks.asked.join(u';'),
            QStringLiteral("closeWindow;flipTick;focusFilter;move -1;move 1;clearRecentFiles;checkLibrary;column "
                           "1;column -1;showAbout"));
    }

    void pagesAndTheFolderAreOpenedOutside()
    {
        QList<QUrl> opened;
        Window window;
        window.desk.storage.setShowDirectory([&opened](const QUrl &url) { opened.append(url); });
        window.action(CommandId::Donate).trigger();
        window.action(CommandId::OnlineHelp).trigger();
        window.action(CommandId::ColumnHelp).trigger();
        window.action(CommandId::ShowLibraryFolder).trigger();
        QCOMPARE(window.tasks.asked.join(u';'),
            WebPages::donation().toString() + QStringLiteral(";showGuide;showColumnHelp"));
        QCOMPARE(opened, QList{QUrl::fromLocalFile(window.desk.path())});
    }
};

VELGOR_WIDGET_TEST(TestCommandRuns)
#include "tst_CommandRuns.moc"
