#pragma once

#include <QByteArray>

/// Steps that go wrong on purpose, so that it is seen that the tests notice. They exist in builds with
/// VELGOR_FAULT_POINTS alone, where the environment variable VELGOR_FAULT names the one that goes wrong;
/// tests/reliability/fault_points.txt says which there are, and what has to notice each.
namespace FaultPoint {

#ifdef VELGOR_FAULT_POINTS
[[nodiscard]] inline bool isSet(const char *name)
{
    static const QByteArray set = qgetenv("VELGOR_FAULT");
    return set == name;
}
#else
[[nodiscard]] constexpr bool isSet(const char *)
{
    return false;
}
#endif

} // namespace FaultPoint
