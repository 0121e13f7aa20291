#pragma once

#include "Desk.h"
#include "UserGuide.h"

#include <QMainWindow>
#include <QPointer>

class AboutDialog;
class Alerts;
class Commands;
class FileDrops;
class LibraryCheckDialog;
class LibraryContentMainView;
class OneRefresh;
class RecentFilesMenu;
class StatusLine;
class SystemColorScheme;
class WindowState;
struct WindowTasks;

/// The main window. It shows what the desk holds; nothing of that is its own.
class ContentView : public QMainWindow {
    Q_OBJECT

public:
    /// All must outlive the window.
    ContentView(Desk &desk, SystemColorScheme &systemColorScheme, WindowState &state);

    /// Fills the list from a preset file that came without being asked for; asks first if that loses changes that were
    /// not exported.
    void importFile(const QString &path);
    /// Starts a new list of default patches, which was not asked for in the window; asks first if that loses changes
    /// that were not exported. To be called once the library is loaded.
    void startNewList();
    /// Brings the window in front of the others.
    void raiseToFront();
    /// Closes without asking about anything that was not exported or saved.
    void closeUnasked();
    /// The one to open when help is asked for, in the place of the installed one.
    void setUserGuide(const UserGuide &guide) { m_guide = guide; }
    [[nodiscard]] Alerts &alerts() const { return *m_alerts; }
    [[nodiscard]] StatusLine &statusLine() const { return *m_status; }
    [[nodiscard]] LibraryContentMainView &columns() const { return *m_columns; }
    [[nodiscard]] Commands &commands() const { return *m_commands; }

Q_SIGNALS:
    /// The library that was on disk is shown, if there was one.
    void libraryLoaded();

protected:
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    /// What the commands ask of the window.
    [[nodiscard]] WindowTasks tasks();
    void checkLibrary();
    void showInLibrary();
    void showAbout();
    void openPage(const QUrl &page);
    void openGuide(UserGuide::Page page);

    void finishLoading();
    void followFiles();
    void remember(const QString &file);
    void applyColorScheme();
    /// True when there was something to tell; `dismissed` is called once the user has seen it.
    bool noteKeptFiles(const std::function<void()> &dismissed = {});
    void refreshTitle();
    void refreshStatus();
    [[nodiscard]] bool mayClose();
    void restoreGeometryAndWidths();

    Desk &m_desk;
    SystemColorScheme &m_systemColorScheme;
    UserGuide m_guide;
    WindowState &m_state;
    Commands *m_commands;
    Alerts *m_alerts;
    LibraryContentMainView *m_columns = nullptr;
    StatusLine *m_status = nullptr;
    OneRefresh *m_refresh;
    RecentFilesMenu *m_recentFiles = nullptr;
    FileDrops *m_drops = nullptr;
    QPointer<AboutDialog> m_about;
    QPointer<LibraryCheckDialog> m_check;
    bool m_isCloseConfirmed = false; ///< whatever is not saved or exported
    bool m_isExportWaived = false;
    bool m_isPlaced = false; ///< with the frame that the window manager has given it
    QStringList m_notedKeptFiles;
};
