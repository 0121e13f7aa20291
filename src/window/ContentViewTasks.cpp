// The window: what the commands ask of it.

#include "AboutDialog.h"
#include "Alerts.h"
#include "ContentView.h"
#include "LibraryCheckDialog.h"
#include "LibraryContentMainView.h"
#include "LibraryListView.h"
#include "LibraryStorageManager.h"
#include "LibraryViewFilterView.h"
#include "RecentFilesMenu.h"
#include "StatusLine.h"
#include "VelgorLibraryView.h"
#include "VelgorPatchDetailView.h"
#include "WindowState.h"

#include <QShortcut>

void ContentView::confirmExport()
{
    m_alerts->confirmExport();
}

void ContentView::clearRecentFiles()
{
    m_state.clearRecentFiles();
    m_recentFiles->refresh();
}

bool ContentView::hasRecentFiles() const
{
    return !m_state.recentFiles().isEmpty();
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
        [this] { openPage(m_guide.address(UserGuide::Page::LibraryCheck)); });
    m_check->open();
}

void ContentView::flipTick()
{
    m_columns->library()->list()->flipTickOfCurrent();
}

bool ContentView::canFlipTick() const
{
    return m_columns && m_columns->library()->list()->canFlipTickOfCurrent();
}

bool ContentView::showsLibraryPatches() const
{
    return m_columns && m_columns->library()->shownCount() > 0;
}

void ContentView::moveLibraryPatch(int step)
{
    m_columns->library()->list()->moveSelected(step);
}

bool ContentView::canMoveLibraryPatch(int step) const
{
    return m_columns && m_columns->library()->list()->canMoveSelected(step);
}

void ContentView::showInLibrary()
{
    const QString said = m_columns->showInLibrary();
    if (!said.isEmpty()) {
        m_status->say(said);
    }
}

void ContentView::focusFilter()
{
    m_columns->library()->filter()->focusName();
}

void ContentView::focusName()
{
    m_columns->details()->focusName();
}

void ContentView::showGuide()
{
    openPage(m_guide.address(UserGuide::Page::Contents));
}

void ContentView::showColumnHelp()
{
    openPage(m_guide.address(m_columns->guidePage()));
}

void ContentView::showAbout()
{
    m_about = new AboutDialog(ProblemReport::of(m_desk.library, m_desk.storage, *this), this);
    m_about->setAttribute(Qt::WA_DeleteOnClose);
    m_alerts->setFrontDialog(m_about);
    connect(new QShortcut(Qt::Key_F1, m_about), &QShortcut::activated, this,
        [this] { openPage(m_guide.address(UserGuide::Page::Trouble)); });
    m_about->open();
}

void ContentView::goToColumn(int step)
{
    m_columns->goToColumn(step);
}

void ContentView::closeWindow()
{
    close();
}
