#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <optional>

/// Text rules shared by names, versions and comments. A character is a Unicode code point throughout.
namespace Utf8Text {

/// Decodes strictly: overlong forms, surrogates, values above U+10FFFF and cut sequences give nothing.
/// A leading U+FEFF is text like any other and is kept.
[[nodiscard]] std::optional<QString> decode(QByteArrayView bytes);

/// The first `count` characters of `text`, or all of it when it has fewer.
[[nodiscard]] QString firstCharacters(const QString &text, qsizetype count);

/// The longest run of whole leading characters of `text` whose UTF-8 form has at most `byteLimit` bytes.
[[nodiscard]] QString longestPrefixWithin(const QString &text, qsizetype byteLimit);

/// What two texts are compared by when letter case is ignored: the UTF-8 bytes of the lower-cased text.
/// Their order is code-point order, which the order of UTF-16 units is not.
[[nodiscard]] QByteArray caselessKey(const QString &text);

} // namespace Utf8Text
