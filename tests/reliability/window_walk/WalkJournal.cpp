#include "WalkJournal.h"

#include <QByteArray>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstring>
#include <tuple>

#include <unistd.h>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/common_interface_defs.h>
#endif

namespace WalkJournal {

namespace {

using Line = std::array<char, 160>;

std::array<Line, length> lines{};
std::size_t noted = 0;

void write(const char *text)
{
    std::ignore = ::write(STDERR_FILENO, text, std::strlen(text));
}

} // namespace

void note(const QString &action)
{
    const QByteArray text = action.toUtf8();
    Line &line = lines.at(noted % length);
    line.fill('\0');
    std::copy_n(
        text.begin(), std::min<std::size_t>(static_cast<std::size_t>(text.size()), line.size() - 1), line.begin());
    ++noted;
}

void print()
{
    write("The last actions:\n");
    for (std::size_t i = noted > length ? noted - length : 0; i < noted; ++i) {
        write("  ");
        write(lines.at(i % length).data());
        write("\n");
    }
}

void printOnCrash()
{
#ifdef __SANITIZE_ADDRESS__
    __sanitizer_set_death_callback(print);
    const auto signals = std::array{SIGABRT};
#else
    const auto signals = std::array{SIGABRT, SIGSEGV, SIGBUS, SIGFPE, SIGILL};
#endif
    for (const int signal : signals) {
        std::signal(signal, [](int number) {
            print();
            std::signal(number, SIG_DFL);
            std::raise(number);
        });
    }
}

} // namespace WalkJournal
