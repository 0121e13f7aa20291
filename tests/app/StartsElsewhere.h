#pragma once

#include "InstancePlace.h"
#include "LibraryDirectory.h"
#include "SingleInstance.h"

#include <QLocalServer>
#include <QLocalSocket>
#include <QTest>
#include <QThread>

/// Starts of the program as other processes would make them, and what those may meet.
namespace StartsElsewhere {

/// A runtime directory of its own for each test, as each user has one.
class OwnRuntime {
public:
    void begin()
    {
        m_directory = std::make_unique<QTemporaryDir>();
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(path()));
    }
    [[nodiscard]] QString path() const { return m_directory->path(); }

private:
    std::unique_ptr<QTemporaryDir> m_directory;
};

struct Start {
    SingleInstance::Outcome outcome = SingleInstance::Outcome::Refused;
    QString reason;
};

/// Starts the program again while this thread's event loop goes on, as another process would.
inline Start startElsewhere(
    const QString &directory, const StartRequest &request, std::chrono::milliseconds patience = std::chrono::seconds(5))
{
    Start result;
    const std::unique_ptr<QThread> thread(QThread::create([&] {
        SingleInstance instance(directory, patience);
        result.outcome = instance.start(request);
        result.reason = instance.reason();
    }));
    thread->start();
    if (!QTest::qWaitFor([&] { return thread->isFinished(); }, 20000)) {
        qFatal("the start does not end");
    }
    thread->wait();
    return result;
}

/// The socket on which the one listens that has the directory.
inline QString socketOf(const LibraryDirectory &directory)
{
    return InstancePlace::sockets(directory.path()).first();
}

/// Stands where the first listens, and answers every start with the same bytes.
class AnsweringServer {
public:
    AnsweringServer(const QString &socket, const QByteArray &answer)
    {
        if (!InstancePlace::prepare(socket) || !m_server.listen(socket)) {
            qFatal("no socket");
        }
        QObject::connect(&m_server, &QLocalServer::newConnection, &m_server, [this, answer] {
            QLocalSocket *connection = m_server.nextPendingConnection();
            connection->write(answer);
            connection->flush();
            QObject::connect(connection, &QLocalSocket::disconnected, connection, &QObject::deleteLater);
            connection->disconnectFromServer();
        });
    }

private:
    QLocalServer m_server;
};

} // namespace StartsElsewhere
