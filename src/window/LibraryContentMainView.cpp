#include "LibraryContentMainView.h"

#include "Commands.h"
#include "ContentEditor.h"
#include "ContentListView.h"
#include "LibraryEditor.h"
#include "LibraryListView.h"
#include "LookMeasures.h"
#include "VelgorContentView.h"
#include "VelgorLibraryView.h"
#include "VelgorPatchDetailView.h"

#include <QApplication>
#include <QEvent>
#include <QPointer>

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <optional>

namespace {

constexpr int columns = 3;
/// What is beyond belongs to the library, which has a use for it.
constexpr int detailsMaximum = LookMeasures::detailsContentMaximum + 2 * LookMeasures::detailsPadding;

} // namespace

LibraryContentMainView::LibraryContentMainView(const VelgorLibrary &library, const VelgorContent &content,
    const Editors &editors, Commands &commands, QWidget *parent)
    : QSplitter(Qt::Horizontal, parent)
    , m_editors(editors)
    , m_content(new VelgorContentView(content, library, editors.content, editors.library, commands))
    , m_library(new VelgorLibraryView(library, editors.library, commands))
    , m_details(new VelgorPatchDetailView(library, content, editors.library))
    , m_right(new QSplitter(Qt::Vertical))
{
    for (QSplitter *splitter : {static_cast<QSplitter *>(this), m_right}) {
        splitter->setHandleWidth(1);
        splitter->setChildrenCollapsible(false);
    }
    m_right->addWidget(m_library);
    addWidget(m_content);
    addWidget(m_right);
    addWidget(m_details);
    setStretchFactor(0, 0);
    setStretchFactor(1, 1);
    setStretchFactor(2, 1);
    m_details->setMaximumWidth(detailsMaximum);
    nameHandles();
    connect(m_details, &VelgorPatchDetailView::placeActivated, m_content->list(), &ContentListView::showSlot);
}

void LibraryContentMainView::nameHandles()
{
    handle(1)->setAccessibleName(tr("Width of the content column"));
    if (m_isStacked) {
        m_right->handle(1)->setAccessibleName(tr("Height of the library"));
    } else {
        handle(2)->setAccessibleName(tr("Width of the library column"));
    }
}

void LibraryContentMainView::setLoading(bool isLoading)
{
    m_library->setLoading(isLoading);
    m_details->setLoading(isLoading);
}

QString LibraryContentMainView::showInLibrary()
{
    const QList<qsizetype> rows = m_editors.content.selectedRows();
    const std::optional<quint64> id = rows.isEmpty() ? std::nullopt : m_editors.library.patchOfSlot(rows.first());
    if (!id) {
        return tr("The library does not have the patch of this slot");
    }
    const bool wasHidden = m_library->showPatch(*id);
    return wasHidden ? tr("The filter is cleared, as it hid this patch") : QString();
}

void LibraryContentMainView::restoreWidths(const QList<int> &widths, int windowWidth)
{
    if (widths.size() != columns) {
        setStartWidths(windowWidth);
        return;
    }
    const qint64 former = std::accumulate(widths.begin(), widths.end(), qint64(columns - 1) * handleWidth());
    QList<int> fitting;
    for (const int width : widths) {
        // Each gives up its share of what a smaller screen lacks.
        fitting.append(former <= windowWidth ? width : static_cast<int>(qint64(width) * windowWidth / former));
    }
    setColumnWidths(fitting);
}

void LibraryContentMainView::setStartWidths(int windowWidth)
{
    constexpr int narrow = 1024;
    constexpr int wide = 1280;
    const double share = std::clamp((windowWidth - narrow) / double(wide - narrow), 0.0, 1.0);
    const int usual = static_cast<int>(std::lerp(262.0, 280.0, share));
    // Larger text needs more for the names of the slots.
    const int wanted = LookMeasures::scaledToText({usual, 0}, fontMetrics()).width();
    const int content = usual + std::min(wanted - usual, std::max((windowWidth - wide) / 3, windowWidth / 20));
    const int spare = std::max(windowWidth - wide - (content - usual), 0);
    const int shared = windowWidth - content - static_cast<int>(std::lerp(420.0, 456.0, share)) - 2 * handleWidth();
    const int details = std::min(shared - spare / 2, detailsMaximum);
    setColumnWidths({content, windowWidth - content - details - 2 * handleWidth(), details});
}

