#include "InstanceListener.h"
#include "InstanceMessage.h"
#include "StartRequest.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QLocalSocket>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <vector>

namespace {

const StartRequest listRequest = StartRequest::toOpen(QStringLiteral("/list.prst"));

class TestSocket : public QLocalSocket {
public:
    TestSocket(const QString &name, const QByteArray &bytes)
    {
        connectToServer(name);
        write(bytes);
        flush();
    }
};

} // namespace

class TestInstanceListener : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_directory = std::make_unique<QTemporaryDir>();
        m_name = m_directory->filePath(QStringLiteral("socket"));
    }

    void requestIsAnsweredAndPassedOn_data()
    {
        QTest::addColumn<StartRequest>("request");
        QTest::newRow("no file") << StartRequest();
        QTest::newRow("file") << listRequest;
        QTest::newRow("new list") << StartRequest{.action = StartRequest::Action::NewList};
        QTest::newRow("activation") << StartRequest{.activation = {.token = "token", .startupId = "id"}};
    }
    void requestIsAnsweredAndPassedOn()
    {
        QFETCH(const StartRequest, request);
        InstanceListener listener;
        const QSignalSpy requested(&listener, &InstanceListener::requested);
        QVERIFY(listener.listen(m_name));
        TestSocket socket(m_name, InstanceMessage::encode(request));
        QTRY_COMPARE(socket.bytesAvailable(), InstanceMessage::yes.toByteArray().size());
        QCOMPARE(socket.readAll(), InstanceMessage::yes.toByteArray());
        QTRY_COMPARE(requested.count(), 1);
        QVERIFY(requested.first().first().value<StartRequest>() == request);
        QTRY_COMPARE(socket.state(), QLocalSocket::UnconnectedState);
    }

    void requestMayComeInPieces()
    {
        InstanceListener listener;
        const QSignalSpy requested(&listener, &InstanceListener::requested);
        QVERIFY(listener.listen(m_name));
        const QByteArray request = InstanceMessage::encode(listRequest);
        TestSocket socket(m_name, request.first(1));
        for (qsizetype at = 1; at < request.size(); ++at) {
            QCoreApplication::processEvents();
            QCOMPARE(requested.count(), 0);
            socket.write(request.sliced(at, 1));
            socket.flush();
        }
        QTRY_COMPARE(requested.count(), 1);
        QVERIFY(requested.first().first().value<StartRequest>() == listRequest);
    }

    void answerDoesNotWaitForWhatTheRequestBrings()
    {
        InstanceListener listener;
        QVERIFY(listener.listen(m_name));
        TestSocket socket(m_name, InstanceMessage::encode({}));
        bool wasAnsweredFirst = false;
        // As a dialog does, which takes as long as it takes.
        connect(&listener, &InstanceListener::requested, &listener,
            [&] { wasAnsweredFirst = socket.waitForReadyRead(1000) || socket.bytesAvailable() > 0; });
        QTRY_VERIFY(wasAnsweredFirst);
    }

    void wrongInputIsDropped_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("other text") << QByteArray("GET / HTTP/1.1\r\n\r\n");
        QTest::newRow("relative path") << InstanceMessage::encode(StartRequest::toOpen(QStringLiteral("list.prst")));
        QTest::newRow("huge") << InstanceMessage::encode(StartRequest::toOpen(u'/' + QString(8 * 1024 * 1024, u'a')));
    }
    void wrongInputIsDropped()
    {
        QFETCH(const QByteArray, bytes);
        InstanceListener listener;
        const QSignalSpy requested(&listener, &InstanceListener::requested);
        QVERIFY(listener.listen(m_name));
        TestSocket socket(m_name, bytes);
        QTRY_COMPARE(socket.state(), QLocalSocket::UnconnectedState);
        QCOMPARE(socket.readAll(), QByteArray());
        QCOMPARE(requested.count(), 0);

        const TestSocket next(m_name, InstanceMessage::encode({}));
        QTRY_COMPARE(requested.count(), 1);
    }

    void whatIsNotKnownIsAnsweredAndNotPassedOn()
    {
        InstanceListener listener;
        const QSignalSpy requested(&listener, &InstanceListener::requested);
        QVERIFY(listener.listen(m_name));
        TestSocket socket(m_name, "velgor-library-manager 3\n");
        QTRY_COMPARE(socket.state(), QLocalSocket::UnconnectedState);
        QCOMPARE(socket.readAll(), InstanceMessage::notKnown.toByteArray());
        const TestSocket next(m_name, InstanceMessage::encode(listRequest));
        QTRY_COMPARE(requested.count(), 1);
        QVERIFY(requested.first().first().value<StartRequest>() == listRequest);
    }

    void cutRequestIsDropped()
    {
        InstanceListener listener;
        const QSignalSpy requested(&listener, &InstanceListener::requested);
        QVERIFY(listener.listen(m_name));
        {
            TestSocket socket(m_name, InstanceMessage::encode(listRequest).chopped(1));
            QTest::qWait(20);
            socket.disconnectFromServer();
        }
        const TestSocket next(m_name, InstanceMessage::encode({}));
        QTRY_COMPARE(requested.count(), 1);
        QVERIFY(requested.first().first().value<StartRequest>() == StartRequest());
    }

    void tooManyConnectionsAreTurnedAway()
    {
        InstanceListener listener;
        const QSignalSpy requested(&listener, &InstanceListener::requested);
        QVERIFY(listener.listen(m_name));
        std::vector<std::unique_ptr<TestSocket>> sockets;
        for (int i = 0; i < 40; ++i) {
            sockets.push_back(std::make_unique<TestSocket>(m_name, QByteArray()));
            QTest::qWait(1);
        }
        QTRY_COMPARE(sockets.back()->state(), QLocalSocket::UnconnectedState);
        const auto open = std::count_if(sockets.begin(), sockets.end(),
            [](const auto &socket) { return socket->state() == QLocalSocket::ConnectedState; });
        QCOMPARE(open, 20);
        sockets.clear();
        QTest::qWait(50);
        const TestSocket next(m_name, InstanceMessage::encode({}));
        QTRY_COMPARE(requested.count(), 1);
    }

    void silentConnectionIsEndedInTime()
    {
        InstanceListener listener;
        QVERIFY(listener.listen(m_name));
        const TestSocket socket(m_name, "velgor");
        QTest::qWait(200);
        QCOMPARE(socket.state(), QLocalSocket::ConnectedState);
        QTRY_COMPARE_WITH_TIMEOUT(socket.state(), QLocalSocket::UnconnectedState, 10000);
    }

    void socketIsTheUsersAlone()
    {
        InstanceListener listener;
        QVERIFY(listener.listen(m_name));
        const auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
        QVERIFY(!(QFile::permissions(m_name) & others));
    }

    void impossibleNameIsNotListenedOn()
    {
        InstanceListener listener;
        QVERIFY(!listener.listen(m_directory->filePath(QStringLiteral("missing/socket"))));
        QVERIFY(!listener.errorText().isEmpty());
    }

private:
    std::unique_ptr<QTemporaryDir> m_directory;
    QString m_name;
};

VELGOR_TEST(TestInstanceListener)
#include "tst_InstanceListener.moc"
