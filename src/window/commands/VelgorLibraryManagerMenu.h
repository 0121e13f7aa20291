#pragma once

#include "Command.h"
#include "PatchFlags.h"

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
    void addMarks(const ShownFlags &marks);
    void addFileMenu(QMenuBar &bar);
    void addEditMenu(QMenuBar &bar);
    void addViewMenu(QMenuBar &bar);
    void addLibraryMenu(QMenuBar &bar);
    void addHelpMenu(QMenuBar &bar);
    /// A divider for each nothing in the list.
    void add(QMenu &menu, const QList<std::optional<CommandId>> &ids);

    Commands &m_commands;
    RecentFilesMenu *m_recentFiles;
    QMenu *m_flagsMenu;
    QMenu *m_contentMenu;
    QMenu *m_libraryMenu;
};
