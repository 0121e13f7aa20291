#pragma once

#include <QColor>
#include <QString>

#include <optional>

/// What the badge of a firmware version shows. Versions are numbered as they are met, so ask for real ones only.
struct FirmwareBadge {
    QString text;
    std::optional<QColor> colour; ///< absent: the accent

    [[nodiscard]] static FirmwareBadge of(const QString &version);
    /// The version as a text for people: its field is padded with zero characters.
    [[nodiscard]] static QString shownVersion(const QString &version);
};
