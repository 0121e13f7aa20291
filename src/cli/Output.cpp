#include "Output.h"

#include "Command.h"
#include "Diagnostics.h"

#include <QCoreApplication>

#include <nlohmann/json.hpp>

#include <cstdio>
#include <string_view>

namespace Output {

namespace {

bool allWritten = true;

void write(const char *bytes, std::size_t size)
{
    allWritten = std::fwrite(bytes, 1, size, stdout) == size && std::fflush(stdout) == 0 && allWritten;
}

std::string textOf(const nlohmann::ordered_json &document)
{
    return document.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

} // namespace

void print(const QString &text)
{
    printBytes(text.toUtf8());
}

void printBytes(const QByteArray &bytes)
{
    write(bytes.constData(), static_cast<std::size_t>(bytes.size()));
}

void printJson(const nlohmann::ordered_json &document)
{
    const std::string text = textOf(document) + '\n';
    write(text.data(), text.size());
}

void printJson(const nlohmann::ordered_json &members, const char *key, const QByteArray &entries)
{
    const std::string text = textOf(members);
    const std::string_view withoutEnd = std::string_view(text).substr(0, text.size() - std::string_view("\n}").size());
    write(withoutEnd.data(), withoutEnd.size());
    printBytes(QByteArray(",\n  \"") + key + (entries.isEmpty() ? "\": []" : "\": [\n"));
    printBytes(entries);
    printBytes(entries.isEmpty() ? "\n}\n" : "\n  ]\n}\n");
}

bool isComplete()
{
    return allWritten;
}

int fail(const QString &line)
{
    Diagnostics::printLine(QStringLiteral("velgor: ") + line);
    return Failed;
}

void warn(const QString &line)
{
    Diagnostics::printLine(QCoreApplication::translate("Output", "velgor: warning: %1").arg(line));
}

std::string jsonText(const QString &text)
{
    return text.toStdString();
}

} // namespace Output
