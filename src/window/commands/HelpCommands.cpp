#include "CommandTable.h"
#include "WebPages.h"

QList<Command> helpCommands(const WindowTasks &window)
{
    return {
        {.id = CommandId::Donate,
            .menu = CommandMenu::Help,
            .label = [] { return CommandTexts::tr("&Send Mon€y to $upport Development"); },
            .run = [open = window.openPage] { open(WebPages::donation()); }},
        {.id = CommandId::OnlineHelp,
            .menu = CommandMenu::Help,
            .label = [] { return CommandTexts::tr("&Online help"); },
            .run = window.showGuide},
        {.id = CommandId::ColumnHelp,
            .menu = CommandMenu::Help,
            .shortcuts = {QKeySequence(Qt::Key_F1)},
            .label = [] { return CommandTexts::tr("&Help for This Column"); },
            .run = window.showColumnHelp},
        {.id = CommandId::About,
            .menu = CommandMenu::Help,
            .isFirstOfGroup = true,
            .label = [] { return CommandTexts::tr("&About Velgor Library Manager"); },
            .run = window.showAbout},
    };
}
