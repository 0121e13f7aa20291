#include "ToggleButton.h"

#include "ColourMix.h"
#include "LookMeasures.h"
#include "LookTokens.h"
#include "RoundedFill.h"

#include <QEvent>
#include <QHelpEvent>
#include <QPainter>
#include <QStyleOptionButton>
#include <QToolTip>

#include <cmath>

using namespace LookMeasures;

namespace {

constexpr double boxCentre = 10.5;
constexpr double boxLine = 1.25;
constexpr double boxSize = 7;
constexpr double boxRadius = 1.5;
constexpr double tickLine = 1.75;
constexpr double textStart = 19.5;
constexpr int textEnd = 3;
constexpr int labelMargins = 23;

/// The box grows with the text.
double scaleOf(const QFontMetrics &metrics)
{
    constexpr double usualSymbol = 16;
    return symbolSize(metrics) / usualSymbol;
}

struct ToggleLook {
    QColor fill;
    QColor mark;
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
    const int margins = static_cast<int>(std::ceil(labelMargins * scaleOf(fontMetrics())));
    return {textWidth + margins + 2 * focusGutter, toggleHeight(fontMetrics()) + 2 * focusGutter};
}

QRectF ToggleButton::textRect() const
{
    return QRectF(rect()).adjusted(focusGutter + textStart * scaleOf(fontMetrics()), 0, -focusGutter - textEnd, 0);
}

QString ToggleButton::shownText() const
{
    return fontMetrics().elidedText(
        text(), Qt::ElideRight, static_cast<int>(std::ceil(textRect().width())), Qt::TextShowMnemonic);
}

QColor ToggleButton::toneColour(Tone tone)
{
    const LookTokens &tokens = LookTokens::current();
    switch (tone) {
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
    const ToggleLook look = lookOf(option, toneColour(m_tone));

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF panel = QRectF(rect()).adjusted(focusGutter, focusGutter, -focusGutter, -focusGutter);
    fillRounded(painter, panel, look.fill, controlRadius);

    const double scale = scaleOf(fontMetrics());
    painter.save();
    painter.translate(panel.left() + boxCentre * scale, panel.center().y());
    painter.scale(scale, scale);
    painter.setBrush(Qt::NoBrush);
    if (isChecked()) {
        painter.setPen(QPen(look.mark, tickLine, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawPolyline(QPolygonF{{-3.5, 0.25}, {-1, 2.75}, {3.75, -3}});
    } else {
        painter.setPen(QPen(look.mark, boxLine));
        painter.drawRoundedRect(QRectF(-boxSize / 2, -boxSize / 2, boxSize, boxSize), boxRadius, boxRadius);
    }
    painter.restore();

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
