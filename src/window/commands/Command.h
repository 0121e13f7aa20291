#pragma once

#include <QKeySequence>
#include <QList>
#include <QString>

#include <functional>

enum class CommandId {
    NewVelgorFile,
    Import,
    ClearRecentFiles,
    Export,
    NormalTailBit,
    InvertedTailBit,
    Quit,
    Reset,
    PutIntoSlot,
    ReplaceSlots,
    KeepInLibrary,
    ShowInLibrary,
    MoveSlotUp,
    MoveSlotDown,
    MovePatchUp,
    MovePatchDown,
    Select,
    Tick,
    FocusFilter,
    Rename,
    SystemScheme,
    DarkScheme,
    LightScheme,
    Sort,
    NextColumn,
    PreviousColumn,
    ShowLibraryFolder,
    CheckLibrary,
    ExportOnePatch,
    SetAsDefault,
    Duplicate,
    FindSimilar,
    SelectAll,
    Delete,
    Donate,
    OnlineHelp,
    ColumnHelp,
    About,
    FirstMark, ///< from here on one for each mark of a patch: see markId()
};

/// The menus of the window in their order; a submenu stands before what follows its first command in the table.
enum class CommandMenu { None, File, RecentFiles, TailBit, Edit, Classify, View, ColorScheme, Library, Help };

/// Where a command's shortcut counts.
enum class CommandScope { Window, ContentList, LibraryList, BothLists };

/// What a button for a command shows.
struct CommandFace {
    QString label;
    QString symbol;
    QString toolTip = {}; ///< empty for none
};

/// One thing that the user can ask for, in menus, on buttons and by shortcut.
struct Command {
    CommandId id = CommandId::NewVelgorFile;
    /// Where it stands in the menu bar, behind those before it in the table.
    CommandMenu menu = CommandMenu::None;
    bool isFirstOfGroup = false; ///< there is a line above it
    CommandScope scope = CommandScope::Window;
    /// Disabled while the library is being loaded.
    bool needsLibrary = false;
    QList<QKeySequence> shortcuts = {};
    /// A further key that counts in the library list alone; empty for none.
    QKeySequence libraryListKey = {};
    /// As a menu shows it; translated.
    std::function<QString()> label = nullptr;
    /// nullptr for what has no button.
    std::function<CommandFace()> button = nullptr;
    /// nullptr: always.
    std::function<bool()> isEnabled = nullptr;
    /// nullptr: the command cannot be checked.
    std::function<bool()> isChecked = nullptr;
    std::function<void()> run = nullptr;
};
