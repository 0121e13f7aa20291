#include "Activation.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QTest>

class TestActivation : public QObject {
    Q_OBJECT

private Q_SLOTS:
    static void init()
    {
        qunsetenv("XDG_ACTIVATION_TOKEN");
        qunsetenv("DESKTOP_STARTUP_ID");
    }

    static void environmentIsEmptiedInTwoSteps()
    {
        qputenv("XDG_ACTIVATION_TOKEN", "token");
        qputenv("DESKTOP_STARTUP_ID", "id_TIME42");
        QVERIFY(Activation::extractFromEnvironment() == (Activation{.token = "token", .startupId = "id_TIME42"}));
        QVERIFY(!qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN"));
        QCOMPARE(qgetenv("DESKTOP_STARTUP_ID"), QByteArray("id_TIME42"));
        Activation::removeStartupIdFromEnvironment();
        QVERIFY(!qEnvironmentVariableIsSet("DESKTOP_STARTUP_ID"));
        QVERIFY(Activation::extractFromEnvironment() == Activation());
    }

    static void whatIsNotSoundIsRemovedToo()
    {
        qputenv("XDG_ACTIVATION_TOKEN", "two words");
        QVERIFY(Activation::extractFromEnvironment() == Activation());
        QVERIFY(!qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN"));
    }

    static void soundTokens_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<bool>("isSound");
        QTest::newRow("hexadecimal") << QByteArray("44ab8ba87f214dbc9dd3647adeb5e933") << true;
        QTest::newRow("with a host and a time") << QByteArray("gnome-shell/velgor/9-1-host_TIME1234") << true;
        QTest::newRow("first and last letter") << QByteArray("!~") << true;
        QTest::newRow("longest") << QByteArray(512, 'a') << true;
        QTest::newRow("longer") << QByteArray(513, 'a') << false;
        QTest::newRow("empty") << QByteArray() << false;
        QTest::newRow("blank") << QByteArray("a b") << false;
        QTest::newRow("line feed") << QByteArray("a\n") << false;
        QTest::newRow("delete") << QByteArray("a\x7f") << false;
        QTest::newRow("zero byte") << QByteArray("a\0b", 3) << false;
        QTest::newRow("beyond ASCII") << QByteArray("\xc3\xa4") << false;
    }
    static void soundTokens()
    {
        QFETCH(const QByteArray, text);
        QTEST(Activation::isSound(text), "isSound");
    }

    static void oneStandsInForTheOther()
    {
        const Activation both{.token = "token", .startupId = "id"};
        QCOMPARE(both.forWayland(), QByteArray("token"));
        QCOMPARE(both.forX11(), QByteArray("id"));
        QCOMPARE(Activation{.startupId = "id"}.forWayland(), QByteArray("id"));
        QCOMPARE(Activation{.token = "token"}.forX11(), QByteArray("token"));
    }
};

VELGOR_TEST(TestActivation)
#include "tst_Activation.moc"
