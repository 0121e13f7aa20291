#pragma once

#include "Command.h"
#include "PatchFields.h"

#include <QCoreApplication>
#include <QList>

/// Every command of `velgor`, declared once: parsing, help and man page are made from it.
class CommandTable {
    Q_DECLARE_TR_FUNCTIONS(CommandTable)

public:
    [[nodiscard]] static const QList<Command> &commands();
    /// The command that these words call; null when there is none.
    [[nodiscard]] static const Command *find(const QString &name);
    /// The options that ask for flags of a patch, and those that set and clear them.
    [[nodiscard]] static QList<CommandOption> filterOptions(PatchFields::Rows rows = PatchFields::all());
    [[nodiscard]] static QList<CommandOption> markOptions(PatchFields::Rows rows = PatchFields::all());

private:
    [[nodiscard]] static QList<Command> fileCommands();
    [[nodiscard]] static QList<Command> libraryCommands();
    [[nodiscard]] static QList<Command> helpCommands();
};
