#include "VelgorStyle.h"

#include "ButtonLook.h"
#include "ColourMix.h"
#include "LookMeasures.h"
#include "LookTokens.h"
#include "RoundedFill.h"

#include <QAbstractScrollArea>
#include <QPainter>
#include <QStyleOption>

#include <algorithm>

using namespace LookMeasures;

namespace {

constexpr double handleStrength = 0.32;
constexpr double handleHoverStrength = 0.48;

QPixmap tinted(QPixmap pixmap, const QColor &colour)
{
    QPainter painter(&pixmap);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(QRectF(QPointF(), pixmap.deviceIndependentSize()), colour);
    return pixmap;
}

/// A scroll bar stands on what it scrolls, so that no stripe parts the two.
QColor groundOf(const QStyleOption &option, const QWidget *scrollBar)
{
    for (const QWidget *widget = scrollBar; widget; widget = widget->parentWidget()) {
        if (const auto *area = qobject_cast<const QAbstractScrollArea *>(widget)) {
            const QWidget *viewport = area->viewport();
            return viewport->palette().color(viewport->backgroundRole());
        }
    }
    return option.palette.color(QPalette::Window);
}

void drawMenuBarGround(const QStyleOption &option, QPainter *painter)
{
    painter->fillRect(option.rect, option.palette.color(QPalette::Window));
    painter->fillRect(
        option.rect.left(), option.rect.bottom(), option.rect.width(), hairline, option.palette.color(QPalette::Mid));
}

void drawSplitter(const QStyleOption &option, QPainter *painter)
{
    QRect line = option.rect;
    if (option.state & QStyle::State_Horizontal) {
        line.setLeft(line.center().x());
        line.setWidth(hairline);
    } else {
        line.setTop(line.center().y());
        line.setHeight(hairline);
    }
    painter->fillRect(line, option.palette.color(QPalette::Mid));
}

void drawBar(QPainter *painter, const QRectF &rect, const QColor &colour)
{
    fillRounded(*painter, rect, colour, std::min(rect.width(), rect.height()) / 2);
}

void drawProgress(const QStyleOptionProgressBar &option, QPainter *painter)
{
    // As numbers with a fraction, because the difference of two numbers may be too large for one of their kind.
    const qreal range = qreal(option.maximum) - option.minimum;
    const qreal progress = qreal(option.progress) - option.minimum;
    if (range <= 0 || progress <= 0) {
        return;
    }
    QRectF done = option.rect;
    done.setWidth(std::max<qreal>(done.height(), done.width() * std::min<qreal>(1, progress / range)));
    if ((option.direction == Qt::RightToLeft) != option.invertedAppearance) {
        done.moveRight(QRectF(option.rect).right());
    }
    drawBar(painter, done, option.palette.color(QPalette::Link));
}

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

void drawMenuMark(const QStyleOptionMenuItem &option, QPainter *painter, const QRect &place, const QColor &colour)
{
    const QPointF centre = QRectF(place).center();
    if (option.checkType != QStyleOptionMenuItem::NotCheckable && option.checked) {
        if (option.checkType == QStyleOptionMenuItem::Exclusive) {
            constexpr qreal radius = 3.5;
            painter->setPen(Qt::NoPen);
            painter->setBrush(colour);
            painter->drawEllipse(centre, radius, radius);
        } else {
            painter->setPen(roundPen(colour));
            painter->setBrush(Qt::NoBrush);
            painter->drawPolyline(QPolygonF{centre + QPointF(-4, 0), centre + QPointF(-1, 3), centre + QPointF(4, -3)});
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

void VelgorStyle::drawControl(
    ControlElement element, const QStyleOption *option, QPainter *painter, const QWidget *widget) const
{
    switch (element) {
    case CE_PushButton:
        // The base would shrink the label's and the ring's rectangles by its own margins.
        proxy()->drawControl(CE_PushButtonBevel, option, painter, widget);
        proxy()->drawControl(CE_PushButtonLabel, option, painter, widget);
        if (option->state & State_HasFocus) {
            proxy()->drawPrimitive(PE_FrameFocusRect, option, painter, widget);
        }
        return;
    case CE_PushButtonBevel:
        proxy()->drawPrimitive(PE_PanelButtonCommand, option, painter, widget);
        return;
    case CE_PushButtonLabel:
        if (const auto *button = qstyleoption_cast<const QStyleOptionButton *>(option)) {
            drawButtonLabel(*button, painter, widget);
            return;
        }
        break;
    case CE_Splitter:
        drawSplitter(*option, painter);
        return;
    case CE_MenuBarItem:
        if (const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option)) {
            drawMenuBarItem(*item, painter, widget);
            return;
        }
        break;
    case CE_MenuItem:
        if (const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option)) {
            drawMenuItem(*item, painter, widget);
            return;
        }
        break;
    case CE_MenuBarEmptyArea:
        drawMenuBarGround(*option, painter);
        return;
    case CE_ProgressBarGroove:
        drawBar(painter, option->rect, LookTokens::current().unsetFlag);
        return;
    case CE_ProgressBarContents:
        if (const auto *bar = qstyleoption_cast<const QStyleOptionProgressBar *>(option)) {
            drawProgress(*bar, painter);
            return;
        }
        break;
    default:
        break;
    }
    QProxyStyle::drawControl(element, option, painter, widget);
}

void VelgorStyle::drawComplexControl(
    ComplexControl control, const QStyleOptionComplex *option, QPainter *painter, const QWidget *widget) const
{
    if (control == CC_ScrollBar) {
        if (const auto *bar = qstyleoption_cast<const QStyleOptionSlider *>(option)) {
            drawScrollBar(*bar, painter, widget);
            return;
        }
    }
    QProxyStyle::drawComplexControl(control, option, painter, widget);
}

void VelgorStyle::drawButtonLabel(const QStyleOptionButton &option, QPainter *painter, const QWidget *widget) const
{
    const ButtonLook look = ButtonLook::of(option, widget);
    const QRect room = proxy()->subElementRect(SE_PushButtonContents, &option, widget);
    const QSize symbol = option.icon.isNull() ? QSize(0, 0) : option.iconSize;
    const int beforeText = symbol.isEmpty() || option.text.isEmpty() ? symbol.width() : symbol.width() + symbolGap;
    const QString text = option.fontMetrics.elidedText(
        option.text, Qt::ElideRight, std::max(0, room.width() - beforeText), Qt::TextShowMnemonic);
    const int textWidth = option.fontMetrics.size(Qt::TextShowMnemonic, text).width();
    QRect label(0, 0, beforeText + textWidth, room.height());
    label.moveCenter(room.center());

    if (!symbol.isEmpty()) {
        const QRect place(
            label.left(), room.top() + (room.height() - symbol.height()) / 2, symbol.width(), symbol.height());
        const QPixmap pixmap = option.icon.pixmap(symbol, painter->device()->devicePixelRatioF(),
            option.state & State_Enabled ? QIcon::Normal : QIcon::Disabled,
            option.state & State_On ? QIcon::On : QIcon::Off);
        painter->drawPixmap(visualRect(option.direction, label, place).topLeft(), tinted(pixmap, look.symbol));
    }
    painter->save();
    painter->setPen(look.text);
    const bool underlined = proxy()->styleHint(SH_UnderlineShortcut, &option, widget) != 0;
    painter->drawText(visualRect(option.direction, label, label.adjusted(beforeText, 0, 0, 0)),
        Qt::AlignCenter | Qt::TextSingleLine | (underlined ? Qt::TextShowMnemonic : Qt::TextHideMnemonic), text);
    painter->restore();
}

void VelgorStyle::drawMenuBarItem(const QStyleOptionMenuItem &option, QPainter *painter, const QWidget *widget) const
{
    drawMenuBarGround(option, painter);
    const LookTokens &tokens = LookTokens::current();
    if ((option.state & State_Selected) && (option.state & State_Enabled)) {
        fillRounded(*painter, option.rect.adjusted(0, smallGap, 0, -smallGap - hairline),
            option.state & State_Sunken ? tokens.buttonPressed : tokens.buttonHover, rowRadius);
    }
    const bool underlined = proxy()->styleHint(SH_UnderlineShortcut, &option, widget) != 0;
    drawItemText(painter, option.rect.adjusted(0, 0, 0, -hairline),
        Qt::AlignCenter | Qt::TextSingleLine | (underlined ? Qt::TextShowMnemonic : Qt::TextHideMnemonic),
        option.palette, option.state & State_Enabled, option.text, QPalette::WindowText);
}

void VelgorStyle::drawScrollBar(const QStyleOptionSlider &option, QPainter *painter, const QWidget *widget) const
{
    const QColor ground = groundOf(option, widget);
    painter->fillRect(option.rect, ground);
    if (option.maximum <= option.minimum || !(option.state & State_Enabled)) {
        return;
    }
    QRectF handle = proxy()->subControlRect(CC_ScrollBar, &option, SC_ScrollBarSlider, widget);
    constexpr qreal side = (scrollBarExtent - scrollBarHandle) / 2.0;
    handle = option.orientation == Qt::Vertical ? handle.adjusted(side, tinyGap, -side, -tinyGap)
                                                : handle.adjusted(tinyGap, side, -tinyGap, -side);
    const bool isHeld = (option.state & State_Sunken) && (option.activeSubControls & SC_ScrollBarSlider);
    const bool isHovered = (option.state & State_MouseOver) && (option.activeSubControls & SC_ScrollBarSlider);
    drawBar(painter, handle,
        mixed(ground, LookTokens::current().text, isHeld || isHovered ? handleHoverStrength : handleStrength));
}

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
        fillRounded(*painter, rect.adjusted(rowInset, 0, -rowInset, 0), LookTokens::current().selection, rowRadius);
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
