#pragma once

#include <QString>

struct WindowFixture;

/// What holds between any two actions of a user. Each tells what is wrong; empty when nothing is.
namespace WalkInvariants {

/// The lists show what the library and the list being composed hold, and nothing stands over the window.
[[nodiscard]] QString shownWrong(const WindowFixture &window);
/// A program started now would find the library as it is here. Saves what is not saved yet. Sorting is no change that
/// is saved, so that the order counts only when `isOrderSaved`.
[[nodiscard]] QString storedWrong(WindowFixture &window, bool isOrderSaved);

} // namespace WalkInvariants
