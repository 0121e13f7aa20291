#pragma once

#include <QColor>
#include <QPalette>

/// Every colour of the window, for one scheme. Those that a palette role can carry are in palette() as well, and
/// plain widgets take them from there; what paints itself reads current() while painting and keeps no copy, so that
/// a change of the scheme needs nothing but a repaint.
struct LookTokens {
    bool isDark = false;

    QColor window; ///< Bars, details, dialogs, disabled fields
    QColor base; ///< Lists, fields, menus
    QColor bankBand; ///< Every second bank of a list (role AlternateBase)
    QColor text;
    QColor secondary; ///< Labels, counts, footnotes, placeholders (role PlaceholderText)
    QColor disabledText;
    QColor separator; ///< Hairlines (role Mid)
    QColor fieldBorder; ///< (role Dark)
    QColor markOff; ///< Unlit speaker and tick; on a selected row `secondary` takes its place

    QColor selection; ///< In the list that has the focus
    QColor highlightedText; ///< Every text on `selection`
    QColor selectionPill; ///< Also the edge around the target of a drop
    QColor selectionInactive; ///< In a list without the focus; text on it is `text`
    QColor selectionInactivePill;
    QColor rowHover;

    QColor button; ///< The asset colour "buttonColor": the fill of action buttons
    QColor buttonHover;
    QColor buttonPressed;
    QColor buttonText;
    QColor strong; ///< The fill of "Default", under `badgeText`
    QColor strongHover;
    QColor unsetFlag; ///< The fill of a toggle that is not set
    QColor unsetFlagHover;

    QColor accent; ///< The asset colour "AccentColor", as a fill; also the colour of firmware 1
    QColor accentText; ///< The accent as text or mark (role Link)
    QColor instrument; ///< The asset colour "InstrumentColor"
    QColor usage; ///< The asset colour "UsageColor" (role LinkVisited)
    QColor style; ///< The asset colour "StyleColor"
    QColor badgeText; ///< Text on accent, instrument, usage, style and strong

    QColor destructive; ///< The label of a button that destroys (role BrightText)
    QColor warning; ///< The symbol of messages
    QColor dropFill; ///< Rows that a drag would fill
    QColor focusRing;
    QColor toolTip;
    QColor toolTipText;
    QColor bevelLight;
    QColor bevelMidlight;
    QColor bevelShadow;

    [[nodiscard]] static LookTokens light();
    [[nodiscard]] static LookTokens dark();

    /// The scheme in use, light until applyLook() says otherwise.
    [[nodiscard]] static const LookTokens &current();

    /// Sets every role of every group.
    [[nodiscard]] QPalette palette() const;
};

/// Puts the light or the dark scheme on the whole application: tokens, palette, cached symbols. May be called at any
/// time and any number of times; the windows that are open repaint themselves. Texts with a colour written into them
/// must be set again on QEvent::PaletteChange. VelgorStyle is installed apart from this, before the first call.
void applyLook(bool dark);
