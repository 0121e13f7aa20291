#pragma once

#include "Command.h"

#include <QHash>
#include <QObject>

class LibraryManagerPreferences;
class LibraryStorageManager;
class OneRefresh;
class QAction;
class QWidget;
class VelgorContent;
class VelgorLibrary;
struct Editors;
struct WindowTasks;

/// The commands of one window as actions, whose texts, marks and enabling follow what the window works on.
class Commands : public QObject {
    Q_OBJECT

public:
    /// What they work on must outlive the commands, which keep up with every change. Their state is worked out once
    /// control is back in the event loop, and then asks the window for what it shows.
    Commands(const VelgorLibrary &library, const VelgorContent &content, LibraryStorageManager &storage,
        LibraryManagerPreferences &preferences, const Editors &editors, const WindowTasks &window,
        QObject *parent = nullptr);

    /// Every command there is, each once, in the order in which they stand in the menus.
    [[nodiscard]] const QList<Command> &table() const { return m_table; }
    [[nodiscard]] QAction *action(CommandId id) const { return m_actions.value(id); }
    [[nodiscard]] const Command &command(CommandId id) const;
    /// Gives every command its shortcut: in the whole window, or in the list that it works on.
    void addShortcuts(QWidget &window, QWidget &contentList, QWidget &libraryList);
    /// While the library is being loaded, what needs it cannot be asked for.
    void setLibraryUsable(bool isUsable);

    /// What the window shows has changed.
    void refresh();

Q_SIGNALS:
    /// After every refresh.
    void refreshed();

private:
    void addActions();
    void follow(const VelgorLibrary &library, const VelgorContent &content) const;
    void refreshActions();

    const QList<Command> m_table;
    QHash<CommandId, QAction *> m_actions;
    OneRefresh *m_refresh;
    bool m_isLibraryUsable = true;
};
