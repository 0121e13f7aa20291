#include "InstanceListener.h"

#include "InstanceMessage.h"

#include <QLocalSocket>
#include <QTimer>

#include <chrono>

namespace {

constexpr int mostConnections = 20;
/// A start sends its request in one go.
constexpr std::chrono::seconds longestConnection(5);

} // namespace

InstanceListener::InstanceListener()
{
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, &InstanceListener::acceptConnections);
}

bool InstanceListener::listen(const QString &name)
{
    QLocalServer::removeServer(name);
    return m_server.listen(name);
}

void InstanceListener::acceptConnections()
{
    while (QLocalSocket *socket = m_server.nextPendingConnection()) {
        if (m_connections >= mostConnections) {
            socket->abort();
            socket->deleteLater();
            continue;
        }
        ++m_connections;
        socket->setReadBufferSize(InstanceMessage::longest + 1);
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] { readFrom(*socket); });
        connect(socket, &QLocalSocket::disconnected, this, [this, socket] {
            --m_connections;
            socket->deleteLater();
        });
        QTimer::singleShot(longestConnection, socket, &QLocalSocket::abort);
    }
}

void InstanceListener::readFrom(QLocalSocket &socket)
{
    const InstanceMessage::Reading reading = InstanceMessage::decode(socket.peek(InstanceMessage::longest + 1));
    if (reading.state == InstanceMessage::State::Unfinished) {
        return;
    }
    disconnect(&socket, &QLocalSocket::readyRead, this, nullptr);
    if (reading.state == InstanceMessage::State::Wrong) {
        socket.abort();
        return;
    }
    const bool isKnown = reading.state == InstanceMessage::State::Complete;
    socket.write((isKnown ? InstanceMessage::yes : InstanceMessage::notKnown).toByteArray());
    socket.flush();
    socket.disconnectFromServer();
    if (isKnown) {
        // What follows may take as long as the user looks at a dialog, and belongs outside of the socket's own calls.
        QMetaObject::invokeMethod(
            this, [this, request = reading.request] { Q_EMIT requested(request); }, Qt::QueuedConnection);
    }
}
