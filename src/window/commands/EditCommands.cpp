#include "CommandTable.h"
#include "CommandTargets.h"
#include "ContentEditor.h"
#include "LibraryEditor.h"
#include "VelgorLibrary.h"

#include <algorithm>

namespace {

CommandFace selectFace(const VelgorLibrary &library)
{
    const bool isTicking = library.isMultiSel();
    const QString toolTip = isTicking ? CommandTexts::tr("Stop ticking") : CommandTexts::tr("Tick several patches");
    return {CommandTexts::tr("Select (%1)").arg(isTicking ? library.tickedCount() : 0),
        isTicking ? QStringLiteral("circle.badge.checkmark") : QStringLiteral("circle"),
        library.count() == 0 ? CommandTexts::tr("Keep a patch in the library first") : toolTip};
}

QList<Command> slotCommands(const VelgorLibrary &library, LibraryEditor &libraryEditor, ContentEditor &editor,
    const std::function<void()> &showInLibrary)
{
    return {
        {.id = CommandId::PutIntoSlot,
            .menu = CommandMenu::Edit,
            .scope = CommandScope::BothLists,
            .needsLibrary = true,
            .shortcuts = {QKeySequence(Qt::Key_Return), QKeySequence(Qt::Key_Enter)},
            .label = [] { return CommandTexts::tr("&Put Library Patch into Slot"); },
            .isEnabled = [&editor] { return editor.canPut(); },
            .run = [&editor] { editor.putIntoSelectedSlot(); }},
        {.id = CommandId::ReplaceSlots,
            .menu = CommandMenu::Edit,
            .scope = CommandScope::BothLists,
            .needsLibrary = true,
            .shortcuts = {QKeySequence(Qt::SHIFT | Qt::Key_Return), QKeySequence(Qt::SHIFT | Qt::Key_Enter)},
            .label = [] { return CommandTexts::tr("&Replace Every Selected Slot with Library Patch"); },
            .isEnabled = [&editor] { return editor.canReplace(); },
            .run = [&editor] { editor.replaceSelectedSlots(); }},
        {.id = CommandId::KeepInLibrary,
            .menu = CommandMenu::Edit,
            .scope = CommandScope::BothLists,
            .needsLibrary = true,
            .shortcuts = {QKeySequence(Qt::CTRL | Qt::Key_K)},
            .label = [] { return CommandTexts::tr("&Keep Selected Slots in Library"); },
            .isEnabled = [&libraryEditor] { return libraryEditor.canKeepSelectedSlots(); },
            .run = [&libraryEditor] { libraryEditor.keepSelectedSlots(); }},
        {.id = CommandId::ShowInLibrary,
            .menu = CommandMenu::Edit,
            .needsLibrary = true,
            .shortcuts = {QKeySequence(Qt::SHIFT | Qt::CTRL | Qt::Key_L)},
            .label = [] { return CommandTexts::tr("Sho&w in Library"); },
            .isEnabled = [&library,
                             &libraryEditor] { return library.count() > 0 && libraryEditor.canKeepSelectedSlots(); },
            .run = showInLibrary},
        {.id = CommandId::MoveSlotUp,
            .menu = CommandMenu::Edit,
            .isFirstOfGroup = true,
            .scope = CommandScope::ContentList,
            .shortcuts = {QKeySequence(Qt::ALT | Qt::Key_Up)},
            .label = [] { return CommandTexts::tr("Move Selected Slots &Up"); },
            .isEnabled = [&editor] { return editor.canMoveSelected(-1); },
            .run = [&editor] { editor.moveSelectedSlots(-1); }},
        {.id = CommandId::MoveSlotDown,
            .menu = CommandMenu::Edit,
            .scope = CommandScope::ContentList,
            .shortcuts = {QKeySequence(Qt::ALT | Qt::Key_Down)},
            .label = [] { return CommandTexts::tr("Move Selected Slots &Down"); },
            .isEnabled = [&editor] { return editor.canMoveSelected(1); },
            .run = [&editor] { editor.moveSelectedSlots(1); }},
    };
}

QList<Command> rowCommands(const VelgorLibrary &library, LibraryEditor &editor, const WindowTasks &window)
{
    return {
        {.id = CommandId::MovePatchUp,
            .menu = CommandMenu::Edit,
            .scope = CommandScope::LibraryList,
            .needsLibrary = true,
            .shortcuts = {QKeySequence(Qt::ALT | Qt::Key_Up)},
            .label = [] { return CommandTexts::tr("Move Library Patch Up"); },
            .isEnabled = [canMove = window.canMoveLibraryPatch] { return canMove(-1); },
            .run = [move = window.moveLibraryPatch] { move(-1); }},
        {.id = CommandId::MovePatchDown,
            .menu = CommandMenu::Edit,
            .scope = CommandScope::LibraryList,
            .needsLibrary = true,
            .shortcuts = {QKeySequence(Qt::ALT | Qt::Key_Down)},
            .label = [] { return CommandTexts::tr("Move Library Patch Down"); },
            .isEnabled = [canMove = window.canMoveLibraryPatch] { return canMove(1); },
            .run = [move = window.moveLibraryPatch] { move(1); }},
        {.id = CommandId::Select,
            .menu = CommandMenu::Edit,
            .isFirstOfGroup = true,
            .needsLibrary = true,
            .label = [] { return CommandTexts::tr("Tick &Several Library Patches"); },
            .button = [&library] { return selectFace(library); },
            .isEnabled = [&library] { return library.count() > 0; },
            .isChecked = [&library] { return library.isMultiSel(); },
            .run = [&editor] { editor.flipMultiSelection(); }},
        {.id = CommandId::Tick,
            .menu = CommandMenu::Edit,
            .needsLibrary = true,
            .shortcuts = {QKeySequence(Qt::CTRL | Qt::Key_T)},
            .label = [] { return CommandTexts::tr("&Tick Library Patch"); },
            .isEnabled = window.canFlipTick,
            .run = window.flipTick},
    };
}

Command markCommand(
    const PatchField &field, const VelgorLibrary &library, LibraryEditor &editor, PatchFields::Rows rows)
{
    return {.id = markId(field.flag, rows),
        .menu = CommandMenu::Classify,
        .isFirstOfGroup = &field == PatchFlags::style(rows).constFirst(),
        .needsLibrary = true,
        .shortcuts = {QKeySequence(QString::fromLatin1(field.shortcut))},
        .label = [text = field.command] { return QCoreApplication::translate("EditCommands", text); },
        .isEnabled = [&library] { return CommandTargets::count(library) > 0; },
        .isChecked = [&library, flag = field.flag] { return CommandTargets::allHave(library, flag); },
        .run = [&editor, flag = field.flag] { editor.flipFlagOfSelected(flag); }};
}

} // namespace

