#include "LibraryDirectory.h"
#include "SingleInstance.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

using Outcome = SingleInstance::Outcome;

/// What the program itself takes from its arguments: seen by what it hands over to the one that has the
/// library.
class TestStartedProgram : public QObject {
    Q_OBJECT

private Q_SLOTS:
    static void whatIsAskedForIsHandedOver_data()
    {
        QTest::addColumn<QStringList>("words");
        QTest::addColumn<QString>("file");
        const QString mark(QChar::ByteOrderMark);
        const QString name = QStringLiteral("a b.prst");
        QTest::newRow("plain") << QStringList{name} << name;
        // Which Qt takes for a sign of the encoding.
        QTest::newRow("leading mark") << QStringList{mark + name} << mark + name;
        QTest::newRow("two marks") << QStringList{mark + mark + name} << mark + mark + name;
        QTest::newRow("beyond ASCII") << QStringList{QString::fromUtf8("Größe🎸.prst")}
                                      << QString::fromUtf8("Größe🎸.prst");
        QTest::newRow("a dash") << QStringList{QStringLiteral("--"), QStringLiteral("-v")} << QStringLiteral("-v");
        QTest::newRow("between options of the window system")
            << QStringList{QStringLiteral("-style"), QStringLiteral("fusion"), mark + name, QStringLiteral("-reverse")}
            << mark + name;
        QTest::newRow("none but options of the window system")
            << QStringList{QStringLiteral("-style"), QStringLiteral("fusion")} << QString();
        QTest::newRow("a new list") << QStringList{QStringLiteral("--new-list")} << QString();
    }
    static void whatIsAskedForIsHandedOver()
    {
        QFETCH(const QStringList, words);
        QFETCH(const QString, file);
        const LibraryDirectory home;
        const LibraryDirectory library;
        home.write(QStringLiteral("config/velgor/velgor-library-manager.conf"),
            "[General]\nlibraryDirectory=" + library.path().toUtf8() + '\n');
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(home.path()));
        SingleInstance first(library.path());
        QCOMPARE(first.start({}), Outcome::First);
        const QSignalSpy activated(&first, &SingleInstance::activated);

        QProcess program;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("HOME"), home.path());
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), home.filePath(QStringLiteral("config")));
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
        program.setProcessEnvironment(environment);
        program.setWorkingDirectory(home.path());
        program.start(QStringLiteral(VELGOR_WINDOW), words);
        QVERIFY(QTest::qWaitFor([&] { return program.state() == QProcess::NotRunning; }, 60'000));
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(program.exitCode(), 0);
        QCOMPARE(activated.size(), 1);
        const auto request = activated.first().first().value<StartRequest>();
        const StartRequest expected = words.contains(QStringLiteral("--new-list"))
            ? StartRequest{.action = StartRequest::Action::NewList}
            : StartRequest::toOpen(file.isEmpty() ? QString() : home.filePath(file));
        QVERIFY(request == expected);
    }
};

VELGOR_TEST(TestStartedProgram)
#include "tst_StartedProgram.moc"
