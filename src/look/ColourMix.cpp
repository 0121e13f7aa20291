#include "ColourMix.h"

QColor mixed(const QColor &colour, const QColor &other, double share)
{
    const auto mix = [share](int from, int to) { return qRound(from * (1 - share) + to * share); };
    return {mix(colour.red(), other.red()), mix(colour.green(), other.green()), mix(colour.blue(), other.blue())};
}

QColor withAlpha(const QColor &colour, double alpha)
{
    QColor result = colour;
    result.setAlphaF(static_cast<float>(alpha));
    return result;
}

QColor hovered(const QColor &fill)
{
    return mixed(fill, Qt::black, 0.1);
}

QColor pressed(const QColor &fill)
{
    return mixed(fill, Qt::black, 0.2);
}
