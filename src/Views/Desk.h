#pragma once

class ContentEditor;
class ContentFiles;
class LibraryEditor;
class LibraryManagerPreferences;
class LibraryStorageManager;
class PatchFileHandler;
class VelgorContent;
class VelgorLibrary;

/// Everything that the window works on. All of it outlives the window.
struct Desk {
    VelgorLibrary &library;
    VelgorContent &content;
    LibraryStorageManager &storage;
    LibraryManagerPreferences &preferences;
    PatchFileHandler &files;
    LibraryEditor &libraryEditor;
    ContentEditor &contentEditor;
    ContentFiles &contentFiles;
};
