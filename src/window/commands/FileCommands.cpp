#include "CommandTable.h"
#include "ContentEditor.h"
#include "ContentFiles.h"
#include "VelgorContent.h"

QList<Command> fileCommands(
    const VelgorContent &content, ContentEditor &editor, ContentFiles &files, const WindowTasks &window)
{
    const auto hasSlots = [&content] { return !content.velgorContentPatchList().isEmpty(); };
    return {
        {.id = CommandId::NewVelgorFile,
            .menu = CommandMenu::File,
            .needsLibrary = true,
            .label = [] { return CommandTexts::tr("&New Velgor file"); },
            .run = [&editor] { editor.reset(); }},
        {.id = CommandId::Import,
            .menu = CommandMenu::File,
            .shortcuts = {QKeySequence(Qt::CTRL | Qt::Key_O)},
            .label = [] { return CommandTexts::tr("&Import..."); },
            .button =
                [] {
                    return CommandFace{CommandTexts::tr("Import"), QStringLiteral("arrow.up.square"),
                        CommandTexts::tr("Open a preset file")};
                },
            .run = [&files] { files.importFile(); }},
        {.id = CommandId::ClearRecentFiles,
            .menu = CommandMenu::RecentFiles,
            .label = [] { return CommandTexts::tr("&Clear List"); },
            .isEnabled = window.hasRecentFiles,
            .run = window.clearRecentFiles},
        {.id = CommandId::Export,
            .menu = CommandMenu::File,
            .isFirstOfGroup = true,
            .shortcuts = {QKeySequence(Qt::CTRL | Qt::Key_S)},
            .label = [] { return CommandTexts::tr("&Export..."); },
            .button =
                [hasSlots] {
                    return CommandFace{CommandTexts::tr("Export"), QStringLiteral("arrow.down.square"),
                        hasSlots() ? CommandTexts::tr("Save the list as a preset file")
                                   : CommandTexts::tr("Import or make a list first")};
                },
            .isEnabled = hasSlots,
            .run = window.confirmExport},
        // In no menu, where the new file does the same.
        {.id = CommandId::Reset,
            .needsLibrary = true,
            .label = [] { return CommandTexts::tr("&Reset to Default Patch"); },
            .button =
                [] {
                    return CommandFace{CommandTexts::tr("Reset"), QStringLiteral("delete.left"),
                        CommandTexts::tr("Fill 99 slots with the default patch")};
                },
            .run = [&editor] { editor.reset(); }},
        {.id = CommandId::NormalTailBit,
            .menu = CommandMenu::TailBit,
            .label = [] { return CommandTexts::tr("&Normal tail bit"); },
            .isChecked = [&content] { return !content.inverseTailBit(); },
            .run = [&editor] { editor.setInverseTailBit(false); }},
        {.id = CommandId::InvertedTailBit,
            .menu = CommandMenu::TailBit,
            .label = [] { return CommandTexts::tr("&Inverted tail bit"); },
            .isChecked = [&content] { return content.inverseTailBit(); },
            .run = [&editor] { editor.setInverseTailBit(true); }},
        {.id = CommandId::Quit,
            .menu = CommandMenu::File,
            .isFirstOfGroup = true,
            .shortcuts = {QKeySequence(Qt::CTRL | Qt::Key_Q)},
            .label = [] { return CommandTexts::tr("&Quit"); },
            .run = window.closeWindow},
    };
}
