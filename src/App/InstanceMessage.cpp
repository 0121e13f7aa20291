#include "InstanceMessage.h"

#include "Utf8Text.h"

#include <QDir>

#include <algorithm>
#include <optional>

namespace InstanceMessage {

namespace {

QByteArray greeting()
{
    return QByteArrayLiteral("velgor-library-manager 1\n");
}

} // namespace

QByteArray encode(const QString &file)
{
    // No path holds a zero byte, so that one can end it.
    return greeting() + file.toUtf8() + '\0';
}

Request decode(QByteArrayView bytes)
{
    const QByteArray start = greeting();
    const qsizetype common = std::min(start.size(), bytes.size());
    if (bytes.size() > longest || bytes.first(common) != QByteArrayView(start).first(common)) {
        return {.state = State::Wrong};
    }
    const qsizetype end = bytes.indexOf('\0');
    if (end < 0) {
        return {.state = State::Unfinished};
    }
    const std::optional<QString> file = Utf8Text::decode(bytes.first(end).sliced(start.size()));
    if (end != bytes.size() - 1 || !file || (!file->isEmpty() && !QDir::isAbsolutePath(*file))) {
        return {.state = State::Wrong};
    }
    return {.state = State::Complete, .file = *file};
}

QByteArray answer()
{
    return QByteArrayLiteral("yes\n");
}

} // namespace InstanceMessage
