#include "DiagnosticRecorder.h"
#include "Diagnostics.h"
#include "FatalStop.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QTest>

#include <thread>
#include <vector>

class TestDiagnostics : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void lineGoesToTheSinkAlone()
    {
        DiagnosticRecorder recorder;
        Diagnostics::printLine(QStringLiteral("one"));
        Diagnostics::printLine(QStringLiteral("two"));
        QCOMPARE(recorder.take(), (QStringList{QStringLiteral("one"), QStringLiteral("two")}));
        QCOMPARE(recorder.take(), QStringList());
    }

    void previousSinkComesBack()
    {
        DiagnosticRecorder outer;
        {
            const DiagnosticRecorder inner;
            Diagnostics::printLine(QStringLiteral("inner"));
            QCOMPARE(inner.lines(), QStringList{QStringLiteral("inner")});
        }
        Diagnostics::printLine(QStringLiteral("outer"));
        QCOMPARE(outer.take(), QStringList{QStringLiteral("outer")});
    }

    void standardErrorGetsWholeLinesInUtf8()
    {
        const auto written = fatalStopOf([] {
            Diagnostics::setSink(Diagnostics::standardError());
            Diagnostics::printLine(QStringLiteral(u"a \u00E9 b"));
            Diagnostics::printLine(QStringLiteral("c"));
            Diagnostics::fatalStop("enough");
        });
        QCOMPARE(written, QByteArray("a \xC3\xA9 b\nc\nFatal: enough\n"));
    }

    void standardOutputIsTheDefault()
    {
        const auto written = fatalStopOf([] {
            dup2(STDERR_FILENO, STDOUT_FILENO);
            Diagnostics::setSink({});
            Diagnostics::printLine(QStringLiteral("line"));
            Diagnostics::fatalStop("enough");
        });
        QCOMPARE(written, QByteArray("line\nFatal: enough\n"));
    }

    void linesOfARunAreKeptWhateverTheSink()
    {
        const DiagnosticRecorder outer;
        Diagnostics::printLine(QStringLiteral("one"));
        {
            const DiagnosticRecorder inner;
            Diagnostics::printLine(QStringLiteral("two"));
        }
        QCOMPARE(Diagnostics::keptLines().last(2), (QStringList{QStringLiteral("one"), QStringLiteral("two")}));
    }

    void linesFromManyThreadsAllArrive()
    {
        DiagnosticRecorder recorder;
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([i] {
                for (int line = 0; line < 250; ++line) {
                    Diagnostics::printLine(QStringLiteral("%1.%2").arg(i).arg(line));
                }
            });
        }
        for (std::thread &thread : threads) {
            thread.join();
        }
        QStringList lines = recorder.take();
        QCOMPARE(lines.size(), 1000);
        QCOMPARE(Diagnostics::keptLines(), lines.last(200));
        QCOMPARE(lines.removeDuplicates(), 0);
    }
};

VELGOR_TEST(TestDiagnostics)
#include "tst_Diagnostics.moc"
