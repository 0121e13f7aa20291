#include "InstanceMessage.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QTest>

using Action = StartRequest::Action;
using InstanceMessage::Answer;
using InstanceMessage::State;

namespace {

const QByteArray greeting("velgor-library-manager 2\n");

/// A request with these fields, of which each one but the last is followed by a "|".
QByteArray messageOf(const QByteArray &fields)
{
    QByteArray body = fields;
    return greeting + (body.isEmpty() ? body : body.replace('|', '\0') + '\0') + '\0';
}

} // namespace

class TestInstanceMessage : public QObject {
    Q_OBJECT

private Q_SLOTS:
    static void requestComesThrough_data()
    {
        QTest::addColumn<StartRequest>("request");
        const auto openRow = [](const char *name, const QString &file) {
            QTest::newRow(name) << StartRequest{.action = Action::Open, .file = file};
        };
        QTest::newRow("no file") << StartRequest();
        QTest::newRow("new list") << StartRequest{.action = Action::NewList};
        openRow("file", QStringLiteral("/home/user/My list.prst"));
        openRow("beyond ASCII", QString::fromUtf8("/\u00e4/\U0001F3B8.prst"));
        openRow("line feed in the name", QStringLiteral("/a\nb.prst"));
        openRow("a field in the name", QStringLiteral("/file=/b.prst"));
        openRow("longest argument", u'/' + QString(128 * 1024, QChar(0x4e00)));
        const Activation activation{.token = "7f3c=a", .startupId = "menu/velgor/42-0-host_TIME1234"};
        QTest::newRow("activation") << StartRequest{.activation = activation};
        QTest::newRow("file and activation")
            << StartRequest{.action = Action::Open, .file = QStringLiteral("/a.prst"), .activation = activation};
    }
    static void requestComesThrough()
    {
        QFETCH(const StartRequest, request);
        const InstanceMessage::Reading reading = InstanceMessage::decode(InstanceMessage::encode(request));
        QCOMPARE(reading.state, State::Complete);
        QVERIFY(reading.request == request);
    }

    /// What a program of another version reads and writes.
    static void bytesAreTheseForEver()
    {
        const StartRequest request{.action = Action::Open,
            .file = QStringLiteral("/a b.prst"),
            .activation = {.token = "token", .startupId = "id"}};
        QCOMPARE(InstanceMessage::encode(request),
            messageOf("action=open|file=/a b.prst|activation-token=token|startup-id=id"));
        QCOMPARE(InstanceMessage::encode({}), messageOf("action=show"));
        QCOMPARE(InstanceMessage::encode({.action = Action::NewList}), messageOf("action=new-list"));
        QCOMPARE(InstanceMessage::yes.toByteArray(), QByteArray("yes\n"));
        QCOMPARE(InstanceMessage::notKnown.toByteArray(), QByteArray("not known\n"));
    }

    static void everyBeginningOfARequestIsUnfinished()
    {
        const QByteArray whole = InstanceMessage::encode(StartRequest::toOpen(QStringLiteral("/list.prst")));
        for (qsizetype size = 0; size < whole.size(); ++size) {
            QCOMPARE(InstanceMessage::decode(whole.first(size)).state, State::Unfinished);
        }
    }

    static void hintsThatAreNotKnownArePassedOver()
    {
        const auto reading =
            InstanceMessage::decode(messageOf("screen=left|action=open|colour=|file=/a.prst|startup-id=id"));
        QCOMPARE(reading.state, State::Complete);
        QVERIFY(reading.request
            == (StartRequest{
                .action = Action::Open, .file = QStringLiteral("/a.prst"), .activation = {.startupId = "id"}}));
    }

    static void hintsThatAreNotSoundArePassedOver()
    {
        const auto reading =
            InstanceMessage::decode(messageOf("action=show|activation-token=a b|startup-id=" + QByteArray(513, 'x')));
        QCOMPARE(reading.state, State::Complete);
        QVERIFY(reading.request == StartRequest());
    }

    static void whatANewerProgramAsksForIsNotKnown_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("action") << messageOf("action=print|file=/a.prst");
        QTest::newRow("version") << QByteArray("velgor-library-manager 3\n");
        QTest::newRow("former version") << QByteArray("velgor-library-manager 1\n/list.prst\0", 36);
        QTest::newRow("much later version") << QByteArray("velgor-library-manager 123456789\nanything at all");
    }
    static void whatANewerProgramAsksForIsNotKnown()
    {
        QFETCH(const QByteArray, bytes);
        const InstanceMessage::Reading reading = InstanceMessage::decode(bytes);
        QCOMPARE(reading.state, State::NotKnown);
        QVERIFY(reading.request == StartRequest());
    }

    static void whatIsNoRequestIsWrong_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("other text") << QByteArray("GET / HTTP/1.1\r\n");
        QTest::newRow("zero byte first") << QByteArray(1, '\0');
        QTest::newRow("no version") << QByteArray("velgor-library-manager \n");
        QTest::newRow("version that is no number") << QByteArray("velgor-library-manager 2a");
        QTest::newRow("version without an end") << QByteArray("velgor-library-manager 1234567890");
        QTest::newRow("bytes behind the end") << InstanceMessage::encode({}) + 'x';
        QTest::newRow("two requests") << InstanceMessage::encode({}) + InstanceMessage::encode({});
        QTest::newRow("no fields") << messageOf({});
        QTest::newRow("no action") << messageOf("file=/a.prst");
        QTest::newRow("action twice") << messageOf("action=show|action=show");
        QTest::newRow("no file to open") << messageOf("action=open");
        QTest::newRow("file that is not to be opened") << messageOf("action=show|file=/a.prst");
        QTest::newRow("field without a name") << messageOf("action=show|=a");
        QTest::newRow("field without a sign") << messageOf("action=show|a");
        QTest::newRow("field with another name") << messageOf("action=show|A b=c");
        QTest::newRow("relative path") << messageOf("action=open|file=list.prst");
        QTest::newRow("no UTF-8") << messageOf("action=open|file=/\xff");
        QTest::newRow("too long") << greeting + QByteArray(InstanceMessage::longest, '/');
        QTest::newRow("too long with an end")
            << messageOf("action=open|file=/" + QByteArray(InstanceMessage::longest, 'a'));
    }
    static void whatIsNoRequestIsWrong()
    {
        QFETCH(const QByteArray, bytes);
        const InstanceMessage::Reading reading = InstanceMessage::decode(bytes);
        QCOMPARE(reading.state, State::Wrong);
        QVERIFY(reading.request == StartRequest());
    }

    static void answerIsRead_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<Answer>("answer");
        QTest::newRow("nothing yet") << QByteArray() << Answer::Unfinished;
        QTest::newRow("half") << QByteArray("ye") << Answer::Unfinished;
        QTest::newRow("yes") << InstanceMessage::yes.toByteArray() << Answer::Yes;
        QTest::newRow("not known") << InstanceMessage::notKnown.toByteArray() << Answer::NotKnown;
        QTest::newRow("other line") << QByteArray("certainly not\n") << Answer::Wrong;
        QTest::newRow("no line") << QByteArray(InstanceMessage::longestAnswer, 'y') << Answer::Wrong;
    }
    static void answerIsRead()
    {
        QFETCH(const QByteArray, bytes);
        QTEST(InstanceMessage::decodeAnswer(bytes), "answer");
    }
};

VELGOR_TEST(TestInstanceMessage)
#include "tst_InstanceMessage.moc"
