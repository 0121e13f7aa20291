#include "LibraryContentMainView.h"

#include "Commands.h"
#include "ContentListView.h"
#include "LibraryEditor.h"
#include "VelgorContentView.h"
#include "VelgorLibraryView.h"
#include "VelgorPatchDetailView.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int contentMinimum = 252;
constexpr int libraryMinimum = 376;
constexpr int detailsMinimum = 320;

} // namespace

LibraryContentMainView::LibraryContentMainView(Commands &commands, QWidget *parent)
    : QSplitter(Qt::Horizontal, parent)
    , m_content(new VelgorContentView(commands))
    , m_library(new VelgorLibraryView(commands))
    , m_details(
          new VelgorPatchDetailView(commands.desk().library, commands.desk().content, commands.desk().libraryEditor))
{
    setHandleWidth(1);
    setChildrenCollapsible(false);
    m_content->setMinimumWidth(std::max(contentMinimum, m_content->minimumSizeHint().width()));
    m_library->setMinimumWidth(std::max(libraryMinimum, m_library->minimumSizeHint().width()));
    m_details->setMinimumWidth(std::max(detailsMinimum, m_details->minimumSizeHint().width()));
    addWidget(m_content);
    addWidget(m_library);
    addWidget(m_details);
    setStretchFactor(0, 0);
    setStretchFactor(1, 1);
    setStretchFactor(2, 1);
    handle(1)->setAccessibleName(tr("Width of the content column"));
    handle(2)->setAccessibleName(tr("Width of the library column"));
    connect(m_details, &VelgorPatchDetailView::placeActivated, m_content->list(), &ContentListView::showSlot);
}

void LibraryContentMainView::setLoading(bool isLoading)
{
    m_library->setLoading(isLoading);
    m_details->setLoading(isLoading);
}

void LibraryContentMainView::setStartWidths(int windowWidth)
{
    constexpr int narrow = 1024;
    constexpr int wide = 1280;
    const double share = std::clamp((windowWidth - narrow) / double(wide - narrow), 0.0, 1.0);
    const int spare = std::max(windowWidth - wide, 0);
    const int content = static_cast<int>(std::lerp(262.0, 280.0, share));
    const int library = static_cast<int>(std::lerp(420.0, 456.0, share)) + spare / 2;
    setSizes({content, library, windowWidth - content - library - 2 * handleWidth()});
}
