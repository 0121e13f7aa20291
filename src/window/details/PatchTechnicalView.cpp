#include "PatchTechnicalView.h"

#include "FirmwareBadge.h"
#include "LookMeasures.h"
#include "PVersionView.h"
#include "PatchSubdetailsInfoView.h"
#include "RelativeFont.h"
#include "ValueLabel.h"
#include "VelgorPatch.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>

using namespace LookMeasures;

namespace {

QString unknown()
{
    return QStringLiteral("–");
}

QString soundHashText(const std::optional<quint64> &hash)
{
    if (!hash) {
        return unknown();
    }
    QString digits = QStringLiteral("%1").arg(*hash, 16, 16, QLatin1Char('0')).toUpper();
    for (const int position : {12, 8, 4}) {
        digits.insert(position, u' ');
    }
    return digits;
}

QString tailBitText(const std::optional<PresetRecords> &records)
{
    if (!records) {
        return unknown();
    }
    return QStringLiteral("0x")
        + QStringLiteral("%1").arg(records->headerData.tailBit, 2, 16, QLatin1Char('0')).toUpper();
}

} // namespace

PatchTechnicalView::PatchTechnicalView(QWidget *parent)
    : QWidget(parent)
    , m_grid(new QGridLayout(this))
    , m_badge(new PVersionView(this))
{
    new FontFollower(
        *this, [this] { arrange(); }, this);
    m_grid->setContentsMargins({});
    m_grid->setHorizontalSpacing(0);
    m_grid->setVerticalSpacing(5);
    m_grid->setColumnStretch(1, 1);
    m_version = addLine(tr("Version: "), m_badge);
    m_soundHash = addLine(tr("Patch & IR: "));
    m_tailBit = addLine(tr("Tailbit: "));
    m_id = addLine(tr("Id: "));
    arrange();
}

ValueLabel *PatchTechnicalView::addLine(const QString &label, QWidget *before)
{
    auto *lineLabel = new DetailLabel(label, this);
    auto *value = new ValueLabel(label.chopped(2), this);
    for (QLabel *each : std::initializer_list<QLabel *>{lineLabel, value}) {
        RelativeFont::set(*each, footnoteFont);
        each->setForegroundRole(QPalette::PlaceholderText);
    }
    auto *line = new QHBoxLayout;
    line->setSpacing(6);
    if (before != nullptr) {
        line->addWidget(before);
    }
    line->addWidget(value, 1);
    m_lines.append({lineLabel, line});
    return value;
}

void PatchTechnicalView::setStacked(bool isStacked)
{
    if (isStacked != m_isStacked) {
        m_isStacked = isStacked;
        arrange();
    }
}

int PatchTechnicalView::valuesWidth() const
{
    constexpr int mostDigits = 20;
    return QFontMetrics(footnoteFont(font())).horizontalAdvance(QString(mostDigits, u'8'));
}

void PatchTechnicalView::arrange()
{
    int row = 0;
    for (const Line &line : std::as_const(m_lines)) {
        m_grid->addWidget(line.label, row, 0);
        m_grid->removeItem(line.value);
        line.value->setParent(nullptr);
        m_grid->addLayout(line.value, m_isStacked ? row + 1 : row, m_isStacked ? 0 : 1);
        row += m_isStacked ? 2 : 1;
    }
    m_grid->setColumnMinimumWidth(0, m_isStacked ? 0 : PatchSubdetailsInfoView::labelColumn(fontMetrics()));
}

void PatchTechnicalView::showPatch(const VelgorPatch &patch)
{
    m_badge->setVersion(patch.version);
    m_version->setValue(FirmwareBadge::shownVersion(patch.version));
    m_soundHash->setValue(soundHashText(patch.soundHash()));
    m_tailBit->setValue(tailBitText(patch.records));
    m_id->setValue(QString::number(patch.id()));
}
