#pragma once

#include "Editors.h"

#include <functional>
#include <memory>

class LibraryCheck;
class LibraryManagerPreferences;
class LibraryStorageManager;
class VelgorContent;
class VelgorLibrary;

/// Everything that the main window works on, from which it hands to each of its parts what that uses. All of it
/// outlives the window. Library and list are for looking at: what changes them goes through the editors and the check
/// of the library.
struct Desk {
    const VelgorLibrary &library;
    const VelgorContent &content;
    LibraryStorageManager &storage;
    LibraryManagerPreferences &preferences;
    Editors editors;
    std::function<std::unique_ptr<LibraryCheck>()> newLibraryCheck;
    /// Asks for another directory and moves the library there.
    std::function<void()> moveLibrary = {};
};
