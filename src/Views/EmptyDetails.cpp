#include "EmptyDetails.h"

#include "LookMeasures.h"

#include <QLabel>

#include <algorithm>

using namespace LookMeasures;

EmptyDetails::EmptyDetails(QWidget *parent)
    : QWidget(parent)
    , m_text(new QLabel(this))
{
    m_text->setForegroundRole(QPalette::PlaceholderText);
    m_text->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    m_text->setWordWrap(true);
}

void EmptyDetails::setText(const QString &text)
{
    m_text->setText(text);
    arrange();
}

void EmptyDetails::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    arrange();
}

void EmptyDetails::arrange()
{
    constexpr int widest = 300;
    const int textWidth = std::min(widest, width() - 2 * columnPadding);
    const int textHeight = m_text->heightForWidth(textWidth);
    const int windowTop = mapTo(window(), QPoint(0, 0)).y();
    const int wanted = window()->height() * 2 / 5 + emptyStateSymbolSize - windowTop;
    const int top = std::clamp(wanted, 0, std::max(height() - textHeight, 0));
    m_text->setGeometry((width() - textWidth) / 2, top, textWidth, textHeight);
}
