// The window: what the commands ask of it.

#include "Alerts.h"
#include "ContentView.h"
#include "LibraryContentMainView.h"
#include "LibraryListView.h"
#include "LibraryViewFilterView.h"
#include "RecentFilesMenu.h"
#include "StatusLine.h"
#include "VelgorLibraryView.h"
#include "VelgorPatchDetailView.h"
#include "WindowState.h"

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

void ContentView::goToColumn(int step)
{
    m_columns->goToColumn(step);
}

void ContentView::closeWindow()
{
    close();
}
