#include "PresetsVersionManager.h"

#include <QHash>

#include <cmath>

namespace {

QHash<QString, int> &versions()
{
    static QHash<QString, int> instance;
    return instance;
}

} // namespace

int PresetsVersionManager::versionId(const QString &version)
{
    int &id = versions()[version];
    if (id == 0) {
        id = static_cast<int>(versions().size());
    }
    return id;
}

std::optional<VersionColor> PresetsVersionManager::getColor(int versionid)
{
    if (versionid == 1) {
        return std::nullopt;
    }
    constexpr double brightness = 2.5;
    const double x = versionid;
    return VersionColor{.red = (std::sin(x) + 1.0) / brightness,
        .green = (std::cos(x + 1.5) + 1.0) / brightness,
        .blue = (std::sin(x + 1.0) + 1.0) / brightness};
}

QString PresetsVersionManager::badgeText(int versionid)
{
    return QStringLiteral(" %1 ").arg(versionid).right(3);
}

void PresetsVersionManager::reset()
{
    versions().clear();
}
