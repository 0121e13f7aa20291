#pragma once

#include <QColor>

#include <algorithm>
#include <cmath>

/// How far two colours are apart to the eye, as WCAG 2 measures it: 1 to 21, 4.5 for text, 3 for marks.
namespace Contrast {

inline double linear(float part)
{
    const double value = static_cast<double>(part);
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

inline double luminance(const QColor &colour)
{
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

inline double between(const QColor &one, const QColor &other)
{
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

/// What is seen of a see-through colour on a ground.
inline QColor on(const QColor &ground, const QColor &colour)
{
    const float alpha = colour.alphaF();
    const auto mix = [alpha](float below, float above) { return below * (1 - alpha) + above * alpha; };
    return QColor::fromRgbF(
        mix(ground.redF(), colour.redF()), mix(ground.greenF(), colour.greenF()), mix(ground.blueF(), colour.blueF()));
}

} // namespace Contrast
