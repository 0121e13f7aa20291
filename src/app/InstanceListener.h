#pragma once

#include "StartRequest.h"

#include <QLocalServer>
#include <QObject>
#include <QString>

class QLocalSocket;

/// Waits for the requests of further starts of the program, and answers them. What is no request is dropped, with
/// its connection.
class InstanceListener : public QObject {
    Q_OBJECT

public:
    InstanceListener();

    /// Listens on a local socket that only this user can reach. One that is there already is taken to be a leftover:
    /// the caller knows that no other program listens.
    bool listen(const QString &name);
    [[nodiscard]] QString errorText() const { return m_server.errorString(); }

Q_SIGNALS:
    /// The other program has its answer already.
    void requested(const StartRequest &request);

private:
    void acceptConnections();
    void readFrom(QLocalSocket &socket);

    QLocalServer m_server;
    int m_connections = 0;
};
