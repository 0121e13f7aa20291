#include "LibraryCheckColumn.h"

#include "LibraryCheckList.h"
#include "LookMeasures.h"
#include "RelativeFont.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

LibraryCheckColumn::LibraryCheckColumn(const QString &title, const QString &detailsName, QWidget *parent)
    : QWidget(parent)
    , m_list(new LibraryCheckList(this))
    , m_details(new QPlainTextEdit(this))
    , m_button(new QPushButton(this))
{
    auto *const header = new QLabel(title, this);
    RelativeFont::set(*header, LookMeasures::strongFont);
    header->setBuddy(m_list);
    m_list->setAccessibleName(title);
    m_details->setReadOnly(true);
    m_details->setTabChangesFocus(true);
    m_details->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_details->setAccessibleName(detailsName);
    m_button->setProperty("roomy", true);
    m_button->setAutoDefault(false);

    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(LookMeasures::gap);
    auto *const texts = new QVBoxLayout;
    texts->setContentsMargins(LookMeasures::focusGutter, 0, LookMeasures::focusGutter, 0);
    texts->addWidget(header);
    texts->addWidget(m_list, 4);
    texts->addWidget(m_details, 3);
    column->addLayout(texts, 1);
    column->addWidget(m_button, 0, Qt::AlignLeft);
}

void LibraryCheckColumn::setRows(const QList<LibraryCheckRow> &rows, const EmptyHint &hint)
{
    m_details->setVisible(!rows.isEmpty());
    m_list->setFocusPolicy(rows.isEmpty() ? Qt::NoFocus : Qt::StrongFocus);
    m_list->setHint(rows.isEmpty() ? hint : EmptyHint());
    m_list->setRows(rows);
}

void LibraryCheckColumn::setDetails(const QString &text)
{
    m_details->setPlainText(text);
}
