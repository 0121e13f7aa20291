#include "LibraryViewFilterView.h"

#include "FilterFlags.h"
#include "Hairline.h"
#include "LookMeasures.h"
#include "RelativeFont.h"
#include "SearchField.h"
#include "SymbolView.h"
#include "Symbols.h"

#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>

using namespace LookMeasures;

namespace {

constexpr int headerTop = 14;
constexpr int aboveLine = 2; ///< beyond the gap
constexpr int aboveFlags = 7;

QString filterSymbol()
{
    return QStringLiteral("line.3.horizontal.decrease.circle");
}

qsizetype litFlags(const VelgorPatch &asked)
{
    const ShownFlags flags = PatchFlags::inFilter();
    return std::count_if(flags.begin(), flags.end(), [&](const PatchField *field) { return asked.*field->flag; });
}

} // namespace

LibraryViewFilterView::LibraryViewFilterView(QWidget *parent)
    : QWidget(parent)
    , m_header(makeHeader())
    , m_fold(new QPushButton(tr("Filter"), this))
    , m_name(new SearchField(tr("Name"), tr("Filter by name"), this))
    , m_comment(new SearchField(tr("Comment"), tr("Filter by comment"), this))
    , m_line(new Hairline(this))
    , m_popup(new QFrame(this, Qt::Popup))
    , m_flags(new FilterFlags(this))
    , m_upper(new QGridLayout)
    , m_rows(new QVBoxLayout(this))
{
    m_upper->setSpacing(gap);
    m_rows->setContentsMargins({});
    m_rows->setSpacing(0);
    m_rows->addLayout(m_upper);
    m_rows->addSpacing(aboveFlags);
    m_rows->addWidget(m_flags);
    m_fold->setAccessibleName(tr("Filter"));
    m_fold->setToolTip(tr("Show the buttons of the filter"));
    m_popup->setFrameShape(QFrame::StyledPanel);
    auto *popupRows = new QVBoxLayout(m_popup);
    popupRows->setContentsMargins(0, columnPadding - focusGutter, 0, columnPadding - focusGutter);
    arrange();

    connect(m_fold, &QAbstractButton::clicked, this, &LibraryViewFilterView::openFlags);
    connect(m_flags, &FilterFlags::clearPressed, this, &LibraryViewFilterView::clear);
    connect(m_flags, &FilterFlags::flagToggled, this, [this](PatchFlag flag, bool isSet) {
        LibraryViewFilter filter = m_filter;
        filter.filterPatch.*flag = isSet;
        setFilter(filter);
    });
    connect(m_name, &QLineEdit::textChanged, this, [this](const QString &text) {
        LibraryViewFilter filter = m_filter;
        filter.filterPatch.name = text;
        setFilter(filter);
    });
    connect(m_comment, &QLineEdit::textChanged, this, [this](const QString &text) {
        LibraryViewFilter filter = m_filter;
        filter.filterPatch.comment = text;
        setFilter(filter);
    });
    connect(m_name, &SearchField::left, this, &LibraryViewFilterView::left);
    connect(m_comment, &SearchField::left, this, &LibraryViewFilterView::left);
    showFilter();
}

QWidget *LibraryViewFilterView::makeHeader()
{
    auto *header = new QWidget(this);
    m_symbol = new SymbolView(filterSymbol(), &LookTokens::secondary, header);
    auto *title = new QLabel(tr("Filter"), header);
    RelativeFont::set(*title, strongFont);
    auto *row = new QHBoxLayout(header);
    row->setContentsMargins({});
    row->setSpacing(symbolGap);
    row->addWidget(m_symbol);
    row->addWidget(title, 1);
    return header;
}

void LibraryViewFilterView::setFolded(bool isFolded)
{
    if (isFolded != m_isFolded) {
        m_isFolded = isFolded;
        arrange();
    }
}

