#pragma once

#include <QStringList>

/// The invented names of the demonstration sounds, each of which fits the field of a preset file.
namespace DemoNames {

/// The whole list of the older firmware.
[[nodiscard]] QStringList list();

/// A sound of list() that the list of the newer firmware holds as well, under another name.
struct Renamed {
    qsizetype index; ///< in list()
    QString name;
};
[[nodiscard]] QList<Renamed> renamed();
/// The other sounds of the newer firmware.
[[nodiscard]] QStringList newSounds();

} // namespace DemoNames
