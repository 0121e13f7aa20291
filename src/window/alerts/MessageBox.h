#pragma once

#include "Alert.h"

#include <functional>

class QMessageBox;
class QWidget;

/// Messages in the window's look.
namespace MessageBox {

/// Shows a message over the window of `parent` and returns at once. `answered` is called with true for the accepting
/// button and false for the safe one, Escape and closing; not when the window goes first.
QMessageBox *show(QWidget *parent, const Alert &alert, const std::function<void(bool isAccepted)> &answered);

} // namespace MessageBox