QList<Command> editCommands(
    const VelgorLibrary &library, LibraryEditor &libraryEditor, ContentEditor &contentEditor, const WindowTasks &window)
{
    const QList<Command> behindMarks{
        {.id = CommandId::Rename,
            .menu = CommandMenu::Edit,
            .needsLibrary = true,
            .shortcuts = {QKeySequence(Qt::Key_F2)},
            .label = [] { return CommandTexts::tr("Re&name Library Patch"); },
            .isEnabled = [&library] { return CommandTargets::one(library) != nullptr; },
            .run = window.focusName},
        {.id = CommandId::FocusFilter,
            .menu = CommandMenu::Edit,
            .isFirstOfGroup = true,
            .shortcuts = {QKeySequence(Qt::CTRL | Qt::Key_L)},
            .label = [] { return CommandTexts::tr("Go to &Filter"); },
            .run = window.focusFilter},
    };
    return slotCommands(library, libraryEditor, contentEditor, window.showInLibrary)
        + rowCommands(library, libraryEditor, window) + markCommands(library, libraryEditor) + behindMarks;
}

QList<Command> markCommands(const VelgorLibrary &library, LibraryEditor &editor, PatchFields::Rows rows)
{
    QList<Command> commands;
    for (const PatchField *field : PatchFlags::marks(rows)) {
        commands.append(markCommand(*field, library, editor, rows));
    }
    return commands;
}

CommandId markId(PatchFlag mark, PatchFields::Rows rows)
{
    const auto found =
        std::find_if(rows.begin(), rows.end(), [mark](const PatchField &row) { return row.flag == mark; });
    return static_cast<CommandId>(static_cast<int>(CommandId::FirstMark) + static_cast<int>(found - rows.begin()));
}
