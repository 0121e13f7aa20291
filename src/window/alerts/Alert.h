#pragma once

#include <QString>

/// The buttons and texts of one message.
struct Alert {
    QString title; ///< said exactly so
    QString text; ///< what it is about, the reason, and what to do
    QString acceptLabel; ///< the button that does what the message asks about; empty for a mere notice
    QString safeLabel; ///< the button that does nothing; default, and on Escape
    bool isDestructive = false; ///< acceptLabel destroys something
};
