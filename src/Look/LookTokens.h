#pragma once

#include <QColor>

/// The colours of the window.
struct LookTokens {
    QColor window;
    bool isDark = false;

    [[nodiscard]] static const LookTokens &current();
};
