#include "Velgor_Library_ManagerApp.h"

#include "AlertTexts.h"
#include "Alerts.h"
#include "Look.h"
#include "MessageBox.h"
#include "SingleInstance.h"
#include "TerminationSignals.h"

#include <QApplication>
#include <QDesktopServices>
#include <QMessageBox>
#include <QTimer>

Velgor_Library_ManagerApp::Velgor_Library_ManagerApp()
    : storage(preferences)
    , m_dialogs(m_windowState)
    , m_files(m_diskFiles, &m_dialogs)
    , m_libraryEditor(velgorLibrary, velgorContent, storage)
    , m_contentEditor(velgorLibrary, velgorContent)
    , m_contentFiles(velgorContent, m_files)
    , m_desk{
          velgorLibrary, velgorContent, storage, preferences, m_files, m_libraryEditor, m_contentEditor, m_contentFiles}
{
    storage.setShowDirectory([this](const QUrl &directory) {
        if (!QDesktopServices::openUrl(directory) && m_window) {
            m_window->alerts().show(AlertTexts::cannotShowDirectory(directory.toLocalFile()), [](bool) {});
        }
    });
}

Velgor_Library_ManagerApp::~Velgor_Library_ManagerApp() = default;

int Velgor_Library_ManagerApp::run(const QString &file)
{
    SingleInstance instance(storage.libDirectory());
    const SingleInstance::Outcome outcome = instance.start(file);
    if (outcome == SingleInstance::Outcome::HandedOver) {
        return 0;
    }
    m_window = std::make_unique<ContentView>(m_desk, m_systemColorScheme, m_windowState);
    if (outcome == SingleInstance::Outcome::Refused) {
        // Without the window, which would show a library that is not this program's.
        MessageBox::show(
            nullptr, AlertTexts::directoryInUse(instance.reason()), [](bool) { QCoreApplication::quit(); });
        QCoreApplication::exec();
        return 1;
    }
    m_dialogs.setParent(m_window.get());
    const TerminationSignals signalsFromSystem;
    connect(&signalsFromSystem, &TerminationSignals::terminated, this, &Velgor_Library_ManagerApp::terminate);
    connect(
        qApp, &QGuiApplication::commitDataRequest, this, [this] { storage.saveUnsaved(); }, Qt::DirectConnection);
    connect(&instance, &SingleInstance::activated, this, &Velgor_Library_ManagerApp::open);
    connect(m_window.get(), &ContentView::libraryLoaded, this, [this] { storage.sweepLeftovers(); });
    m_window->show();
    if (!instance.reason().isEmpty()) {
        m_window->alerts().show(AlertTexts::directoryInUse(instance.reason()), [](bool) {});
    }
    if (!file.isEmpty()) {
        QTimer::singleShot(0, this, [this, file] { m_window->importFile(file); });
    }
    const int status = QCoreApplication::exec();
    storage.saveUnsaved();
    return status;
}

void Velgor_Library_ManagerApp::open(const QString &file)
{
    m_window->raiseToFront();
    if (!file.isEmpty()) {
        m_window->importFile(file);
    }
}

void Velgor_Library_ManagerApp::terminate()
{
    // Nothing is asked, and a dialog that is open must not hold the program up.
    storage.saveUnsaved();
    QCoreApplication::exit(0);
}
