#pragma once

#include <QtGlobal>

/// A well-spread random patch id from 0 to 2^63 - 1, for patches whose content gives none.
[[nodiscard]] quint64 randomId();
