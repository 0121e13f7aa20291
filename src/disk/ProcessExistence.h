#pragma once

#include <QtGlobal>

/// True when no process of this computer has this number. False where that cannot be told.
[[nodiscard]] bool isProcessGone(qint64 process);
