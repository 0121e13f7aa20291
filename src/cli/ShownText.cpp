#include "ShownText.h"

#include <QList>

#include <algorithm>
#include <array>
#include <utility>

namespace ShownText {

namespace {

constexpr std::array<std::pair<char32_t, char32_t>, 11> wideRanges{
    {{0x1100, 0x115F}, {0x2E80, 0x303E}, {0x3041, 0x33FF}, {0x3400, 0x4DBF}, {0x4E00, 0x9FFF}, {0xA000, 0xA4CF},
        {0xAC00, 0xD7A3}, {0xF900, 0xFAFF}, {0xFE30, 0xFE6F}, {0xFF00, 0xFF60}, {0x1F300, 0x3FFFD}}};

QString textOf(char32_t character)
{
    // QString::fromUcs4() takes a U+FEFF for a sign of the byte order, and leaves it out.
    return QStringView(QChar::fromUcs4(character)).toString();
}

int widthOf(char32_t character)
{
    const QChar::Category category = QChar::category(character);
    if (category == QChar::Mark_NonSpacing || category == QChar::Mark_Enclosing || category == QChar::Other_Format) {
        return 0;
    }
    const bool isWide = std::any_of(wideRanges.begin(), wideRanges.end(),
        [character](const auto &range) { return character >= range.first && character <= range.second; });
    return isWide ? 2 : 1;
}

/// Characters that do something to a terminal or to the direction of the text around them.
bool isUnsafe(char32_t character)
{
    const bool changesDirection = character == 0x061C || character == 0x200E || character == 0x200F
        || (character >= 0x202A && character <= 0x202E) || (character >= 0x2066 && character <= 0x2069);
    return QChar::category(character) == QChar::Other_Control || character == 0x2028 || character == 0x2029
        || changesDirection;
}

} // namespace

QString escaped(const QString &text)
{
    QString result;
    for (const uint character : text.toUcs4()) {
        if (character == u'\n') {
            result += QStringLiteral("\\n");
        } else if (isUnsafe(character)) {
            result += QStringLiteral("\\u{%1}").arg(character, 0, 16);
        } else {
            result += textOf(character);
        }
    }
    return result;
}

int width(const QString &text)
{
    int columns = 0;
    for (const uint character : text.toUcs4()) {
        columns += widthOf(character);
    }
    return columns;
}

QString padded(const QString &text, int columns)
{
    return text + QString(std::max(0, columns - width(text)), u' ');
}

QString shortened(const QString &text, int columns)
{
    if (width(text) <= columns) {
        return text;
    }
    QString result;
    int used = 1;
    for (const uint character : text.toUcs4()) {
        used += widthOf(character);
        if (used > columns) {
            break;
        }
        result += textOf(character);
    }
    return result + QChar(0x2026);
}

} // namespace ShownText
