#pragma once

#include <QDateTime>

/// A point in time as the library file holds it, so that it comes back exactly after any number of round trips.
struct ReferenceDate {
    double seconds = 0; ///< since 1 January 2001 00:00:00 UTC, fraction included

    [[nodiscard]] static ReferenceDate now();
    /// In local time, to the millisecond.
    [[nodiscard]] QDateTime toDateTime() const;

    bool operator==(const ReferenceDate &) const = default;
};
