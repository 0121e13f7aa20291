#include "TerminationSignals.h"

#ifdef Q_OS_UNIX

#include "Diagnostics.h"

#include <QSocketNotifier>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::array terminating{SIGTERM, SIGINT, SIGHUP};

std::atomic<int> writingEnd = -1;
static_assert(std::atomic<int>::is_always_lock_free, "a signal handler must not wait");

extern "C" void noteSignal(int /*number*/)
{
    const int error = errno;
    const char byte = 0;
    // A pipe that is full says already what there is to say.
    [[maybe_unused]] const ssize_t written = write(writingEnd, &byte, 1);
    errno = error;
}

} // namespace

struct TerminationSignals::Handlers {
    std::array<int, 2> ends{-1, -1};
    std::array<struct sigaction, terminating.size()> former{};
    std::unique_ptr<QSocketNotifier> notifier;
};

TerminationSignals::TerminationSignals()
    : m_handlers(std::make_unique<Handlers>())
{
    if (writingEnd >= 0) {
        Diagnostics::fatalStop("termination signals caught twice");
    }
    if (pipe(m_handlers->ends.data()) != 0) {
        m_handlers.reset();
        return;
    }
    for (const int end : m_handlers->ends) {
        fcntl(end, F_SETFD, FD_CLOEXEC);
        fcntl(end, F_SETFL, O_NONBLOCK);
    }
    writingEnd = m_handlers->ends.at(1);
    m_handlers->notifier = std::make_unique<QSocketNotifier>(m_handlers->ends.at(0), QSocketNotifier::Read);
    connect(m_handlers->notifier.get(), &QSocketNotifier::activated, this, [this] {
        std::array<char, 64> bytes{};
        while (read(m_handlers->ends.at(0), bytes.data(), bytes.size()) > 0) { }
        Q_EMIT terminated();
    });
    struct sigaction action { };
    action.sa_handler = noteSignal;
    action.sa_flags = SA_RESTART;
    for (std::size_t i = 0; i < terminating.size(); ++i) {
        struct sigaction &former = m_handlers->former.at(i);
        if (sigaction(terminating.at(i), nullptr, &former) == 0 && former.sa_handler != SIG_IGN) {
            sigaction(terminating.at(i), &action, nullptr);
        }
    }
}

TerminationSignals::~TerminationSignals()
{
    if (!m_handlers) {
        return;
    }
    for (std::size_t i = 0; i < terminating.size(); ++i) {
        sigaction(terminating.at(i), &m_handlers->former.at(i), nullptr);
    }
    writingEnd = -1;
    m_handlers->notifier.reset();
    for (const int end : m_handlers->ends) {
        close(end);
    }
}

#else

struct TerminationSignals::Handlers { };

TerminationSignals::TerminationSignals() { }

TerminationSignals::~TerminationSignals() = default;

#endif
