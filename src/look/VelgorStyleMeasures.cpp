#include "VelgorStyle.h"

#include "ButtonLook.h"
#include "KeyboardHints.h"
#include "LookMeasures.h"

#include <QApplication>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStyleOption>
#include <QToolButton>

#include <algorithm>

using namespace LookMeasures;

namespace {

constexpr int menuBarPadding = 9;
constexpr int menuBarMargin = 3;
constexpr int toolTipMargin = 5;
/// A field's own margin beside a button in it, which keeps distance by itself.
constexpr int fieldInsetAtButton = 1;

int paddingOf(const QWidget *button)
{
    return isRoomy(button) ? dialogButtonPadding : buttonPadding;
}

QSize buttonSize(const QStyleOptionButton &option, const QWidget *widget)
{
    const QFontMetrics &metrics = option.fontMetrics;
    int width = metrics.size(Qt::TextShowMnemonic, option.text).width();
    if (!option.icon.isNull()) {
        width += option.iconSize.width() + (option.text.isEmpty() ? 0 : symbolGap);
    }
    width += 2 * paddingOf(widget);
    if (isRoomy(widget)) {
        width = std::max(width, dialogButtonMinimumWidth);
    }
    return {width + 2 * focusGutter, buttonHeight(metrics) + 2 * focusGutter};
}

bool isFramedField(const QStyleOption *option, const QWidget *widget)
{
    const auto *frame = qstyleoption_cast<const QStyleOptionFrame *>(option);
    return qobject_cast<const QLineEdit *>(widget) && frame && frame->lineWidth > 0;
}

QRect fieldContents(const QRect &rect, const QWidget *field)
{
    bool isAtLeft = false;
    bool isAtRight = false;
    const auto buttons = field->findChildren<const QToolButton *>(QString(), Qt::FindDirectChildrenOnly);
    for (const QToolButton *button : buttons) {
        if (button->isHidden()) {
            continue;
        }
        const bool isInLeftHalf = button->geometry().center().x() < rect.center().x();
        isAtLeft |= isInLeftHalf;
        isAtRight |= !isInLeftHalf;
    }
    return rect.adjusted(
        isAtLeft ? fieldInsetAtButton : fieldInset, hairline, isAtRight ? -fieldInsetAtButton : -fieldInset, -hairline);
}

} // namespace

QRect VelgorStyle::scrollBarRect(const QStyleOptionSlider &option, SubControl part) const
{
    const bool isVertical = option.orientation == Qt::Vertical;
    const int length = isVertical ? option.rect.height() : option.rect.width();
    const qint64 range = qint64{option.maximum} - option.minimum;
    int handle = length;
    if (range > 0) {
        const qint64 proportional = qint64{option.pageStep} * length / (range + option.pageStep);
        handle = std::min(length, std::max(scrollBarHandleMinimum, static_cast<int>(proportional)));
    }
    const int start = sliderPositionFromValue(
        option.minimum, option.maximum, option.sliderPosition, length - handle, option.upsideDown);

    int from = 0;
    int size = 0;
    switch (part) {
    case SC_ScrollBarGroove:
        size = length;
        break;
    case SC_ScrollBarSlider:
        from = start;
        size = handle;
        break;
    case SC_ScrollBarSubPage:
        size = start;
        break;
    case SC_ScrollBarAddPage:
        from = start + handle;
        size = length - from;
        break;
    default:
        return {};
    }
    const QPoint corner = option.rect.topLeft();
    const QRect rect = isVertical ? QRect(corner.x(), corner.y() + from, option.rect.width(), size)
                                  : QRect(corner.x() + from, corner.y(), size, option.rect.height());
    return visualRect(option.direction, option.rect, rect);
}

QRect VelgorStyle::subControlRect(
    ComplexControl control, const QStyleOptionComplex *option, SubControl part, const QWidget *widget) const
{
    if (control == CC_ScrollBar) {
        if (const auto *bar = qstyleoption_cast<const QStyleOptionSlider *>(option)) {
            return scrollBarRect(*bar, part);
        }
    }
    return QProxyStyle::subControlRect(control, option, part, widget);
}

