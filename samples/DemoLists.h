#pragma once

#include <QByteArray>

/// The demonstration lists, as the bytes of preset files.
namespace DemoLists {

/// 99 sounds, about a third of them with a user impulse response.
[[nodiscard]] QByteArray demo();
/// A list of newer firmware; some of its sounds are those of demo() under other names.
[[nodiscard]] QByteArray demoNewFirmware();

} // namespace DemoLists
