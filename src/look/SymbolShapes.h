#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

/// The drawings behind the symbols, on a grid of 24 by 24 with nothing outside 2 to 22. They use only what the
/// smallest SVG renderer can do: cut-outs are even-odd fills, there are no masks.
namespace SymbolShapes {

/// A whole SVG document in which "currentColor" stands for the colour. An unknown name stops the program.
[[nodiscard]] QByteArray document(const QString &name);

[[nodiscard]] QStringList names();

} // namespace SymbolShapes
