#include "PatchSubdetailsInfoView.h"

#include "DetailLabel.h"
#include "DetailMeasures.h"
#include "LookMeasures.h"
#include "PlaceBadges.h"
#include "SymbolView.h"
#include "Utf8Text.h"
#include "ValueLabel.h"
#include "VelgorPatch.h"

#include <QGridLayout>
#include <QLabel>
#include <QLocale>

using namespace LookMeasures;

namespace {

QLabel *makeLabel(const QString &text, QWidget *parent)
{
    auto *label = new DetailLabel(text, parent);
    label->setIndent(focusGutter);
    return label;
}

} // namespace

PatchSubdetailsInfoView::PatchSubdetailsInfoView(QWidget *parent)
    : QWidget(parent)
    , m_unitName(new ValueLabel(tr("Velgor name"), this))
    , m_imported(new ValueLabel(tr("Imported"), this))
    , m_speaker(new SymbolView(QStringLiteral("speaker.circle"), &LookTokens::markOff, this))
    , m_impulseResponse(new QLabel(this))
    , m_places(new PlaceBadges(this))
{
    m_unitName->setIndent(focusGutter);
    m_imported->setIndent(focusGutter);

    auto *impulseResponse = new QHBoxLayout;
    impulseResponse->setContentsMargins(focusGutter, 0, 0, 0);
    impulseResponse->setSpacing(8);
    impulseResponse->addWidget(m_speaker);
    impulseResponse->addWidget(m_impulseResponse, 1);

    auto *grid = new QGridLayout;
    grid->setSpacing(DetailMeasures::rowGap);
    grid->setHorizontalSpacing(0);
    grid->setColumnMinimumWidth(0, DetailMeasures::labelColumn(fontMetrics()));
    grid->setColumnStretch(1, 1);
    grid->addWidget(makeLabel(longestLabel(), this), 0, 0);
    grid->addWidget(m_unitName, 0, 1);
    grid->addWidget(makeLabel(tr("Imported: "), this), 1, 0);
    grid->addWidget(m_imported, 1, 1);
    grid->addLayout(impulseResponse, 2, 1);

    auto *places = new QHBoxLayout;
    places->setSpacing(0);
    places->addSpacing(DetailMeasures::labelColumn(fontMetrics()));
    places->addWidget(m_places, 1);

    auto *rows = new QVBoxLayout(this);
    rows->setContentsMargins({});
    rows->setSpacing(DetailMeasures::rowGap - focusGutter);
    rows->addLayout(grid);
    rows->addLayout(places);
    connect(m_places, &PlaceBadges::placeActivated, this, &PatchSubdetailsInfoView::placeActivated);
}

QString PatchSubdetailsInfoView::longestLabel()
{
    return tr("Velgor name: ");
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

void PatchSubdetailsInfoView::setPlaces(const QList<int> &slotIndexes)
{
    m_places->setPlaces(slotIndexes);
}

void PatchSubdetailsInfoView::setStacked(bool isStacked)
{
    m_places->setStacked(isStacked);
}
