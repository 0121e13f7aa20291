#include "InstrumentUsageStyleDetailsView.h"

#include "DetailMeasures.h"
#include "LookMeasures.h"

#include <QEvent>
#include <QGridLayout>
#include <QLabel>

#include <algorithm>

using namespace LookMeasures;

namespace {

constexpr int togglesOfKind = 4;

} // namespace

InstrumentUsageStyleDetailsView::InstrumentUsageStyleDetailsView(QWidget *parent)
    : QWidget(parent)
    , m_grid(new QGridLayout(this))
{
    addRow(tr("Usage: "), PatchFlags::usage());
    addRow(tr("Style: "), PatchFlags::style());
    m_grid->setContentsMargins({});
    m_grid->setSpacing(0);
    arrange();
}

void InstrumentUsageStyleDetailsView::addRow(
    const QString &label, const std::array<ShownPatchFlag, togglesOfKind> &flags)
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

void InstrumentUsageStyleDetailsView::setArrangement(bool isStacked, int togglesInRow)
{
    if (isStacked != m_isStacked || togglesInRow != m_togglesInRow) {
        m_isStacked = isStacked;
        m_togglesInRow = togglesInRow;
        arrange();
    }
}

int InstrumentUsageStyleDetailsView::togglesMinimumWidth(int togglesInRow) const
{
    int widest = 0;
    for (const Toggle &toggle : m_toggles) {
        widest = std::max(widest, toggle.button->minimumSizeHint().width());
    }
    return togglesInRow * widest - 2 * focusGutter;
}

QSize InstrumentUsageStyleDetailsView::minimumSizeHint() const
{
    // Whoever gives less room than four toggles need asks for another arrangement first.
    return {1, QWidget::minimumSizeHint().height()};
}

void InstrumentUsageStyleDetailsView::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        arrange();
    }
}

void InstrumentUsageStyleDetailsView::arrange()
{
    constexpr int rowGap = 2;
    constexpr int stackedRowGap = 6;
    const int togglesRows = togglesOfKind / m_togglesInRow;
    const int labelRows = m_isStacked ? 1 : 0;
    const int rowsApart = labelRows + togglesRows + 1;
    for (int kind = 0; kind < static_cast<int>(m_labels.size()); ++kind) {
        QLabel *label = m_labels.at(kind);
        const int labelRow = kind * rowsApart;
        m_grid->addWidget(label, labelRow, m_isStacked ? 1 : 0, 1, m_isStacked ? m_togglesInRow : 1);
        label->setContentsMargins(0, 0, 0, m_isStacked ? 1 : 0);
        for (int i = 0; i < togglesOfKind; ++i) {
            m_grid->addWidget(m_toggles.at(kind * togglesOfKind + i).button, labelRow + labelRows + i / m_togglesInRow,
                1 + i % m_togglesInRow);
        }
    }
    for (int row = 0; row < m_grid->rowCount(); ++row) {
        m_grid->setRowMinimumHeight(row, row == rowsApart - 1 ? (m_isStacked ? stackedRowGap : rowGap) : 0);
    }
    for (int column = 1; column <= togglesOfKind; ++column) {
        m_grid->setColumnStretch(column, column <= m_togglesInRow ? 1 : 0);
    }
    m_grid->setColumnMinimumWidth(0, m_isStacked ? 0 : DetailMeasures::labelColumn(fontMetrics()));
}
