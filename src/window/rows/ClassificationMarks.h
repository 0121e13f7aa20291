#pragma once

#include "PatchFlags.h"

class QFont;
class QPainter;

/// The classification of a patch as small marks in the tones of the details, in a row of a list. With letters they tell
/// what they stand for by themselves; without, they only repeat what is said in words elsewhere.
namespace ClassificationMarks {

[[nodiscard]] int width(const ShownFlags &flags, bool areLettered, const QFont &base);

/// Paints them from the left of `rect`, in the middle of its height. A valid `colour` takes the place of the tones.
void paint(QPainter &painter, const QRect &rect, const ShownFlags &flags, bool areLettered, const QColor &colour);

} // namespace ClassificationMarks
