#include "ShownName.h"

#include "Utf8Text.h"

QString shownName(const QString &name)
{
    constexpr qsizetype longest = 80;
    const QString line = name.simplified();
    const QString start = Utf8Text::firstCharacters(line, longest);
    return start.size() < line.size() ? start + u'\u2026' : line;
}
