#include "ProgramFiles.h"
#include "TestProgram.h"
#include "VelgorProcess.h"

#include <QCoreApplication>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTest>

namespace {

const QString lead = QStringLiteral("8725204569585644227");

QStringList words(const QString &text)
{
    return text.split(u' ', Qt::SkipEmptyParts);
}

} // namespace

/// What is said of the commands, and how their words are read.
class TestCommandLineUsage : public QObject {
    Q_OBJECT

private:
    VelgorProcess m_velgor;
    LibraryDirectory m_directory;

    static void addCommands()
    {
        QTest::addColumn<QString>("command");
        for (const char *command :
            {"list", "check", "copy", "library list", "library add", "library set", "library duplicate",
                "library remove", "library similar", "library export", "library compose", "library doctor", "help"}) {
            QTest::newRow(command) << command;
        }
    }

private Q_SLOTS:
    void initTestCase() { ProgramFiles::copyLibrary(QStringLiteral("ok"), m_directory); }

    void helpShowsAnExample_data() { addCommands(); }
    void helpShowsAnExample()
    {
        QFETCH(const QString, command);
        const auto result = m_velgor.run(words(command + QStringLiteral(" --help")));
        QCOMPARE(result.status, 0);
        QCOMPARE(result.errors, QByteArray());
        const QString help = QString::fromUtf8(result.output);
        QVERIFY(help.startsWith(QStringLiteral("Usage: velgor ") + command));
        QVERIFY(help.contains(QStringLiteral("Example:\n  velgor ") + command));
        QCOMPARE(m_velgor.run(words(command + QStringLiteral(" -h"))).output, result.output);
        QCOMPARE(m_velgor.run(words(QStringLiteral("help ") + command)).output, result.output);
        // A script may name the library once for all that it does.
        const auto named = m_velgor.run(words(QStringLiteral("--library none help ") + command));
        QCOMPARE(named.status, 0);
        QCOMPARE(named.output, result.output);
    }

    void overviewNamesTheCommand_data() { addCommands(); }
    void overviewNamesTheCommand()
    {
        QFETCH(const QString, command);
        const auto all = m_velgor.run({QStringLiteral("--help")});
        QCOMPARE(all.status, 0);
        QVERIFY(all.output.contains("\n  " + command.toUtf8() + ' '));
        const auto library = m_velgor.run(words(QStringLiteral("library --help")));
        QCOMPARE(library.status, 0);
        QCOMPARE(library.output.contains("\n  velgor " + command.toUtf8()), command.startsWith(u"library"));
    }

    void manPageNamesTheCommandAndItsOptions_data() { addCommands(); }
    void manPageNamesTheCommandAndItsOptions()
    {
        QFETCH(const QString, command);
        QString page = QString::fromUtf8(ProgramFiles::read(QStringLiteral(VELGOR_MAN_PAGE)));
        page.replace(QStringLiteral("\\-"), QStringLiteral("-"));
        qsizetype start = page.indexOf(QStringLiteral(".SS velgor ") + command);
        QVERIFY(start >= 0);
        const QString section = page.sliced(start).section(QStringLiteral("\n.S"), 0, 0);
        const QString help = QString::fromUtf8(m_velgor.run(words(command + QStringLiteral(" --help"))).output);
        static const QRegularExpression option(
            QStringLiteral("^  (?:-\\w, )?(--[\\w-]+)"), QRegularExpression::MultilineOption);
        int count = 0;
        for (auto found = option.globalMatch(help); found.hasNext(); ++count) {
            const QString name = found.next().captured(1);
            QVERIFY2(section.contains(name), qPrintable(name));
        }
        QVERIFY(count > 0);
    }

