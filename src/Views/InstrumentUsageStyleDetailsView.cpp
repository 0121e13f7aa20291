#include "InstrumentUsageStyleDetailsView.h"

#include "DetailMeasures.h"
#include "LookMeasures.h"

#include <QGridLayout>
#include <QLabel>

#include <algorithm>

using namespace LookMeasures;

namespace {

constexpr int togglesInRow = 4;

} // namespace

InstrumentUsageStyleDetailsView::InstrumentUsageStyleDetailsView(QWidget *parent)
    : QWidget(parent)
    , m_grid(new QGridLayout(this))
{
    addRow(tr("Usage: "), PatchFlags::usage());
    addRow(tr("Style: "), PatchFlags::style());
    m_grid->setContentsMargins({});
    m_grid->setSpacing(0);
    for (int column = 1; column <= togglesInRow; ++column) {
        m_grid->setColumnStretch(column, 1);
    }
    arrange();
}

void InstrumentUsageStyleDetailsView::addRow(
    const QString &label, const std::array<ShownPatchFlag, togglesInRow> &flags)
{
    auto *rowLabel = new QLabel(label, this);
    rowLabel->setForegroundRole(QPalette::PlaceholderText);
    rowLabel->setIndent(focusGutter);
    m_labels.append(rowLabel);
    for (const ShownPatchFlag &shown : flags) {
        auto *button = new ToggleButton(PatchFlags::label(shown), shown.tone, this);
        button->setAccessibleName(PatchFlags::label(shown));
        connect(button, &QAbstractButton::clicked, this,
            [this, flag = shown.flag](bool isSet) { Q_EMIT flagToggled(flag, isSet); });
        m_toggles.append({shown.flag, button});
    }
}

void InstrumentUsageStyleDetailsView::showFlags(const VelgorPatch &patch)
{
    for (const Toggle &toggle : std::as_const(m_toggles)) {
        toggle.button->setChecked(patch.*toggle.flag);
    }
}

void InstrumentUsageStyleDetailsView::setStacked(bool isStacked)
{
    if (isStacked != m_isStacked) {
        m_isStacked = isStacked;
        arrange();
    }
}

int InstrumentUsageStyleDetailsView::togglesMinimumWidth() const
{
    int widest = 0;
    for (const Toggle &toggle : m_toggles) {
        widest = std::max(widest, toggle.button->minimumSizeHint().width());
    }
    return togglesInRow * widest - 2 * focusGutter;
}

void InstrumentUsageStyleDetailsView::arrange()
{
    constexpr int rowGap = 2;
    constexpr int stackedRowGap = 6;
    const int rowsApart = m_isStacked ? 3 : 2;
    for (int row = 0; row < static_cast<int>(m_labels.size()); ++row) {
        QLabel *label = m_labels.at(row);
        const int labelRow = row * rowsApart;
        const int togglesRow = m_isStacked ? labelRow + 1 : labelRow;
        m_grid->addWidget(label, labelRow, m_isStacked ? 1 : 0, 1, m_isStacked ? togglesInRow : 1);
        label->setContentsMargins(0, 0, 0, m_isStacked ? 1 : 0);
        for (int column = 0; column < togglesInRow; ++column) {
            m_grid->addWidget(m_toggles.at(row * togglesInRow + column).button, togglesRow, 1 + column);
        }
    }
    m_grid->setRowMinimumHeight(1, m_isStacked ? 0 : rowGap);
    m_grid->setRowMinimumHeight(2, m_isStacked ? stackedRowGap : 0);
    m_grid->setColumnMinimumWidth(0, m_isStacked ? 0 : DetailMeasures::labelColumn(fontMetrics()));
}
