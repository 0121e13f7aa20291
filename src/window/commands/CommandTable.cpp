#include "CommandTable.h"

const QList<Command> &commandTable()
{
    static const QList<Command> table =
        fileCommands() + editCommands() + viewCommands() + libraryCommands() + helpCommands();
    return table;
}
