#pragma once

#include "Command.h"

/// Every command there is, each once.
[[nodiscard]] const QList<Command> &commandTable();

/// The commands by subject, which commandTable() puts together.
[[nodiscard]] QList<Command> fileCommands();
[[nodiscard]] QList<Command> editCommands();
[[nodiscard]] QList<Command> flagCommands();
[[nodiscard]] QList<Command> viewCommands();
[[nodiscard]] QList<Command> libraryCommands();
[[nodiscard]] QList<Command> helpCommands();
