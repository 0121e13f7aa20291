#include "PatchName.h"

#include "Utf8Text.h"

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
    QByteArray text = data.toByteArray();
    text.removeIf([](char byte) { return byte == '\0'; });
    return Utf8Text::decode(text);
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
