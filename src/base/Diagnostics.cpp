#include "Diagnostics.h"

#include "DiagnosticLog.h"

#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <utility>

namespace Diagnostics {

namespace {

struct State {
    std::mutex mutex;
    Sink sink;
    DiagnosticLog log;
};

/// Never destroyed, as a thread that was left behind may still print while the program ends.
State &state()
{
    static State &instance = *new State;
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
    const std::scoped_lock lock(state().mutex);
    state().log.add(line);
    if (state().sink) {
        state().sink(line);
    } else {
        writeLine(stdout, line);
    }
}

QStringList keptLines()
{
    const std::scoped_lock lock(state().mutex);
    return state().log.lines();
}

Sink setSink(Sink sink)
{
    const std::scoped_lock lock(state().mutex);
    return std::exchange(state().sink, std::move(sink));
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
