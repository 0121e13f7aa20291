#pragma once

#include <QColor>

/// `colour` with the share `share` (0 to 1) of `other` mixed in.
[[nodiscard]] QColor mixed(const QColor &colour, const QColor &other, double share);

/// The same colour, see-through.
[[nodiscard]] QColor withAlpha(const QColor &colour, double alpha);

/// The fill of a coloured control under the pointer, and while it is pressed.
[[nodiscard]] QColor hovered(const QColor &fill);
[[nodiscard]] QColor pressed(const QColor &fill);
