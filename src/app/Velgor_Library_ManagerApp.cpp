#include "Velgor_Library_ManagerApp.h"

#include "AlertTexts.h"
#include "Alerts.h"
#include "LibraryCheck.h"
#include "SingleInstance.h"
#include "StatusLine.h"
#include "StatusText.h"
#include "TerminationSignals.h"
#include "WindowActivation.h"
#include "X11Startup.h"

#include <QApplication>
#include <QDesktopServices>
#include <QDir>
#include <QMessageBox>

#include <chrono>
#include <utility>

using namespace std::chrono_literals;

Velgor_Library_ManagerApp::Velgor_Library_ManagerApp()
    : storage(preferences)
    , m_dialogs(m_windowState)
    , m_files(m_userFiles, &m_dialogs)
    , m_history(velgorLibrary, velgorContent, storage)
    , m_libraryEditor(velgorLibrary, velgorContent, m_history)
    , m_contentEditor(velgorLibrary, velgorContent, m_history)
    , m_contentFiles(velgorContent, m_files, m_history)
    , m_desk{velgorLibrary, velgorContent, storage, preferences, {m_libraryEditor, m_contentEditor, m_contentFiles},
          [this] { return std::make_unique<LibraryCheck>(velgorLibrary, storage, m_history); },
          [this] { moveLibrary(); }}
{
    m_openAgain.setSingleShot(true);
    m_openAgain.setInterval(200ms);
    connect(&m_openAgain, &QTimer::timeout, this, &Velgor_Library_ManagerApp::openWaiting);
    storage.setShowDirectory([this](const QUrl &directory) {
        if (!QDesktopServices::openUrl(directory) && m_window) {
            m_window->alerts().show(AlertTexts::cannotShowDirectory(directory.toLocalFile()), [](bool) {});
        }
    });
}

Velgor_Library_ManagerApp::~Velgor_Library_ManagerApp() = default;

int Velgor_Library_ManagerApp::run(const StartRequest &request)
{
    // Before the lock is taken: a program that a signal ends leaves none. They come once the event loop runs.
    const TerminationSignals signalsFromSystem;
    m_instance = std::make_unique<SingleInstance>(storage.libDirectory());
    const SingleInstance::Outcome outcome = m_instance->start(request);
    if (outcome == SingleInstance::Outcome::HandedOver) {
        // No window of this start will do it.
        X11Startup::complete(request.activation.startupId);
        return 0;
    }
    if (outcome == SingleInstance::Outcome::First) {
        // Not before: a former version that has the directory still uses its file.
        m_windowState.open(StateFile::inherit(StateFile::usualPath(), StateFile::formerPaths()));
    }
    m_window = std::make_unique<ContentView>(m_desk, m_systemColorScheme, m_windowState);
    if (outcome == SingleInstance::Outcome::Refused) {
        // Without the window, which would show a library that is not this program's.
        connect(&signalsFromSystem, &TerminationSignals::terminated, qApp, &QCoreApplication::quit);
        QMessageBox *message =
            AlertTexts::directoryInUse(m_instance->reason()).show(nullptr, [](bool) { QCoreApplication::quit(); });
        WindowActivation::activateOnceShown(*message, request.activation);
        QCoreApplication::exec();
        return 1;
    }
    m_dialogs.setParent(m_window.get());
    connect(&signalsFromSystem, &TerminationSignals::terminated, this, &Velgor_Library_ManagerApp::terminate);
    connect(
        qApp, &QGuiApplication::commitDataRequest, this, [this] { storage.saveUnsaved(); }, Qt::DirectConnection);
    connect(m_instance.get(), &SingleInstance::activated, this, &Velgor_Library_ManagerApp::open);
    connect(m_window.get(), &ContentView::libraryLoaded, this, [this] { storage.startSweeping(); });
    connect(m_window.get(), &ContentView::libraryLoaded, this, &Velgor_Library_ManagerApp::tellOfDirectory,
        Qt::SingleShotConnection);
    m_window->show();
    WindowActivation::activateOnceShown(*m_window, request.activation);
    if (request.action != StartRequest::Action::Show) {
        m_waiting = request;
        m_openAgain.start();
    }
    const int status = QCoreApplication::exec();
    storage.saveUnsaved();
    return status;
}

void Velgor_Library_ManagerApp::tellOfDirectory()
{
    // A directory that cannot be locked because it cannot be used at all has its message already.
    const bool isTold = storage.readError() || storage.writeError() || storage.readProblem();
    if (!m_instance->reason().isEmpty() && !isTold) {
        m_window->alerts().show(AlertTexts::directoryInUse(m_instance->reason()), [](bool) {});
    }
}

void Velgor_Library_ManagerApp::open(const StartRequest &request)
{
    WindowActivation::raise(*m_window, request.activation, [this] { m_window->raiseToFront(); });
    if (request.action != StartRequest::Action::Show) {
        m_waiting = request;
        openWaiting();
    }
}

void Velgor_Library_ManagerApp::openWaiting()
{
    const bool isTooEarly = m_waiting.action == StartRequest::Action::NewList && storage.isLoading();
    if (isTooEarly || QApplication::activeModalWidget() || m_window->alerts().isShowing()) {
        m_openAgain.start();
        return;
    }
    // What came later may have been done in the meantime.
    const StartRequest request = std::exchange(m_waiting, StartRequest());
    switch (request.action) {
    case StartRequest::Action::Show:
        return;
    case StartRequest::Action::Open:
        m_window->importFile(request.file);
        return;
    case StartRequest::Action::NewList:
        m_window->startNewList();
        return;
    }
}

void Velgor_Library_ManagerApp::moveLibrary()
{
    const std::optional<QString> chosen = m_dialogs.askDirectory(tr("Move the library to a folder"));
    if (!chosen) {
        return;
    }
    // Its files get a folder to themselves.
    const QString directory =
        QDir(*chosen).isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System)
        ? *chosen
        : QDir(*chosen).filePath(QStringLiteral("VelgorLibrary"));
    const auto instance = std::make_shared<std::unique_ptr<SingleInstance>>();
    LibraryMove::Steps steps;
    steps.acquire = [instance](const QString &target) -> Result<> {
        *instance = std::make_unique<SingleInstance>(target);
        const bool isFirst = (*instance)->start(StartRequest()) == SingleInstance::Outcome::First;
        return isFirst ? Result<>(Success())
                       : Problem{.where = target, .why = tr("another program uses the folder"), .mayPass = true};
    };
    steps.release = [instance] { instance->reset(); };
    steps.ended = [this, instance, directory](const Result<> &moved, const LibraryWriteResult &) {
        if (!moved) {
            m_window->alerts().show(AlertTexts::cannotMoveLibrary(moved.problem().text()), [](bool) {});
            return;
        }
        connect(instance->get(), &SingleInstance::activated, this, &Velgor_Library_ManagerApp::open);
        m_instance = std::move(*instance);
        m_window->statusLine().say(StatusText::ofLibraryMove(directory));
    };
    storage.startMove(directory, velgorLibrary, steps);
}

void Velgor_Library_ManagerApp::terminate()
{
    // Nothing is asked, and a dialog that is open must not hold the program up.
    storage.saveUnsaved();
    m_window->closeUnasked();
    QCoreApplication::exit(0);
}