QRect VelgorStyle::subElementRect(SubElement element, const QStyleOption *option, const QWidget *widget) const
{
    switch (element) {
    case SE_PushButtonContents:
        if (qobject_cast<const QPushButton *>(widget)) {
            // A button that is narrower than it wishes gives up its padding before its label.
            const int margin = focusGutter + smallGap;
            return option->rect.adjusted(margin, focusGutter, -margin, -focusGutter);
        }
        break;
    case SE_LineEditContents:
        if (isFramedField(option, widget)) {
            return fieldContents(option->rect, widget);
        }
        break;
    default:
        break;
    }
    return QProxyStyle::subElementRect(element, option, widget);
}

QSize VelgorStyle::sizeFromContents(
    ContentsType type, const QStyleOption *option, const QSize &size, const QWidget *widget) const
{
    switch (type) {
    case CT_PushButton:
        if (const auto *button = qstyleoption_cast<const QStyleOptionButton *>(option)) {
            return buttonSize(*button, widget);
        }
        break;
    case CT_LineEdit:
        if (isFramedField(option, widget)) {
            return {size.width() + 2 * fieldInset, fieldHeight(option->fontMetrics)};
        }
        break;
    case CT_MenuItem:
        if (const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option)) {
            return menuItemSize(*item, size);
        }
        break;
    case CT_MenuBarItem:
        return {size.width() + 2 * menuBarPadding, menuBarItemHeight(option->fontMetrics)};
    default:
        break;
    }
    return QProxyStyle::sizeFromContents(type, option, size, widget);
}

int VelgorStyle::pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const
{
    switch (metric) {
    case PM_ScrollBarExtent:
        return scrollBarExtent;
    case PM_ScrollBarSliderMin:
        return scrollBarHandleMinimum;
    case PM_ScrollView_ScrollBarSpacing:
    case PM_ScrollView_ScrollBarOverlap:
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
    case PM_ButtonDefaultIndicator:
    case PM_MenuBarPanelWidth:
    case PM_MenuBarItemSpacing:
    case PM_MenuBarVMargin:
        return 0;
    case PM_MenuVMargin:
        return smallGap;
    case PM_MenuBarHMargin:
        return menuBarMargin;
    case PM_SplitterWidth:
    case PM_MenuPanelWidth:
        return hairline;
    case PM_SmallIconSize:
    case PM_ButtonIconSize:
    case PM_LineEditIconSize:
        return symbolSize(QFontMetrics(QApplication::font()));
    case PM_MessageBoxIconSize:
        return messageSymbolSize;
    case PM_ToolTipLabelFrameWidth:
        return toolTipMargin;
    case PM_DefaultFrameWidth:
        if (qobject_cast<const QPlainTextEdit *>(widget)) {
            return textEditFrame;
        }
        if (isVariant(widget, "field")) {
            return smallGap;
        }
        break;
    default:
        break;
    }
    return QProxyStyle::pixelMetric(metric, option, widget);
}

int VelgorStyle::styleHint(
    StyleHint hint, const QStyleOption *option, const QWidget *widget, QStyleHintReturn *returnData) const
{
    switch (hint) {
    case SH_EtchDisabledText:
    case SH_DitherDisabledText:
    case SH_DialogButtonBox_ButtonsHaveIcons:
    case SH_MessageBox_CenterButtons:
    case SH_Widget_Animation_Duration:
        return 0;
    case SH_UnderlineShortcut:
        return m_keyboardHints->areLettersShown() || qobject_cast<const QMenu *>(widget) ? 1 : 0;
    case SH_ItemView_ShowDecorationSelected:
        return 1;
    case SH_ToolTipLabel_Opacity:
        return 255;
    default:
        return QProxyStyle::styleHint(hint, option, widget, returnData);
    }
}
