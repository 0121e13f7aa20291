#include "PatchSubdetailsInfoView.h"

#include "LookMeasures.h"
#include "PlaceBadges.h"
#include "RelativeFont.h"
#include "SymbolView.h"
#include "Utf8Text.h"
#include "ValueLabel.h"
#include "VelgorPatch.h"

#include <QGridLayout>
#include <QLabel>
#include <QLocale>

using namespace LookMeasures;

namespace {

constexpr int rowGap = 8;

/// The label that is the longest of all, with the space behind it.
QString longestLabel()
{
    return PatchSubdetailsInfoView::tr("Velgor name: ");
}

} // namespace

int PatchSubdetailsInfoView::labelColumn(const QFontMetrics &metrics)
{
    return metrics.horizontalAdvance(longestLabel()) + gap;
}

PatchSubdetailsInfoView::PatchSubdetailsInfoView(QWidget *parent)
    : QWidget(parent)
    , m_grid(new QGridLayout)
    , m_unitNameLabel(makeLabel(longestLabel()))
    , m_unitName(new ValueLabel(tr("Velgor name"), this))
    , m_importedLabel(makeLabel(tr("Imported: ")))
    , m_imported(new ValueLabel(tr("Imported"), this))
    , m_speaker(new SymbolView(QStringLiteral("speaker.circle"), &LookTokens::markOff, this))
    , m_impulseResponse(new QLabel(this))
    , m_impulseResponseLine(new QHBoxLayout)
    , m_places(new PlaceBadges(this))
    , m_placesLine(new QHBoxLayout)
{
    new FontFollower(
        *this, [this] { arrange(); }, this);
    m_unitName->setIndent(focusGutter);
    m_imported->setIndent(focusGutter);
    m_impulseResponseLine->setContentsMargins(focusGutter, 0, 0, 0);
    m_impulseResponseLine->setSpacing(gap);
    m_impulseResponseLine->addWidget(m_speaker);
    m_impulseResponseLine->addWidget(m_impulseResponse, 1);
    m_grid->setHorizontalSpacing(0);
    m_grid->setColumnStretch(1, 1);
    m_placesLine->addWidget(m_places, 1);

    auto *rows = new QVBoxLayout(this);
    rows->setContentsMargins({});
    rows->setSpacing(rowGap - focusGutter);
    rows->addLayout(m_grid);
    rows->addLayout(m_placesLine);
    arrange();
}

QLabel *PatchSubdetailsInfoView::makeLabel(const QString &text)
{
    auto *label = new DetailLabel(text, this);
    label->setIndent(focusGutter);
    return label;
}

void PatchSubdetailsInfoView::arrange()
{
    const int indent = m_areValuesBelow ? 0 : labelColumn(fontMetrics());
    const int column = m_areValuesBelow ? 0 : 1;
    const int apart = m_areValuesBelow ? 2 : 1;
    m_grid->setVerticalSpacing(m_areValuesBelow ? tinyGap : rowGap);
    m_grid->setColumnMinimumWidth(0, indent);
    m_grid->addWidget(m_unitNameLabel, 0, 0);
    m_grid->addWidget(m_unitName, apart - 1, column);
    m_grid->addWidget(m_importedLabel, apart, 0);
    m_grid->addWidget(m_imported, 2 * apart - 1, column);
    m_grid->removeItem(m_impulseResponseLine);
    m_impulseResponseLine->setParent(nullptr);
    m_grid->addLayout(m_impulseResponseLine, 2 * apart, column);
    m_placesLine->setContentsMargins(indent, 0, 0, 0);
}

void PatchSubdetailsInfoView::showPatch(const VelgorPatch &patch)
{
    // As many characters as the unit has room for; that characters beyond ASCII take more room does not count here.
    constexpr qsizetype unitNameLength = 16;
    m_unitName->setValue(Utf8Text::firstCharacters(patch.name, unitNameLength));
    m_imported->setValue(QLocale().toString(patch.date.toDateTime(), QLocale::ShortFormat));
    m_speaker->setSymbol(patch.hasUserIR ? QStringLiteral("speaker.circle.lit") : QStringLiteral("speaker.circle"),
        patch.hasUserIR ? &LookTokens::accentText : &LookTokens::markOff);
    m_impulseResponse->setText(patch.hasUserIR ? tr("User IR") : tr("Stock IR"));
    m_impulseResponse->setForegroundRole(patch.hasUserIR ? QPalette::Link : QPalette::WindowText);
}

void PatchSubdetailsInfoView::setStacked(bool areBadgesBelow, bool areValuesBelow)
{
    m_places->setStacked(areBadgesBelow);
    if (areValuesBelow != m_areValuesBelow) {
        m_areValuesBelow = areValuesBelow;
        arrange();
    }
}
