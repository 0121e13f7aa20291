#include "PatchName.h"

#include "Utf8Text.h"

#include <QVarLengthArray>

#include <algorithm>
#include <iterator>

namespace PatchName {

QString unreadable()
{
    return QStringLiteral("_error_");
}

QString getStringFrom16UInt8(QByteArrayView data, qsizetype size)
{
    Q_UNUSED(size)
    return decodeField(data).value_or(unreadable());
}

std::optional<QString> decodeField(QByteArrayView data)
{
    QVarLengthArray<char, fieldSize> text;
    std::remove_copy(data.begin(), data.end(), std::back_inserter(text), '\0');
    return Utf8Text::decode(QByteArrayView(text.data(), text.size()));
}

QByteArray encodeField(const QString &name)
{
    QByteArray field = Utf8Text::firstCharacters(name, fieldSize).toUtf8();
    if (field.size() < fieldSize) {
        field.append(fieldSize - field.size(), '\0');
    }
    return field;
}

QString fitted(const QString &name)
{
    QString text = name;
    text.remove(QChar(u'\0'));
    return Utf8Text::longestPrefixWithin(text, fieldSize);
}

} // namespace PatchName
