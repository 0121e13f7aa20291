#include "SingleInstance.h"

#include "Diagnostics.h"
#include "InstancePlace.h"

#include <QLocalSocket>

#include <thread>

namespace {

using InstanceMessage::Answer;

/// Qt's waiting functions take milliseconds.
int remaining(const QDeadlineTimer &deadline)
{
    return static_cast<int>(deadline.remainingTime());
}

} // namespace

SingleInstance::SingleInstance(const QString &directory, std::chrono::milliseconds patience)
    : m_directory(directory)
    , m_sockets(InstancePlace::sockets(directory))
    , m_patience(patience)
    , m_lock(directory)
{
    connect(&m_listener, &InstanceListener::requested, this, &SingleInstance::activated);
}

SingleInstance::Outcome SingleInstance::start(const StartRequest &request)
{
    constexpr std::chrono::milliseconds pause(50);
    const QByteArray message = InstanceMessage::encode(request);
    const QDeadlineTimer deadline(m_patience);
    while (true) {
        const Result<> locked = m_lock.tryLock();
        if (locked) {
            listen();
            return Outcome::First;
        }
        // A command holds the lock for a moment, and so does an application that is ending.
        const Reply reply = handOver(message, deadline);
        if (reply == Answer::Yes) {
            return Outcome::HandedOver;
        }
        if (reply == Answer::Unfinished) {
            m_reason =
                tr("%1: Velgor Library Manager has this library open already, but does not answer").arg(m_directory);
            return Outcome::Refused;
        }
        if (reply == Answer::NotKnown) {
            m_reason = tr("%1: the Velgor Library Manager that has this library open is of another version, and does "
                          "not know what it was asked for; close it and try again")
                           .arg(m_directory);
            return Outcome::Refused;
        }
        if (locked.problem().what != Problem::What::Taken) {
            m_reason = locked.problem().text();
            listen();
            return Outcome::First;
        }
        if (deadline.hasExpired()) {
            m_reason = locked.problem().text();
            return Outcome::Refused;
        }
        std::this_thread::sleep_for(pause);
    }
}

SingleInstance::Reply SingleInstance::handOver(const QByteArray &request, const QDeadlineTimer &deadline) const
{
    for (const QString &socket : m_sockets) {
        const Reply reply = InstancePlace::isTrusted(socket) ? ask(socket, request, deadline) : std::nullopt;
        if (reply) {
            return reply;
        }
    }
    return std::nullopt;
}

SingleInstance::Reply SingleInstance::ask(
    const QString &socketName, const QByteArray &request, const QDeadlineTimer &deadline)
{
    QLocalSocket socket;
    socket.connectToServer(socketName);
    if (!socket.waitForConnected(remaining(deadline))) {
        return std::nullopt;
    }
    socket.write(request);
    const auto answer = [&socket] {
        return InstanceMessage::decodeAnswer(socket.peek(InstanceMessage::longestAnswer));
    };
    while (answer() == Answer::Unfinished && socket.waitForReadyRead(remaining(deadline))) { }
    const Answer last = answer();
    if (last == Answer::Yes || last == Answer::NotKnown) {
        return last;
    }
    return deadline.hasExpired() ? Reply(Answer::Unfinished) : std::nullopt;
}

void SingleInstance::listen()
{
    if (m_sockets.isEmpty()) {
        Diagnostics::printLine(
            tr("Further starts cannot reach this one: there is no directory for sockets of this user"));
        return;
    }
    QString problem;
    for (const QString &socket : m_sockets) {
        const bool isTrusted = InstancePlace::prepare(socket);
        if (isTrusted && m_listener.listen(socket)) {
            if (!problem.isEmpty()) {
                Diagnostics::printLine(tr("Further starts inside of sandboxes cannot reach this one: %1").arg(problem));
            }
            return;
        }
        const QString reason =
            isTrusted ? m_listener.errorText() : tr("its directory is missing, or is not this user's alone");
        problem = socket + QStringLiteral(": ") + reason;
    }
    Diagnostics::printLine(tr("Further starts cannot reach this one: %1").arg(problem));
}
