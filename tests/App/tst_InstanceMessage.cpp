#include "InstanceMessage.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QTest>

using InstanceMessage::State;

class TestInstanceMessage : public QObject {
    Q_OBJECT

private Q_SLOTS:
    static void requestComesThrough_data()
    {
        QTest::addColumn<QString>("file");
        QTest::newRow("no file") << QString();
        QTest::newRow("file") << QStringLiteral("/home/user/My list.prst");
        QTest::newRow("beyond ASCII") << QString::fromUtf8("/\u00e4/\U0001F3B8.prst");
        QTest::newRow("line feed in the name") << QStringLiteral("/a\nb.prst");
        QTest::newRow("longest argument") << u'/' + QString(128 * 1024, QChar(0x4e00));
    }
    static void requestComesThrough()
    {
        QFETCH(const QString, file);
        const InstanceMessage::Request request = InstanceMessage::decode(InstanceMessage::encode(file));
        QCOMPARE(request.state, State::Complete);
        QCOMPARE(request.file, file);
    }

    static void everyBeginningOfARequestIsUnfinished()
    {
        const QByteArray whole = InstanceMessage::encode(QStringLiteral("/list.prst"));
        for (qsizetype size = 0; size < whole.size(); ++size) {
            QCOMPARE(InstanceMessage::decode(whole.first(size)).state, State::Unfinished);
        }
    }

    static void whatIsNoRequestIsWrong_data()
    {
        const QByteArray greeting("velgor-library-manager 1\n");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("other text") << QByteArray("GET / HTTP/1.1\r\n");
        QTest::newRow("other version") << QByteArray("velgor-library-manager 2\n/list.prst\0", 36);
        QTest::newRow("zero byte first") << QByteArray(1, '\0');
        QTest::newRow("bytes behind the end") << InstanceMessage::encode(QStringLiteral("/list.prst")) + 'x';
        QTest::newRow("two requests") << InstanceMessage::encode({}) + InstanceMessage::encode({});
        QTest::newRow("relative path") << greeting + QByteArray("list.prst\0", 10);
        QTest::newRow("no UTF-8") << greeting + QByteArray("/\xff\0", 3);
        QTest::newRow("too long") << greeting + QByteArray(InstanceMessage::longest, '/');
        QTest::newRow("too long with an end") << greeting + QByteArray(InstanceMessage::longest, '/') + '\0';
    }
    static void whatIsNoRequestIsWrong()
    {
        QFETCH(const QByteArray, bytes);
        const InstanceMessage::Request request = InstanceMessage::decode(bytes);
        QCOMPARE(request.state, State::Wrong);
        QCOMPARE(request.file, QString());
    }
};

VELGOR_TEST(TestInstanceMessage)
#include "tst_InstanceMessage.moc"
