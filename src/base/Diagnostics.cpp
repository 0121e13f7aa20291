#include "Diagnostics.h"

#include "DiagnosticLog.h"

#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <utility>

namespace Diagnostics {

namespace {

std::mutex &mutex()
{
    static std::mutex instance;
    return instance;
}

Sink &currentSink()
{
    static Sink instance;
    return instance;
}

DiagnosticLog &keptLog()
{
    static DiagnosticLog instance;
    return instance;
}

void writeLine(std::FILE *stream, const QString &line)
{
    const QByteArray bytes = line.toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stream);
    std::fflush(stream);
}

} // namespace

void printLine(const QString &line)
{
    const std::scoped_lock lock(mutex());
    keptLog().add(line);
    if (currentSink()) {
        currentSink()(line);
    } else {
        writeLine(stdout, line);
    }
}

QStringList keptLines()
{
    const std::scoped_lock lock(mutex());
    return keptLog().lines();
}

Sink setSink(Sink sink)
{
    const std::scoped_lock lock(mutex());
    return std::exchange(currentSink(), std::move(sink));
}

Sink standardOutput()
{
    return [](const QString &line) { writeLine(stdout, line); };
}

Sink standardError()
{
    return [](const QString &line) { writeLine(stderr, line); };
}

void fatalStop(const char *reason)
{
    std::fprintf(stderr, "Fatal: %s\n", reason);
    std::fflush(stderr);
    std::abort();
}

} // namespace Diagnostics
