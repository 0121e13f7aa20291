#pragma once

#include "Command.h"
#include "PatchFlags.h"
#include "WindowTasks.h"

#include <QCoreApplication>

class ContentEditor;
class ContentFiles;
class LibraryEditor;
class LibraryManagerPreferences;
class LibraryStorageManager;
class VelgorContent;
class VelgorLibrary;

struct CommandTexts {
    Q_DECLARE_TR_FUNCTIONS(Commands)
};

/// The commands by subject, in the order in which they stand in the menus. What they work on must outlive them.
[[nodiscard]] QList<Command> fileCommands(
    const VelgorContent &content, ContentEditor &editor, ContentFiles &files, const WindowTasks &window);
/// With the marks.
[[nodiscard]] QList<Command> editCommands(const VelgorLibrary &library, LibraryEditor &libraryEditor,
    ContentEditor &contentEditor, const WindowTasks &window);
/// The marks that a patch can have, in the order in which they stand on the screen. The rows must outlive the commands.
[[nodiscard]] QList<Command> markCommands(
    const VelgorLibrary &library, LibraryEditor &editor, PatchFields::Rows rows = PatchFields::all());
[[nodiscard]] QList<Command> viewCommands(const VelgorLibrary &library, LibraryEditor &editor,
    LibraryManagerPreferences &preferences, const WindowTasks &window);
[[nodiscard]] QList<Command> libraryCommands(const VelgorLibrary &library, LibraryEditor &editor, ContentFiles &files,
    LibraryStorageManager &storage, const WindowTasks &window);
[[nodiscard]] QList<Command> helpCommands(const WindowTasks &window);

/// What sets and clears a mark.
[[nodiscard]] CommandId markId(PatchFlag mark, PatchFields::Rows rows = PatchFields::all());
