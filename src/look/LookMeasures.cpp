#include "LookMeasures.h"

#include <QFontInfo>
#include <QScreen>

#include <algorithm>

namespace {

QFont scaled(const QFont &base, double factor)
{
    QFont font = base;
    // A font that was set in pixels knows no points.
    const double points = base.pointSizeF() > 0 ? base.pointSizeF() : QFontInfo(base).pointSizeF();
    font.setPointSizeF(points * factor);
    return font;
}

} // namespace

QFont LookMeasures::titleFont(const QFont &base)
{
    QFont font = scaled(base, 1.5);
    font.setWeight(QFont::DemiBold);
    return font;
}

QFont LookMeasures::strongFont(const QFont &base)
{
    QFont font = base;
    font.setWeight(QFont::DemiBold);
    return font;
}

QFont LookMeasures::footnoteFont(const QFont &base)
{
    return scaled(base, 0.85);
}

QFont LookMeasures::badgeFont(const QFont &base)
{
    QFont font = footnoteFont(base);
    font.setPointSizeF(std::max(8.0, font.pointSizeF()));
    font.setWeight(QFont::DemiBold);
    return font;
}

QSize LookMeasures::scaledToText(const QSize &size, const QFontMetrics &metrics)
{
    constexpr double usualLine = 16;
    return size * std::max(1.0, metrics.height() / usualLine);
}

QSize LookMeasures::roomForWindow(const QScreen &screen)
{
    constexpr QSize frame(8, 40);
    return screen.availableSize() - frame;
}

int LookMeasures::rowHeight(const QFontMetrics &metrics)
{
    return std::max(24, metrics.height() + 8);
}

int LookMeasures::symbolSize(const QFontMetrics &metrics)
{
    return metrics.height() <= 18 ? 16 : metrics.height() / 2 * 2;
}

int LookMeasures::tickSize(const QFontMetrics &metrics)
{
    return symbolSize(metrics) + 2;
}

int LookMeasures::buttonHeight(const QFontMetrics &metrics)
{
    return std::max(28, metrics.height() + 12);
}

int LookMeasures::toggleHeight(const QFontMetrics &metrics)
{
    return std::max(26, metrics.height() + 10);
}

int LookMeasures::fieldHeight(const QFontMetrics &metrics)
{
    return std::max(28, metrics.height() + 12);
}

int LookMeasures::menuBarItemHeight(const QFontMetrics &metrics)
{
    return std::max(32, metrics.height() + 16) + hairline;
}

int LookMeasures::badgeHeight(const QFontMetrics &badgeMetrics)
{
    return std::max(18, badgeMetrics.height() + 4);
}

int LookMeasures::rowBadgeHeight(const QFontMetrics &metrics, const QFontMetrics &badgeMetrics)
{
    return std::min(badgeHeight(badgeMetrics), rowHeight(metrics) - 8);
}
