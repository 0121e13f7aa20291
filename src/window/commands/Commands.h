#pragma once

#include "Command.h"

#include <QHash>
#include <QObject>

#include <vector>

class OneRefresh;
class QAction;
class QWidget;

/// The commands of one window as actions, whose texts, marks and enabling follow what the window works on.
class Commands : public QObject {
    Q_OBJECT

public:
    /// Both must outlive the commands, which keep up with every change. Their state is worked out once control is back
    /// in the event loop, and then asks the window for what it shows.
    Commands(Desk &desk, WindowTasks &window, QObject *parent = nullptr);

    [[nodiscard]] QAction *action(CommandId id) const;
    [[nodiscard]] const Command &command(CommandId id) const;
    [[nodiscard]] const Desk &desk() const { return m_desk; }
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
    void followDesk();
    void refreshActions();

    Desk &m_desk;
    WindowTasks &m_window;
    QHash<CommandId, QAction *> m_actions;
    OneRefresh *m_refresh;
    bool m_isLibraryUsable = true;
};
