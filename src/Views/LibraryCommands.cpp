#include "CommandTable.h"
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

bool hasSelectedPatch(const Desk &desk, const WindowTasks &)
{
    return desk.libraryEditor.selectedPatch() != nullptr;
}

QString selectFirst(const Desk &desk, const QString &otherwise)
{
    return desk.libraryEditor.selectedPatch() ? otherwise : Texts::tr("Select a patch first");
}

bool canDelete(const Desk &desk, const WindowTasks &)
{
    return desk.library.count() > 0 && (desk.library.selection().has_value() || desk.library.tickedCount() > 0);
}

} // namespace

QList<Command> libraryCommands()
{
    return {
        {.id = CommandId::ShowLibraryFolder,
            .label = [](const Desk &) { return Texts::tr("Show library &folder"); },
            .run = [](Desk &desk, WindowTasks &) { desk.storage.openLibraryInFinder(); }},
        {.id = CommandId::CheckLibrary,
            .needsLibrary = true,
            .label = [](const Desk &) { return Texts::tr("&Check Library..."); },
            .run = [](Desk &, WindowTasks &window) { window.checkLibrary(); }},
        {.id = CommandId::ExportOnePatch,
            .needsLibrary = true,
            .shortcuts = {QKeySequence(Qt::SHIFT | Qt::CTRL | Qt::Key_S)},
            .label = [](const Desk &) { return Texts::tr("&Export One Patch"); },
            .isEnabled = hasSelectedPatch,
            .run =
                [](Desk &desk, WindowTasks &) {
                    if (const VelgorPatch *selected = desk.libraryEditor.selectedPatch()) {
                        const VelgorPatch patch = *selected;
                        desk.contentFiles.exportPatch(patch);
                    }
                }},
        {.id = CommandId::SetAsDefault,
            .needsLibrary = true,
            .shortcuts = {QKeySequence(Qt::CTRL | Qt::Key_Return), QKeySequence(Qt::CTRL | Qt::Key_Enter)},
            .label = [](const Desk &) { return Texts::tr("&Set as Default Patch"); },
            .isEnabled = hasSelectedPatch,
            .run = [](Desk &desk, WindowTasks &) { desk.libraryEditor.setSelectedAsDefault(); }},
        {.id = CommandId::Duplicate,
            .needsLibrary = true,
            .shortcuts = {QKeySequence(Qt::CTRL | Qt::Key_D)},
            .label = [](const Desk &) { return Texts::tr("D&uplicate Patch"); },
            .buttonLabel = [](const Desk &) { return Texts::tr("Duplicate"); },
            .symbol = [](const Desk &) { return QStringLiteral("doc.on.doc"); },
            .toolTip = [](const Desk &desk) { return selectFirst(desk, Texts::tr("Copy the patch under a new name")); },
            .isEnabled = hasSelectedPatch,
            .run = [](Desk &desk, WindowTasks &) { desk.libraryEditor.duplicateSelected(); }},
        {.id = CommandId::FindSimilar,
            .needsLibrary = true,
            .shortcuts = {QKeySequence(Qt::CTRL | Qt::Key_F)},
            .label = [](const Desk &) { return Texts::tr("Find Si&milar Patches"); },
            .isEnabled =
                [](const Desk &desk, const WindowTasks &) {
                    return desk.library.selection().has_value() && desk.library.count() >= 2;
                },
            .run = [](Desk &desk, WindowTasks &) { desk.libraryEditor.tickSimilar(); }},
        {.id = CommandId::SelectAll,
            .needsLibrary = true,
            .shortcuts = {QKeySequence(Qt::SHIFT | Qt::CTRL | Qt::Key_A)},
            .label = [](const Desk &) { return Texts::tr("Select &All"); },
            .isEnabled = [](const Desk &desk, const WindowTasks &) { return desk.library.count() > 0; },
            .run = [](Desk &desk, WindowTasks &) { desk.libraryEditor.tickAll(); }},
        {.id = CommandId::Delete,
            .needsLibrary = true,
            .shortcuts = {QKeySequence(Qt::CTRL | Qt::Key_Delete)},
            .label =
                [](const Desk &desk) {
                    return desk.library.tickedCount() == 0 ? Texts::tr("&Delete patch") : Texts::tr("&Delete patches");
                },
            .buttonLabel = [](const Desk &) { return Texts::tr("Delete"); },
            .symbol = [](const Desk &) { return QStringLiteral("trash"); },
            .toolTip =
                [](const Desk &desk) {
                    if (!desk.library.isMultiSel()) {
                        return selectFirst(desk, Texts::tr("Delete the patch"));
                    }
                    return desk.library.tickedCount() > 0 ? Texts::tr("Delete the ticked patches")
                                                          : Texts::tr("Tick a patch first");
                },
            .isEnabled = canDelete,
            .run = [](Desk &desk, WindowTasks &) { desk.library.setDeleteConfirm(true); }},
    };
}
