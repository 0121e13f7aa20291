#pragma once

#include "PatchFlags.h"

#include <QString>
#include <Qt>

/// What the rows of both lists offer beyond Qt's roles.
namespace PatchRoles {

enum Role {
    Name = Qt::UserRole, ///< the patch name alone
    HasUserIR,
    Version, ///< firmware version text
    Position, ///< a slot's place, as in "3.2"
    IsPlaceUsed, ///< the slot holds the library patch whose details are shown
    IsDefault, ///< the library's default patch
    IsPlaceholder, ///< stands for the empty library
    Classification, ///< the flags that are set, as ShownFlags
    Comment, ///< all of it
};

/// How a row reads: its text with the mark that it carries.
[[nodiscard]] QString spokenRow(const QString &text, bool hasUserIR);
/// What a row has room for of a comment.
[[nodiscard]] QString firstLine(const QString &comment);
/// The labels of flags, one after the other.
[[nodiscard]] QString spokenFlags(const ShownFlags &flags);
/// What the row's firmware badge says.
[[nodiscard]] QString firmwareText(const QString &version);

} // namespace PatchRoles
