#include "CommandFixture.h"
#include "TestProgram.h"
#include "TestRecords.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTest>

namespace {

QByteArray realistic()
{
    return ProgramFiles::read(ProgramFiles::sample(QStringLiteral("realistic/half51")));
}

} // namespace

/// "-" in the place of a file or of an id.
class TestStandardStreams : public QObject, private CommandFixture {
    Q_OBJECT

private:
    [[nodiscard]] QByteArray idsIn(const QString &options = {}) const
    {
        return library(QStringLiteral("list|--ids") + options).output;
    }

private Q_SLOTS:
    void init() { startWithSample(); }

    void fileComesFromStandardInput_data()
    {
        QTest::addColumn<QString>("line");
        QTest::newRow("list") << "list|FILE";
        QTest::newRow("list as JSON") << "list|FILE|--json";
        QTest::newRow("check") << "check|FILE";
        QTest::newRow("check as JSON") << "check|--json|FILE";
        QTest::newRow("check twice the same") << "check|FILE|FILE";
        QTest::newRow("copy") << "copy|FILE|-o|-";
        QTest::newRow("add") << "library|add|--json|FILE|--library|DIR";
        QTest::newRow("compose") << "library|compose|--from|FILE|-o|-|--library|DIR";
    }
    void fileComesFromStandardInput()
    {
        QFETCH(QString, line);
        const LibraryDirectory one;
        const LibraryDirectory other;
        const QString name = m_velgor.filePath(QStringLiteral("some.prst"));
        ProgramFiles::write(name, realistic());
        const auto lineFor = [&line](const QString &file, const QString &directory) {
            return words(QString(line).replace(QStringLiteral("FILE"), file).replace(QStringLiteral("DIR"), directory));
        };
        const auto expected = m_velgor.run(lineFor(name, one.path()));
        m_velgor.setInput(realistic());
        const auto result = m_velgor.run(lineFor(QStringLiteral("-"), other.path()));
        QCOMPARE(result.status, expected.status);
        QVERIFY(!expected.output.isEmpty());
        QCOMPARE(result.output, QByteArray(expected.output).replace(name.toUtf8(), "-"));
        QStringList kept = one.files();
        kept.removeOne(QStringLiteral("velgorlibrary.json"));
        for (const QString &file : std::as_const(kept)) {
            QCOMPARE(other.read(file), one.read(file));
        }
    }

    void noPresetFileOnStandardInputIsRefused_data()
    {
        QTest::addColumn<QString>("line");
        for (const char *line : {"list|-", "check|-", "copy|-|-o|-", "library|add|-|--library|DIR",
                 "library|compose|--from|-|-o|-|--library|DIR"}) {
            QTest::newRow(line) << line;
        }
    }
    void noPresetFileOnStandardInputIsRefused()
    {
        QFETCH(QString, line);
        line.replace(QStringLiteral("DIR"), m_directory->path());
        const auto before = m_directory->stamps();
        for (const QByteArray &input : {QByteArray(), realistic().chopped(1), QByteArray("text\n")}) {
            m_velgor.setInput(input);
            const auto result = m_velgor.run(words(line));
            QCOMPARE(result.status, 2);
            QVERIFY2(result.errorLines().last().startsWith(u"velgor: -: "), result.errors.constData());
        }
        QCOMPARE(m_directory->stamps(), before);
    }

    void fileOfThisNameIsRead()
    {
        ProgramFiles::write(m_velgor.filePath(QStringLiteral("-")), realistic());
        QCOMPARE(m_velgor.run(words(QStringLiteral("list|./-"))).status, 0);
        QCOMPARE(m_velgor.run(words(QStringLiteral("list|-"))).status, 2);
        QFile::remove(m_velgor.filePath(QStringLiteral("-")));
    }

    void standardOutputHoldsTheFileAlone_data()
    {
        QTest::addColumn<QString>("line");
        QTest::newRow("copy") << "copy|SAMPLE|-o|OUT";
        QTest::newRow("export") << "library|export|LEAD|SLASHED|-o|OUT|--library|DIR";
        QTest::newRow("compose") << "library|compose|--slot|2.2=LEAD|--output=OUT|--library|DIR";
    }
    void standardOutputHoldsTheFileAlone()
    {
        QFETCH(QString, line);
        line.replace(QStringLiteral("SAMPLE"), ProgramFiles::sample(QStringLiteral("realistic/half51")));
        line.replace(QStringLiteral("LEAD"), lead).replace(QStringLiteral("SLASHED"), slashed);
        line.replace(QStringLiteral("DIR"), m_directory->path());
        const QString file = m_velgor.filePath(QStringLiteral("out.prst"));
        QCOMPARE(m_velgor.run(words(QString(line).replace(QStringLiteral("OUT"), file))).status, 0);
        const auto result = m_velgor.run(words(QString(line).replace(QStringLiteral("OUT"), QStringLiteral("-"))));
        QCOMPARE(result.status, 0);
        QVERIFY(!result.output.isEmpty());
        QCOMPARE(result.output, ProgramFiles::read(file));
        QVERIFY(!QFile::exists(m_velgor.filePath(QStringLiteral("-"))));
        QFile::remove(file);

        VelgorProcess full;
        full.setOutputFile(QStringLiteral("/dev/full"));
        QCOMPARE(full.run(words(QString(line).replace(QStringLiteral("OUT"), QStringLiteral("-")))).status, 2);
    }