void LibraryContentMainView::setColumnWidths(const QList<int> &widths)
{
    m_widths = widths;
    if (!m_isStacked) {
        setSizes(widths);
    }
}

QSize LibraryContentMainView::minimumSizeHint() const
{
    const QSize content = m_content->minimumSizeHint();
    const QSize library = m_library->minimumSizeHint();
    const QSize details = m_details->minimumSizeHint();
    return {content.width() + handleWidth() + std::max(library.width(), details.width()),
        std::max(content.height(), library.height() + handleWidth() + details.height())};
}

bool LibraryContentMainView::event(QEvent *event)
{
    if (event->type() == QEvent::LayoutRequest) {
        arrange();
    }
    return QSplitter::event(event);
}

void LibraryContentMainView::resizeEvent(QResizeEvent *event)
{
    arrange();
    QSplitter::resizeEvent(event);
}

void LibraryContentMainView::arrange()
{
    const int needed = m_content->minimumSizeHint().width() + m_library->minimumSizeHint().width()
        + m_details->minimumSizeHint().width() + (columns - 1) * handleWidth();
    const bool isStacked = width() < needed;
    if (isStacked != m_isStacked) {
        stack(isStacked);
    }
}

void LibraryContentMainView::stack(bool isStacked)
{
    // A widget that gets another parent loses the focus.
    const QPointer<QWidget> focus(QApplication::focusWidget());
    if (isStacked) {
        m_widths = isVisible() ? sizes() : m_widths;
        m_isStacked = true;
        m_details->setMaximumWidth(QWIDGETSIZE_MAX);
        m_right->addWidget(m_details);
        m_right->setSizes({height() * 2 / 3, height() / 3});
        setSizes({width() * 2 / 5, width() * 3 / 5});
    } else {
        m_isStacked = false;
        m_details->setMaximumWidth(detailsMaximum);
        addWidget(m_details);
        setSizes(m_widths);
    }
    m_details->show();
    nameHandles();
    if (focus && focus->isVisible()) {
        focus->setFocus(Qt::OtherFocusReason);
    }
}

void LibraryContentMainView::goToColumn(int step)
{
    int from = step > 0 ? -1 : columns;
    for (int column = 0; column < columns; ++column) {
        from = isFocusIn(column) ? column : from;
    }
    for (int tried = 1; tried <= columns; ++tried) {
        const int column = (from + tried * step + 2 * columns) % columns;
        focusColumn(column);
        if (isFocusIn(column)) {
            return;
        }
    }
}

UserGuide::Page LibraryContentMainView::guidePage() const
{
    constexpr std::array<UserGuide::Page, columns> pages{
        UserGuide::Page::Slots, UserGuide::Page::Library, UserGuide::Page::Details};
    for (int column = 0; column < columns; ++column) {
        if (isFocusIn(column)) {
            return pages.at(static_cast<size_t>(column));
        }
    }
    return UserGuide::Page::Contents;
}

bool LibraryContentMainView::isFocusIn(int column) const
{
    const std::array<const QWidget *, columns> all{m_content, m_library, m_details};
    return all.at(static_cast<size_t>(column))->isAncestorOf(window()->focusWidget());
}

void LibraryContentMainView::focusColumn(int column)
{
    switch (column) {
    case 0:
        m_content->list()->setFocus(Qt::ShortcutFocusReason);
        return;
    case 1:
        m_library->list()->setFocus(Qt::ShortcutFocusReason);
        return;
    default:
        m_details->focusName();
    }
}
