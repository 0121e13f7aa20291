#include "FilterFlags.h"

#include "LookMeasures.h"
#include "RelativeFont.h"
#include "Symbols.h"

#include <QGridLayout>
#include <QPushButton>

#include <algorithm>

using namespace LookMeasures;

namespace {

constexpr int mostColumns = 5;
constexpr int fewestColumns = 3;
constexpr int sidePadding = columnPadding - focusGutter;

QString toolTipFor(const PatchField &field)
{
    return field.filterToolTip ? FilterFlags::tr(field.filterToolTip)
                               : FilterFlags::tr("Show only patches marked %1").arg(PatchFlags::label(field));
}

} // namespace

FilterFlags::FilterFlags(QWidget *parent, PatchFields::Rows rows)
    : QWidget(parent)
    , m_fields(PatchFlags::inFilter(rows))
    , m_grid(new QGridLayout(this))
    , m_clear(new QPushButton(symbolIcon(QStringLiteral("xmark")), tr("Clear"), this))
{
    new FontFollower(
        *this,
        [this] {
            m_columns = 0;
            arrange();
        },
        this);
    m_grid->setContentsMargins(sidePadding, 0, sidePadding, 0);
    m_grid->setSpacing(0);
    for (const PatchField *field : std::as_const(m_fields)) {
        const QString label = PatchFlags::label(*field);
        auto *button = new ToggleButton(label, ToggleButton::Tone::Accent, this);
        button->setAccessibleName(tr("Filter: %1").arg(label));
        button->setToolTip(toolTipFor(*field));
        connect(button, &QAbstractButton::clicked, this,
            [this, flag = field->flag](bool isSet) { Q_EMIT flagToggled(flag, isSet); });
        m_flags.append(button);
    }
    m_clear->setProperty("plain", true);
    m_clear->setToolTip(tr("Show all patches"));
    QSizePolicy policy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    policy.setRetainSizeWhenHidden(true);
    m_clear->setSizePolicy(policy);
    connect(m_clear, &QAbstractButton::clicked, this, &FilterFlags::clearPressed);
    for (qsizetype i = 1; i < m_flags.size(); ++i) {
        setTabOrder(m_flags.at(i - 1), m_flags.at(i));
    }
    setTabOrder(m_flags.back(), m_clear);
    arrange();
}

void FilterFlags::showFlags(const VelgorPatch &asked)
{
    for (qsizetype i = 0; i < m_flags.size(); ++i) {
        m_flags.at(i)->setChecked(asked.*m_fields.at(i)->flag);
    }
}

void FilterFlags::setClearVisible(bool isVisible)
{
    m_clear->setVisible(isVisible);
}

bool FilterFlags::hasClearFocus() const
{
    return m_clear->hasFocus();
}

void FilterFlags::focusFirst()
{
    m_flags.front()->setFocus(Qt::TabFocusReason);
}

int FilterFlags::columnWidth() const
{
    int widest = 0;
    for (const ToggleButton *button : m_flags) {
        widest = std::max(widest, button->sizeHint().width());
    }
    return widest;
}

int FilterFlags::columnsAt(int width) const
{
    return std::clamp((width - 2 * sidePadding) / std::max(columnWidth(), 1), fewestColumns, mostColumns);
}

QSize FilterFlags::minimumSizeHint() const
{
    return {fewestColumns * columnWidth() + 2 * sidePadding, heightAt(width())};
}

int FilterFlags::heightAt(int width) const
{
    const int columns = columnsAt(width);
    const int rows = (static_cast<int>(m_flags.size()) + columns) / columns;
    return rows * m_flags.front()->sizeHint().height();
}

void FilterFlags::arrange()
{
    const int columns = columnsAt(width());
    if (columns == m_columns) {
        return;
    }
    for (int column = 0; column < mostColumns; ++column) {
        m_grid->setColumnStretch(column, column < columns ? 1 : 0);
    }
    m_columns = columns;
    int place = 0;
    for (ToggleButton *button : std::as_const(m_flags)) {
        m_grid->addWidget(button, place / columns, place % columns);
        ++place;
    }
    // Where the toggles fill their rows it takes the next row whole, whose height stays while it is hidden.
    const bool hasRowAlone = place % columns == 0;
    m_grid->addWidget(m_clear, place / columns, place % columns, 1, hasRowAlone ? columns : 1);
    for (int row = 0; row <= static_cast<int>(m_flags.size()) / fewestColumns; ++row) {
        const bool isUsed = row <= place / columns;
        m_grid->setRowMinimumHeight(row, isUsed ? m_flags.front()->sizeHint().height() : 0);
    }
    m_grid->activate();
    updateGeometry();
}

void FilterFlags::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    arrange();
}
