#include "CommandTable.h"
#include "ContentEditor.h"
#include "ContentFiles.h"
#include "VelgorContent.h"
#include "WindowTasks.h"

#include <QCoreApplication>

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(FileCommands)
};

bool hasSlots(const Desk &desk, const WindowTasks &)
{
    return !desk.content.velgorContentPatchList().isEmpty();
}

} // namespace

QList<Command> fileCommands()
{
    return {
        {.id = CommandId::NewVelgorFile,
            .menu = CommandMenu::File,
            .needsLibrary = true,
            .label = [](const Desk &) { return Texts::tr("&New Velgor file"); },
            .run = [](Desk &desk, WindowTasks &) { desk.contentEditor.reset(); }},
        {.id = CommandId::Import,
            .menu = CommandMenu::File,
            .shortcuts = {QKeySequence(Qt::CTRL | Qt::Key_O)},
            .label = [](const Desk &) { return Texts::tr("&Import..."); },
            .buttonLabel = [](const Desk &) { return Texts::tr("Import"); },
            .symbol = [](const Desk &) { return QStringLiteral("arrow.up.square"); },
            .toolTip = [](const Desk &) { return Texts::tr("Open a preset file"); },
            .run = [](Desk &desk, WindowTasks &) { desk.contentFiles.importFile(); }},
        {.id = CommandId::ClearRecentFiles,
            .menu = CommandMenu::RecentFiles,
            .label = [](const Desk &) { return Texts::tr("&Clear List"); },
            .isEnabled = [](const Desk &, const WindowTasks &window) { return window.hasRecentFiles(); },
            .run = [](Desk &, WindowTasks &window) { window.clearRecentFiles(); }},
        {.id = CommandId::Export,
            .menu = CommandMenu::File,
            .isFirstOfGroup = true,
            .shortcuts = {QKeySequence(Qt::CTRL | Qt::Key_S)},
            .label = [](const Desk &) { return Texts::tr("&Export..."); },
            .buttonLabel = [](const Desk &) { return Texts::tr("Export"); },
            .symbol = [](const Desk &) { return QStringLiteral("arrow.down.square"); },
            .toolTip =
                [](const Desk &desk) {
                    return desk.content.velgorContentPatchList().isEmpty()
                        ? Texts::tr("Import or make a list first")
                        : Texts::tr("Save the list as a preset file");
                },
            .isEnabled = hasSlots,
            .run = [](Desk &, WindowTasks &window) { window.confirmExport(); }},
        // In no menu, where the new file does the same.
        {.id = CommandId::Reset,
            .needsLibrary = true,
            .label = [](const Desk &) { return Texts::tr("&Reset to Default Patch"); },
            .buttonLabel = [](const Desk &) { return Texts::tr("Reset"); },
            .symbol = [](const Desk &) { return QStringLiteral("delete.left"); },
            .toolTip = [](const Desk &) { return Texts::tr("Fill 99 slots with the default patch"); },
            .run = [](Desk &desk, WindowTasks &) { desk.contentEditor.reset(); }},
        {.id = CommandId::NormalTailBit,
            .menu = CommandMenu::TailBit,
            .label = [](const Desk &) { return Texts::tr("&Normal tail bit"); },
            .isChecked = [](const Desk &desk) { return !desk.content.inverseTailBit(); },
            .run = [](Desk &desk, WindowTasks &) { desk.contentEditor.setInverseTailBit(false); }},
        {.id = CommandId::InvertedTailBit,
            .menu = CommandMenu::TailBit,
            .label = [](const Desk &) { return Texts::tr("&Inverted tail bit"); },
            .isChecked = [](const Desk &desk) { return desk.content.inverseTailBit(); },
            .run = [](Desk &desk, WindowTasks &) { desk.contentEditor.setInverseTailBit(true); }},
        {.id = CommandId::Quit,
            .menu = CommandMenu::File,
            .isFirstOfGroup = true,
            .shortcuts = {QKeySequence(Qt::CTRL | Qt::Key_Q)},
            .label = [](const Desk &) { return Texts::tr("&Quit"); },
            .run = [](Desk &, WindowTasks &window) { window.closeWindow(); }},
    };
}
