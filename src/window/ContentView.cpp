#include "ContentView.h"

#include "AboutDialog.h"
#include "AlertTexts.h"
#include "Alerts.h"
#include "Commands.h"
#include "ContentEditor.h"
#include "ContentFiles.h"
#include "ContentListView.h"
#include "EditingKeys.h"
#include "FileDrops.h"
#include "LibraryCheckDialog.h"
#include "LibraryContentMainView.h"
#include "LibraryEditor.h"
#include "LibraryListView.h"
#include "LibraryManagerPreferences.h"
#include "LibraryStorageManager.h"
#include "LibraryViewFilterView.h"
#include "LookMeasures.h"
#include "LookTokens.h"
#include "OneRefresh.h"
#include "RecentFilesMenu.h"
#include "ShownName.h"
#include "StatusLine.h"
#include "StatusText.h"
#include "SystemColorScheme.h"
#include "VelgorContentView.h"
#include "VelgorLibraryManagerMenu.h"
#include "VelgorLibraryView.h"
#include "WindowPlacement.h"
#include "WindowState.h"
#include "WindowTasks.h"

#include <QCloseEvent>
#include <QFileInfo>
#include <QMenuBar>
#include <QScreen>

#include <utility>

namespace {

constexpr QSize startSize{1280, 800};

} // namespace

ContentView::ContentView(Desk &desk, SystemColorScheme &systemColorScheme, WindowState &state)
    : m_desk(desk)
    , m_systemColorScheme(systemColorScheme)
    , m_state(state)
    , m_commands(new Commands(desk.library, desk.content, desk.storage, desk.preferences, desk.editors, tasks(), this))
    , m_alerts(new Alerts(desk.library, desk.content, desk.storage, desk.editors, *this))
    , m_refresh(new OneRefresh(
          [this] {
              refreshTitle();
              noteKeptFiles();
          },
          this))
{
    applyColorScheme();
    // Not among the initializers: what it paints with comes first.
    // NOLINTNEXTLINE(cppcoreguidelines-prefer-member-initializer)
    m_columns = new LibraryContentMainView(desk.library, desk.content, desk.editors, *m_commands, this);
    setCentralWidget(m_columns);
    const auto *const menu = new VelgorLibraryManagerMenu(*m_commands, m_state, *menuBar(), this);
    m_recentFiles = menu->recentFiles();
    m_commands->addShortcuts(*this, *m_columns->content()->list(), *m_columns->library()->list());
    m_columns->content()->list()->setContextMenu(menu->contentContextMenu());
    m_columns->library()->list()->setContextMenu(menu->libraryContextMenu());
    new EditingKeys(this);
    const auto isShown = [this](quint64 id) { return m_columns->library()->isShown(id); };
    m_status = new StatusLine(desk.library, desk.content, desk.storage, desk.editors, isShown, this);
    setStatusBar(m_status);
    // Not in the list of members, as it needs what is made here.
    auto *const drops =
        new FileDrops(*this, desk.storage, desk.editors.library, desk.editors.files, *m_columns, *m_alerts, *m_status);
    m_drops = drops;
    // It may say what the filter hides.
    connect(m_columns->library()->filter(), &LibraryViewFilterView::filterChanged, m_status, &StatusLine::clear);

    connect(&desk.preferences, &LibraryManagerPreferences::colorSchemeChanged, this, &ContentView::applyColorScheme);
    connect(&systemColorScheme, &SystemColorScheme::changed, this, &ContentView::applyColorScheme);
    connect(&desk.editors.files, &ContentFiles::changed, m_refresh, &OneRefresh::ask);
    for (const auto signal : {&LibraryStorageManager::waitingToSaveChanged,
             &LibraryStorageManager::libraryToSaveChanged, &LibraryStorageManager::saveFinished}) {
        connect(&desk.storage, signal, m_status, &StatusLine::refresh);
        connect(&desk.storage, signal, m_refresh, &OneRefresh::ask);
    }
    m_status->follow(*m_columns->content()->list());
    m_status->follow(*m_columns->library()->list());
    connect(m_alerts, &Alerts::libraryCheckWanted, this, &ContentView::checkLibrary);
    connect(m_alerts, &Alerts::libraryMoveWanted, this, [this] {
        if (m_desk.moveLibrary) {
            m_desk.moveLibrary();
        }
    });
    connect(m_alerts, &Alerts::helpWanted, this, [this] { openGuide(UserGuide::Page::Trouble); });
    followFiles();
    connect(
        &desk.storage, &LibraryStorageManager::loadProgress, m_columns->library(), &VelgorLibraryView::setLoadProgress);
    connect(&desk.storage, &LibraryStorageManager::loadFinished, this, &ContentView::finishLoading);
    restoreGeometryAndWidths();
    m_columns->content()->list()->setFocus();
    refreshTitle();
    refreshStatus();
}

void ContentView::restoreGeometryAndWidths()
{
    resize(LookMeasures::scaledToText(startSize, fontMetrics())
               .boundedTo(LookMeasures::roomForWindow(*screen()))
               .expandedTo(minimumSizeHint()));
    WindowPlacement::restore(*this, m_state.geometry());
    m_columns->restoreWidths(m_state.splitterSizes(), isMaximized() ? screen()->availableSize().width() : width());
}

