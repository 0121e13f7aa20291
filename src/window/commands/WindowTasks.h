#pragma once

#include <functional>

class QUrl;

/// What commands ask of the window that they belong to. A window gives all of them.
struct WindowTasks {
    /// Asks the user to accept the disclaimer; the export follows.
    std::function<void()> confirmExport;
    std::function<void()> clearRecentFiles;
    std::function<bool()> hasRecentFiles;
    /// Compares the library with its directory and shows what is not as it should be.
    std::function<void()> checkLibrary;
    /// Ticks or unticks the current library row.
    std::function<void()> flipTick;
    /// Whether flipTick() would do something.
    std::function<bool()> canFlipTick;
    std::function<bool()> showsLibraryPatches;
    std::function<void(int step)> moveLibraryPatch;
    std::function<bool(int step)> canMoveLibraryPatch;
    /// Goes to the library patch that the first selected slot holds.
    std::function<void()> showInLibrary;
    std::function<void()> focusFilter;
    std::function<void()> focusName;
    /// Shows a page of the web, or says why not.
    std::function<void(const QUrl &page)> openPage;
    /// Opens the user guide at its beginning.
    std::function<void()> showGuide;
    /// Opens the user guide where it is about the column that has the focus.
    std::function<void()> showColumnHelp;
    /// Says which program this is and what it did in this run.
    std::function<void()> showAbout;
    /// Gives the focus to the next column, or to the one before (-1), as long as there is something in it to work on.
    std::function<void(int step)> goToColumn;
    std::function<void()> closeWindow;
};
