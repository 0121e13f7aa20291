#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <optional>

/// The 16-byte field of a preset file that holds a patch's name: zero-padded UTF-8.
namespace PatchName {

inline constexpr qsizetype fieldSize = 16;

/// What stands for a name whose bytes are no text.
[[nodiscard]] QString unreadable();

/// The text of a name field: its bytes without the zero bytes, which are skipped wherever they stand, decoded as
/// UTF-8; unreadable() when they are not valid UTF-8. `size` is accepted and not used: the field is all of `data`.
[[nodiscard]] QString getStringFrom16UInt8(QByteArrayView data, qsizetype size);
/// The same, but nothing when the bytes are not valid UTF-8.
[[nodiscard]] std::optional<QString> decodeField(QByteArrayView data);

/// The bytes of a name field: the first 16 characters, padded with zero bytes to 16 bytes. Nothing is cut to bytes,
/// so that characters beyond ASCII can make it longer than the field; callers pass a name that fits (see fitted()).
[[nodiscard]] QByteArray encodeField(const QString &name);

/// `name` cut to the longest run of whole characters that fits the field. NUL characters, which a reader would
/// skip, are left out.
[[nodiscard]] QString fitted(const QString &name);

} // namespace PatchName
