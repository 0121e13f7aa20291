#pragma once

#include "Command.h"
#include "VelgorPatch.h"

#include <QCoreApplication>
#include <QList>

/// A flag of a patch under the name that its option and its JSON key have.
struct FlagOption {
    QString name;
    bool VelgorPatch::*flag;
};

/// Every command of `velgor`, declared once: parsing, help and man page are made from it.
class CommandTable {
    Q_DECLARE_TR_FUNCTIONS(CommandTable)

public:
    [[nodiscard]] static const QList<Command> &commands();
    /// The command that these words call; null when there is none.
    [[nodiscard]] static const Command *find(const QString &name);
    /// The eight flags that a user sets.
    [[nodiscard]] static const QList<FlagOption> &flags();

private:
    [[nodiscard]] static QList<Command> fileCommands();
    [[nodiscard]] static QList<Command> libraryCommands();
    [[nodiscard]] static QList<Command> helpCommands();
};
