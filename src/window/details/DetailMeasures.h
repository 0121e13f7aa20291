#pragma once

#include <QFontMetrics>
#include <QString>

/// What the parts of the detail column share, so that they stand on one axis.
namespace DetailMeasures {

inline constexpr int rowGap = 8;

/// The label that is the longest of all, with the space behind it.
[[nodiscard]] QString longestLabel();
/// From the left edge of the labels to the left edge of everything else.
[[nodiscard]] int labelColumn(const QFontMetrics &metrics);

} // namespace DetailMeasures
