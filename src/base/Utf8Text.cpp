#include "Utf8Text.h"

namespace Utf8Text {

namespace {

/// Length in UTF-16 units of the character that starts at `index`.
qsizetype unitsAt(const QString &text, qsizetype index)
{
    const bool isPair =
        text.at(index).isHighSurrogate() && index + 1 < text.size() && text.at(index + 1).isLowSurrogate();
    return isPair ? 2 : 1;
}

} // namespace

std::optional<QString> decode(QByteArrayView bytes)
{
    if (!bytes.isValidUtf8()) {
        return std::nullopt;
    }
    QString text = QString::fromUtf8(bytes);
    // At the start, Qt takes it for a sign of the encoding and leaves it out.
    if (bytes.startsWith("\xEF\xBB\xBF")) {
        text.prepend(QChar::ByteOrderMark);
    }
    return text;
}

QString firstCharacters(const QString &text, qsizetype count)
{
    qsizetype end = 0;
    for (qsizetype taken = 0; taken < count && end < text.size(); ++taken) {
        end += unitsAt(text, end);
    }
    return text.left(end);
}

QString longestPrefixWithin(const QString &text, qsizetype byteLimit)
{
    // A UTF-16 unit takes three bytes at most.
    if (text.size() * 3 <= byteLimit || text.toUtf8().size() <= byteLimit) {
        return text;
    }
    qsizetype end = 0;
    qsizetype bytes = 0;
    while (end < text.size()) {
        const qsizetype units = unitsAt(text, end);
        bytes += QStringView(text).mid(end, units).toUtf8().size();
        if (bytes > byteLimit) {
            break;
        }
        end += units;
    }
    return text.left(end);
}

QByteArray caselessKey(const QString &text)
{
    return text.toLower().toUtf8();
}

} // namespace Utf8Text
