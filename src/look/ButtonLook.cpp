#include "ButtonLook.h"

#include "ColourMix.h"
#include "LookTokens.h"

#include <QDialogButtonBox>
#include <QStyleOptionButton>
#include <QVariant>

namespace {

/// The fill that fits the state, of the three that a neutral control has.
QColor chosen(QStyle::State state, const QColor &rest, const QColor &underPointer, const QColor &down)
{
    if (state & QStyle::State_Sunken) {
        return down;
    }
    return state & QStyle::State_MouseOver ? underPointer : rest;
}

QColor deepened(QStyle::State state, const QColor &fill)
{
    return chosen(state, fill, hovered(fill), pressed(fill));
}

} // namespace

ButtonLook ButtonLook::of(const QStyleOptionButton &option, const QWidget *widget)
{
    const LookTokens &tokens = LookTokens::current();
    const QStyle::State state = option.state;
    const bool isPlain = isVariant(widget, "plain") || (option.features & QStyleOptionButton::Flat);
    const bool isDestructive = isVariant(widget, "destructive");
    const bool isStrong = isVariant(widget, "strong");
    const bool isChecked = state & QStyle::State_On;
    const bool isDefault = option.features & QStyleOptionButton::DefaultButton;

    if (!(state & QStyle::State_Enabled)) {
        const QColor fill = isPlain ? QColor() : mixed(tokens.button, tokens.window, 0.5);
        return {fill, tokens.disabledText, tokens.disabledText};
    }
    if (!isDestructive && (isVariant(widget, "lead") || isDefault || (isStrong && isChecked))) {
        return {deepened(state, tokens.accent), tokens.badgeText, tokens.badgeText};
    }
    if (isStrong) {
        const QColor fill = chosen(state, tokens.strong, tokens.strongHover, pressed(tokens.strong));
        return {fill, tokens.badgeText, tokens.badgeText};
    }
    if (isChecked) {
        return {chosen(state, tokens.selection, mixed(tokens.selection, tokens.text, 0.04),
                    mixed(tokens.selection, tokens.text, 0.08)),
            tokens.highlightedText, tokens.accentText};
    }
    const QColor label = isDestructive ? tokens.destructive : tokens.buttonText;
    return {chosen(state, isPlain ? QColor() : tokens.button, tokens.buttonHover, tokens.buttonPressed), label, label};
}

bool isVariant(const QWidget *widget, const char *name)
{
    return widget && widget->property(name).toBool();
}

bool isRoomy(const QWidget *widget)
{
    return isVariant(widget, "roomy") || isVariant(widget, "strong")
        || (widget && qobject_cast<const QDialogButtonBox *>(widget->parentWidget()));
}
