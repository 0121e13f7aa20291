#include "CommandFixture.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTest>

namespace {

/// U+FEFF, which Qt takes for a sign of the encoding at the start of a text.
const QString mark = QString(QChar(QChar::ByteOrderMark));

} // namespace

/// Names and comments on their way through arguments and tables, to the character.
class TestTextOfPatches : public QObject, private CommandFixture {
    Q_OBJECT

private Q_SLOTS:
    void init() { startWithSample(); }

    void leadingMarkIsKept_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("first character") << mark + QStringLiteral("Lead");
        QTest::newRow("twice") << mark + mark + QStringLiteral("Lead");
        QTest::newRow("inside") << QStringLiteral("Le") + mark + QStringLiteral("ad");
        QTest::newRow("alone") << mark;
    }
    void leadingMarkIsKept()
    {
        QFETCH(const QString, text);
        QCOMPARE(library(QStringLiteral("set|%1|--name|%2|--comment|%2").arg(lead, text)).status, 0);
        QVERIFY(patch(lead).at("name") == text.toStdString());
        QVERIFY(patch(lead).at("comment") == text.toStdString());
        const QByteArray table = library(QStringLiteral("list")).output;
        QCOMPARE(table.count(mark.toUtf8()), 2 * text.count(mark));
        QVERIFY(table.contains("  " + text.toUtf8() + ' ') && table.contains("  " + text.toUtf8() + '\n'));
        // Each word alone, as a filter and as the name of a file.
        QCOMPARE(library(QStringLiteral("list|--name|") + text).status, 0);
        const auto exported = library(QStringLiteral("export|%1|-o|%2.prst").arg(lead, text));
        QCOMPARE(exported.status, 0);
        QVERIFY(QFile::exists(m_velgor.filePath(text + QStringLiteral(".prst"))));
        const auto listed = m_velgor.run({QStringLiteral("list"), text + QStringLiteral(".prst")});
        QCOMPARE(listed.status, 0);
        QCOMPARE(listed.output.count(mark.toUtf8()), text.count(mark));
        const auto missing = m_velgor.run({QStringLiteral("list"), mark + QStringLiteral("none.prst")});
        QVERIFY(missing.errors.startsWith("velgor: " + mark.toUtf8() + "none.prst: "));
    }

    void argumentThatIsNoTextIsRefused()
    {
        const auto before = m_directory->stamps();
        QProcess shell;
        shell.start(QStringLiteral("/bin/sh"),
            {QStringLiteral("-c"),
                QStringLiteral("exec \"$0\" library set --library \"$1\" \"$2\" --name \"$(printf 'L\\351ad')\""),
                m_velgor.executable(), m_directory->path(), lead});
        QVERIFY(shell.waitForFinished());
        QCOMPARE(shell.exitCode(), 2);
        QVERIFY(shell.readAllStandardError().startsWith("velgor: an argument is not valid UTF-8: L"));
        QCOMPARE(m_directory->stamps(), before);
    }
};

VELGOR_TEST(TestTextOfPatches)
#include "tst_TextOfPatches.moc"
