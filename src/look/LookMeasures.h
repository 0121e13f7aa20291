#pragma once

#include <QFont>
#include <QFontMetrics>
#include <QSize>

class QScreen;

/// Fonts and sizes, all derived from the application font, in device-independent pixels. No font family is ever
/// named, and a width of text is always measured.
namespace LookMeasures {

/// The steps that margins and gaps are taken from: 2, 4, 6, 8, 12, 16, 24.
inline constexpr int tinyGap = 2;
inline constexpr int smallGap = 4;
inline constexpr int symbolGap = 6; ///< Between a symbol and its label
inline constexpr int gap = 8;
inline constexpr int columnPadding = 12;
inline constexpr int wideGap = 16;
inline constexpr int detailsPadding = 24;

/// What a button or toggle keeps free around its panel for the focus ring. Layouts around them take it off: a gap of
/// 6 between two toggles is spacing 0, a gap of 8 between buttons spacing 2, a margin of 12 is 9.
inline constexpr int focusGutter = 3;
inline constexpr int focusRingWidth = 2;

inline constexpr int controlRadius = 6; ///< Buttons, toggles, fields
inline constexpr int rowRadius = 5; ///< Rows and bands
inline constexpr int badgeRadius = 4;
inline constexpr int focusRingRadius = controlRadius + 2;

inline constexpr int hairline = 1;
inline constexpr int rowInset = 4; ///< From the list's edge to band, hover and selection
inline constexpr int pillWidth = 3;
inline constexpr int buttonPadding = 8;
inline constexpr int dialogButtonPadding = 18;
inline constexpr int dialogButtonMinimumWidth = 80;
inline constexpr int barButtonMaximumWidth = 160 + 2 * focusGutter; ///< As a widget, gutter included
inline constexpr int fieldInset = 6; ///< From a field's edge to its text
inline constexpr int textEditFrame = 6;
inline constexpr int badgePadding = 5;

inline constexpr int emptyStateSymbolSize = 40;
inline constexpr int messageSymbolSize = 32;

inline constexpr int scrollBarExtent = 11;
inline constexpr int scrollBarHandle = 6;
inline constexpr int scrollBarHandleMinimum = 36;

inline constexpr int detailsContentMaximum = 640; ///< Widest contents of the details column

[[nodiscard]] QFont titleFont(const QFont &base); ///< The patch name: larger, demi-bold
[[nodiscard]] QFont strongFont(const QFont &base); ///< Headers and titles of messages: demi-bold
[[nodiscard]] QFont footnoteFont(const QFont &base); ///< Footnotes, status bar: smaller
[[nodiscard]] QFont badgeFont(const QFont &base); ///< Smaller and demi-bold, never below 8 pt

/// The size at which something shows as much as at `size` where a line of text is 16 pixels high, as 10 points are at
/// 96 dpi. Smaller text makes nothing smaller.
[[nodiscard]] QSize scaledToText(const QSize &size, const QFontMetrics &metrics);

/// The most that a window may be on this screen: what the desktop leaves free, without the window's frame.
[[nodiscard]] QSize roomForWindow(const QScreen &screen);

/// The metrics are those of the application font, except for badgeHeight().
[[nodiscard]] int rowHeight(const QFontMetrics &metrics);
[[nodiscard]] int symbolSize(const QFontMetrics &metrics);
[[nodiscard]] int tickSize(const QFontMetrics &metrics);
/// Heights of the panel that is seen; a button's and a toggle's widget is higher by two gutters.
[[nodiscard]] int buttonHeight(const QFontMetrics &metrics);
[[nodiscard]] int toggleHeight(const QFontMetrics &metrics);
[[nodiscard]] int fieldHeight(const QFontMetrics &metrics);
[[nodiscard]] int menuBarItemHeight(const QFontMetrics &metrics);
/// Takes the metrics of badgeFont().
[[nodiscard]] int badgeHeight(const QFontMetrics &badgeMetrics);
/// A badge in a row of a list is cut down to this.
[[nodiscard]] int rowBadgeHeight(const QFontMetrics &metrics, const QFontMetrics &badgeMetrics);

} // namespace LookMeasures
