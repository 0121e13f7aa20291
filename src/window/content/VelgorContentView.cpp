#include "VelgorContentView.h"

#include "CommandButton.h"
#include "Commands.h"
#include "ContentListModel.h"
#include "ContentListView.h"
#include "ContentTitle.h"
#include "Hairline.h"
#include "LibraryEditor.h"
#include "LookMeasures.h"
#include "OneRefresh.h"
#include "VelgorContent.h"
#include "VelgorLibrary.h"
#include "WrappingRow.h"

#include <QAction>
#include <QMenu>
#include <QStyle>
#include <QVBoxLayout>

using namespace LookMeasures;

VelgorContentView::VelgorContentView(const VelgorContent &content, const VelgorLibrary &library, ContentEditor &editor,
    const LibraryEditor &libraryEditor, Commands &commands, QWidget *parent)
    : QWidget(parent)
    , m_content(content)
    , m_libraryEditor(libraryEditor)
    , m_model(new ContentListModel(content, this))
    , m_title(new ContentTitle(this))
    , m_list(new ContentListView(content, editor, libraryEditor, *m_model, this))
    , m_import(new CommandButton(commands, CommandId::Import, this))
    , m_refresh(new OneRefresh([this] { refresh(); }, this))
{
    auto *const header = new QVBoxLayout;
    header->setContentsMargins(columnPadding, wideGap - hairline, columnPadding, gap);
    header->addWidget(m_title);

    auto *const buttons = new WrappingRow;
    buttons->setContentsMargins(columnPadding - focusGutter, gap - focusGutter + tinyGap, columnPadding - focusGutter,
        gap - focusGutter + tinyGap);
    buttons->setSpacing(gap - 2 * focusGutter);
    for (CommandButton *button : {m_import, new CommandButton(commands, CommandId::Export, this),
             new CommandButton(commands, CommandId::Reset, this)}) {
        button->setFocusHeir(*m_list);
        buttons->addWidget(button);
    }

    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addLayout(header);
    column->addWidget(new Hairline(this));
    column->addWidget(m_list, 1);
    column->addWidget(new Hairline(this));
    column->addLayout(buttons);
    setTabOrder(m_list, m_import);

    connect(m_list, &QAbstractItemView::doubleClicked, commands.action(CommandId::ShowInLibrary), &QAction::trigger);
    for (const auto signal : {&VelgorContent::rowsInserted, &VelgorContent::rowsRemoved, &VelgorContent::rowMoved,
             &VelgorContent::rowsChanged}) {
        connect(&content, signal, m_refresh, &OneRefresh::ask);
    }
    connect(&content, &VelgorContent::wasReset, m_refresh, &OneRefresh::ask);
    connect(&library, &VelgorLibrary::selectionChanged, m_refresh, &OneRefresh::ask);
    connect(&library, &VelgorLibrary::wasReset, m_refresh, &OneRefresh::ask);
    refresh();
}

void VelgorContentView::setContextMenu(QMenu *menu)
{
    connect(m_list, &QWidget::customContextMenuRequested, menu,
        [this, menu](const QPoint &position) { menu->popup(m_list->viewport()->mapToGlobal(position)); });
}

void VelgorContentView::refresh()
{
    const qsizetype count = m_content.velgorContentPatchList().size();
    m_title->setCount(count);
    m_list->setHint(count > 0 ? EmptyHint{}
                              : EmptyHint{QStringLiteral("arrow.up.square"), tr("No presets yet"),
                                  tr("Import a preset file (.prst) exported by the editor of your Velgor.")});
    const bool isLead = count == 0;
    if (m_import->property("lead").toBool() != isLead) {
        m_import->setProperty("lead", isLead);
        m_import->update();
    }
    refreshUsedRows();
}

void VelgorContentView::refreshUsedRows()
{
    QSet<int> rows;
    if (const VelgorPatch *patch = m_libraryEditor.selectedPatch()) {
        const QList<BankNumber> places = m_libraryEditor.inContentPatch(patch->id());
        for (const BankNumber &place : places) {
            rows.insert(static_cast<int>(place.slot()));
        }
    }
    m_model->setUsedRows(rows);
}
