#include "ToggleButton.h"

#include "ColourMix.h"
#include "LookMeasures.h"
#include "LookTokens.h"

#include <QEvent>
#include <QHelpEvent>
#include <QPainter>
#include <QStyleOptionButton>
#include <QToolTip>

#include <cmath>

using namespace LookMeasures;

namespace {

constexpr double lampCentre = 10.5;
constexpr double ringLine = 1.25;
constexpr double discRadius = 3.75;
// Ring and disc end at the same circle.
constexpr double ringRadius = discRadius - ringLine / 2;
constexpr double textStart = 19.5;
constexpr int textEnd = 3;
constexpr int labelMargins = 23;

struct ToggleLook {
    QColor fill;
    QColor lamp;
    QColor text;
};

ToggleLook lookOf(const QStyleOptionButton &option, const QColor &tone)
{
    const LookTokens &tokens = LookTokens::current();
    const bool set = (option.state & QStyle::State_On) != 0;
    const bool isDown = (option.state & QStyle::State_Sunken) != 0;
    const bool isHovered = (option.state & QStyle::State_MouseOver) != 0;
    if (!(option.state & QStyle::State_Enabled)) {
        return set ? ToggleLook{mixed(tokens.window, tokens.markOff, 0.35), tokens.secondary, tokens.secondary}
                   : ToggleLook{mixed(tokens.unsetFlag, tokens.window, 0.5), tokens.disabledText, tokens.disabledText};
    }
    if (set) {
        const QColor fill = isDown ? pressed(tone) : isHovered ? hovered(tone) : tone;
        return {fill, tokens.badgeText, tokens.badgeText};
    }
    const QColor fill = isDown ? tokens.buttonPressed : isHovered ? tokens.unsetFlagHover : tokens.unsetFlag;
    return {fill, tokens.secondary, tokens.buttonText};
}

} // namespace

ToggleButton::ToggleButton(const QString &text, Tone tone, QWidget *parent)
    : QPushButton(text, parent)
    , m_tone(tone)
{
    setCheckable(true);
    // Return belongs to the dialog's or window's own button.
    setAutoDefault(false);
    setAttribute(Qt::WA_Hover);
}

QSize ToggleButton::sizeHint() const
{
    const int textWidth = fontMetrics().size(Qt::TextShowMnemonic, text()).width();
    return {textWidth + labelMargins + 2 * focusGutter, toggleHeight(fontMetrics()) + 2 * focusGutter};
}

QRectF ToggleButton::textRect() const
{
    return QRectF(rect()).adjusted(focusGutter + textStart, 0, -focusGutter - textEnd, 0);
}

QString ToggleButton::shownText() const
{
    return fontMetrics().elidedText(
        text(), Qt::ElideRight, static_cast<int>(std::ceil(textRect().width())), Qt::TextShowMnemonic);
}

bool ToggleButton::isElided() const
{
    return shownText() != text();
}

QColor ToggleButton::toneColour() const
{
    const LookTokens &tokens = LookTokens::current();
    switch (m_tone) {
    case Tone::Accent:
        return tokens.accent;
    case Tone::Instrument:
        return tokens.instrument;
    case Tone::Usage:
        return tokens.usage;
    case Tone::Style:
        return tokens.style;
    }
    return tokens.accent;
}

bool ToggleButton::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip && toolTip().isEmpty() && isElided()) {
        QString label = text();
        label.remove(u'&');
        QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), label, this);
        return true;
    }
    return QPushButton::event(event);
}

void ToggleButton::paintEvent(QPaintEvent * /*event*/)
{
    QStyleOptionButton option;
    initStyleOption(&option);
    const ToggleLook look = lookOf(option, toneColour());

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF panel = QRectF(rect()).adjusted(focusGutter, focusGutter, -focusGutter, -focusGutter);
    painter.setPen(Qt::NoPen);
    painter.setBrush(look.fill);
    painter.drawRoundedRect(panel, controlRadius, controlRadius);

    const QPointF centre(panel.left() + lampCentre, panel.center().y());
    if (isChecked()) {
        painter.setBrush(look.lamp);
        painter.drawEllipse(centre, discRadius, discRadius);
    } else {
        painter.setPen(QPen(look.lamp, ringLine));
        painter.setBrush(Qt::NoBrush);
        painter.drawEllipse(centre, ringRadius, ringRadius);
    }

    painter.setPen(look.text);
    const bool underlined = style()->styleHint(QStyle::SH_UnderlineShortcut, &option, this) != 0;
    painter.drawText(textRect(),
        Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine
            | (underlined ? Qt::TextShowMnemonic : Qt::TextHideMnemonic),
        shownText());

    if (hasFocus()) {
        QStyleOptionFocusRect ring;
        ring.initFrom(this);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &ring, &painter, this);
    }
}
