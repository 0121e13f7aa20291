#pragma once

#include <QFontMetrics>

/// What the parts of the detail column share, so that they stand on one axis.
namespace DetailMeasures {

inline constexpr int rowGap = 8;

/// From the left edge of the labels to the left edge of everything else.
[[nodiscard]] int labelColumn(const QFontMetrics &metrics);

} // namespace DetailMeasures
