#pragma once

#include "FilePresence.h"

#include <QMenu>

class WindowState;

/// The preset files that were imported or exported last, and an entry that forgets them. It is disabled while there are
/// none. Files that are not there are disabled when the menu opens.
class RecentFilesMenu : public QMenu {
    Q_OBJECT

public:
    /// `state` and `clear`, the last entry, must outlive the menu. `presence` becomes the menu's own.
    RecentFilesMenu(const WindowState &state, QAction &clear, FilePresence *presence, QWidget *parent = nullptr);

    void refresh();

Q_SIGNALS:
    /// An absolute path. Nothing of the menu is in use any more.
    void fileChosen(const QString &path);

private:
    void lookForFiles();
    void showPresence();

    const WindowState &m_state;
    QAction &m_clear;
    FilePresence *m_presence;
    QList<QAction *> m_entries;
};
