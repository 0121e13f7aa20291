#pragma once

#include "LookTokens.h"

#include <QIcon>
#include <QPixmap>
#include <QString>

class QPainter;
class QRectF;

/// The window's own symbols, drawn in one colour and sharp at any scale. No symbol of the desktop's theme is used.
/// A name without a symbol stops the program.

/// A square of `px` device-independent pixels for a device with the pixel ratio `ratio`.
[[nodiscard]] QPixmap symbolPixmap(const QString &name, const QColor &colour, int px, qreal ratio);

/// Paints into the square of `rect`'s width at its upper left corner, as sharp as the painter's device allows.
void paintSymbol(QPainter *painter, const QString &name, const QColor &colour, const QRectF &rect);

/// An icon that asks the application's palette for its colour whenever it is painted, and for the palette's Disabled
/// group when it is disabled.
[[nodiscard]] QIcon symbolIcon(const QString &name, QPalette::ColorRole role = QPalette::ButtonText);

/// The same for a colour that has no palette role; disabled it takes the palette's disabled text.
[[nodiscard]] QIcon symbolIcon(const QString &name, QColor LookTokens::*token);
