#include "CommandTable.h"
#include "CommandTargets.h"
#include "ContentEditor.h"
#include "LibraryEditor.h"
#include "VelgorLibrary.h"
#include "WindowTasks.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(EditCommands)
};

Command markCommand(const PatchField &field, PatchFields::Rows rows)
{
    return {.id = markId(field.flag, rows),
        .menu = CommandMenu::Classify,
        .isFirstOfGroup = &field == PatchFlags::style(rows).constFirst(),
        .needsLibrary = true,
        .shortcuts = {QKeySequence(QString::fromLatin1(field.shortcut))},
        .label = [text = field.command](const Desk &) { return Texts::tr(text); },
        .isEnabled = [](const Desk &desk, const WindowTasks &) { return CommandTargets::count(desk.library) > 0; },
        .isChecked = [flag = field.flag](const Desk &desk) { return CommandTargets::allHave(desk.library, flag); },
        .run = [flag = field.flag](Desk &desk, WindowTasks &) { desk.libraryEditor.flipFlagOfSelected(flag); }};
}

} // namespace

QList<Command> editCommands()
{
    const QList<Command> beforeMarks{
        {.id = CommandId::PutIntoSlot,
            .menu = CommandMenu::Edit,
            .scope = CommandScope::BothLists,
            .needsLibrary = true,
            .shortcuts = {QKeySequence(Qt::Key_Return), QKeySequence(Qt::Key_Enter)},
            .label = [](const Desk &) { return Texts::tr("&Put Library Patch into Slot"); },
            .isEnabled = [](const Desk &desk, const WindowTasks &) { return desk.contentEditor.canPut(); },
            .run = [](Desk &desk, WindowTasks &) { desk.contentEditor.putIntoSelectedSlot(); }},
        {.id = CommandId::ReplaceSlots,
            .menu = CommandMenu::Edit,
            .scope = CommandScope::BothLists,
            .needsLibrary = true,
            .shortcuts = {QKeySequence(Qt::SHIFT | Qt::Key_Return), QKeySequence(Qt::SHIFT | Qt::Key_Enter)},
            .label = [](const Desk &) { return Texts::tr("&Replace Every Selected Slot with Library Patch"); },
            .isEnabled = [](const Desk &desk, const WindowTasks &) { return desk.contentEditor.canReplace(); },
            .run = [](Desk &desk, WindowTasks &) { desk.contentEditor.replaceSelectedSlots(); }},
        {.id = CommandId::KeepInLibrary,
            .menu = CommandMenu::Edit,
            .scope = CommandScope::BothLists,
            .needsLibrary = true,
            .shortcuts = {QKeySequence(Qt::CTRL | Qt::Key_K)},
            .label = [](const Desk &) { return Texts::tr("&Keep Selected Slots in Library"); },
            .isEnabled = [](const Desk &desk,
                             const WindowTasks &) { return desk.libraryEditor.canKeepSelectedSlots(); },
            .run = [](Desk &desk, WindowTasks &) { desk.libraryEditor.keepSelectedSlots(); }},
        {.id = CommandId::ShowInLibrary,
            .menu = CommandMenu::Edit,
            .needsLibrary = true,
            .shortcuts = {QKeySequence(Qt::SHIFT | Qt::CTRL | Qt::Key_L)},
            .label = [](const Desk &) { return Texts::tr("Sho&w in Library"); },
            .isEnabled =
                [](const Desk &desk, const WindowTasks &) {
                    return desk.library.count() > 0 && desk.libraryEditor.canKeepSelectedSlots();
                },
            .run = [](Desk &, WindowTasks &window) { window.showInLibrary(); }},
        {.id = CommandId::MoveSlotUp,
            .menu = CommandMenu::Edit,
            .isFirstOfGroup = true,
            .scope = CommandScope::ContentList,
            .shortcuts = {QKeySequence(Qt::ALT | Qt::Key_Up)},
            .label = [](const Desk &) { return Texts::tr("Move Selected Slots &Up"); },
            .isEnabled = [](const Desk &desk, const WindowTasks &) { return desk.contentEditor.canMoveSelected(-1); },
            .run = [](Desk &desk, WindowTasks &) { desk.contentEditor.moveSelectedSlots(-1); }},
        {.id = CommandId::MoveSlotDown,
            .menu = CommandMenu::Edit,
            .scope = CommandScope::ContentList,
            .shortcuts = {QKeySequence(Qt::ALT | Qt::Key_Down)},
            .label = [](const Desk &) { return Texts::tr("Move Selected Slots &Down"); },
            .isEnabled = [](const Desk &desk, const WindowTasks &) { return desk.contentEditor.canMoveSelected(1); },
            .run = [](Desk &desk, WindowTasks &) { desk.contentEditor.moveSelectedSlots(1); }},
        {.id = CommandId::MovePatchUp,
            .menu = CommandMenu::Edit,
            .scope = CommandScope::LibraryList,
            .needsLibrary = true,
            .shortcuts = {QKeySequence(Qt::ALT | Qt::Key_Up)},
            .label = [](const Desk &) { return Texts::tr("Move Library Patch Up"); },
            .isEnabled = [](const Desk &, const WindowTasks &window) { return window.canMoveLibraryPatch(-1); },
            .run = [](Desk &, WindowTasks &window) { window.moveLibraryPatch(-1); }},
        {.id = CommandId::MovePatchDown,
            .menu = CommandMenu::Edit,
            .scope = CommandScope::LibraryList,
            .needsLibrary = true,
            .shortcuts = {QKeySequence(Qt::ALT | Qt::Key_Down)},
            .label = [](const Desk &) { return Texts::tr("Move Library Patch Down"); },
            .isEnabled = [](const Desk &, const WindowTasks &window) { return window.canMoveLibraryPatch(1); },
            .run = [](Desk &, WindowTasks &window) { window.moveLibraryPatch(1); }},
        {.id = CommandId::Select,
            .menu = CommandMenu::Edit,
            .isFirstOfGroup = true,
            .needsLibrary = true,
            .label = [](const Desk &) { return Texts::tr("Tick &Several Library Patches"); },
            .buttonLabel =
                [](const Desk &desk) {
                    const qsizetype ticked = desk.library.isMultiSel() ? desk.library.tickedCount() : 0;
                    return Texts::tr("Select (%1)").arg(ticked);
                },
            .symbol =
                [](const Desk &desk) {
                    return desk.library.isMultiSel() ? QStringLiteral("circle.badge.checkmark")
                                                     : QStringLiteral("circle");
                },
            .toolTip =
                [](const Desk &desk) {
                    if (desk.library.count() == 0) {
                        return Texts::tr("Keep a patch in the library first");
                    }
                    return desk.library.isMultiSel() ? Texts::tr("Stop ticking") : Texts::tr("Tick several patches");
                },
            .isEnabled = [](const Desk &desk, const WindowTasks &) { return desk.library.count() > 0; },
            .isChecked = [](const Desk &desk) { return desk.library.isMultiSel(); },
            .run = [](Desk &desk, WindowTasks &) { desk.libraryEditor.flipMultiSelection(); }},
        {.id = CommandId::Tick,
            .menu = CommandMenu::Edit,
            .needsLibrary = true,
            .shortcuts = {QKeySequence(Qt::CTRL | Qt::Key_T)},
            .label = [](const Desk &) { return Texts::tr("&Tick Library Patch"); },
            .isEnabled = [](const Desk &, const WindowTasks &window) { return window.canFlipTick(); },
            .run = [](Desk &, WindowTasks &window) { window.flipTick(); }},
    };
    const QList<Command> behindMarks{
        {.id = CommandId::Rename,
            .menu = CommandMenu::Edit,
            .needsLibrary = true,
            .shortcuts = {QKeySequence(Qt::Key_F2)},
            .label = [](const Desk &) { return Texts::tr("Re&name Library Patch"); },
            .isEnabled = [](const Desk &desk,
                             const WindowTasks &) { return CommandTargets::one(desk.library) != nullptr; },
            .run = [](Desk &, WindowTasks &window) { window.focusName(); }},
        {.id = CommandId::FocusFilter,
            .menu = CommandMenu::Edit,
            .isFirstOfGroup = true,
            .shortcuts = {QKeySequence(Qt::CTRL | Qt::Key_L)},
            .label = [](const Desk &) { return Texts::tr("Go to &Filter"); },
            .run = [](Desk &, WindowTasks &window) { window.focusFilter(); }},
    };
    return beforeMarks + markCommands() + behindMarks;
}

QList<Command> markCommands(PatchFields::Rows rows)
{
    QList<Command> commands;
    for (const PatchField *field : PatchFlags::marks(rows)) {
        commands.append(markCommand(*field, rows));
    }
    return commands;
}

CommandId markId(PatchFlag mark, PatchFields::Rows rows)
{
    const auto found =
        std::find_if(rows.begin(), rows.end(), [mark](const PatchField &row) { return row.flag == mark; });
    return static_cast<CommandId>(static_cast<int>(CommandId::FirstMark) + static_cast<int>(found - rows.begin()));
}
