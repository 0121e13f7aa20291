#include "Arguments.h"
#include "CommandHandlers.h"
#include "CommandTable.h"
#include "HelpText.h"
#include "Output.h"

#include <QCoreApplication>

int CommandHandlers::help(const Arguments &arguments)
{
    const QString name = arguments.positional().join(u' ');
    if (const Command *command = CommandTable::find(name)) {
        Output::print(HelpText::ofCommand(*command));
        return Done;
    }
    if (!name.isEmpty() && name != QStringLiteral("library")) {
        return Output::fail(QCoreApplication::translate("HelpCommand", "unknown command \"%1\"").arg(name));
    }
    Output::print(HelpText::overview(name));
    return Done;
}