void LibraryViewFilterView::arrange()
{
    m_popup->hide();
    m_header->setVisible(!m_isFolded);
    m_line->setVisible(!m_isFolded);
    m_fold->setVisible(m_isFolded);
    if (m_isFolded) {
        m_upper->setContentsMargins(columnPadding - focusGutter, gap - focusGutter, columnPadding, 0);
        m_upper->addWidget(m_fold, 0, 0);
        m_upper->addWidget(m_name, 0, 1);
        m_upper->addWidget(m_comment, 0, 2);
        m_popup->layout()->addWidget(m_flags);
        m_rows->itemAt(1)->spacerItem()->changeSize(0, 0);
    } else {
        m_upper->setContentsMargins(columnPadding, headerTop, columnPadding, 0);
        m_upper->addWidget(m_header, 0, 0, 1, 2);
        m_upper->addWidget(m_name, 1, 0);
        m_upper->addWidget(m_comment, 1, 1);
        m_upper->addWidget(m_line, 2, 0, 1, 2, Qt::AlignBottom);
        m_rows->addWidget(m_flags);
        m_rows->itemAt(1)->spacerItem()->changeSize(0, aboveFlags);
    }
    m_flags->show();
    m_upper->setRowMinimumHeight(2, m_isFolded ? 0 : aboveLine + hairline);
    for (int column = 0; column <= 2; ++column) {
        m_upper->setColumnStretch(column, column == (m_isFolded ? 0 : 2) ? 0 : 1);
    }
    m_rows->invalidate();
    updateGeometry();
}

int LibraryViewFilterView::foldedHeight() const
{
    return gap - focusGutter + m_fold->sizeHint().height();
}

int LibraryViewFilterView::unfoldedHeight(int width) const
{
    return headerTop + m_header->sizeHint().height() + gap + m_name->sizeHint().height() + gap + aboveLine + hairline
        + aboveFlags + m_flags->heightAt(width);
}

void LibraryViewFilterView::openFlags()
{
    m_popup->resize(std::max(width(), m_popup->minimumSizeHint().width()), 0);
    m_popup->resize(m_popup->width(), m_flags->heightAt(m_popup->width()) + 2 * columnPadding);
    const QRect desktop = screen()->availableGeometry();
    QPoint place = mapToGlobal(QPoint(0, height()));
    place.setX(std::clamp(place.x(), desktop.left(), std::max(desktop.right() - m_popup->width(), desktop.left())));
    place.setY(std::clamp(place.y(), desktop.top(), std::max(desktop.bottom() - m_popup->height(), desktop.top())));
    m_popup->move(place);
    m_popup->show();
    m_flags->focusFirst();
}

void LibraryViewFilterView::setFilter(const LibraryViewFilter &filter)
{
    if (filter == m_filter) {
        return;
    }
    m_filter = filter;
    showFilter();
    Q_EMIT filterChanged(m_filter);
}

bool LibraryViewFilterView::isActive() const
{
    const VelgorPatch &asked = m_filter.filterPatch;
    return !asked.name.isEmpty() || !asked.comment.isEmpty() || litFlags(asked) > 0;
}

void LibraryViewFilterView::setControlsEnabled(bool isEnabled)
{
    m_name->setEnabled(isEnabled);
    m_comment->setEnabled(isEnabled);
    m_fold->setEnabled(isEnabled);
    m_flags->setEnabled(isEnabled);
}

void LibraryViewFilterView::focusName()
{
    m_name->setFocus(Qt::ShortcutFocusReason);
    m_name->selectAll();
}

void LibraryViewFilterView::clear()
{
    setFilter({});
}

void LibraryViewFilterView::showFilter()
{
    const VelgorPatch &asked = m_filter.filterPatch;
    m_name->showText(asked.name);
    m_comment->showText(asked.comment);
    m_flags->showFlags(asked);
    const qsizetype lit = litFlags(asked);
    m_fold->setText(lit > 0 ? tr("Filter (%1)").arg(lit) : tr("Filter"));
    m_fold->setAccessibleDescription(lit > 0 ? tr("%1 lit").arg(lit) : QString());
    m_fold->setIcon(symbolIcon(filterSymbol(), isActive() ? QPalette::Link : QPalette::ButtonText));
    m_symbol->setSymbol(filterSymbol(), isActive() ? &LookTokens::accentText : &LookTokens::secondary);
    if (!isActive() && m_flags->hasClearFocus()) {
        if (m_isFolded) {
            m_flags->focusFirst();
        } else {
            m_name->setFocus(Qt::OtherFocusReason);
        }
    }
    m_flags->setClearVisible(isActive());
}
