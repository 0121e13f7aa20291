#include "DiagnosticLog.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QTest>

namespace {

qsizetype textOf(const QStringList &lines)
{
    return lines.join(QString()).size();
}

} // namespace

class TestDiagnosticLog : public QObject {
    Q_OBJECT

private Q_SLOTS:
    static void nothingIsKeptAtFirst() { QCOMPARE(DiagnosticLog().lines(), QStringList()); }

    static void lastTwoHundredLinesAreKept()
    {
        DiagnosticLog log;
        QStringList expected;
        for (int i = 0; i < 1234; ++i) {
            log.add(QString::number(i));
            expected.append(QString::number(i));
        }
        QCOMPARE(log.lines(), expected.last(200));
    }

    static void usualLinesAllHaveRoom()
    {
        DiagnosticLog log;
        for (int i = 0; i < 200; ++i) {
            log.add(QString(300, u'a'));
        }
        QCOMPARE(log.lines().size(), 200);
    }

    static void lineIsKeptWholeUpToItsLimit_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("kept");
        const QString guitar = QString::fromUtf8("\U0001f3b8");
        const QString whole(2'000, u'a');
        QTest::newRow("empty") << QString() << QString();
        QTest::newRow("as long as can be") << whole << whole;
        QTest::newRow("a character more") << whole + u'b' << whole + u'\u2026';
        QTest::newRow("beyond the first plane") << guitar.repeated(2'001) << guitar.repeated(2'000) + u'\u2026';
        QTest::newRow("a megabyte") << QString(1 << 20, u'a') << whole + u'\u2026';
    }
    static void lineIsKeptWholeUpToItsLimit()
    {
        QFETCH(const QString, line);
        QFETCH(const QString, kept);
        DiagnosticLog log;
        log.add(line);
        QCOMPARE(log.lines(), QStringList{kept});
    }

    static void longLinesPushTheOldestOut()
    {
        DiagnosticLog log;
        for (int i = 0; i < 500; ++i) {
            log.add(QString::number(i).rightJustified(1'999, u'.'));
            QVERIFY(textOf(log.lines()) <= DiagnosticLog::mostText);
        }
        const QStringList lines = log.lines();
        QCOMPARE(lines.size(), 32);
        QVERIFY(lines.first().endsWith(QStringLiteral(".468")));
        QVERIFY(lines.last().endsWith(QStringLiteral(".499")));
        // Shorter ones have room again.
        for (int i = 0; i < 200; ++i) {
            log.add(QStringLiteral("short"));
        }
        QCOMPARE(log.lines().size(), 200);
    }
};

VELGOR_TEST(TestDiagnosticLog)
#include "tst_DiagnosticLog.moc"
