#include "TransferablePatch.h"

#include "Utf8Text.h"
#include "VelgorContentPatch.h"

#include <nlohmann/json.hpp>

#include <limits>

namespace {

std::optional<QString> textOf(const nlohmann::json &object, const char *key)
{
    const auto found = object.find(key);
    if (found == object.end() || !found->is_string()) {
        return std::nullopt;
    }
    const auto &text = found->get_ref<const std::string &>();
    return Utf8Text::decode(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
}

nlohmann::ordered_json toJson(const TransferablePatch &payload)
{
    nlohmann::ordered_json object;
    if (payload.cid) {
        object["cid"] = payload.cid->toString(QUuid::WithoutBraces).toUpper().toStdString();
    }
    object["id"] = payload.id;
    object["name"] = payload.name.toStdString();
    object["origin"] = payload.origin;
    return object;
}

QByteArray written(const nlohmann::ordered_json &json)
{
    return QByteArray::fromStdString(json.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace));
}

nlohmann::json parsed(const QByteArray &json)
{
    // The parser would take a zero byte for the end of the text.
    return json.contains('\0') ? nlohmann::json() : nlohmann::json::parse(json.begin(), json.end(), nullptr, false);
}

std::optional<TransferablePatch> fromJson(const nlohmann::json &object)
{
    if (!object.is_object()) {
        return std::nullopt;
    }
    TransferablePatch payload;
    if (const auto cid = object.find("cid"); cid != object.end() && !cid->is_null()) {
        const QString text = textOf(object, "cid").value_or(QString());
        const QUuid uuid = QUuid::fromString(text);
        if (uuid.isNull() || uuid.toString(QUuid::WithoutBraces) != text.toLower()) {
            return std::nullopt;
        }
        payload.cid = uuid;
    }
    const auto id = object.find("id");
    const auto origin = object.find("origin");
    const auto name = textOf(object, "name");
    if (id == object.end() || !id->is_number_unsigned() || origin == object.end() || !origin->is_number_integer()
        || !name) {
        return std::nullopt;
    }
    if (origin->is_number_unsigned()
        && origin->get<quint64>() > static_cast<quint64>(std::numeric_limits<qint64>::max())) {
        return std::nullopt;
    }
    payload.id = id->get<quint64>();
    payload.name = *name;
    payload.origin = origin->get<qint64>();
    return payload;
}

} // namespace

TransferablePatch TransferablePatch::ofSlot(const VelgorContentPatch &slot)
{
    return {.cid = slot.id, .id = slot.patch.id(), .name = slot.patch.name, .origin = fromContent};
}

TransferablePatch TransferablePatch::ofLibraryPatch(const VelgorPatch &patch)
{
    return {.cid = std::nullopt, .id = patch.id(), .name = patch.name, .origin = fromLibrary};
}

QString TransferablePatch::typeIdentifier()
{
    return QStringLiteral("org.velgorlibrary.velgorpatch");
}

QByteArray TransferablePatch::encode() const
{
    return written(toJson(*this));
}

QByteArray TransferablePatch::encode(const QList<TransferablePatch> &payloads)
{
    if (payloads.size() == 1) {
        return payloads.first().encode();
    }
    nlohmann::ordered_json array = nlohmann::ordered_json::array();
    for (const TransferablePatch &payload : payloads) {
        array.push_back(toJson(payload));
    }
    return written(array);
}

std::optional<TransferablePatch> TransferablePatch::decode(const QByteArray &json)
{
    return fromJson(parsed(json));
}

QList<TransferablePatch> TransferablePatch::decodeAll(const QByteArray &json)
{
    const nlohmann::json document = parsed(json);
    if (!document.is_array()) {
        const std::optional<TransferablePatch> payload = fromJson(document);
        return payload ? QList{*payload} : QList<TransferablePatch>();
    }
    QList<TransferablePatch> payloads;
    payloads.reserve(static_cast<qsizetype>(document.size()));
    for (const nlohmann::json &object : document) {
        const std::optional<TransferablePatch> payload = fromJson(object);
        if (!payload) {
            return {};
        }
        payloads.append(*payload);
    }
    return payloads;
}
