#pragma once

#include <QString>

#include <optional>

/// An opaque sRGB colour, components from 0 to 1.
struct VersionColor {
    double red = 0;
    double green = 0;
    double blue = 0;
};

/// Numbers firmware version texts in the order in which the running program meets them, and colours the numbers.
/// User-interface thread only; nothing of it is saved.
class PresetsVersionManager {
public:
    /// The id of `version`: 1 for the first text met, 2 for the next new one. Letter case counts.
    [[nodiscard]] static int versionId(const QString &version);
    /// The colour of an id; absent for id 1, which has the application's accent colour.
    [[nodiscard]] static std::optional<VersionColor> getColor(int versionid);
    /// Three characters at most: of a longer number only the end is shown.
    [[nodiscard]] static QString badgeText(int versionid);
    /// Forgets every version met, as at program start.
    static void reset();
};
