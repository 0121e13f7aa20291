#include "InstanceMessage.h"

#include "Utf8Text.h"

#include <QDir>
#include <QHash>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace InstanceMessage {

namespace {

using Fields = QHash<QByteArray, QByteArray>;

constexpr QByteArrayView name = "velgor-library-manager ";
constexpr QByteArrayView version = "2";
constexpr qsizetype longestVersion = 9;

constexpr auto actionField = "action";
constexpr auto fileField = "file";
constexpr auto tokenField = "activation-token";
constexpr auto startupField = "startup-id";

constexpr std::array actions{std::pair(StartRequest::Action::Show, "show"),
    std::pair(StartRequest::Action::Open, "open"), std::pair(StartRequest::Action::NewList, "new-list")};

QByteArray field(const char *key, const QByteArray &value)
{
    return value.isEmpty() ? QByteArray() : key + ('=' + value) + '\0';
}

bool isDigit(char letter)
{
    return letter >= '0' && letter <= '9';
}

/// Of the first line. Complete says that the fields can be read.
State stateOfGreeting(QByteArrayView bytes)
{
    const qsizetype common = std::min(name.size(), bytes.size());
    if (bytes.first(common) != name.first(common)) {
        return State::Wrong;
    }
    const QByteArrayView rest = bytes.sliced(common);
    const auto end = std::find_if_not(rest.begin(), rest.end(), isDigit);
    const qsizetype digits = end - rest.begin();
    if (digits > longestVersion || (end != rest.end() && (*end != '\n' || digits == 0))) {
        return State::Wrong;
    }
    if (end == rest.end()) {
        return State::Unfinished;
    }
    return rest.first(digits) == version ? State::Complete : State::NotKnown;
}

bool isFieldName(QByteArrayView text)
{
    const auto isLetter = [](char letter) { return (letter >= 'a' && letter <= 'z') || letter == '-'; };
    return !text.isEmpty() && std::all_of(text.begin(), text.end(), isLetter);
}

/// Nothing when a field has no name or comes twice. `bytes` end with a zero byte.
std::optional<Fields> fieldsOf(QByteArrayView bytes)
{
    Fields fields;
    while (!bytes.isEmpty()) {
        const qsizetype end = bytes.indexOf('\0');
        const QByteArrayView field = bytes.first(end);
        const qsizetype sign = field.indexOf('=');
        if (sign < 0 || !isFieldName(field.first(sign))) {
            return std::nullopt;
        }
        const QByteArray key = field.first(sign).toByteArray();
        if (fields.contains(key)) {
            return std::nullopt;
        }
        fields.insert(key, field.sliced(sign + 1).toByteArray());
        bytes = bytes.sliced(end + 1);
    }
    return fields;
}

QByteArray soundHint(const Fields &fields, const char *key)
{
    const QByteArray value = fields.value(key);
    return Activation::isSound(value) ? value : QByteArray();
}

Reading readingOf(const Fields &fields)
{
    const auto *const action = std::find_if(actions.begin(), actions.end(),
        [&fields](const auto &candidate) { return fields.value(actionField) == candidate.second; });
    if (action == actions.end()) {
        return {.state = fields.contains(actionField) ? State::NotKnown : State::Wrong};
    }
    const std::optional<QString> file = Utf8Text::decode(fields.value(fileField));
    const bool hasFile = file && QDir::isAbsolutePath(*file);
    if (action->first == StartRequest::Action::Open ? !hasFile : fields.contains(fileField)) {
        return {.state = State::Wrong};
    }
    return {.state = State::Complete,
        .request = {.action = action->first,
            .file = *file,
            .activation = {.token = soundHint(fields, tokenField), .startupId = soundHint(fields, startupField)}}};
}

} // namespace

QByteArray encode(const StartRequest &request)
{
    const auto *const action = std::find_if(
        actions.begin(), actions.end(), [&request](const auto &entry) { return entry.first == request.action; });
    // No path holds a zero byte, so that one can end it.
    return name.toByteArray() + version.toByteArray() + '\n' + field(actionField, action->second)
        + field(fileField, request.file.toUtf8()) + field(tokenField, request.activation.token)
        + field(startupField, request.activation.startupId) + '\0';
}

Reading decode(QByteArrayView bytes)
{
    if (bytes.size() > longest) {
        return {.state = State::Wrong};
    }
    const State greeting = stateOfGreeting(bytes);
    if (greeting != State::Complete) {
        return {.state = greeting};
    }
    const QByteArrayView body = bytes.sliced(bytes.indexOf('\n') + 1);
    const qsizetype end = body.startsWith('\0') ? 1 : body.indexOf(QByteArrayView("\0\0", 2)) + 2;
    if (end == 1 && !body.startsWith('\0')) {
        return {};
    }
    const std::optional<Fields> fields = end == body.size() ? fieldsOf(body.chopped(1)) : std::nullopt;
    return fields ? readingOf(*fields) : Reading{.state = State::Wrong};
}

Answer decodeAnswer(QByteArrayView bytes)
{
    const qsizetype end = bytes.indexOf('\n');
    if (end < 0) {
        return bytes.size() < longestAnswer ? Answer::Unfinished : Answer::Wrong;
    }
    const QByteArrayView line = bytes.first(end + 1);
    if (line == yes) {
        return Answer::Yes;
    }
    return line == notKnown ? Answer::NotKnown : Answer::Wrong;
}

} // namespace InstanceMessage
