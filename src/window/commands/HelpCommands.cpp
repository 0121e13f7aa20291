#include "CommandTable.h"
#include "WebPages.h"
#include "WindowTasks.h"

#include <QCoreApplication>

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(HelpCommands)
};

} // namespace

QList<Command> helpCommands()
{
    return {
        {.id = CommandId::Donate,
            .menu = CommandMenu::Help,
            .label = [](const Desk &) { return Texts::tr("&Send Mon€y to $upport Development"); },
            .run = [](Desk &, WindowTasks &window) { window.openPage(WebPages::donation()); }},
        {.id = CommandId::OnlineHelp,
            .menu = CommandMenu::Help,
            .label = [](const Desk &) { return Texts::tr("&Online help"); },
            .run = [](Desk &, WindowTasks &window) { window.showGuide(); }},
        {.id = CommandId::ColumnHelp,
            .menu = CommandMenu::Help,
            .shortcuts = {QKeySequence(Qt::Key_F1)},
            .label = [](const Desk &) { return Texts::tr("&Help for This Column"); },
            .run = [](Desk &, WindowTasks &window) { window.showColumnHelp(); }},
        {.id = CommandId::About,
            .menu = CommandMenu::Help,
            .isFirstOfGroup = true,
            .label = [](const Desk &) { return Texts::tr("&About Velgor Library Manager"); },
            .run = [](Desk &, WindowTasks &window) { window.showAbout(); }},
    };
}
