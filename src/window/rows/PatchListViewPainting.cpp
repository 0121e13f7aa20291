// What a list paints besides its rows: its hint while it is empty, and where a drag would land.

#include "PatchListView.h"

#include "LookMeasures.h"
#include "LookTokens.h"
#include "RowDelegate.h"

#include <QPainter>

#include <algorithm>

void PatchListView::paintEvent(QPaintEvent *event)
{
    QListView::paintEvent(event);
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::Antialiasing);
    if (!m_hint.isEmpty()) {
        m_hint.paint(painter, *viewport());
    }
    paintMark(painter);
}

QRect PatchListView::rowsRect(int first, int count) const
{
    const QRect top = visualRect(model()->index(first, 0));
    return {top.left(), top.top(), viewport()->width(), top.height() * count};
}

void PatchListView::paintMark(QPainter &painter) const
{
    const QColor colour = LookTokens::current().selectionPill;
    constexpr qreal width = 2;
    painter.setPen(QPen(colour, width));
    painter.setBrush(Qt::NoBrush);
    switch (m_mark.kind) {
    case DropMark::None:
        return;
    case DropMark::Replace: {
        const QRectF rect = RowDelegate::inner(rowsRect(m_mark.row, m_mark.count));
        painter.drawRoundedRect(rect.adjusted(1, 1, -1, -1), LookMeasures::rowRadius, LookMeasures::rowRadius);
        return;
    }
    case DropMark::Insert: {
        const int rows = model()->rowCount();
        const int row = std::min(m_mark.row, rows - 1);
        const QRect rect = rows > 0 ? visualRect(model()->index(row, 0)) : QRect(0, 0, 0, 0);
        const qreal y = std::max(m_mark.row > row ? rect.bottom() + 1 : rect.top(), 4);
        constexpr qreal ring = 3;
        painter.drawEllipse(QPointF(LookMeasures::rowInset + ring, y), ring, ring);
        painter.drawLine(QPointF(LookMeasures::rowInset + 2 * ring + 1, y),
            QPointF(RowDelegate::inner(viewport()->rect()).right(), y));
        return;
    }
    case DropMark::WholeList:
        painter.drawRoundedRect(
            QRectF(viewport()->rect()).adjusted(1, 1, -1, -1), LookMeasures::rowRadius, LookMeasures::rowRadius);
        return;
    }
}
