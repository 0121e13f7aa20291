#pragma once

#include <QPixmap>
#include <QPoint>
#include <QString>

class QFont;

/// The picture that goes with the pointer during a drag of patches.
namespace DragPicture {

/// A card with the first patch's name and, from two on, the number of patches. It stands above the row that the pointer
/// is in, with the pointer at hotSpot(), so that it covers neither that row nor those below, where the lists show what
/// comes. `ratio` is the screen's pixel ratio.
[[nodiscard]] QPixmap paint(const QString &name, bool hasUserIR, qsizetype count, const QFont &font, qreal ratio);

[[nodiscard]] QPoint hotSpot(const QPixmap &picture, const QFont &font);

} // namespace DragPicture