void ContentView::followFiles()
{
    connect(m_recentFiles, &RecentFilesMenu::fileChosen, this,
        [this](const QString &file) { m_desk.editors.files.importFile(file); });
    for (const auto signal : {&ContentFiles::imported, &ContentFiles::exported}) {
        connect(&m_desk.editors.files, signal, this, [this](qsizetype, const QString &file) { remember(file); });
    }
}

void ContentView::remember(const QString &file)
{
    m_state.addRecentFile(file);
    m_recentFiles->refresh();
    m_commands->refresh();
}

void ContentView::showEvent(QShowEvent *event)
{
    QMainWindow::showEvent(event);
    // What was changed here and is not on disk yet must not give way to what is there.
    if (!event->spontaneous() && !m_desk.storage.hasUnsavedChanges() && !m_desk.storage.isLoading()) {
        m_columns->setLoading(true);
        m_desk.storage.startLoading();
        refreshStatus();
    }
}

void ContentView::finishLoading()
{
    m_desk.editors.library.adoptLoaded(m_desk.storage.takeLoadedLibrary(), m_desk.storage.awaitedPatches());
    m_columns->setLoading(false);
    refreshStatus();
    Q_EMIT libraryLoaded();
    const QString doubt = StatusText::ofDoubtfulPatches(m_desk.storage.doubtfulPatches().size());
    if (!doubt.isEmpty()) {
        m_status->say(doubt);
    }
    if (m_desk.storage.readProblem() && !m_desk.storage.readError()) {
        // What keeps a directory from being read has kept it from being made or tried before.
        m_desk.storage.setWriteError(false);
        m_alerts->showAboutLibrary(AlertTexts::readError(m_desk.storage));
    } else if (!m_desk.storage.droppedPatches().isEmpty()) {
        m_alerts->showAboutLibrary(AlertTexts::incompleteLibrary(m_desk.storage));
    }
}

void ContentView::importFile(const QString &path)
{
    m_drops->importFile(path);
}

void ContentView::startNewList()
{
    if (!m_desk.editors.files.isModified()) {
        m_desk.editors.content.reset();
        return;
    }
    m_alerts->show(AlertTexts::replaceUnexported({}), [this](bool isAccepted) {
        if (isAccepted) {
            m_desk.editors.content.reset();
        }
    });
}

void ContentView::raiseToFront()
{
    setWindowState((windowState() & ~Qt::WindowMinimized) | Qt::WindowActive);
    show();
    raise();
    activateWindow();
}

void ContentView::closeUnasked()
{
    m_isCloseConfirmed = true;
    close();
}

void ContentView::changeEvent(QEvent *event)
{
    QMainWindow::changeEvent(event);
    // Some window managers let a click activate the window behind its message, where no key would reach anything.
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) {
        if (!std::exchange(m_isPlaced, true)) {
            WindowPlacement::keepOnScreen(*this);
        }
        if (m_about) {
            m_about->activateWindow();
        }
        if (m_check) {
            m_check->activateWindow();
        }
        m_alerts->raise();
    }
}

void ContentView::closeEvent(QCloseEvent *event)
{
    if (!mayClose()) {
        event->ignore();
        return;
    }
    m_state.setGeometry(saveGeometry());
    m_state.setSplitterSizes(m_columns->columnWidths());
    event->accept();
}

bool ContentView::mayClose()
{
    if (m_isCloseConfirmed) {
        return true;
    }
    const auto closeIfAccepted = [this](bool isAccepted) {
        m_isCloseConfirmed = isAccepted;
        if (isAccepted) {
            close();
        }
        m_isCloseConfirmed = false;
    };
    if (m_desk.editors.files.isModified() && !m_isExportWaived) {
        m_alerts->show(AlertTexts::closeUnexported(), [this](bool isAccepted) {
            m_isExportWaived = isAccepted;
            if (isAccepted) {
                close();
            }
            m_isExportWaived = false;
        });
        return false;
    }
    if (!m_desk.storage.saveUnsaved()) {
        const Alert alert = AlertTexts::closeUnsaved(m_desk.storage);
        // This message says what that of the flag would say.
        m_desk.storage.setWriteError(false);
        m_alerts->show(alert, closeIfAccepted);
        return false;
    }
    return !noteKeptFiles([this] { close(); });
}

void ContentView::applyColorScheme()
{
    switch (m_desk.preferences.colorScheme()) {
    case PrefColors::prefsystem:
        applyLook(m_systemColorScheme.isDark());
        return;
    case PrefColors::prefdark:
        applyLook(true);
        return;
    case PrefColors::preflight:
        applyLook(false);
        return;
    }
}

void ContentView::refreshTitle()
{
    const QString file = m_desk.editors.files.fileName();
    const bool isModified = m_desk.editors.files.isModified();
    const QString list =
        file.isEmpty() ? (isModified ? tr("New list") : QString()) : isolated(QFileInfo(file).fileName());
    const QString program = QCoreApplication::applicationName();
    setWindowTitle(list.isEmpty() ? program : tr("%1[*] - %2").arg(list, program));
    setWindowFilePath(file);
    setWindowModified(isModified);
}

void ContentView::refreshStatus()
{
    m_status->refresh();
    noteKeptFiles();
}

bool ContentView::noteKeptFiles(const std::function<void()> &dismissed)
{
    const bool isNews = m_notedKeptFiles != m_desk.storage.keptFiles();
    if (isNews) {
        m_notedKeptFiles = m_desk.storage.keptFiles();
        m_alerts->showAboutLibrary(AlertTexts::keptFiles(m_desk.storage), dismissed);
    }
    return isNews;
}
