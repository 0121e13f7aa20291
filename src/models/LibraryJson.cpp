#include "LibraryJson.h"

#include "LibraryJsonReader.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace LibraryJson {

namespace {

constexpr qsizetype usualPatchSize = 320; // bytes of text
constexpr qsizetype usualIndent = 130; // the same, for spaces and ends of lines

/// A field and what stands before its value: the bracket or the comma, and the key.
struct Member {
    const PatchField *field;
    QByteArray lead;
    QByteArray on = lead + "true"; ///< the same with a value
    QByteArray off = lead + "false";
};

/// How patches are written.
struct Form {
    QList<Member> members;
    QByteArray end = "}"; ///< of a patch
    QByteArray aroundId = {};
};

Form storedForm(PatchFields::Rows rows)
{
    Form form;
    for (const PatchField &field : rows) {
        form.members.append({&field, (form.members.isEmpty() ? "{\"" : ",\"") + QByteArray(field.key) + "\":"});
    }
    return form;
}

Form listedForm()
{
    Form form{.members = {}, .end = "\n    }", .aroundId = "\""};
    for (const PatchField &field : PatchFields::all()) {
        form.members.append(
            {&field, (form.members.isEmpty() ? "    {\n      \"" : ",\n      \"") + QByteArray(field.key) + "\": "});
    }
    return form;
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
void appendPatch(QByteArray &text, const VelgorPatch &patch, const Form &form)
{
    for (const auto &[field, lead, on, off] : form.members) {
        if (field->flag) {
            text += patch.*field->flag ? on : off;
            continue;
        }
        text += lead;
        if (field->text) {
            appendText(text, patch.*field->text);
        } else if (field->date) {
            appendNumber(text, (patch.*field->date).seconds);
        } else {
            text += form.aroundId + QByteArray::number(patch.id()) + form.aroundId;
        }
    }
    text += form.end;
}

void appendPatches(QByteArray &text, const QList<VelgorPatch> &patches, const Form &form, QByteArrayView between)
{
    for (const VelgorPatch &patch : patches) {
        if (&patch != &patches.first()) {
            text += between;
        }
        appendPatch(text, patch, form);
    }
}

} // namespace

QByteArray encodePatch(const VelgorPatch &patch, PatchFields::Rows rows)
{
    QByteArray text;
    appendPatch(text, patch, storedForm(rows));
    return text;
}

QByteArray listing(const QList<VelgorPatch> &patches)
{
    QByteArray text;
    text.reserve(patches.size() * (usualPatchSize + usualIndent));
    appendPatches(text, patches, listedForm(), ",\n");
    return text;
}

QByteArray encode(const LibraryState &library, PatchFields::Rows rows)
{
    QByteArray text;
    text.reserve(library.patches.size() * usualPatchSize);
    text += R"({"patches":[)";
    appendPatches(text, library.patches, storedForm(rows), ",");
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
