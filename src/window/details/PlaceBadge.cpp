#include "PlaceBadge.h"

#include "BadgePainter.h"
#include "LookMeasures.h"
#include "LookTokens.h"
#include "RoundedFill.h"
#include "VelgorContentPatch.h"

#include <QFocusEvent>
#include <QPainter>

using namespace LookMeasures;

namespace {

constexpr QMargins gutter{focusGutter, focusGutter, focusGutter, focusGutter};

QString textFor(qsizetype more)
{
    return MorePlaces::tr("and %1 more").arg(more);
}

} // namespace

PlaceButton::PlaceButton(QWidget *parent)
    : QAbstractButton(parent)
{
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
}

void PlaceButton::focusInEvent(QFocusEvent *event)
{
    m_showsRing = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason
        || event->reason() == Qt::ShortcutFocusReason;
    QAbstractButton::focusInEvent(event);
}

void PlaceButton::paintRing(QPainter &painter) const
{
    if (hasFocus() && m_showsRing) {
        painter.setPen(QPen(LookTokens::current().focusRing, focusRingWidth));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), badgeRadius + 2, badgeRadius + 2);
    }
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
    return placeBadgeSize(text(), font()).grownBy(gutter);
}

void PlaceBadge::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(font());
    const QRectF badge = QRectF(rect()).marginsRemoved(gutter);
    paintPlaceBadge(&painter, badge, text());
    if (isDown() || underMouse()) {
        constexpr int hoverShade = 26;
        fillRounded(painter, badge, QColor(0, 0, 0, isDown() ? 2 * hoverShade : hoverShade), badgeRadius);
    }
    paintRing(painter);
}

MorePlaces::MorePlaces(QWidget *parent)
    : PlaceButton(parent)
{
    setCursor(Qt::PointingHandCursor);
    setAccessibleName(tr("Show all places"));
    setToolTip(tr("Show all places"));
}

void MorePlaces::setCount(qsizetype count)
{
    m_count = count;
    setText(textFor(count));
    setAccessibleDescription(text());
}

QSize MorePlaces::sizeFor(qsizetype count) const
{
    return QSize(fontMetrics().horizontalAdvance(textFor(count)), fontMetrics().height()).grownBy(gutter);
}

void MorePlaces::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QFont shown = font();
    shown.setUnderline(underMouse() || isDown());
    painter.setFont(shown);
    painter.setPen(LookTokens::current().accentText);
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, text());
    paintRing(painter);
}
