#include "LookTokens.h"

namespace {

LookTokens &currentTokens()
{
    static LookTokens tokens = LookTokens::light();
    return tokens;
}

} // namespace

LookTokens LookTokens::light()
{
    return {
        .isDark = false,
        .window = QColor(0xF2F5F5),
        .base = QColor(0xFFFFFF),
        .bankBand = QColor(0xF3F7F7),
        .text = QColor(0x161D1F),
        .secondary = QColor(0x566265),
        .disabledText = QColor(0x9AA4A6),
        .separator = QColor(0xDCE2E3),
        .fieldBorder = QColor(0x848F92),
        .markOff = QColor(0x7A8588),
        .selection = QColor(0xD3EBE8),
        .highlightedText = QColor(0x0F1C1D),
        .selectionPill = QColor(0x0C7972),
        .selectionInactive = QColor(0xE4E9EA),
        .selectionInactivePill = QColor(0x7B878A),
        .rowHover = QColor(0xEEF2F2),
        .button = QColor(0xE2E8E9),
        .buttonHover = QColor(0xD8DFE1),
        .buttonPressed = QColor(0xCBD4D6),
        .buttonText = QColor(0x1B2426),
        .strong = QColor(0x4C5A5E),
        .strongHover = QColor(0x415055),
        .unsetFlag = QColor(0xE2E8E9),
        .unsetFlagHover = QColor(0xD8DFE1),
        .accent = QColor(0x0C7972),
        .accentText = QColor(0x0B716B),
        .instrument = QColor(0x3C61A7),
        .usage = QColor(0x854888),
        .style = QColor(0x954C28),
        .badgeText = QColor(0xFFFFFF),
        .destructive = QColor(0xB3282D),
        .warning = QColor(0x855300),
        .dropFill = QColor(0xE2F3F1),
        .focusRing = QColor(0x0B716B),
        .toolTip = QColor(0x20292B),
        .toolTipText = QColor(0xF2F6F6),
        .bevelLight = QColor(0xFFFFFF),
        .bevelMidlight = QColor(0xEDF1F1),
        .bevelShadow = QColor(0x6B7679),
    };
}

LookTokens LookTokens::dark()
{
    return {
        .isDark = true,
        .window = QColor(0x1C2123),
        .base = QColor(0x141819),
        .bankBand = QColor(0x1A2022),
        .text = QColor(0xDCE3E3),
        .secondary = QColor(0x98A4A7),
        .disabledText = QColor(0x5F6A6D),
        .separator = QColor(0x2C3336),
        .fieldBorder = QColor(0x6C787C),
        .markOff = QColor(0x747F83),
        .selection = QColor(0x1C4543),
        .highlightedText = QColor(0xEEF5F4),
        .selectionPill = QColor(0x56C0B6),
        .selectionInactive = QColor(0x2A3235),
        .selectionInactivePill = QColor(0x7C888C),
        .rowHover = QColor(0x1B2122),
        .button = QColor(0x2D3539),
        .buttonHover = QColor(0x374145),
        .buttonPressed = QColor(0x252C2F),
        .buttonText = QColor(0xDFE6E6),
        .strong = QColor(0x48565B),
        .strongHover = QColor(0x536267),
        .unsetFlag = QColor(0x2A3235),
        .unsetFlagHover = QColor(0x343E42),
        .accent = QColor(0x177E77),
        .accentText = QColor(0x5CC4BA),
        .instrument = QColor(0x476DB4),
        .usage = QColor(0x915495),
        .style = QColor(0xA25834),
        .badgeText = QColor(0xFFFFFF),
        .destructive = QColor(0xFF8A83),
        .warning = QColor(0xE3AD5C),
        .dropFill = QColor(0x163A38),
        .focusRing = QColor(0x63CEC4),
        .toolTip = QColor(0x333C40),
        .toolTipText = QColor(0xEDF2F2),
        .bevelLight = QColor(0x343D40),
        .bevelMidlight = QColor(0x2F373A),
        .bevelShadow = QColor(0x000000U),
    };
}

const LookTokens &LookTokens::current()
{
    return currentTokens();
}

void LookTokens::setCurrent(const LookTokens &tokens)
{
    currentTokens() = tokens;
}

QPalette LookTokens::palette() const
{
    QPalette result;
    const auto set = [&result](QPalette::ColorRole role, const QColor &colour) {
        result.setColor(QPalette::All, role, colour);
    };
    set(QPalette::Window, window);
    set(QPalette::Base, base);
    set(QPalette::AlternateBase, bankBand);
    set(QPalette::WindowText, text);
    set(QPalette::Text, text);
    set(QPalette::PlaceholderText, secondary);
    set(QPalette::Mid, separator);
    set(QPalette::Dark, fieldBorder);
    set(QPalette::Light, bevelLight);
    set(QPalette::Midlight, bevelMidlight);
    set(QPalette::Shadow, bevelShadow);
    set(QPalette::Button, button);
    set(QPalette::ButtonText, buttonText);
    set(QPalette::Highlight, selectionInactive);
    set(QPalette::HighlightedText, highlightedText);
    set(QPalette::Link, accentText);
    set(QPalette::LinkVisited, usage);
    set(QPalette::BrightText, destructive);
    set(QPalette::ToolTipBase, toolTip);
    set(QPalette::ToolTipText, toolTipText);
    result.setColor(QPalette::Active, QPalette::Highlight, selection);
    result.setColor(QPalette::Disabled, QPalette::Base, window);
    for (const QPalette::ColorRole role :
        {QPalette::WindowText, QPalette::Text, QPalette::PlaceholderText, QPalette::ButtonText,
            QPalette::HighlightedText, QPalette::Link, QPalette::LinkVisited, QPalette::BrightText}) {
        result.setColor(QPalette::Disabled, role, disabledText);
    }
    return result;
}