    void manPageIsWellFormed()
    {
        const QString groff = QStandardPaths::findExecutable(QStringLiteral("groff"));
        if (groff.isEmpty()) {
            QSKIP("groff is not installed");
        }
        QProcess process;
        process.start(groff, words(QStringLiteral("-ww -man -Tutf8 -z " VELGOR_MAN_PAGE)));
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.readAllStandardError(), QByteArray());
        QCOMPARE(process.exitCode(), 0);
    }

    void versionIsShown_data()
    {
        QTest::addColumn<QString>("line");
        for (const char *line : {"--version", "-V", "library --version", "library -V", "list --version", "list -V",
                 "list x.prst --version", "check --json -V", "library set --version", "library remove -V",
                 "library --library /nowhere list --version", "help --version"}) {
            QTest::newRow(line) << line;
        }
    }
    void versionIsShown()
    {
        QFETCH(const QString, line);
        const auto result = m_velgor.run(words(line));
        QCOMPARE(result.status, 0);
        QCOMPARE(result.output, QByteArray("velgor " VELGOR_VERSION "\n"));
        QCOMPARE(result.errors, QByteArray());
    }

    void versionMayBeAValueOrAFile()
    {
        const LibraryDirectory directory;
        ProgramFiles::copyLibrary(QStringLiteral("ok"), directory);
        QCOMPARE(
            m_velgor.library(directory.path(), words(QStringLiteral("set %1 --comment --version").arg(lead))).status,
            0);
        const auto listed =
            m_velgor.library(directory.path(), words(QStringLiteral("list --comment --version --json")));
        QCOMPARE(listed.json().at("patches").size(), std::size_t(1));
        QCOMPARE(m_velgor.run(words(QStringLiteral("list -- --version"))).status, 2);
    }

    void helpIsACommandToo_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("same");
        QTest::newRow("alone") << "help"
                               << "--help";
        QTest::newRow("of the group") << "help library"
                                      << "library --help";
        QTest::newRow("in the group") << "library help"
                                      << "library --help";
        QTest::newRow("of a command in the group") << "library help set"
                                                   << "library set --help";
    }
    void helpIsACommandToo()
    {
        QFETCH(const QString, line);
        QFETCH(const QString, same);
        const auto result = m_velgor.run(words(line));
        QCOMPARE(result.status, 0);
        QCOMPARE(result.output, m_velgor.run(words(same)).output);
    }

    void helpOfNothingKnownIsRefused()
    {
        for (const QString &line : {QStringLiteral("help liste"), QStringLiteral("library help liste"),
                 QStringLiteral("help library liste"), QStringLiteral("help list FILE")}) {
            const auto result = m_velgor.run(words(line));
            QCOMPARE(result.status, 2);
            QCOMPARE(result.output, QByteArray());
            QVERIFY(result.errors.startsWith("velgor: unknown command "));
        }
    }

    void wrongWordsAreRefused_data()
    {
        QTest::addColumn<QString>("line");
        for (const char *line : {"", "liste", "library", "library liste", "--liste", "list --liste x", "list", "check",
                 "copy", "library add", "library set", "library duplicate 1 2", "list a b", "library list a",
                 "--library", "library --library", "library list --library", "--library d list x", "library remove",
                 "library export -o x", "list --json=yes x"}) {
            QTest::newRow(*line == '\0' ? "nothing" : line) << line;
        }
    }
    void wrongWordsAreRefused()
    {
        QFETCH(const QString, line);
        const auto result = m_velgor.run(words(line));
        QCOMPARE(result.status, 2);
        QCOMPARE(result.output, QByteArray());
        const QStringList lines = result.errorLines();
        QCOMPARE(lines.size(), 2);
        QVERIFY(lines.first().startsWith(u"velgor: "));
        QVERIFY2(lines.last().startsWith(u"Try 'velgor"), result.errors.constData());
    }

    void dashesEndTheOptions()
    {
        ProgramFiles::write(m_velgor.filePath(QStringLiteral("--json")),
            ProgramFiles::read(ProgramFiles::sample(QStringLiteral("edge/one_patch"))));
        const auto result = m_velgor.run(words(QStringLiteral("list -- --json")));
        QCOMPARE(result.status, 0);
        QVERIFY(result.output.startsWith("Slot"));
    }

    void libraryStandsAnywhere_data()
    {
        QTest::addColumn<QString>("line");
        for (const char *line : {"--library DIR library list --json", "--library=DIR library list --json",
                 "library --library DIR list --json", "library list --library DIR --json",
                 "library list --json --library=DIR", "--library /nowhere library list --json --library DIR"}) {
            QTest::newRow(line) << line;
        }
    }
    void libraryStandsAnywhere()
    {
        QFETCH(QString, line);
        const auto result = m_velgor.run(words(line.replace(QStringLiteral("DIR"), m_directory.path())));
        QCOMPARE(result.status, 0);
        QVERIFY(result.json().at("total") == 3);
    }

    void outputThatCannotBeWrittenFails_data()
    {
        QTest::addColumn<QString>("line");
        for (const char *line : {"--help", "--version", "list --help", "library list --library DIR",
                 "library list --json --library DIR", "library similar ID --library DIR"}) {
            QTest::newRow(line) << line;
        }
    }
    void outputThatCannotBeWrittenFails()
    {
        QFETCH(QString, line);
        line.replace(QStringLiteral("DIR"), m_directory.path()).replace(QStringLiteral("ID"), lead);
        VelgorProcess full;
        full.setOutputFile(QStringLiteral("/dev/full"));
        const auto result = full.run(words(line));
        QCOMPARE(result.status, 2);
        QVERIFY(result.errorLines().last().startsWith(u"velgor: "));
    }

    void localeChangesNothing_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::newRow("C") << "C";
        QTest::newRow("UTF-8") << "C.UTF-8";
        QTest::newRow("one that is not installed") << "de_DE.UTF-8";
    }
    void localeChangesNothing()
    {
        QFETCH(const QString, locale);
        VelgorProcess program;
        const QStringList list{
            QStringLiteral("library"), QStringLiteral("list"), QStringLiteral("--library"), m_directory.path()};
        const auto usual = program.run(list);
        const QStringList filtered = list + QStringList{QStringLiteral("--name"), QString::fromUtf8("größe")};
        program.setVariable(QStringLiteral("LC_ALL"), locale);
        QCOMPARE(program.run(list).output, usual.output);
        const auto result = program.run(filtered);
        QCOMPARE(result.status, 0);
        QVERIFY(result.output.contains("Größe"));
    }
};

VELGOR_TEST(TestCommandLineUsage)
#include "tst_CommandLineUsage.moc"
