#include "MorePlaces.h"

#include "LookMeasures.h"
#include "LookTokens.h"

#include <QFocusEvent>
#include <QPainter>

using namespace LookMeasures;

namespace {

QString textFor(qsizetype count)
{
    return MorePlaces::tr("and %1 more").arg(count);
}

} // namespace

MorePlaces::MorePlaces(QWidget *parent)
    : QAbstractButton(parent)
{
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
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
    return QSize(fontMetrics().horizontalAdvance(textFor(count)), fontMetrics().height())
        .grownBy({focusGutter, focusGutter, focusGutter, focusGutter});
}

QSize MorePlaces::sizeHint() const
{
    return sizeFor(m_count);
}

void MorePlaces::focusInEvent(QFocusEvent *event)
{
    m_showsRing = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason
        || event->reason() == Qt::ShortcutFocusReason;
    QAbstractButton::focusInEvent(event);
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
    if (hasFocus() && m_showsRing) {
        painter.setPen(QPen(LookTokens::current().focusRing, focusRingWidth));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), badgeRadius + 2, badgeRadius + 2);
    }
}
