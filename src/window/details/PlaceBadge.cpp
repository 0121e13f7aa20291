#include "PlaceBadge.h"

#include "BadgePainter.h"
#include "LookMeasures.h"
#include "LookTokens.h"
#include "VelgorContentPatch.h"

#include <QFocusEvent>
#include <QPainter>

using namespace LookMeasures;

PlaceBadge::PlaceBadge(QWidget *parent)
    : QAbstractButton(parent)
{
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
}

void PlaceBadge::setSlotIndex(int slotIndex)
{
    if (slotIndex == m_slotIndex) {
        return;
    }
    m_slotIndex = slotIndex;
    const BankNumber place = BankNumber::ofSlot(slotIndex);
    setText(QStringLiteral("%1.%2").arg(place.bank).arg(place.number));
    setAccessibleName(tr("Go to slot %1").arg(text()));
    setToolTip(accessibleName());
}

QSize PlaceBadge::sizeHint() const
{
    return placeBadgeSize(text(), font()).grownBy({focusGutter, focusGutter, focusGutter, focusGutter});
}

void PlaceBadge::focusInEvent(QFocusEvent *event)
{
    m_showsRing = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason
        || event->reason() == Qt::ShortcutFocusReason;
    QAbstractButton::focusInEvent(event);
}

void PlaceBadge::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(font());
    const QRectF badge = QRectF(rect()).adjusted(focusGutter, focusGutter, -focusGutter, -focusGutter);
    paintPlaceBadge(&painter, badge, text());
    if (isDown() || underMouse()) {
        constexpr int hoverShade = 26;
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(0, 0, 0, isDown() ? 2 * hoverShade : hoverShade));
        painter.drawRoundedRect(badge, badgeRadius, badgeRadius);
    }
    if (hasFocus() && m_showsRing) {
        constexpr qreal ringWidth = 2;
        painter.setPen(QPen(LookTokens::current().focusRing, ringWidth));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), badgeRadius + 2, badgeRadius + 2);
    }
}
