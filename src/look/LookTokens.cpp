#include "LookTokens.h"

#include <QApplication>
#include <QPixmapCache>
#include <QToolTip>

#include <iterator>

namespace {

struct Row {
    QColor LookTokens::*token;
    QRgb light;
    QRgb dark;
};

constexpr Row table[] = {
    {&LookTokens::window, 0xF2F5F5, 0x1C2123},
    {&LookTokens::base, 0xFFFFFF, 0x141819},
    {&LookTokens::bankBand, 0xF3F7F7, 0x1A2022},
    {&LookTokens::text, 0x161D1F, 0xDCE3E3},
    {&LookTokens::secondary, 0x566265, 0x98A4A7},
    {&LookTokens::disabledText, 0x9AA4A6, 0x5F6A6D},
    {&LookTokens::separator, 0xDCE2E3, 0x2C3336},
    {&LookTokens::fieldBorder, 0x848F92, 0x6C787C},
    {&LookTokens::markOff, 0x7A8588, 0x747F83},
    {&LookTokens::selection, 0xD3EBE8, 0x1C4543},
    {&LookTokens::highlightedText, 0x0F1C1D, 0xEEF5F4},
    {&LookTokens::selectionPill, 0x0C7972, 0x56C0B6},
    {&LookTokens::selectionInactive, 0xE4E9EA, 0x2A3235},
    {&LookTokens::selectionInactivePill, 0x7B878A, 0x7C888C},
    {&LookTokens::rowHover, 0xEEF2F2, 0x1B2122},
    {&LookTokens::button, 0xE2E8E9, 0x2D3539},
    {&LookTokens::buttonHover, 0xD8DFE1, 0x374145},
    {&LookTokens::buttonPressed, 0xCBD4D6, 0x252C2F},
    {&LookTokens::buttonText, 0x1B2426, 0xDFE6E6},
    {&LookTokens::strong, 0x4C5A5E, 0x48565B},
    {&LookTokens::strongHover, 0x415055, 0x536267},
    {&LookTokens::unsetFlag, 0xE2E8E9, 0x2A3235},
    {&LookTokens::unsetFlagHover, 0xD8DFE1, 0x343E42},
    {&LookTokens::accent, 0x0C7972, 0x177E77},
    {&LookTokens::accentText, 0x0B716B, 0x5CC4BA},
    {&LookTokens::instrument, 0x3C61A7, 0x476DB4},
    {&LookTokens::usage, 0x854888, 0x915495},
    {&LookTokens::style, 0x954C28, 0xA25834},
    {&LookTokens::badgeText, 0xFFFFFF, 0xFFFFFF},
    {&LookTokens::destructive, 0xB3282D, 0xFF8A83},
    {&LookTokens::warning, 0x855300, 0xE3AD5C},
    {&LookTokens::dropFill, 0xE2F3F1, 0x163A38},
    {&LookTokens::focusRing, 0x0B716B, 0x63CEC4},
    {&LookTokens::toolTip, 0x20292B, 0x333C40},
    {&LookTokens::toolTipText, 0xF2F6F6, 0xEDF2F2},
    {&LookTokens::bevelLight, 0xFFFFFF, 0x343D40},
    {&LookTokens::bevelMidlight, 0xEDF1F1, 0x2F373A},
    {&LookTokens::bevelShadow, 0x6B7679, 0x000000},
};
static_assert(
    sizeof(LookTokens) == alignof(QColor) + std::size(table) * sizeof(QColor), "a colour without a row is none");

LookTokens schemeOf(bool isDark)
{
    LookTokens tokens;
    tokens.isDark = isDark;
    for (const Row &row : table) {
        tokens.*row.token = isDark ? row.dark : row.light;
    }
    return tokens;
}

LookTokens &currentTokens()
{
    static LookTokens tokens = LookTokens::light();
    return tokens;
}

} // namespace

LookTokens LookTokens::light()
{
    return schemeOf(false);
}

LookTokens LookTokens::dark()
{
    return schemeOf(true);
}

const LookTokens &LookTokens::current()
{
    return currentTokens();
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

void applyLook(bool dark)
{
    currentTokens() = dark ? LookTokens::dark() : LookTokens::light();
    const QPalette palette = LookTokens::current().palette();
    QApplication::setPalette(palette);
    // A desktop's theme may have given tool tips a palette of their own.
    QToolTip::setPalette(palette);
    QPixmapCache::clear();
}
