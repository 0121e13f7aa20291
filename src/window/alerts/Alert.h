#pragma once

#include <QString>

#include <functional>

class QMessageBox;
class QWidget;

/// The buttons and texts of one message.
struct Alert {
    using Answered = std::function<void(bool isAccepted)>;

    QString title; ///< said exactly so
    QString text; ///< what it is about, the reason, and what to do
    QString acceptLabel; ///< the button that does what the message asks about; empty for a mere notice
    QString safeLabel; ///< the button that does nothing; default, and on Escape
    bool isDestructive = false; ///< acceptLabel destroys something

    /// Shows the message in the window's look, over the window of `parent`, and returns at once. `answered` is called
    /// with true for the accepting button and false for the safe one, Escape and closing; not when the window goes
    /// first.
    QMessageBox *show(QWidget *parent, const Answered &answered) const;
};
