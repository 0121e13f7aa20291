#include "LibraryViewFilterView.h"

#include "Hairline.h"
#include "LookMeasures.h"
#include "PatchFlags.h"
#include "SearchField.h"
#include "SymbolView.h"
#include "Symbols.h"
#include "ToggleButton.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

using namespace LookMeasures;

namespace {

constexpr int columns = 5;

QString toolTipFor(const ShownPatchFlag &shown)
{
    return shown.flag == &VelgorPatch::hasUserIR
        ? LibraryViewFilterView::tr("Show only patches with a user impulse response")
        : LibraryViewFilterView::tr("Show only patches marked %1").arg(PatchFlags::label(shown));
}

} // namespace

LibraryViewFilterView::LibraryViewFilterView(QWidget *parent)
    : QWidget(parent)
    , m_name(new SearchField(tr("Name"), tr("Filter by name"), this))
    , m_comment(new SearchField(tr("Comment"), tr("Filter by comment"), this))
    , m_flagBlock(makeFlagBlock())
{
    auto *fields = new QHBoxLayout;
    fields->setSpacing(8);
    fields->addWidget(m_name, 1);
    fields->addWidget(m_comment, 1);

    auto *upper = new QVBoxLayout;
    upper->setContentsMargins(12, 14, 12, 0);
    upper->setSpacing(8);
    upper->addWidget(makeHeader());
    upper->addLayout(fields);
    upper->addSpacing(2);
    upper->addWidget(new Hairline(this));

    auto *rows = new QVBoxLayout(this);
    rows->setContentsMargins({});
    rows->setSpacing(0);
    rows->addLayout(upper);
    rows->addSpacing(7);
    rows->addWidget(m_flagBlock);

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
    showFilter();
}

QWidget *LibraryViewFilterView::makeHeader()
{
    auto *header = new QWidget(this);
    m_symbol = new SymbolView(QStringLiteral("line.3.horizontal.decrease.circle"), &LookTokens::secondary, header);
    auto *title = new QLabel(tr("Filter"), header);
    title->setFont(strongFont(font()));
    auto *row = new QHBoxLayout(header);
    row->setContentsMargins({});
    row->setSpacing(6);
    row->addWidget(m_symbol);
    row->addWidget(title, 1);
    return header;
}

QWidget *LibraryViewFilterView::makeFlagBlock()
{
    auto *block = new QWidget(this);
    auto *grid = new QGridLayout(block);
    grid->setContentsMargins(9, 0, 9, 0);
    grid->setSpacing(0);
    for (size_t i = 0; i < m_flags.size(); ++i) {
        const ShownPatchFlag &shown = PatchFlags::inFilter().at(i);
        const QString label = PatchFlags::label(shown);
        auto *button = new ToggleButton(label, ToggleButton::Tone::Accent, block);
        button->setAccessibleName(tr("Filter: %1").arg(label));
        button->setToolTip(toolTipFor(shown));
        connect(button, &QAbstractButton::clicked, this, [this, flag = shown.flag](bool isSet) {
            LibraryViewFilter filter = m_filter;
            filter.filterPatch.*flag = isSet;
            setFilter(filter);
        });
        const int place = static_cast<int>(i);
        grid->addWidget(button, place / columns, place % columns);
        m_flags.at(i) = button;
    }
    m_clear = new QPushButton(symbolIcon(QStringLiteral("xmark")), tr("Clear"), block);
    m_clear->setProperty("plain", true);
    m_clear->setToolTip(tr("Show all patches"));
    QSizePolicy policy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    policy.setRetainSizeWhenHidden(true);
    m_clear->setSizePolicy(policy);
    grid->addWidget(m_clear, 1, columns - 1);
    for (int column = 0; column < columns; ++column) {
        grid->setColumnStretch(column, 1);
    }
    connect(m_clear, &QAbstractButton::clicked, this, &LibraryViewFilterView::clear);
    return block;
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
    const auto &flags = PatchFlags::inFilter();
    return !asked.name.isEmpty() || !asked.comment.isEmpty()
        || std::any_of(flags.begin(), flags.end(), [&](const ShownPatchFlag &shown) { return asked.*shown.flag; });
}

void LibraryViewFilterView::setControlsEnabled(bool isEnabled)
{
    m_name->setEnabled(isEnabled);
    m_comment->setEnabled(isEnabled);
    m_flagBlock->setEnabled(isEnabled);
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
    for (size_t i = 0; i < m_flags.size(); ++i) {
        m_flags.at(i)->setChecked(asked.*PatchFlags::inFilter().at(i).flag);
    }
    m_symbol->setSymbol(QStringLiteral("line.3.horizontal.decrease.circle"),
        isActive() ? &LookTokens::accentText : &LookTokens::secondary);
    if (!isActive() && m_clear->hasFocus()) {
        m_name->setFocus(Qt::OtherFocusReason);
    }
    m_clear->setVisible(isActive());
}
