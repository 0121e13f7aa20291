#include "VelgorLibraryView.h"

#include "CommandButton.h"
#include "Commands.h"
#include "Hairline.h"
#include "LibraryEditor.h"
#include "LibraryListModel.h"
#include "LibraryListView.h"
#include "LibraryViewFilterView.h"
#include "LoadingView.h"
#include "LookMeasures.h"
#include "OneRefresh.h"
#include "RelativeFont.h"
#include "VelgorLibrary.h"
#include "WrappingRow.h"

#include <QLabel>
#include <QStackedLayout>
#include <QVBoxLayout>

using namespace LookMeasures;

VelgorLibraryView::VelgorLibraryView(
    const VelgorLibrary &library, LibraryEditor &editor, Commands &commands, QWidget *parent)
    : QWidget(parent)
    , m_library(library)
    , m_editor(editor)
    , m_commands(commands)
    , m_model(new LibraryListModel(library, editor, this))
    , m_filter(new LibraryViewFilterView(this))
    , m_count(new QLabel(this))
    , m_pages(new QStackedLayout)
    , m_list(new LibraryListView(library, editor, *m_model, this))
    , m_loading(new LoadingView(this))
    , m_buttons(makeButtons())
    , m_refresh(new OneRefresh([this] { refresh(); }, this))
{
    new FontFollower(
        *this, [this] { foldFilter(); }, this);
    m_count->setWordWrap(true);
    m_count->setForegroundRole(QPalette::PlaceholderText);
    m_pages->addWidget(m_list);
    m_pages->addWidget(m_loading);

    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_filter);
    column->addWidget(m_count);
    column->addWidget(new Hairline(this));
    column->addLayout(m_pages, 1);
    column->addWidget(new Hairline(this));
    column->addLayout(m_buttons);

    connect(m_filter, &LibraryViewFilterView::filterChanged, this, [this](const LibraryViewFilter &filter) {
        m_editor.setFilter(filter);
        m_model->setFilter(filter);
        m_list->scrollToTop();
        m_commands.refresh();
        m_refresh->ask();
    });
    connect(m_filter, &LibraryViewFilterView::left, m_list, &LibraryListView::grabFocus);
    followLibrary();
    refresh();
}

qsizetype VelgorLibraryView::shownCount() const
{
    return m_model->filteredVelgorPatchesCount();
}

QLayout *VelgorLibraryView::makeButtons()
{
    // Made in the order of the Tab key.
    auto *const sort = new CommandButton(m_commands, CommandId::Sort, this);
    auto *const select = new CommandButton(m_commands, CommandId::Select, this);
    // Two digits of ticked patches, so that ticking does not move the neighbours.
    select->reserve(tr("Select (%1)").arg(88));
    select->setAccessibleName(tr("Select"));
    const auto describe = [this, select] {
        select->setAccessibleDescription(
            m_library.isMultiSel() ? tr("%1 ticked").arg(m_library.tickedCount()) : QString());
    };
    connect(&m_commands, &Commands::refreshed, select, describe);

    auto *const buttons = new WrappingRow(barButtonMaximumWidth);
    const int above = gap - focusGutter + tinyGap;
    buttons->setContentsMargins(columnPadding - focusGutter, above, columnPadding - focusGutter, above);
    buttons->setSpacing(gap - 2 * focusGutter);
    auto *const deleteButton = new CommandButton(m_commands, CommandId::Delete, this);
    for (CommandButton *button :
        {sort, select, deleteButton, new CommandButton(m_commands, CommandId::Duplicate, this)}) {
        button->setFocusHeir(*m_list);
        buttons->addWidget(button);
    }
    connect(&m_editor, &LibraryEditor::wentOn, this, [this, deleteButton] {
        // Who deletes one patch after the other goes on where the keys are for patches.
        if (window()->focusWidget() == deleteButton) {
            m_list->setFocus(Qt::OtherFocusReason);
        }
    });
    return buttons;
}

