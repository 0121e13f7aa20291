#include "EmptyHint.h"

#include "LookMeasures.h"
#include "LookTokens.h"
#include "Symbols.h"

#include <QPainter>
#include <QWidget>

#include <algorithm>

void EmptyHint::paint(QPainter &painter, const QWidget &area) const
{
    constexpr int widest = 280;
    constexpr int symbolSize = LookMeasures::emptyStateSymbolSize;
    const QFontMetrics metrics(area.font());
    const int windowTop = area.mapTo(area.window(), QPoint(0, 0)).y();
    const int top = std::max(area.window()->height() * 2 / 5 - windowTop, 2 * LookMeasures::rowHeight(metrics));
    const int width = std::min(widest, area.width() - 2 * LookMeasures::columnPadding);
    const int left = (area.width() - width) / 2;
    const LookTokens &tokens = LookTokens::current();

    const QRectF symbolRect((area.width() - symbolSize) / 2.0, top, symbolSize, symbolSize);
    paintSymbol(&painter, symbol, tokens.markOff, symbolRect);

    const QFont strong = LookMeasures::strongFont(area.font());
    painter.setFont(strong);
    painter.setPen(tokens.text);
    constexpr int flags = Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap;
    const int titleTop = top + symbolSize + LookMeasures::columnPadding;
    const QRect titleRect =
        QFontMetrics(strong).boundingRect(QRect(left, titleTop, width, area.height()), flags, title);
    painter.drawText(QRect(left, titleTop, width, titleRect.height()), flags, title);

    painter.setFont(area.font());
    painter.setPen(tokens.secondary);
    const int textTop = titleTop + titleRect.height() + LookMeasures::symbolGap;
    painter.drawText(QRect(left, textTop, width, std::max(area.height() - textTop, 0)), flags, text);
}
