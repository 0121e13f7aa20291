#pragma once

#include <QtGlobal>

class QColor;
class QPainter;
class QRectF;

/// Fills a rectangle with round corners, smoothly and without an edge; the painter stays as it is.
void fillRounded(QPainter &painter, const QRectF &rect, const QColor &colour, qreal radius);
