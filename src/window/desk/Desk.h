#pragma once

#include <functional>
#include <memory>

class ContentEditor;
class ContentFiles;
class LibraryCheck;
class LibraryEditor;
class LibraryManagerPreferences;
class LibraryStorageManager;
class VelgorContent;
class VelgorLibrary;

/// Everything that the window works on. All of it outlives the window. Library and list are for looking at: what
/// changes them goes through the editors, the files of the list and the check of the library.
struct Desk {
    const VelgorLibrary &library;
    const VelgorContent &content;
    LibraryStorageManager &storage;
    LibraryManagerPreferences &preferences;
    LibraryEditor &libraryEditor;
    ContentEditor &contentEditor;
    ContentFiles &contentFiles;
    std::function<std::unique_ptr<LibraryCheck>()> newLibraryCheck;
    /// Asks for another directory and moves the library there.
    std::function<void()> moveLibrary = {};
};
