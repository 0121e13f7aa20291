#include "LibraryJson.h"

#include "LibraryJsonReader.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>

namespace LibraryJson {

namespace {

constexpr qsizetype usualPatchSize = 320; // bytes of text

/// What stands before each value of a patch: the bracket or the comma, and the key.
const std::array<QByteArray, patchJsonFieldCount> &leads()
{
    static const std::array<QByteArray, patchJsonFieldCount> texts = [] {
        std::array<QByteArray, patchJsonFieldCount> result;
        for (std::size_t i = 0; i < result.size(); ++i) {
            result.at(i) = (i == 0 ? "{\"" : ",\"") + QByteArray(patchJsonFields().at(i).key) + "\":";
        }
        return result;
    }();
    return texts;
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
void appendPatch(QByteArray &text, const VelgorPatch &patch)
{
    for (std::size_t i = 0; i < patchJsonFieldCount; ++i) {
        const PatchJsonField &field = patchJsonFields()[i];
        text += leads()[i];
        if (field.text) {
            appendText(text, patch.*(field.text));
        } else if (field.flag) {
            text += patch.*(field.flag) ? "true" : "false";
        } else if (qstrcmp(field.key, "id") == 0) {
            text += QByteArray::number(patch.id());
        } else {
            appendNumber(text, patch.date.seconds);
        }
    }
    text += '}';
}

} // namespace

QByteArray encodePatch(const VelgorPatch &patch)
{
    QByteArray text;
    appendPatch(text, patch);
    return text;
}

QByteArray encode(const Content &library)
{
    QByteArray text;
    text.reserve(library.patches.size() * usualPatchSize);
    text += R"({"patches":[)";
    for (const VelgorPatch &patch : library.patches) {
        if (&patch != &library.patches.first()) {
            text += ',';
        }
        appendPatch(text, patch);
    }
    text += R"(],"defaultPatch":)";
    text += library.defaultPatch ? QByteArray::number(*library.defaultPatch) : QByteArray("null");
    text += '}';
    return text;
}

std::optional<Content> decode(const QByteArray &text)
{
    // The parser would take a zero byte for the end of the text, and a file with a tail of zeros for a whole one.
    if (text.contains('\0')) {
        return std::nullopt;
    }
    LibraryJsonReader reader(text.size() / usualPatchSize);
    const bool isComplete = nlohmann::json::sax_parse(text.begin(), text.end(), &reader);
    return isComplete ? reader.result() : std::nullopt;
}

} // namespace LibraryJson
