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
    constexpr int lineLength = 40;
    constexpr int flags = Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap;
    const QFontMetrics metrics(area.font());
    const QFont strong = LookMeasures::strongFont(area.font());
    const int wanted = std::max(widest, lineLength * metrics.averageCharWidth());
    const int width = std::min(wanted, area.width() - 2 * LookMeasures::columnPadding);
    const int left = (area.width() - width) / 2;
    const auto heightOf = [&](const QFontMetrics &font, const QString &shown) {
        return shown.isEmpty() ? 0 : font.boundingRect(QRect(left, 0, width, QWIDGETSIZE_MAX), flags, shown).height();
    };
    const int titleHeight = heightOf(QFontMetrics(strong), title);
    const int textHeight = heightOf(metrics, text);
    const int textsHeight = titleHeight + LookMeasures::symbolGap + textHeight;

    // The symbol gives way where there is no room for all.
    const int firstRow = LookMeasures::rowHeight(metrics);
    const int symbolHeight = LookMeasures::emptyStateSymbolSize + LookMeasures::columnPadding;
    const bool hasSymbol = area.height() >= firstRow + symbolHeight + textsHeight;
    const int needed = textsHeight + (hasSymbol ? symbolHeight : 0);
    const int windowTop = area.mapTo(area.window(), QPoint(0, 0)).y();
    const int top = std::max(
        std::min(std::max(area.window()->height() * 2 / 5 - windowTop, 2 * firstRow), area.height() - needed), 0);
    const LookTokens &tokens = LookTokens::current();
    int y = top;
    if (hasSymbol) {
        constexpr int symbolSize = LookMeasures::emptyStateSymbolSize;
        paintSymbol(
            &painter, symbol, tokens.markOff, QRectF((area.width() - symbolSize) / 2.0, y, symbolSize, symbolSize));
        y += symbolHeight;
    }
    painter.setFont(strong);
    painter.setPen(tokens.text);
    painter.drawText(QRect(left, y, width, titleHeight), flags, title);
    y += titleHeight + LookMeasures::symbolGap;
    painter.setFont(area.font());
    painter.setPen(tokens.secondary);
    painter.drawText(QRect(left, y, width, textHeight), flags, text);
}
