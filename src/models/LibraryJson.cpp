#include "LibraryJson.h"

#include "LibraryJsonReader.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace LibraryJson {

namespace {

constexpr qsizetype usualPatchSize = 320; // bytes of text

/// A field and what stands before its value: the bracket or the comma, and the key.
struct Member {
    const PatchField *field;
    QByteArray lead;
};

QList<Member> membersOf(PatchFields::Rows rows)
{
    QList<Member> members;
    for (const PatchField &field : rows) {
        members.append({&field, (members.isEmpty() ? "{\"" : ",\"") + QByteArray(field.key) + "\":"});
    }
    return members;
}

void appendEscaped(QByteArray &text, char byte)
{
    constexpr QByteArrayView escaped("\"\\\b\f\n\r\t");
    constexpr QByteArrayView letters("\"\\bfnrt");
    const qsizetype place = escaped.indexOf(byte);
    if (place >= 0) {
        text.append('\\').append(letters.at(place));
    } else {
        text.append("\\u00").append(QByteArray(1, byte).toHex());
    }
}

void appendText(QByteArray &text, const QString &value)
{
    const QByteArray bytes = value.toUtf8();
    const auto isSpecial = [](char byte) { return static_cast<uchar>(byte) < 0x20 || byte == '"' || byte == '\\'; };
    text += '"';
    const char *rest = bytes.cbegin();
    while (rest != bytes.cend()) {
        const char *special = std::find_if(rest, bytes.cend(), isSpecial);
        text.append(rest, special - rest);
        if (special != bytes.cend()) {
            appendEscaped(text, *special);
            ++special;
        }
        rest = special;
    }
    text += '"';
}

/// The shortest text that comes back to the last bit.
void appendNumber(QByteArray &text, double value)
{
    const std::string number = nlohmann::json(value).dump();
    text.append(number.data(), static_cast<qsizetype>(number.size()));
}

/// Each patch is written out at once, so that a large library never stands in memory as a tree.
void appendPatch(QByteArray &text, const VelgorPatch &patch, const QList<Member> &members)
{
    for (const auto &[field, lead] : members) {
        text += lead;
        if (field->flag) {
            text += patch.*field->flag ? "true" : "false";
        } else if (field->text) {
            appendText(text, patch.*field->text);
        } else if (field->date) {
            appendNumber(text, (patch.*field->date).seconds);
        } else {
            text += QByteArray::number(patch.id());
        }
    }
    text += '}';
}

} // namespace

QByteArray encodePatch(const VelgorPatch &patch, PatchFields::Rows rows)
{
    QByteArray text;
    appendPatch(text, patch, membersOf(rows));
    return text;
}

QByteArray encode(const LibraryState &library, PatchFields::Rows rows)
{
    const QList<Member> members = membersOf(rows);
    QByteArray text;
    text.reserve(library.patches.size() * usualPatchSize);
    text += R"({"patches":[)";
    for (const VelgorPatch &patch : library.patches) {
        if (&patch != &library.patches.first()) {
            text += ',';
        }
        appendPatch(text, patch, members);
    }
    text += R"(],"defaultPatch":)";
    text += library.defaultPatch ? QByteArray::number(*library.defaultPatch) : QByteArray("null");
    text += '}';
    return text;
}

std::optional<LibraryState> decode(const QByteArray &text, PatchFields::Rows rows)
{
    // The parser would take a zero byte for the end of the text, and a file with a tail of zeros for a whole one.
    if (text.contains('\0')) {
        return std::nullopt;
    }
    LibraryJsonReader reader(text.size() / usualPatchSize, rows);
    const bool isComplete = nlohmann::json::sax_parse(text.begin(), text.end(), &reader);
    return isComplete ? reader.result() : std::nullopt;
}

} // namespace LibraryJson