    void closedStandardOutputIsAFailure_data() { standardOutputHoldsTheFileAlone_data(); }
    void closedStandardOutputIsAFailure()
    {
        QFETCH(QString, line);
        line.replace(QStringLiteral("SAMPLE"), ProgramFiles::sample(QStringLiteral("realistic/half51")));
        line.replace(QStringLiteral("LEAD"), lead).replace(QStringLiteral("SLASHED"), slashed);
        line.replace(QStringLiteral("DIR"), m_directory->path()).replace(QStringLiteral("OUT"), QStringLiteral("-"));
        const auto before = m_directory->stamps();
        for (const char *closed : {"<&- >&-", ">&-"}) {
            QProcess shell;
            shell.start(QStringLiteral("/bin/sh"),
                QStringList{QStringLiteral("-c"), QStringLiteral("exec \"$0\" \"$@\" ") + QLatin1String(closed),
                    m_velgor.executable()}
                    + words(line));
            QVERIFY(shell.waitForFinished());
            QCOMPARE(shell.exitCode(), 2);
            QVERIFY(shell.readAllStandardError().endsWith("velgor: standard output could not be written\n"));
        }
        QCOMPARE(m_directory->stamps(), before);
    }

    void streamsThatNothingNeedsMayBeClosed()
    {
        QProcess shell;
        shell.start(QStringLiteral("/bin/sh"),
            {QStringLiteral("-c"), QStringLiteral("exec \"$0\" copy \"$1\" -o \"$2\" <&- >&- 2>&-"),
                m_velgor.executable(), ProgramFiles::sample(QStringLiteral("realistic/half51")),
                m_velgor.filePath(QStringLiteral("out.prst"))});
        QVERIFY(shell.waitForFinished());
        QCOMPARE(shell.exitCode(), 0);
        QCOMPARE(m_velgor.run({QStringLiteral("check"), m_velgor.filePath(QStringLiteral("out.prst"))}).status, 0);
    }

    void idsAreListedAlone()
    {
        QCOMPARE(idsIn(), (lead + u'\n' + slashed + u'\n' + accented + u'\n').toUtf8());
        QCOMPARE(idsIn(QStringLiteral("|--sort|-name|--name|e")), (lead + u'\n' + accented + u'\n').toUtf8());
        const auto none = library(QStringLiteral("list|--ids|--name|nobody"));
        QCOMPARE(none.status, 1);
        QCOMPARE(none.output, QByteArray());
        const auto both = library(QStringLiteral("list|--ids|--json"));
        QCOMPARE(both.status, 2);
        QCOMPARE(both.output, QByteArray());
        const LibraryDirectory empty;
        const auto nothing = m_velgor.library(empty.path(), words(QStringLiteral("list|--ids")));
        QCOMPARE(nothing.status, 0);
        QCOMPARE(nothing.output, QByteArray());
    }

    void listedIdsAreSet()
    {
        m_velgor.setInput(idsIn(QStringLiteral("|--name|e")));
        QCOMPARE(library(QStringLiteral("set|-|--solo|on|--comment|both")).status, 0);
        QCOMPARE(idsIn(QStringLiteral("|--solo|--comment|both")), (lead + u'\n' + accented + u'\n').toUtf8());
    }

    void listedIdsAreRemoved()
    {
        m_velgor.setInput(idsIn(QStringLiteral("|--bass")));
        QCOMPARE(library(QStringLiteral("remove|-")).status, 0);
        QCOMPARE(idsIn(), (lead + u'\n' + accented + u'\n').toUtf8());
        // Beside one that is given, and with the line ends and blank lines of other systems.
        m_velgor.setInput("\r\n  " + lead.toUtf8() + "\r\n\r\n");
        QCOMPARE(library(QStringLiteral("remove|-|") + accented).status, 0);
        QCOMPARE(idsIn(), QByteArray());
    }

    void listedIdsAreExportedInTheirOrder()
    {
        m_velgor.setInput(idsIn(QStringLiteral("|--sort|name")));
        const auto result = library(QStringLiteral("export|%1|-|-o|-").arg(lead));
        QCOMPARE(result.status, 0);
        m_velgor.setInput(result.output);
        const Json file = m_velgor.run(words(QStringLiteral("list|-|--json"))).json();
        QCOMPARE(namesIn(file), words(QString::fromUtf8("Lead|A/B|Größe|Lead")));
    }

    void wrongIdsDoNothing_data()
    {
        QTest::addColumn<QByteArray>("input");
        QTest::newRow("none") << QByteArray();
        QTest::newRow("blank lines") << QByteArray("\n \n");
        QTest::newRow("unknown last") << QByteArray(lead.toUtf8() + "\n12345\n");
        QTest::newRow("a name") << QByteArray("Lead\n");
        QTest::newRow("two on a line") << QByteArray(lead.toUtf8() + ' ' + slashed.toUtf8());
        QTest::newRow("another dash") << QByteArray("-\n");
        QTest::newRow("no UTF-8") << QByteArray("\xff\n");
        QTest::newRow("a terminal's escape") << QByteArray("\x1b[2J\n");
    }
    void wrongIdsDoNothing()
    {
        QFETCH(const QByteArray, input);
        m_velgor.setInput(input);
        const auto before = m_directory->stamps();
        for (const char *line : {"set|-|--guitar|off", "remove|-", "export|-|-o|-"}) {
            const auto result = library(QLatin1String(line));
            QCOMPARE(result.status, 2);
            QCOMPARE(result.output, QByteArray());
            QVERIFY2(result.errorLines().last().startsWith(u"velgor: "), result.errors.constData());
            QVERIFY(!result.errors.contains('\x1b'));
        }
        QCOMPARE(m_directory->stamps(), before);
    }
};

VELGOR_TEST(TestStandardStreams)
#include "tst_StandardStreams.moc"
