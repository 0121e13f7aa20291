#pragma once

#include "Alert.h"

#include <QString>
#include <QStringList>

/// What the texts of messages have in common.
namespace AlertParts {

/// With nothing but "OK".
[[nodiscard]] Alert notice(const QString &title, const QString &text);
/// A notice from which the user can go on to the check of the library.
[[nodiscard]] Alert checkable(const QString &title, const QString &text);
/// What happened, and below it what that means, if anything.
[[nodiscard]] QString inParagraphs(const QString &reason, const QString &advice);
/// A problem as the layers below tell it: a path or a name, and behind a colon what is the matter with it.
[[nodiscard]] QString shownProblem(const QString &problem);
/// The first few of many lines, and how many more there are.
[[nodiscard]] QString firstLines(const QStringList &lines);

} // namespace AlertParts
