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
            .label = [](const Desk &) { return Texts::tr("&Send Mon€y to $upport Development"); },
            .run = [](Desk &, WindowTasks &window) { window.openPage(WebPages::donation()); }},
        {.id = CommandId::OnlineHelp,
            .label = [](const Desk &) { return Texts::tr("&Online help"); },
            .run = [](Desk &, WindowTasks &window) { window.openPage(WebPages::project()); }},
    };
}
