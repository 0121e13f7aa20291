#include "RoundedFill.h"

#include <QPainter>

void fillRounded(QPainter &painter, const QRectF &rect, const QColor &colour, qreal radius)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawRoundedRect(rect, radius, radius);
    painter.restore();
}
