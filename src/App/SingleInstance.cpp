#include "SingleInstance.h"

#include "Diagnostics.h"
#include "InstanceMessage.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <QLocalSocket>
#include <QStandardPaths>

#include <thread>

namespace {

/// Qt's waiting functions take milliseconds.
int remaining(const QDeadlineTimer &deadline)
{
    return static_cast<int>(deadline.remainingTime());
}

} // namespace

SingleInstance::SingleInstance(const QString &directory, std::chrono::milliseconds patience, QObject *parent)
    : QObject(parent)
    , m_directory(directory)
    , m_socketName(socketName(directory))
    , m_patience(patience)
    , m_lock(directory)
{
    connect(&m_listener, &InstanceListener::requested, this, &SingleInstance::activated);
}

QString SingleInstance::socketName(const QString &directory)
{
    const QString place = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (place.isEmpty()) {
        return {};
    }
    const QFileInfo info(directory);
    const QString path = info.exists() ? info.canonicalFilePath() : info.absoluteFilePath();
    // A socket's path has room for about a hundred bytes.
    const QByteArray hash = QCryptographicHash::hash(path.toUtf8(), QCryptographicHash::Sha256).toHex().first(32);
    return place + QStringLiteral("/velgor-library-manager-") + QString::fromLatin1(hash);
}

SingleInstance::Outcome SingleInstance::start(const QString &file)
{
    constexpr std::chrono::milliseconds pause(50);
    const QByteArray request = InstanceMessage::encode(file.isEmpty() ? file : QFileInfo(file).absoluteFilePath());
    const QDeadlineTimer deadline(m_patience);
    while (true) {
        if (m_lock.tryLock()) {
            listen();
            return Outcome::First;
        }
        const bool isHeld = m_lock.isHeldElsewhere();
        // A command holds the lock for a moment, and so does an application that is ending.
        const Reply reply = handOver(request, deadline);
        if (reply == Reply::Yes) {
            return Outcome::HandedOver;
        }
        if (reply == Reply::Silence) {
            m_reason =
                tr("%1: Velgor Library Manager has this library open already, but does not answer").arg(m_directory);
            return Outcome::Refused;
        }
        if (!isHeld) {
            m_reason = m_lock.reason();
            listen();
            return Outcome::First;
        }
        if (deadline.hasExpired()) {
            m_reason = m_lock.reason();
            return Outcome::Refused;
        }
        std::this_thread::sleep_for(pause);
    }
}

SingleInstance::Reply SingleInstance::handOver(const QByteArray &request, const QDeadlineTimer &deadline) const
{
    if (m_socketName.isEmpty()) {
        return Reply::NoOneThere;
    }
    QLocalSocket socket;
    socket.connectToServer(m_socketName);
    if (!socket.waitForConnected(remaining(deadline))) {
        return Reply::NoOneThere;
    }
    socket.write(request);
    const QByteArray answer = InstanceMessage::answer();
    while (socket.bytesAvailable() < answer.size()) {
        if (!socket.waitForReadyRead(remaining(deadline))) {
            break;
        }
    }
    if (socket.read(answer.size()) == answer) {
        return Reply::Yes;
    }
    return deadline.hasExpired() ? Reply::Silence : Reply::NoOneThere;
}

void SingleInstance::listen()
{
    if (m_socketName.isEmpty() || !m_listener.listen(m_socketName)) {
        Diagnostics::printLine(tr("Further starts cannot reach this one: %1").arg(m_listener.errorText()));
    }
}
