#include "CommandTable.h"
#include "CommandTargets.h"
#include "ContentFiles.h"
#include "LibraryEditor.h"
#include "LibraryStorageManager.h"
#include "VelgorLibrary.h"
#include "WindowTasks.h"

#include <QCoreApplication>

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(LibraryCommands)
};

bool hasOne(const Desk &desk, const WindowTasks &)
{
    return CommandTargets::one(desk.library) != nullptr;
}

bool hasSeveral(const Desk &desk, const WindowTasks &)
{
    return CommandTargets::count(desk.library) > 0;
}

/// What a command about several would do, or what it needs first.
QString aboutSeveral(const Desk &desk, const QString &withOne, const QString &withTicked)
{
    if (CommandTargets::areTicked(desk.library)) {
        return withTicked;
    }
    if (CommandTargets::one(desk.library)) {
        return withOne;
    }
    return desk.library.isMultiSel() ? Texts::tr("Tick a patch first") : Texts::tr("Select a patch first");
}

} // namespace

QList<Command> libraryCommands()
{
    return {
        {.id = CommandId::ShowLibraryFolder,
            .menu = CommandMenu::Library,
            .label = [](const Desk &) { return Texts::tr("Show library &folder"); },
            .run = [](Desk &desk, WindowTasks &) { desk.storage.openLibraryInFinder(); }},
        {.id = CommandId::CheckLibrary,
            .menu = CommandMenu::Library,
            .needsLibrary = true,
            .label = [](const Desk &) { return Texts::tr("&Check Library..."); },
            .run = [](Desk &, WindowTasks &window) { window.checkLibrary(); }},
        {.id = CommandId::ExportOnePatch,
            .menu = CommandMenu::Library,
            .isFirstOfGroup = true,
            .needsLibrary = true,
            .shortcuts = {QKeySequence(Qt::SHIFT | Qt::CTRL | Qt::Key_S)},
            .label = [](const Desk &) { return Texts::tr("&Export One Patch"); },
            .isEnabled = hasOne,
            .run =
                [](Desk &desk, WindowTasks &) {
                    if (const VelgorPatch *selected = CommandTargets::one(desk.library)) {
                        const VelgorPatch patch = *selected;
                        desk.contentFiles.exportPatch(patch);
                    }
                }},
        {.id = CommandId::SetAsDefault,
            .menu = CommandMenu::Library,
            .isFirstOfGroup = true,
            .needsLibrary = true,
            .shortcuts = {QKeySequence(Qt::CTRL | Qt::Key_Return), QKeySequence(Qt::CTRL | Qt::Key_Enter)},
            .label = [](const Desk &) { return Texts::tr("&Set as Default Patch"); },
            .isEnabled = hasOne,
            .run = [](Desk &desk, WindowTasks &) { desk.libraryEditor.setSelectedAsDefault(); }},
        {.id = CommandId::Duplicate,
            .menu = CommandMenu::Library,
            .needsLibrary = true,
            .shortcuts = {QKeySequence(Qt::CTRL | Qt::Key_D)},
            .label = [](const Desk &) { return Texts::tr("D&uplicate Patch"); },
            .buttonLabel = [](const Desk &) { return Texts::tr("Duplicate"); },
            .symbol = [](const Desk &) { return QStringLiteral("doc.on.doc"); },
            .toolTip =
                [](const Desk &desk) {
                    return aboutSeveral(desk, Texts::tr("Copy the patch under a new name"),
                        Texts::tr("Copy the ticked patches under new names"));
                },
            .isEnabled = hasSeveral,
            .run = [](Desk &desk, WindowTasks &) { desk.libraryEditor.duplicateSelected(); }},
        {.id = CommandId::FindSimilar,
            .menu = CommandMenu::Library,
            .needsLibrary = true,
            .shortcuts = {QKeySequence(Qt::CTRL | Qt::Key_F)},
            .label = [](const Desk &) { return Texts::tr("Find Si&milar Patches"); },
            .isEnabled = [](const Desk &desk,
                             const WindowTasks &window) { return hasOne(desk, window) && desk.library.count() >= 2; },
            .run = [](Desk &desk, WindowTasks &) { desk.libraryEditor.tickSimilar(); }},
        {.id = CommandId::SelectAll,
            .menu = CommandMenu::Library,
            .needsLibrary = true,
            .shortcuts = {QKeySequence(Qt::SHIFT | Qt::CTRL | Qt::Key_A)},
            .label = [](const Desk &) { return Texts::tr("Select &All"); },
            .isEnabled = [](const Desk &, const WindowTasks &window) { return window.showsLibraryPatches(); },
            .run = [](Desk &desk, WindowTasks &) { desk.libraryEditor.tickAll(); }},
        {.id = CommandId::Delete,
            .menu = CommandMenu::Library,
            .isFirstOfGroup = true,
            .needsLibrary = true,
            .shortcuts = {QKeySequence(Qt::CTRL | Qt::Key_Delete)},
            .libraryListKey = QKeySequence(Qt::Key_Delete),
            .label =
                [](const Desk &desk) {
                    return desk.library.tickedCount() == 0 ? Texts::tr("&Delete patch") : Texts::tr("&Delete patches");
                },
            .buttonLabel = [](const Desk &) { return Texts::tr("Delete"); },
            .symbol = [](const Desk &) { return QStringLiteral("trash"); },
            .toolTip =
                [](const Desk &desk) {
                    return aboutSeveral(desk, Texts::tr("Delete the patch"), Texts::tr("Delete the ticked patches"));
                },
            .isEnabled = hasSeveral,
            .run = [](Desk &desk, WindowTasks &) { desk.libraryEditor.setDeleteConfirm(true); }},
    };
}
