#pragma once

#include "Command.h"

#include <QHash>
#include <QObject>

#include <optional>

class Commands;
class QMenu;
class QMenuBar;
class RecentFilesMenu;
class WindowState;

/// The menus of the window, and the context menus of its lists, made of the commands.
class VelgorLibraryManagerMenu : public QObject {
    Q_OBJECT

public:
    /// All must outlive the menus.
    VelgorLibraryManagerMenu(Commands &commands, const WindowState &state, QMenuBar &bar, QObject *parent = nullptr);

    bool eventFilter(QObject *watched, QEvent *event) override;

    [[nodiscard]] RecentFilesMenu *recentFiles() const { return m_recentFiles; }
    [[nodiscard]] QMenu *contentContextMenu() const { return m_contentMenu; }
    [[nodiscard]] QMenu *libraryContextMenu() const { return m_libraryMenu; }

private:
    /// Made, and put into the bar or the menu that it belongs to, when it is asked for the first time.
    [[nodiscard]] QMenu &menu(CommandMenu id);
    /// A divider for each nothing in the list.
    void add(QMenu &menu, const QList<std::optional<CommandId>> &ids);

    Commands &m_commands;
    QMenuBar &m_bar;
    QHash<CommandMenu, QMenu *> m_menus;
    RecentFilesMenu *m_recentFiles;
    QMenu *m_contentMenu;
    QMenu *m_libraryMenu;
};
