#pragma once

#include <QString>

/// The name of a patch in a line of running text, whatever it holds and however long it is.
[[nodiscard]] QString shownName(const QString &name);
