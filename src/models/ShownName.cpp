#include "ShownName.h"

#include "Utf8Text.h"

#include <QFileInfo>
#include <QList>

#include <algorithm>

namespace {

/// Characters that open or close runs of one direction: one that the text left open, or that closes what is around
/// it, would turn the rest of the sentence round.
bool isDirectionMark(QChar character)
{
    return (character >= u'\u202a' && character <= u'\u202e') || (character >= u'\u2066' && character <= u'\u2069');
}

/// Without direction marks, but for pairs that isolate what is between them, as a sentence has around a name.
QString withoutDirectionMarks(const QString &text)
{
    QString plain;
    plain.reserve(text.size());
    qsizetype opened = -1; // in `plain`
    for (const QChar character : text) {
        if (character == u'\u2068') {
            if (opened >= 0) {
                plain.remove(opened, 1);
            }
            opened = plain.size();
            plain.append(character);
        } else if (character == u'\u2069' && opened >= 0) {
            plain.append(character);
            opened = -1;
        } else if (!isDirectionMark(character)) {
            plain.append(character);
        }
    }
    if (opened >= 0) {
        plain.remove(opened, 1);
    }
    return plain;
}

bool isRightToLeft(char32_t character)
{
    switch (QChar::direction(character)) {
    case QChar::DirR:
    case QChar::DirAL:
    case QChar::DirAN:
        return true;
    default:
        return false;
    }
}

} // namespace

QString isolated(const QString &text)
{
    QString plain = withoutDirectionMarks(text);
    const QList<uint> characters = plain.toUcs4();
    const bool isIsolated = plain.startsWith(u'\u2068') && plain.indexOf(u'\u2069') == plain.size() - 1;
    if (isIsolated || std::none_of(characters.begin(), characters.end(), isRightToLeft)) {
        return plain;
    }
    return u'\u2068' + plain + u'\u2069';
}

QString shownName(const QString &name)
{
    constexpr qsizetype longest = 80;
    const QString line = name.simplified();
    const QString start = Utf8Text::firstCharacters(line, longest);
    return isolated(start.size() < line.size() ? start + u'\u2026' : line);
}

QString shownFileName(const QString &path)
{
    return shownName(QFileInfo(path).fileName());
}

QString shownPath(const QString &path)
{
    constexpr qsizetype longest = 120;
    const QList<uint> characters = path.simplified().toUcs4();
    if (characters.size() <= longest) {
        return isolated(path.simplified());
    }
    const auto part = [&characters](qsizetype from) {
        return QString::fromUcs4(reinterpret_cast<const char32_t *>(characters.constData() + from), longest / 2);
    };
    return isolated(part(0) + u'\u2026' + part(characters.size() - longest / 2));
}
