#include "PatchDetailForm.h"

#include "CommentEdit.h"
#include "Hairline.h"
#include "InstrumentUsageStyleDetailsView.h"
#include "LookMeasures.h"
#include "NameField.h"
#include "PatchSubdetailsInfoView.h"
#include "PatchTechnicalView.h"
#include "PlaceBadges.h"
#include "RelativeFont.h"
#include "ScrolledColumn.h"
#include "Symbols.h"
#include "UnitNameNote.h"

#include <QCoreApplication>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

using namespace LookMeasures;

namespace {

constexpr int stackedPadding = 16;
/// From the frame of the name to its text, which stands on the axis of the labels.
constexpr int nameInset = 8;
/// Toggles in a row where there is room, and where there is not.
constexpr int allToggles = 4;
constexpr int fewToggles = 2;

/// A row that starts and ends at the padding, or a focus gutter outside of it.
void addInset(QVBoxLayout *rows, QWidget *widget, int gutter)
{
    auto *row = new QHBoxLayout;
    row->setContentsMargins(nameInset - gutter, 0, focusGutter - gutter, 0);
    row->addWidget(widget);
    rows->addLayout(row);
}

/// Puts the name on one line with the headers of the other columns.
int topPadding(const QFont &base)
{
    constexpr int headerTop = 14;
    const QFontMetricsF header(strongFont(base));
    const QFontMetrics title(titleFont(base));
    const int headerHeight = std::max(symbolSize(QFontMetrics(base)), QFontMetrics(base).height());
    const int headerBaseline = qRound(headerTop + (headerHeight - header.height()) / 2 + header.ascent());
    const int titleBaseline = (fieldHeight(title) - title.height() + 1) / 2 + title.ascent();
    return std::max(headerBaseline - titleBaseline, 0);
}

} // namespace

