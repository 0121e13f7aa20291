#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <array>
#include <csignal>
#include <optional>

#include <sys/wait.h>
#include <unistd.h>

/// Runs `action` in a copy of this process. What the copy wrote to standard error when it stopped the program;
/// nothing when `action` returned.
template <typename Action>
std::optional<QByteArray> fatalStopOf(Action action)
{
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        qFatal("no pipe");
    }
    const pid_t child = fork();
    if (child == 0) {
        // QtTest's own handler would describe the crash at length.
        std::signal(SIGABRT, SIG_DFL);
        dup2(ends[1], STDERR_FILENO);
        action();
        _exit(0);
    }
    close(ends[1]);
    QByteArray output;
    std::array<char, 256> buffer{};
    for (ssize_t count = 1; count > 0;) {
        count = read(ends[0], buffer.data(), buffer.size());
        output.append(buffer.data(), static_cast<qsizetype>(qMax<ssize_t>(count, 0)));
    }
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    return WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT ? std::optional(output) : std::nullopt;
}
