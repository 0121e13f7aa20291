#include "PVersionView.h"

#include "BadgePainter.h"
#include "FirmwareBadge.h"

#include <QPainter>

PVersionView::PVersionView(QWidget *parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void PVersionView::setVersion(const QString &version)
{
    m_version = version;
    setAccessibleName(tr("Firmware %1").arg(FirmwareBadge::shownVersion(version)));
    setToolTip(tr("Firmware %1").arg(FirmwareBadge::shownVersion(version)));
    updateGeometry();
    update();
}

QSize PVersionView::sizeHint() const
{
    // Before there is a version to show, none may be numbered.
    return firmwareBadgeSize(m_version.isEmpty() ? QString() : FirmwareBadge::of(m_version).text, font());
}

void PVersionView::paintEvent(QPaintEvent * /*event*/)
{
    if (m_version.isEmpty()) {
        return;
    }
    QPainter painter(this);
    painter.setFont(font());
    const FirmwareBadge badge = FirmwareBadge::of(m_version);
    paintFirmwareBadge(&painter, rect(), badge.text, badge.colour, palette().color(QPalette::WindowText));
}
