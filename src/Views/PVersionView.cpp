#include "PVersionView.h"

#include "BadgePainter.h"
#include "PresetsVersionManager.h"

#include <QPainter>

namespace {

QString badgeText(const QString &version)
{
    return PresetsVersionManager::badgeText(PresetsVersionManager::versionId(version)).trimmed();
}

std::optional<QColor> badgeColour(const QString &version)
{
    const auto colour = PresetsVersionManager::getColor(PresetsVersionManager::versionId(version));
    if (!colour) {
        return std::nullopt;
    }
    return QColor::fromRgbF(
        static_cast<float>(colour->red), static_cast<float>(colour->green), static_cast<float>(colour->blue));
}

} // namespace

PVersionView::PVersionView(QWidget *parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void PVersionView::setVersion(const QString &version)
{
    m_version = version;
    setAccessibleName(tr("Firmware %1").arg(shown(version)));
    setToolTip(tr("Firmware %1").arg(shown(version)));
    updateGeometry();
    update();
}

QString PVersionView::shown(const QString &version)
{
    QString text = version;
    return text.remove(QChar::Null);
}

QSize PVersionView::sizeHint() const
{
    return firmwareBadgeSize(badgeText(m_version), font());
}

void PVersionView::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setFont(font());
    paintFirmwareBadge(
        &painter, rect(), badgeText(m_version), badgeColour(m_version), palette().color(QPalette::WindowText));
}
