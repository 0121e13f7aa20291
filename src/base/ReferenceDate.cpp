#include "ReferenceDate.h"

#include <cmath>

namespace {

constexpr double unixSecondsAtReference = 978'307'200; // 2001-01-01T00:00:00Z

} // namespace

ReferenceDate ReferenceDate::now()
{
    return {static_cast<double>(QDateTime::currentMSecsSinceEpoch()) / 1000.0 - unixSecondsAtReference};
}

QDateTime ReferenceDate::toDateTime() const
{
    // A library file may hold any number; what no calendar reaches becomes an invalid date.
    constexpr double limit = 1e14;
    const double milliseconds = std::round((seconds + unixSecondsAtReference) * 1000.0);
    return std::abs(milliseconds) < limit ? QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(milliseconds))
                                          : QDateTime();
}
