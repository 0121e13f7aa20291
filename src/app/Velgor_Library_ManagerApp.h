#pragma once

#include "ContentEditor.h"
#include "ContentFiles.h"
#include "ContentView.h"
#include "Desk.h"
#include "DesktopFileDialogs.h"
#include "EditHistory.h"
#include "LibraryEditor.h"
#include "LibraryManagerPreferences.h"
#include "LibraryStorageManager.h"
#include "PatchFileHandler.h"
#include "StartRequest.h"
#include "StateFile.h"
#include "SystemColorScheme.h"
#include "UserFiles.h"
#include "VelgorContent.h"
#include "VelgorLibrary.h"
#include "WindowState.h"

#include <QObject>
#include <QTimer>

#include <memory>

class SingleInstance;

/// Owns what lives as long as the application: the shared objects, what works on them, and the window.
class Velgor_Library_ManagerApp : public QObject {
    Q_OBJECT

public:
    Velgor_Library_ManagerApp();
    ~Velgor_Library_ManagerApp() override;
    Q_DISABLE_COPY_MOVE(Velgor_Library_ManagerApp)

    /// Keeps the directory to this program, shows the window and runs until it is closed. The result is the program's
    /// exit status.
    [[nodiscard]] int run(const StartRequest &request);

private:
    /// Why other programs cannot be kept from the directory, unless that was told.
    void tellOfDirectory();
    void open(const StartRequest &request);
    /// Does what waits, once no dialog and no message is about the list that it would replace, and a new list can be
    /// filled.
    void openWaiting();
    void moveLibrary();
    void terminate();

    LibraryManagerPreferences preferences;
    LibraryStorageManager storage;
    VelgorLibrary velgorLibrary;
    VelgorContent velgorContent;
    WindowState m_windowState{StateFile::usualPath()};
    UserFiles m_userFiles;
    DesktopFileDialogs m_dialogs;
    PatchFileHandler m_files;
    EditHistory m_history;
    LibraryEditor m_libraryEditor;
    ContentEditor m_contentEditor;
    ContentFiles m_contentFiles;
    Desk m_desk;
    SystemColorScheme m_systemColorScheme;
    std::unique_ptr<SingleInstance> m_instance;
    std::unique_ptr<ContentView> m_window;
    StartRequest m_waiting;
    QTimer m_openAgain;
};
