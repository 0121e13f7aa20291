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
class RecordingTasks : public WindowTasks {
public:
    QStringList asked;
    bool canMove = false;
    bool canTick = true;
    bool showsPatches = true;
    bool hasFiles = false;

    void confirmExport() override { asked.append(QStringLiteral("confirmExport")); }
    void clearRecentFiles() override { asked.append(QStringLiteral("clearRecentFiles")); }
    [[nodiscard]] bool hasRecentFiles() const override { return hasFiles; }
    void checkLibrary() override { asked.append(QStringLiteral("checkLibrary")); }
    void flipTick() override { asked.append(QStringLiteral("flipTick")); }
    [[nodiscard]] bool canFlipTick() const override { return canTick; }
    [[nodiscard]] bool showsLibraryPatches() const override { return showsPatches; }
    void goToColumn(int step) override { asked.append(QStringLiteral("column %1").arg(step)); }
    void moveLibraryPatch(int step) override { asked.append(QStringLiteral("move %1").arg(step)); }
    [[nodiscard]] bool canMoveLibraryPatch(int) const override { return canMove; }
    void showInLibrary() override { asked.append(QStringLiteral("showInLibrary")); }
    void focusFilter() override { asked.append(QStringLiteral("focusFilter")); }
    void focusName() override { asked.append(QStringLiteral("focusName")); }
    void openPage(const QUrl &page) override { asked.append(page.toString()); }
    void showGuide() override { asked.append(QStringLiteral("showGuide")); }
    void showColumnHelp() override { asked.append(QStringLiteral("showColumnHelp")); }
    void showAbout() override { asked.append(QStringLiteral("showAbout")); }
    void closeWindow() override { asked.append(QStringLiteral("closeWindow")); }
};

struct Window {
    TestDesk desk;
    RecordingTasks tasks;
    Commands commands{desk.desk, tasks};

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
    [[nodiscard]] QString buttonLabel(CommandId id) { return commands.command(id).buttonLabel(desk.desk); }
    [[nodiscard]] QString symbol(CommandId id) { return commands.command(id).symbol(desk.desk); }
};

} // namespace CommandWindow
