#include "VelgorStyle.h"

#include "LookMeasures.h"
#include "LookTokens.h"

#include <QPainter>
#include <QPainterPath>
#include <QStyleOption>

#include <algorithm>

using namespace LookMeasures;

namespace {

constexpr int markWidth = 16;
constexpr int textStart = rowInset + gap + markWidth + gap;
constexpr int textEnd = rowInset + gap;
constexpr int shortcutGap = 24;
constexpr int separatorHeight = 9;
constexpr double markLine = 1.75;

QPen roundPen(const QColor &colour)
{
    return {colour, markLine, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

void drawTick(QPainter *painter, QPointF centre, const QColor &colour)
{
    painter->setPen(roundPen(colour));
    painter->setBrush(Qt::NoBrush);
    painter->drawPolyline(QPolygonF{centre + QPointF(-4, 0), centre + QPointF(-1, 3), centre + QPointF(4, -3)});
}

void drawDisc(QPainter *painter, QPointF centre, qreal radius, const QColor &colour)
{
    painter->setPen(Qt::NoPen);
    painter->setBrush(colour);
    painter->drawEllipse(centre, radius, radius);
}

void drawMenuMark(const QStyleOptionMenuItem &option, QPainter *painter, const QRect &place, const QColor &colour)
{
    const QPointF centre = QRectF(place).center();
    if (option.checkType != QStyleOptionMenuItem::NotCheckable && option.checked) {
        if (option.checkType == QStyleOptionMenuItem::Exclusive) {
            drawDisc(painter, centre, 3.5, colour);
        } else {
            drawTick(painter, centre, colour);
        }
    } else if (!option.icon.isNull()) {
        option.icon.paint(
            painter, place, Qt::AlignCenter, option.state & QStyle::State_Enabled ? QIcon::Normal : QIcon::Disabled);
    }
}

void drawSubMenuArrow(const QStyleOptionMenuItem &option, QPainter *painter, const QColor &colour)
{
    const bool isLeftToRight = option.direction == Qt::LeftToRight;
    const qreal step = isLeftToRight ? 3 : -3;
    const QPointF tip(
        isLeftToRight ? option.rect.right() - textEnd : option.rect.left() + textEnd, QRectF(option.rect).center().y());
    painter->setPen(roundPen(colour));
    painter->setBrush(Qt::NoBrush);
    painter->drawPolyline(QPolygonF{tip + QPointF(-step, -4), tip + QPointF(step / 3, 0), tip + QPointF(-step, 4)});
}

} // namespace

QSize VelgorStyle::menuItemSize(const QStyleOptionMenuItem &option, const QSize &size)
{
    if (option.menuItemType == QStyleOptionMenuItem::Separator && option.text.isEmpty()) {
        return {size.width(), separatorHeight};
    }
    int width = size.width() + textStart + textEnd;
    if (option.text.contains(u'\t') || option.menuItemType == QStyleOptionMenuItem::SubMenu) {
        width += shortcutGap;
    }
    return {width, std::max(26, option.fontMetrics.height() + 10)};
}

void VelgorStyle::drawMenuItem(const QStyleOptionMenuItem &option, QPainter *painter, const QWidget *widget) const
{
    const QPalette &palette = option.palette;
    const QRect rect = option.rect;
    if (option.menuItemType == QStyleOptionMenuItem::Separator && option.text.isEmpty()) {
        painter->fillRect(rect.left() + textEnd, rect.center().y(), rect.width() - 2 * textEnd, hairline,
            palette.color(QPalette::Mid));
        return;
    }
    const bool isEnabled = option.state & State_Enabled;
    const bool isSelected = isEnabled && (option.state & State_Selected);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (isSelected) {
        painter->setPen(Qt::NoPen);
        painter->setBrush(LookTokens::current().selection);
        painter->drawRoundedRect(rect.adjusted(rowInset, 0, -rowInset, 0), rowRadius, rowRadius);
    }
    const QPalette::ColorGroup group = isEnabled ? QPalette::Active : QPalette::Disabled;
    const QColor text = palette.color(group, isSelected ? QPalette::HighlightedText : QPalette::Text);
    const QColor faint = palette.color(group, isSelected ? QPalette::HighlightedText : QPalette::PlaceholderText);
    const QColor mark = isEnabled ? palette.color(QPalette::Active, QPalette::Link) : text;

    const QRect markPlace(rect.left() + rowInset + gap, rect.top(), markWidth, rect.height());
    drawMenuMark(option, painter, visualRect(option.direction, rect, markPlace), mark);
    if (option.menuItemType == QStyleOptionMenuItem::SubMenu) {
        drawSubMenuArrow(option, painter, faint);
    }

    painter->setFont(option.font);
    const QRect textPlace = visualRect(option.direction, rect, rect.adjusted(textStart, 0, -textEnd, 0));
    const bool underlined = proxy()->styleHint(SH_UnderlineShortcut, &option, widget) != 0;
    const int mnemonic = underlined ? Qt::TextShowMnemonic : Qt::TextHideMnemonic;
    const qsizetype tabulator = option.text.indexOf(u'\t');
    painter->setPen(text);
    painter->drawText(textPlace,
        static_cast<int>(visualAlignment(option.direction, Qt::AlignLeft | Qt::AlignVCenter)) | Qt::TextSingleLine
            | mnemonic,
        option.text.left(tabulator));
    if (tabulator >= 0) {
        painter->setPen(faint);
        painter->drawText(textPlace,
            static_cast<int>(visualAlignment(option.direction, Qt::AlignRight | Qt::AlignVCenter)) | Qt::TextSingleLine,
            option.text.mid(tabulator + 1));
    }
    painter->restore();
}

void VelgorStyle::drawCheckMark(const QStyleOption &option, QPainter *painter, bool isExclusive)
{
    const LookTokens &tokens = LookTokens::current();
    const bool isEnabled = option.state & State_Enabled;
    const bool isOn = option.state & (State_On | State_NoChange);
    QRectF box(0, 0, markWidth, markWidth);
    box.moveCenter(QRectF(option.rect).center());
    const qreal radius = isExclusive ? markWidth / 2.0 : badgeRadius;
    const QColor on = isEnabled ? tokens.accent : tokens.disabledText;
    const QColor off = isEnabled ? tokens.fieldBorder : tokens.separator;

    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(isOn ? on : off);
    painter->setBrush(isOn ? on : option.palette.color(QPalette::Base));
    painter->drawRoundedRect(box.adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    if (option.state & State_NoChange) {
        painter->setPen(roundPen(tokens.badgeText));
        painter->drawLine(box.center() - QPointF(3.5, 0), box.center() + QPointF(3.5, 0));
    } else if (isOn && isExclusive) {
        drawDisc(painter, box.center(), 3, tokens.badgeText);
    } else if (isOn) {
        drawTick(painter, box.center(), tokens.badgeText);
    }
    painter->restore();
}
