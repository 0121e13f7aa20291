#include "CommandTable.h"
#include "CommandTargets.h"
#include "ContentFiles.h"
#include "LibraryEditor.h"
#include "LibraryStorageManager.h"
#include "VelgorLibrary.h"

namespace {

/// What a command about several would do, or what it needs first.
QString aboutSeveral(const VelgorLibrary &library, const QString &withOne, const QString &withTicked)
{
    if (CommandTargets::areTicked(library)) {
        return withTicked;
    }
    if (CommandTargets::one(library)) {
        return withOne;
    }
    return library.isMultiSel() ? CommandTexts::tr("Tick a patch first") : CommandTexts::tr("Select a patch first");
}

} // namespace

QList<Command> libraryCommands(const VelgorLibrary &library, LibraryEditor &editor, ContentFiles &files,
    LibraryStorageManager &storage, const WindowTasks &window)
{
    const auto hasOne = [&library] { return CommandTargets::one(library) != nullptr; };
    const auto hasSeveral = [&library] { return CommandTargets::count(library) > 0; };
    return {
        {.id = CommandId::ShowLibraryFolder,
            .menu = CommandMenu::Library,
            .label = [] { return CommandTexts::tr("Show library &folder"); },
            .run = [&storage] { storage.openLibraryInFinder(); }},
        {.id = CommandId::CheckLibrary,
            .menu = CommandMenu::Library,
            .needsLibrary = true,
            .label = [] { return CommandTexts::tr("&Check Library..."); },
            .run = window.checkLibrary},
        {.id = CommandId::ExportOnePatch,
            .menu = CommandMenu::Library,
            .isFirstOfGroup = true,
            .needsLibrary = true,
            .shortcuts = {QKeySequence(Qt::SHIFT | Qt::CTRL | Qt::Key_S)},
            .label = [] { return CommandTexts::tr("&Export One Patch"); },
            .isEnabled = hasOne,
            .run =
                [&library, &files] {
                    if (const VelgorPatch *selected = CommandTargets::one(library)) {
                        const VelgorPatch patch = *selected;
                        files.exportPatch(patch);
                    }
                }},
        {.id = CommandId::SetAsDefault,
            .menu = CommandMenu::Library,
            .isFirstOfGroup = true,
            .needsLibrary = true,
            .shortcuts = {QKeySequence(Qt::CTRL | Qt::Key_Return), QKeySequence(Qt::CTRL | Qt::Key_Enter)},
            .label = [] { return CommandTexts::tr("&Set as Default Patch"); },
            .isEnabled = hasOne,
            .run = [&editor] { editor.setSelectedAsDefault(); }},
        {.id = CommandId::Duplicate,
            .menu = CommandMenu::Library,
            .needsLibrary = true,
            .shortcuts = {QKeySequence(Qt::CTRL | Qt::Key_D)},
            .label = [] { return CommandTexts::tr("D&uplicate Patch"); },
            .button =
                [&library] {
                    return CommandFace{CommandTexts::tr("Duplicate"), QStringLiteral("doc.on.doc"),
                        aboutSeveral(library, CommandTexts::tr("Copy the patch under a new name"),
                            CommandTexts::tr("Copy the ticked patches under new names"))};
                },
            .isEnabled = hasSeveral,
            .run = [&editor] { editor.duplicateSelected(); }},
        {.id = CommandId::FindSimilar,
            .menu = CommandMenu::Library,
            .needsLibrary = true,
            .shortcuts = {QKeySequence(Qt::CTRL | Qt::Key_F)},
            .label = [] { return CommandTexts::tr("Find Si&milar Patches"); },
            .isEnabled = [&library, hasOne] { return hasOne() && library.count() >= 2; },
            .run = [&editor] { editor.tickSimilar(); }},
        {.id = CommandId::SelectAll,
            .menu = CommandMenu::Library,
            .needsLibrary = true,
            .shortcuts = {QKeySequence(Qt::SHIFT | Qt::CTRL | Qt::Key_A)},
            .label = [] { return CommandTexts::tr("Select &All"); },
            .isEnabled = window.showsLibraryPatches,
            .run = [&editor] { editor.tickAll(); }},
        {.id = CommandId::Delete,
            .menu = CommandMenu::Library,
            .isFirstOfGroup = true,
            .needsLibrary = true,
            .shortcuts = {QKeySequence(Qt::CTRL | Qt::Key_Delete)},
            .libraryListKey = QKeySequence(Qt::Key_Delete),
            .label =
                [&library] {
                    return library.tickedCount() == 0 ? CommandTexts::tr("&Delete patch")
                                                      : CommandTexts::tr("&Delete patches");
                },
            .button =
                [&library] {
                    return CommandFace{CommandTexts::tr("Delete"), QStringLiteral("trash"),
                        aboutSeveral(library, CommandTexts::tr("Delete the patch"),
                            CommandTexts::tr("Delete the ticked patches"))};
                },
            .isEnabled = hasSeveral,
            .run = [&editor] { editor.setDeleteConfirm(true); }},
    };
}
