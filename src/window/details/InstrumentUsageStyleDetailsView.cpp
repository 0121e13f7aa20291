#include "InstrumentUsageStyleDetailsView.h"

#include "LookMeasures.h"
#include "PatchSubdetailsInfoView.h"
#include "RelativeFont.h"

#include <QGridLayout>
#include <QLabel>

#include <algorithm>

using namespace LookMeasures;

namespace {

constexpr int mostTogglesInRow = 4;

} // namespace

InstrumentUsageStyleDetailsView::InstrumentUsageStyleDetailsView(QWidget *parent, PatchFields::Rows rows)
    : QWidget(parent)
    , m_grid(new QGridLayout(this))
{
    new FontFollower(
        *this, [this] { arrange(); }, this);
    addKind(tr("Usage: "), PatchFlags::usage(rows));
    addKind(tr("Style: "), PatchFlags::style(rows));
    m_grid->setContentsMargins({});
    m_grid->setSpacing(0);
    arrange();
}

void InstrumentUsageStyleDetailsView::addKind(const QString &label, const ShownFlags &flags)
{
    Kind kind{new QLabel(label, this), {}};
    kind.label->setForegroundRole(QPalette::PlaceholderText);
    kind.label->setIndent(focusGutter);
    for (const PatchField *field : flags) {
        auto *button = new ToggleButton(PatchFlags::label(*field), PatchFlags::tone(*field), this);
        button->setAccessibleName(PatchFlags::label(*field));
        connect(button, &QAbstractButton::clicked, this,
            [this, flag = field->flag](bool isSet) { Q_EMIT flagToggled(flag, isSet); });
        kind.toggles.append({field->flag, button});
    }
    m_kinds.append(kind);
}

void InstrumentUsageStyleDetailsView::showFlags(const VelgorPatch &patch)
{
    for (const Kind &kind : std::as_const(m_kinds)) {
        for (const Toggle &toggle : kind.toggles) {
            toggle.button->setChecked(patch.*toggle.flag);
        }
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
    for (const Kind &kind : m_kinds) {
        for (const Toggle &toggle : kind.toggles) {
            widest = std::max(widest, toggle.button->minimumSizeHint().width());
        }
    }
    return togglesInRow * widest - 2 * focusGutter;
}

QSize InstrumentUsageStyleDetailsView::minimumSizeHint() const
{
    // Whoever gives less room than four toggles need asks for another arrangement first.
    return {1, QWidget::minimumSizeHint().height()};
}

void InstrumentUsageStyleDetailsView::arrange()
{
    constexpr int rowGap = 2;
    constexpr int stackedRowGap = 6;
    for (int row = 0; row < m_grid->rowCount(); ++row) {
        m_grid->setRowMinimumHeight(row, 0);
    }
    const int kindGap = m_isStacked ? stackedRowGap : rowGap;
    const int labelColumns = m_isStacked ? m_togglesInRow : 1;
    const int below = m_isStacked ? 1 : 0;
    int row = 0;
    for (const Kind &kind : std::as_const(m_kinds)) {
        if (row > 0) {
            m_grid->setRowMinimumHeight(row, kindGap);
            ++row;
        }
        m_grid->addWidget(kind.label, row, below, 1, labelColumns);
        kind.label->setContentsMargins(0, 0, 0, below);
        row += below;
        const int count = static_cast<int>(kind.toggles.size());
        for (int i = 0; i < count; ++i) {
            m_grid->addWidget(kind.toggles.at(i).button, row + i / m_togglesInRow, 1 + i % m_togglesInRow);
        }
        row += (count + m_togglesInRow - 1) / m_togglesInRow;
    }
    for (int column = 1; column <= mostTogglesInRow; ++column) {
        m_grid->setColumnStretch(column, column <= m_togglesInRow ? 1 : 0);
    }
    m_grid->setColumnMinimumWidth(0, m_isStacked ? 0 : PatchSubdetailsInfoView::labelColumn(fontMetrics()));
}
