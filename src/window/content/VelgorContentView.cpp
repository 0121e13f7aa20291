#include "VelgorContentView.h"

#include "CommandButton.h"
#include "Commands.h"
#include "ContentListModel.h"
#include "ContentListView.h"
#include "Hairline.h"
#include "LibraryEditor.h"
#include "LookMeasures.h"
#include "LookTokens.h"
#include "OneRefresh.h"
#include "RelativeFont.h"
#include "VelgorContent.h"
#include "VelgorLibrary.h"
#include "WrappingRow.h"

#include <QAction>
#include <QEvent>
#include <QLabel>
#include <QVBoxLayout>

using namespace LookMeasures;

VelgorContentView::VelgorContentView(const VelgorContent &content, const VelgorLibrary &library, ContentEditor &editor,
    const LibraryEditor &libraryEditor, Commands &commands, QWidget *parent)
    : QWidget(parent)
    , m_content(content)
    , m_libraryEditor(libraryEditor)
    , m_model(new ContentListModel(content, this))
    , m_title(new QLabel(this))
    , m_list(new ContentListView(content, editor, libraryEditor, *m_model, this))
    , m_import(new CommandButton(commands, CommandId::Import, this))
    , m_refresh(new OneRefresh([this] { refresh(); }, this))
{
    m_title->setTextFormat(Qt::RichText);
    m_title->setWordWrap(true);
    RelativeFont::set(*m_title, strongFont);
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

void VelgorContentView::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        refreshTitle();
    }
}

void VelgorContentView::refreshTitle()
{
    const QString title = tr("Selection for your Velgor");
    const QString count = tr("(%1 elements)").arg(m_content.velgorContentPatchList().size());
    // The colour is written into the text.
    const QString text = QStringLiteral(R"(%1 <span style="font-weight:400; white-space:nowrap; color:%2">%3</span>)")
                             .arg(title, LookTokens::current().secondary.name(), count);
    if (text != m_title->text()) {
        m_title->setText(text);
        m_title->setAccessibleName(title + u' ' + count);
    }
}

void VelgorContentView::refresh()
{
    const qsizetype count = m_content.velgorContentPatchList().size();
    refreshTitle();
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
