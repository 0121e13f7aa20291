#pragma once

#include <QPixmap>
#include <QString>

class QFont;

/// The picture that goes with the pointer during a drag of patches.
namespace DragPicture {

/// A card with the first patch's name and, from two on, the number of patches. `ratio` is the screen's pixel ratio.
[[nodiscard]] QPixmap paint(const QString &name, bool hasUserIR, qsizetype count, const QFont &font, qreal ratio);

} // namespace DragPicture
