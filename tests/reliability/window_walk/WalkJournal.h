#pragma once

#include <QString>

/// The last actions of a walk, kept so that they can be told even after a crash.
namespace WalkJournal {

inline constexpr int length = 50;

void note(const QString &action);
/// Writes the actions to standard error, the oldest first. Needs no memory, so that it can be called by a signal.
void print();
/// From now on a crash prints the journal before the program ends.
void printOnCrash();

} // namespace WalkJournal
