#include "ContentTitle.h"

#include "LookMeasures.h"
#include "LookTokens.h"
#include "RelativeFont.h"

#include <QEvent>

ContentTitle::ContentTitle(QWidget *parent)
    : QLabel(parent)
{
    setTextFormat(Qt::RichText);
    setWordWrap(true);
    RelativeFont::set(*this, LookMeasures::strongFont);
    refresh();
}

void ContentTitle::setCount(qsizetype count)
{
    if (m_count != count) {
        m_count = count;
        refresh();
    }
}

void ContentTitle::refresh()
{
    const QString title = tr("Selection for your Velgor");
    const QString count = tr("(%1 elements)").arg(m_count);
    setText(QStringLiteral(R"(%1 <span style="font-weight:400; white-space:nowrap; color:%2">%3</span>)")
                .arg(title, LookTokens::current().secondary.name(), count));
    setAccessibleName(title + u' ' + count);
}

void ContentTitle::changeEvent(QEvent *event)
{
    QLabel::changeEvent(event);
    // The colour is written into the text.
    if (event->type() == QEvent::PaletteChange) {
        refresh();
    }
}
