#pragma once

#include <QString>

/// What the desktop knows the program by, as reverse domain name: its desktop entry, its window, and the directories
/// that are its own.
namespace ApplicationId {

[[nodiscard]] QString text();

} // namespace ApplicationId
