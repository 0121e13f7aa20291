#pragma once

#include "Desk.h"
#include "UserGuide.h"
#include "WindowTasks.h"

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

/// The main window. It shows what the desk holds; nothing of that is its own.
class ContentView : public QMainWindow, private WindowTasks {
    Q_OBJECT

public:
    /// All must outlive the window.
    ContentView(Desk &desk, SystemColorScheme &systemColorScheme, WindowState &state);
    ~ContentView() override;
    Q_DISABLE_COPY_MOVE(ContentView)

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
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void confirmExport() override;
    void clearRecentFiles() override;
    [[nodiscard]] bool hasRecentFiles() const override;
    void checkLibrary() override;
    void flipTick() override;
    [[nodiscard]] bool canFlipTick() const override;
    [[nodiscard]] bool showsLibraryPatches() const override;
    void moveLibraryPatch(int step) override;
    [[nodiscard]] bool canMoveLibraryPatch(int step) const override;
    void showInLibrary() override;
    void focusFilter() override;
    void focusName() override;
    void openPage(const QUrl &page) override;
    void showGuide() override;
    void showColumnHelp() override;
    void showAbout() override;
    void goToColumn(int step) override;
    void closeWindow() override;

    void followLoading();
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
    LibraryContentMainView *m_columns = nullptr; ///< asked for by the commands, which come first
    Commands *m_commands;
    Alerts *m_alerts;
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