PatchDetailForm::PatchDetailForm(QWidget *parent)
    : QScrollArea(parent)
    , m_column(new ScrolledColumn(this))
    , m_name(new NameField(m_column))
    , m_unitName(new UnitNameNote(*m_name, m_column))
    , m_flags(new InstrumentUsageStyleDetailsView(m_column))
    , m_comment(new CommentEdit(m_column))
    , m_default(new QPushButton(tr("Default"), m_column))
    , m_subdetails(new PatchSubdetailsInfoView(m_column))
    , m_technical(new PatchTechnicalView(m_column))
{
    new FontFollower(
        *this, [this] { followFont(); }, this);
    setFrameShape(NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidgetResizable(true);

    QVBoxLayout *rows = addRows();
    rows->setContentsMargins(0, 0, 0, wideGap);
    setWidget(m_column);
    followFont();

    connect(m_name, &NameField::nameEdited, this, &PatchDetailForm::nameEdited);
    connect(m_flags, &InstrumentUsageStyleDetailsView::flagToggled, this, &PatchDetailForm::flagToggled);
    connect(m_comment, &CommentEdit::commentEdited, this, &PatchDetailForm::commentEdited);
    connect(m_default, &QAbstractButton::clicked, this, &PatchDetailForm::defaultPressed);
    connect(m_subdetails->places(), &PlaceBadges::placeActivated, this, &PatchDetailForm::placeActivated);
}

QVBoxLayout *PatchDetailForm::addRows()
{
    constexpr int commentStretch = 1000;
    auto *rows = new QVBoxLayout(m_column);
    rows->setSpacing(0);
    rows->addWidget(m_name);
    addInset(rows, m_unitName, 0);
    addInset(rows, m_flags, focusGutter);
    rows->addSpacing(9);
    addComment(rows);
    rows->addSpacing(wideGap);
    addDefault(rows);
    rows->addSpacing(wideGap);
    addInset(rows, new Hairline(m_column), 0);
    rows->addSpacing(14);
    addInset(rows, m_subdetails, focusGutter);
    rows->addSpacing(11);
    addInset(rows, new Hairline(m_column), 0);
    rows->addSpacing(12);
    addInset(rows, m_technical, 0);
    rows->addStretch(1);
    rows->setStretch(rows->indexOf(m_commentRow), commentStretch);
    return rows;
}

void PatchDetailForm::addComment(QVBoxLayout *rows)
{
    m_commentLabel = new QLabel(tr("Comment:"), m_column);
    m_commentLabel->setForegroundRole(QPalette::PlaceholderText);
    m_commentLabel->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_commentRow = new QHBoxLayout;
    m_commentRow->addWidget(m_commentLabel);
    m_commentRow->addWidget(m_comment, 1);
    m_commentRow->setContentsMargins(nameInset, 0, focusGutter, 0);
    rows->addLayout(m_commentRow);
}

void PatchDetailForm::addDefault(QVBoxLayout *rows)
{
    m_default->setCheckable(true);
    m_default->setAutoDefault(false);
    m_default->setProperty("strong", true);
    m_default->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    auto *note =
        new QLabel(tr("Set as default patch to fill your Velgor Content when starting new presets file"), m_column);
    RelativeFont::set(*note, footnoteFont);
    note->setForegroundRole(QPalette::PlaceholderText);
    note->setWordWrap(true);
    note->setContentsMargins(focusGutter, 1, focusGutter, 0);
    m_defaultBlock = new QVBoxLayout;
    m_defaultBlock->setSpacing(0);
    m_defaultBlock->addWidget(m_default);
    m_defaultBlock->addWidget(note);
    rows->addLayout(m_defaultBlock);
}

void PatchDetailForm::showPatch(const VelgorPatch &patch, bool isOtherPatch)
{
    m_name->showName(patch.name, isOtherPatch);
    m_flags->showFlags(patch);
    m_comment->showComment(patch.comment, isOtherPatch);
    m_subdetails->showPatch(patch);
    m_technical->showPatch(patch);
    if (isOtherPatch) {
        m_subdetails->places()->fold();
        ensureVisible(0, 0);
    }
}

void PatchDetailForm::showDefault(bool isDefault)
{
    m_default->setChecked(isDefault);
    m_default->setIcon(symbolIcon(isDefault ? QStringLiteral("star.fill") : QStringLiteral("star")));
    m_default->setAccessibleDescription(isDefault ? tr("This is the default patch") : QString());
}

void PatchDetailForm::showPlaces(const QList<int> &slotIndexes)
{
    m_subdetails->places()->setPlaces(slotIndexes);
    // Put off, the layouts follow one after the other from the inside out, and what they pass through is seen.
    for (QWidget *widget : {static_cast<QWidget *>(m_subdetails), static_cast<QWidget *>(m_column), viewport()}) {
        QCoreApplication::sendPostedEvents(widget, QEvent::LayoutRequest);
    }
}

void PatchDetailForm::focusName()
{
    m_name->setFocus(Qt::ShortcutFocusReason);
    m_name->selectAll();
}

void PatchDetailForm::endEdits()
{
    m_name->endEdit();
}

QSize PatchDetailForm::sizeHint() const
{
    return {detailsContentMaximum, m_column->sizeHint().height()};
}

QSize PatchDetailForm::minimumSizeHint() const
{
    constexpr int leastWidth = 320;
    constexpr int leastLines = 3;
    const int contents = std::max(m_flags->togglesMinimumWidth(fewToggles), m_technical->valuesWidth());
    return {std::max(leastWidth, contents + 2 * stackedPadding), leastLines * fieldHeight(fontMetrics())};
}

void PatchDetailForm::resizeEvent(QResizeEvent *event)
{
    arrange();
    QScrollArea::resizeEvent(event);
}

void PatchDetailForm::followFont()
{
    QMargins margins = m_column->layout()->contentsMargins();
    margins.setTop(topPadding(font()));
    m_column->layout()->setContentsMargins(margins);
    m_unitName->setFixedHeight(std::max(columnPadding, QFontMetrics(footnoteFont(font())).height()));
    arrange();
    updateGeometry();
}

void PatchDetailForm::arrange()
{
    const int labelColumn = PatchSubdetailsInfoView::labelColumn(fontMetrics());
    const bool isStacked = width() < 2 * detailsPadding + labelColumn + m_flags->togglesMinimumWidth(allToggles);
    const int padding = isStacked ? stackedPadding : detailsPadding;
    const int indent = isStacked ? 0 : labelColumn;
    const int inside = width() - 2 * padding;
    // The first line of the comment and its label stand on one line.
    const int commentTop = isStacked ? 0 : m_comment->frameWidth() + qRound(m_comment->document()->documentMargin());
    const bool areValuesBelow = inside < labelColumn + m_technical->valuesWidth();
    m_flags->setArrangement(isStacked, inside < m_flags->togglesMinimumWidth(allToggles) ? fewToggles : allToggles);
    m_subdetails->setStacked(isStacked, areValuesBelow);
    m_technical->setStacked(areValuesBelow);
    m_commentRow->setDirection(isStacked ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    m_commentRow->setSpacing(isStacked ? smallGap : 0);
    m_commentLabel->setContentsMargins(0, commentTop, 0, 0);
    m_commentLabel->setMinimumWidth(indent);
    m_defaultBlock->setContentsMargins(nameInset - focusGutter + indent, 0, 0, 0);
    m_column->setColumn(
        std::min(width(), detailsContentMaximum + 2 * padding), padding - nameInset, padding - focusGutter);
}