void VelgorLibraryView::followLibrary()
{
    for (const auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved}) {
        connect(m_model, signal, m_refresh, &OneRefresh::ask);
    }
    connect(m_model, &QAbstractItemModel::modelReset, m_refresh, &OneRefresh::ask);
    // A patch that the filter hides counts too.
    for (const auto signal : {&VelgorLibrary::rowsInserted, &VelgorLibrary::rowsRemoved}) {
        connect(&m_library, signal, m_refresh, &OneRefresh::ask);
    }
    connect(&m_library, &VelgorLibrary::wasReset, m_refresh, &OneRefresh::ask);
}

bool VelgorLibraryView::showPatch(quint64 id)
{
    const bool isHidden = !m_model->indexOf(id).isValid();
    if (isHidden) {
        m_filter->clear();
    }
    m_list->showPatch(id);
    return isHidden;
}

QSize VelgorLibraryView::minimumSizeHint() const
{
    // As it is once it is folded.
    constexpr int fewestRows = 2;
    const int rows = fewestRows * rowHeight(fontMetrics());
    const int count = fontMetrics().height() + 2 * tinyGap;
    const int height = m_filter->foldedHeight() + count + rows + m_buttons->heightForWidth(width()) + 2 * hairline;
    return {QWidget::minimumSizeHint().width(), height};
}

void VelgorLibraryView::resizeEvent(QResizeEvent *event)
{
    foldFilter();
    QWidget::resizeEvent(event);
}

void VelgorLibraryView::foldFilter()
{
    constexpr int fewestRows = 5;
    setCompact(false);
    const int others = m_count->heightForWidth(width()) + m_buttons->heightForWidth(width()) + 2 * hairline;
    const int list = fewestRows * rowHeight(fontMetrics());
    const bool isFolded = m_filter->unfoldedHeight(width()) + others + list > height();
    m_filter->setFolded(isFolded);
    setCompact(isFolded);
}

void VelgorLibraryView::setCompact(bool isCompact)
{
    const int aroundCount = isCompact ? tinyGap : gap;
    m_count->setContentsMargins(columnPadding, aroundCount - hairline, columnPadding, aroundCount);
    const QList<CommandButton *> buttons = findChildren<CommandButton *>();
    for (CommandButton *button : buttons) {
        button->setSymbolShown(!isCompact);
    }
}

void VelgorLibraryView::setLoading(bool isLoading)
{
    m_filter->setControlsEnabled(!isLoading);
    m_commands.setLibraryUsable(!isLoading);
    m_list->setEnabled(!isLoading);
    m_loading->setLoading(isLoading);
    m_pages->setCurrentWidget(isLoading ? static_cast<QWidget *>(m_loading) : m_list);
    m_refresh->ask();
}

bool VelgorLibraryView::isShown(quint64 id) const
{
    return m_model->indexOf(id).isValid();
}

void VelgorLibraryView::setLoadProgress(qsizetype loaded, qsizetype total)
{
    m_loading->setProgress(loaded, total);
}

void VelgorLibraryView::refresh()
{
    const qsizetype shown = m_model->filteredVelgorPatchesCount();
    const qsizetype all = m_library.count();
    const QString text = shown >= 2 ? tr("Showing: %1 elements out of %2") : tr("Showing: %1 element out of %2");
    m_count->setText(text.arg(QString::number(shown), QString::number(all)));
    if (all == 0) {
        // How is said in the details.
        m_list->setHint({QStringLiteral("tray"), tr("Keep your patches here"), {}});
    } else if (shown == 0) {
        m_list->setHint({QStringLiteral("search"), tr("No patch matches the filter"),
            all == 1 ? tr("The name, every comment word and every lit button must match. Clear the filter to see the "
                          "patch.")
                     : tr("The name, every comment word and every lit button must match. Clear the filter to see all "
                          "%1 patches.")
                           .arg(all)});
    } else {
        m_list->setHint({});
    }
}
