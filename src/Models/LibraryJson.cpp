#include "LibraryJson.h"

#include "LibraryJsonReader.h"

#include <nlohmann/json.hpp>

namespace LibraryJson {

namespace {

/// Each patch is written out at once, so that a large library never stands in memory as a tree.
std::string patchText(const VelgorPatch &patch)
{
    nlohmann::ordered_json object;
    for (const PatchJsonField &field : patchJsonFields()) {
        if (field.text) {
            object[field.key] = (patch.*(field.text)).toStdString();
        } else if (field.flag) {
            object[field.key] = patch.*(field.flag);
        } else if (qstrcmp(field.key, "id") == 0) {
            object[field.key] = patch.id();
        } else {
            object[field.key] = patch.date.seconds;
        }
    }
    return object.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

} // namespace

QByteArray encodePatch(const VelgorPatch &patch)
{
    return QByteArray::fromStdString(patchText(patch));
}

QByteArray encode(const Content &library)
{
    constexpr qsizetype usualPatchSize = 256;
    QByteArray text;
    text.reserve(library.patches.size() * usualPatchSize);
    text += R"({"patches":[)";
    for (const VelgorPatch &patch : library.patches) {
        if (&patch != &library.patches.first()) {
            text += ',';
        }
        const std::string object = patchText(patch);
        text.append(object.data(), static_cast<qsizetype>(object.size()));
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
    LibraryJsonReader reader;
    const bool isComplete = nlohmann::json::sax_parse(text.begin(), text.end(), &reader);
    return isComplete ? reader.result() : std::nullopt;
}

} // namespace LibraryJson
