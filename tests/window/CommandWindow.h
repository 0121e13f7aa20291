#pragma once

#include "CommandTable.h"
#include "Commands.h"
#include "ShownWidgets.h"
#include "TestDesk.h"
#include "WebPages.h"
#include "WindowTasks.h"

#include <QTest>

/// The commands of a window that is none.
namespace CommandWindow {

/// Writes down what commands ask of their window.
struct RecordingTasks {
    QStringList asked;
    bool canMove = false;
    bool canTick = true;
    bool showsPatches = true;
    bool hasFiles = false;

    /// These must outlive the tasks.
    [[nodiscard]] WindowTasks tasks()
    {
        const auto asking = [this](const char *what) { return [this, what] { asked.append(QLatin1String(what)); }; };
        return {
            .confirmExport = asking("confirmExport"),
            .clearRecentFiles = asking("clearRecentFiles"),
            .hasRecentFiles = [this] { return hasFiles; },
            .checkLibrary = asking("checkLibrary"),
            .flipTick = asking("flipTick"),
            .canFlipTick = [this] { return canTick; },
            .showsLibraryPatches = [this] { return showsPatches; },
            .moveLibraryPatch = [this](int step) { asked.append(QStringLiteral("move %1").arg(step)); },
            .canMoveLibraryPatch = [this](int) { return canMove; },
            .showInLibrary = asking("showInLibrary"),
            .focusFilter = asking("focusFilter"),
            .focusName = asking("focusName"),
            .openPage = [this](const QUrl &page) { asked.append(page.toString()); },
            .showGuide = asking("showGuide"),
            .showColumnHelp = asking("showColumnHelp"),
            .showAbout = asking("showAbout"),
            .goToColumn = [this](int step) { asked.append(QStringLiteral("column %1").arg(step)); },
            .closeWindow = asking("closeWindow"),
        };
    }
};

struct Window {
    TestDesk desk;
    RecordingTasks tasks;
    Commands commands{desk.library, desk.content, desk.storage, desk.preferences, desk.desk.editors, tasks.tasks()};

    explicit Window(const QString &library = {})
        : desk(library)
    {
    }

    /// As it is once the program waits for the user.
    [[nodiscard]] QAction &action(CommandId id) const
    {
        ShownWidgets::catchUp();
        return *commands.action(id);
    }
    [[nodiscard]] QString label(CommandId id) const { return action(id).text().remove(u'&'); }
    [[nodiscard]] QString buttonLabel(CommandId id) { return commands.command(id).button().label; }
    [[nodiscard]] QString symbol(CommandId id) { return commands.command(id).button().symbol; }
};

} // namespace CommandWindow
