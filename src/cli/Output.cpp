#include "Output.h"

#include "Command.h"
#include "Diagnostics.h"

#include <QCoreApplication>

#include <nlohmann/json.hpp>

#include <cstdio>

namespace Output {

namespace {

bool allWritten = true;

void write(const char *bytes, std::size_t size)
{
    allWritten = std::fwrite(bytes, 1, size, stdout) == size && std::fflush(stdout) == 0 && allWritten;
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
    const std::string text = document.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + '\n';
    write(text.data(), text.size());
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
