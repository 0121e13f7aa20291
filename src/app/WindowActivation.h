#pragma once

#include "Activation.h"

#include <QWidget>

#include <functional>

/// Gives a window the keyboard with what the desktop gave the start that asked for it.
namespace WindowActivation {

/// Runs `raise`, which shows the window in front of the others and activates it.
void raise(QWidget &window, const Activation &activation, const std::function<void()> &raise);

/// For the first window of a start: activates it once it is on the screen. Qt does that itself on X11.
void activateOnceShown(QWidget &window, const Activation &activation);

} // namespace WindowActivation
