#pragma once

#include "Command.h"

#include <QHash>
#include <QObject>

#include <vector>

class QAction;
class QWidget;

/// The commands of one window as actions, whose texts, marks and enabling follow what the window works on.
class Commands : public QObject {
    Q_OBJECT

public:
    /// Both must outlive the commands. Their state is that of this moment until follow() is called.
    Commands(Desk &desk, WindowTasks &window, QObject *parent = nullptr);

    [[nodiscard]] QAction *action(CommandId id) const;
    [[nodiscard]] const Command &command(CommandId id) const;
    [[nodiscard]] const Desk &desk() const { return m_desk; }
    /// From here on the commands keep up with every change. What shows the library and the list has to hear of a change
    /// first, as the commands ask the window for what it shows: call this when the window is built.
    void follow();
    /// Gives every command its shortcut: in the whole window, or in the list that it works on.
    void addShortcuts(QWidget &window, QWidget &contentList, QWidget &libraryList);
    /// While the library is being loaded, what needs it cannot be asked for.
    void setLibraryUsable(bool isUsable);

    void refresh();

Q_SIGNALS:
    /// After every refresh.
    void refreshed();

private:
    Desk &m_desk;
    WindowTasks &m_window;
    QHash<CommandId, QAction *> m_actions;
    bool m_isLibraryUsable = true;
    bool m_isRunning = false;
};
