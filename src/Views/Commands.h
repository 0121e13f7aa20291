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
    /// Both must outlive the commands.
    Commands(Desk &desk, WindowTasks &window, QObject *parent = nullptr);

    [[nodiscard]] QAction *action(CommandId id) const;
    [[nodiscard]] const Command &command(CommandId id) const;
    [[nodiscard]] const Desk &desk() const { return m_desk; }
    /// Gives every command its shortcut: in the whole window, or in the list that it works on.
    void addShortcuts(QWidget &window, QWidget &contentList, QWidget &libraryList);
    /// While the library is being loaded, what needs it cannot be asked for.
    void setLibraryUsable(bool isUsable);

    void refresh();

Q_SIGNALS:
    /// After every refresh.
    void refreshed();

private:
    void follow();

    Desk &m_desk;
    WindowTasks &m_window;
    QHash<CommandId, QAction *> m_actions;
    bool m_isLibraryUsable = true;
    bool m_isRunning = false;
};
