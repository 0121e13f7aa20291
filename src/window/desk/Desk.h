#pragma once

#include <functional>

class ContentEditor;
class ContentFiles;
class LibraryEditor;
class LibraryManagerPreferences;
class LibraryStorageManager;
class VelgorContent;
class VelgorLibrary;

/// Everything that the window works on. All of it outlives the window.
struct Desk {
    VelgorLibrary &library;
    VelgorContent &content;
    LibraryStorageManager &storage;
    LibraryManagerPreferences &preferences;
    LibraryEditor &libraryEditor;
    ContentEditor &contentEditor;
    ContentFiles &contentFiles;
    /// Asks for another directory and moves the library there.
    std::function<void()> moveLibrary = {};
};
