#pragma once

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
};

/// How a row reads: its text with the mark that it carries.
[[nodiscard]] QString spokenRow(const QString &text, bool hasUserIR);
/// What the row's firmware badge says.
[[nodiscard]] QString firmwareText(const QString &version);

} // namespace PatchRoles
