#pragma once

#include <QFont>
#include <QString>

/// Text in several lines.
namespace WrappedText {

/// Every word fits this width, or can be broken so that its parts do.
[[nodiscard]] bool canBeWrapped(const QString &text, const QFont &font, int width);

/// The text as it can be wrapped into this width: a word that is broader, as paths and file names may be, lacks its
/// middle.
[[nodiscard]] QString fitted(const QString &text, const QFont &font, int width);

} // namespace WrappedText
