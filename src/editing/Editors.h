#pragma once

class ContentEditor;
class ContentFiles;
class LibraryEditor;

/// What changes library and list for the user. All of it must outlive whoever holds this.
struct Editors {
    LibraryEditor &library;
    ContentEditor &content;
    ContentFiles &files;
};
