#include "FirmwareBadge.h"

#include "PresetsVersionManager.h"

FirmwareBadge FirmwareBadge::of(const QString &version)
{
    const int versionId = PresetsVersionManager::versionId(version);
    FirmwareBadge badge{PresetsVersionManager::badgeText(versionId).trimmed(), std::nullopt};
    if (const std::optional<VersionColor> colour = PresetsVersionManager::getColor(versionId)) {
        badge.colour = QColor::fromRgbF(
            static_cast<float>(colour->red), static_cast<float>(colour->green), static_cast<float>(colour->blue));
    }
    return badge;
}

QString FirmwareBadge::shownVersion(const QString &version)
{
    QString text = version;
    return text.remove(QChar::Null);
}
