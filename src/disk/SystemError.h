#pragma once

#include <QString>

/// The system's reason why its last call failed, as the C library left it in `errno`; translated.
[[nodiscard]] QString systemError();
