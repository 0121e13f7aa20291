#pragma once

#include "Command.h"
#include "PatchFlags.h"

/// Every command there is, each once, in the order in which they stand in the menus.
[[nodiscard]] const QList<Command> &commandTable();

/// What sets and clears a mark.
[[nodiscard]] CommandId markId(PatchFlag mark, PatchFields::Rows rows = PatchFields::all());

/// The commands by subject, which commandTable() puts together.
[[nodiscard]] QList<Command> fileCommands();
/// With the marks.
[[nodiscard]] QList<Command> editCommands();
/// The marks that a patch can have, in the order in which they stand on the screen. The rows must outlive the commands.
[[nodiscard]] QList<Command> markCommands(PatchFields::Rows rows = PatchFields::all());
[[nodiscard]] QList<Command> viewCommands();
[[nodiscard]] QList<Command> libraryCommands();
[[nodiscard]] QList<Command> helpCommands();
