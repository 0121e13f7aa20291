// The window: what the commands ask of it.

#include "AboutDialog.h"
#include "AlertTexts.h"
#include "Alerts.h"
#include "ContentView.h"
#include "LibraryCheckDialog.h"
#include "LibraryContentMainView.h"
#include "LibraryListView.h"
#include "LibraryStorageManager.h"
#include "LibraryViewFilterView.h"
#include "RecentFilesMenu.h"
#include "StatusLine.h"
#include "StatusText.h"
#include "VelgorLibraryView.h"
#include "VelgorPatchDetailView.h"
#include "WindowState.h"
#include "WindowTasks.h"

#include <QDesktopServices>
#include <QShortcut>

WindowTasks ContentView::tasks()
{
    return {
        .confirmExport = [this] { m_alerts->confirmExport(); },
        .clearRecentFiles =
            [this] {
                m_state.clearRecentFiles();
                m_recentFiles->refresh();
            },
        .hasRecentFiles = [this] { return !m_state.recentFiles().isEmpty(); },
        .checkLibrary = [this] { checkLibrary(); },
        .flipTick = [this] { m_columns->library()->list()->flipTickOfCurrent(); },
        .canFlipTick = [this] { return m_columns->library()->list()->canFlipTickOfCurrent(); },
        .showsLibraryPatches = [this] { return m_columns->library()->shownCount() > 0; },
        .moveLibraryPatch = [this](int step) { m_columns->library()->list()->moveSelected(step); },
        .canMoveLibraryPatch = [this](int step) { return m_columns->library()->list()->canMoveSelected(step); },
        .showInLibrary = [this] { showInLibrary(); },
        .focusFilter = [this] { m_columns->library()->filter()->focusName(); },
        .focusName = [this] { m_columns->details()->focusName(); },
        .openPage = [this](const QUrl &page) { openPage(page); },
        .showGuide = [this] { openGuide(UserGuide::Page::Contents); },
        .showColumnHelp = [this] { openGuide(m_columns->guidePage()); },
        .showAbout = [this] { showAbout(); },
        .goToColumn = [this](int step) { m_columns->goToColumn(step); },
        .closeWindow = [this] { close(); },
    };
}

void ContentView::checkLibrary()
{
    if (m_check) {
        return;
    }
    m_check = new LibraryCheckDialog(m_desk.newLibraryCheck(), m_desk.library, m_desk.storage, this);
    m_check->setAttribute(Qt::WA_DeleteOnClose);
    m_alerts->setFrontDialog(m_check);
    connect(m_check, &LibraryCheckDialog::libraryChanged, this, [this] {
        // The dialog shows what was kept; only what another program wrote is news.
        if (!m_desk.storage.wasChangedByOthers()) {
            m_notedKeptFiles = m_desk.storage.keptFiles();
        }
        refreshStatus();
    });
    connect(new QShortcut(Qt::Key_F1, m_check), &QShortcut::activated, this,
        [this] { openGuide(UserGuide::Page::LibraryCheck); });
    m_check->open();
}

void ContentView::showInLibrary()
{
    const QString said = m_columns->showInLibrary();
    if (!said.isEmpty()) {
        m_status->say(said);
    }
}

void ContentView::showAbout()
{
    m_about = new AboutDialog(ProblemReport::of(m_desk.library, m_desk.storage, *this), this);
    m_about->setAttribute(Qt::WA_DeleteOnClose);
    m_alerts->setFrontDialog(m_about);
    connect(new QShortcut(Qt::Key_F1, m_about), &QShortcut::activated, this,
        [this] { openGuide(UserGuide::Page::Trouble); });
    m_about->open();
}

void ContentView::openPage(const QUrl &page)
{
    if (QDesktopServices::openUrl(page)) {
        // Whether there is a browser to be found is not always known at once.
        m_status->say(StatusText::ofPage(page.toString()));
    } else {
        m_alerts->show(AlertTexts::cannotOpenPage(page.toString()), [](bool) {});
    }
}

void ContentView::openGuide(UserGuide::Page page)
{
    openPage(m_guide.address(page));
}
