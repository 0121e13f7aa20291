#pragma once

#include <QString>
#include <QStringList>

#include <functional>

/// The two doors through which trouble leaves the code: one line for what can happen, a stop for what cannot.
namespace Diagnostics {

using Sink = std::function<void(const QString &line)>;

/// Gives `line` (without line feed) to the current sink. Callable from any thread; lines never interleave.
void printLine(const QString &line);

/// The last lines of this run, from all threads and whatever the sink, the oldest first: as many as DiagnosticLog
/// keeps. Not to be called by a sink.
[[nodiscard]] QStringList keptLines();

/// Replaces the sink and returns the previous one. An empty sink means standard output, which is the default.
/// The sink is called under a lock: it must not print itself.
Sink setSink(Sink sink);

/// Sinks that write each line, flushed, to standard output or standard error.
Sink standardOutput();
Sink standardError();

/// Stops the program, in release builds too. For states that the caller has to rule out.
[[noreturn]] void fatalStop(const char *reason);

} // namespace Diagnostics
