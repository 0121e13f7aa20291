#pragma once

#include <QtGlobal>

class QUrl;

/// What commands ask of the window that they belong to.
class WindowTasks {
public:
    WindowTasks() = default;
    virtual ~WindowTasks() = default;
    Q_DISABLE_COPY_MOVE(WindowTasks)

    /// Asks the user to accept the disclaimer; the export follows.
    virtual void confirmExport() = 0;
    /// Forgets which files were imported and exported.
    virtual void clearRecentFiles() = 0;
    [[nodiscard]] virtual bool hasRecentFiles() const = 0;
    /// Compares the library with its directory and shows what is not as it should be.
    virtual void checkLibrary() = 0;
    /// Ticks or unticks the current library row.
    virtual void flipTick() = 0;
    /// Whether flipTick() would do something.
    [[nodiscard]] virtual bool canFlipTick() const = 0;
    /// Whether the library list shows any patch.
    [[nodiscard]] virtual bool showsLibraryPatches() const = 0;
    virtual void moveLibraryPatch(int step) = 0;
    [[nodiscard]] virtual bool canMoveLibraryPatch(int step) const = 0;
    /// Goes to the library patch that the first selected slot holds.
    virtual void showInLibrary() = 0;
    virtual void focusFilter() = 0;
    virtual void focusName() = 0;
    /// Shows a page of the web, or says why not.
    virtual void openPage(const QUrl &page) = 0;
    /// Opens the user guide at its beginning.
    virtual void showGuide() = 0;
    /// Opens the user guide where it is about the column that has the focus.
    virtual void showColumnHelp() = 0;
    /// Says which program this is and what it did in this run.
    virtual void showAbout() = 0;
    /// Gives the focus to the next column, or to the one before (-1), as long as there is something in it to work on.
    virtual void goToColumn(int step) = 0;
    virtual void closeWindow() = 0;
};
