#include "VelgorStyle.h"

#include "ButtonLook.h"
#include "ColourMix.h"
#include "KeyboardHints.h"
#include "LookMeasures.h"
#include "LookTokens.h"
#include "RoundedFill.h"
#include "Symbols.h"

#include <QApplication>
#include <QLineEdit>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStyleOption>

using namespace LookMeasures;

namespace {

/// A line of `width` just inside of `rect`.
void drawInnerEdge(QPainter *painter, const QRectF &rect, const QColor &colour, int width, int radius)
{
    const qreal half = width / 2.0;
    painter->setPen(QPen(colour, width));
    painter->setBrush(Qt::NoBrush);
    painter->drawRoundedRect(rect.adjusted(half, half, -half, -half), radius - half, radius - half);
}

void drawField(const QStyleOption &option, QPainter *painter, bool isQuiet)
{
    const bool isEnabled = option.state & QStyle::State_Enabled;
    const bool hasFocus = isEnabled && (option.state & QStyle::State_HasFocus);
    if (isQuiet && !hasFocus && !(isEnabled && (option.state & QStyle::State_MouseOver))) {
        return;
    }
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const QRectF rect = option.rect;
    // Inside the edge's outer line, so that no base colour shines through its corners.
    fillRounded(*painter, rect.adjusted(0.5, 0.5, -0.5, -0.5), option.palette.color(QPalette::Base), controlRadius);
    if (hasFocus) {
        drawInnerEdge(painter, rect, LookTokens::current().focusRing, focusRingWidth, controlRadius);
    } else {
        const QPalette::ColorRole role = isEnabled ? QPalette::Dark : QPalette::Mid;
        drawInnerEdge(painter, rect, option.palette.color(role), hairline, controlRadius);
    }
    painter->restore();
}

void drawButtonPanel(const QStyleOptionButton &button, QPainter *painter, const QWidget *widget)
{
    const int gutter = qobject_cast<const QPushButton *>(widget) ? focusGutter : 0;
    const QColor fill = ButtonLook::of(button, widget).fill;
    if (fill.isValid()) {
        fillRounded(*painter, QRectF(button.rect).adjusted(gutter, gutter, -gutter, -gutter), fill, controlRadius);
    }
}

void drawFocusRing(QPainter *painter, const QRectF &rect)
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    // The radius is that of the middle of the line.
    drawInnerEdge(painter, rect, LookTokens::current().focusRing, focusRingWidth, focusRingRadius + focusRingWidth / 2);
    painter->restore();
}

} // namespace

VelgorStyle::VelgorStyle()
    : QProxyStyle(QStringLiteral("fusion"))
    , m_keyboardHints(new KeyboardHints(this))
{
}

void VelgorStyle::polish(QApplication *application)
{
    QProxyStyle::polish(application);
    // A style that is set before there is an application is polished for none.
    if (application) {
        application->installEventFilter(m_keyboardHints);
    }
}

void VelgorStyle::unpolish(QApplication *application)
{
    application->removeEventFilter(m_keyboardHints);
    QProxyStyle::unpolish(application);
}

void VelgorStyle::polish(QWidget *widget)
{
    QProxyStyle::polish(widget);
    if (qobject_cast<QLineEdit *>(widget)) {
        widget->setAttribute(Qt::WA_Hover);
    }
}

void VelgorStyle::drawPrimitive(
    PrimitiveElement element, const QStyleOption *option, QPainter *painter, const QWidget *widget) const
{
    switch (element) {
    case PE_PanelButtonCommand:
        if (const auto *button = qstyleoption_cast<const QStyleOptionButton *>(option)) {
            drawButtonPanel(*button, painter, widget);
            return;
        }
        break;
    case PE_FrameFocusRect:
        if (qobject_cast<const QPushButton *>(widget)) {
            if (m_keyboardHints->areRingsShown()) {
                drawFocusRing(painter, option->rect);
            }
            return;
        }
        break;
    case PE_PanelLineEdit: {
        const auto *frame = qstyleoption_cast<const QStyleOptionFrame *>(option);
        if (qobject_cast<const QLineEdit *>(widget) && frame && frame->lineWidth > 0) {
            drawField(*option, painter, isVariant(widget, "quiet"));
            return;
        }
        break;
    }
    case PE_FrameLineEdit:
        if (qobject_cast<const QLineEdit *>(widget)) {
            return;
        }
        break;
    case PE_Frame:
        if (qobject_cast<const QPlainTextEdit *>(widget) || isVariant(widget, "field")) {
            drawField(*option, painter, false);
            return;
        }
        break;
    case PE_FrameStatusBarItem:
        return;
    case PE_PanelStatusBar:
        painter->fillRect(
            QRect(option->rect.topLeft(), QSize(option->rect.width(), hairline)), option->palette.color(QPalette::Mid));
        return;
    case PE_PanelMenu:
        painter->fillRect(option->rect, option->palette.color(QPalette::Base));
        return;
    case PE_FrameMenu:
        painter->save();
        // Menus lie over lists of the same colour.
        painter->setPen(mixed(option->palette.color(QPalette::Mid), option->palette.color(QPalette::Dark), 0.5));
        painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
        painter->restore();
        return;
    case PE_PanelTipLabel:
        painter->fillRect(option->rect, LookTokens::current().toolTip);
        return;
    default:
        break;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
}

QIcon VelgorStyle::standardIcon(StandardPixmap pixmap, const QStyleOption *option, const QWidget *widget) const
{
    switch (pixmap) {
    case SP_MessageBoxWarning:
    case SP_MessageBoxCritical:
        return symbolIcon(QStringLiteral("warning"), &LookTokens::warning);
    case SP_ToolBarHorizontalExtensionButton:
        // Every menu bar asks for it at once, and a file of pixels would have all readers of image files loaded.
        return symbolIcon(QStringLiteral("chevron.right.2"));
    default:
        return QProxyStyle::standardIcon(pixmap, option, widget);
    }
}

QPixmap VelgorStyle::standardPixmap(StandardPixmap pixmap, const QStyleOption *option, const QWidget *widget) const
{
    switch (pixmap) {
    case SP_MessageBoxWarning:
    case SP_MessageBoxCritical:
        return standardIcon(pixmap, option, widget).pixmap(messageSymbolSize);
    default:
        return QProxyStyle::standardPixmap(pixmap, option, widget);
    }
}
