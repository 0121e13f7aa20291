#include "ProgramFiles.h"
#include "TestProgram.h"
#include "TestRecords.h"
#include "VelgorProcess.h"

#include <QCoreApplication>
#include <QLockFile>
#include <QSysInfo>
#include <QTest>

#include <sys/stat.h>

namespace {

using Json = VelgorProcess::Json;

const QString lead = QStringLiteral("8725204569585644227");
const QString libraryFile = QStringLiteral("velgorlibrary.json");
const QString lockFile = QStringLiteral(".velgorlibrary.lock");

QStringList words(const char *text)
{
    return QString::fromUtf8(text).split(u'|');
}

QString text(const Json &value)
{
    return value.is_string() ? QString::fromStdString(value.get<std::string>()) : QString();
}

} // namespace

/// Files and directories that are not what they should be.
class TestHostileInput : public QObject {
    Q_OBJECT

private:
    VelgorProcess m_velgor;

    [[nodiscard]] QString output() const { return m_velgor.filePath(QStringLiteral("out.prst")); }

    /// Every library command, with arguments that would do for the sample library.
    static void addCommands(bool withReading)
    {
        QTest::addColumn<QStringList>("command");
        QTest::newRow("add") << QStringList{
            QStringLiteral("add"), ProgramFiles::sample(QStringLiteral("edge/one_patch"))};
        QTest::newRow("set") << words("set|8725204569585644227|--name|x");
        QTest::newRow("set default") << words("set|8725204569585644227|--default");
        QTest::newRow("duplicate") << words("duplicate|8725204569585644227");
        QTest::newRow("remove") << words("remove|8725204569585644227");
        if (withReading) {
            QTest::newRow("list") << words("list");
            QTest::newRow("list as JSON") << words("list|--json");
            QTest::newRow("similar") << words("similar|8725204569585644227");
            QTest::newRow("export") << words("export|8725204569585644227|-o|out.prst");
            QTest::newRow("compose") << words("compose|--slot|1.1=8725204569585644227|-o|out.prst");
        }
    }

private Q_SLOTS:
    void init()
    {
        QFile::remove(output());
        m_velgor.setTimeLimit(60'000);
    }

    void noPresetFileIsRefusedAtOnce_data()
    {
        QTest::addColumn<QString>("path");
        const auto made = [this](const char *name, const QByteArray &bytes) {
            ProgramFiles::write(m_velgor.filePath(QLatin1String(name)), bytes);
            return m_velgor.filePath(QLatin1String(name));
        };
        const QByteArray good = ProgramFiles::read(ProgramFiles::sample(QStringLiteral("realistic/half51")));
        const QString pipe = m_velgor.filePath(QStringLiteral("pipe"));
        QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        QTest::newRow("missing") << m_velgor.filePath(QStringLiteral("missing.prst"));
        QTest::newRow("empty") << made("empty.prst", {});
        QTest::newRow("truncated") << made("truncated.prst", good.first(good.size() / 2));
        QTest::newRow("text") << made("foreign.prst", QByteArray(100'000, 'x'));
        QTest::newRow("only a tag") << made("tag.prst", good.first(4) + QByteArray(100, '\xff'));
        QTest::newRow("directory") << m_velgor.home();
        QTest::newRow("pipe that nobody writes") << pipe;
        QTest::newRow("endless device") << "/dev/zero";
        QTest::newRow("below a file") << ProgramFiles::sample(QStringLiteral("edge/one_patch")) + QStringLiteral("/x");
        QTest::newRow("name with an escape sequence") << m_velgor.filePath(QStringLiteral("no\x1b[31m\nred"));
    }
    void noPresetFileIsRefusedAtOnce()
    {
        QFETCH(const QString, path);
        const LibraryDirectory directory;
        ProgramFiles::copyLibrary(QStringLiteral("ok"), directory);
        const auto before = directory.stamps();
        m_velgor.setTimeLimit(5'000);
        const QStringList target{QStringLiteral("-o"), output()};
        for (const QStringList &arguments : {QStringList{QStringLiteral("list"), path},
                 QStringList{QStringLiteral("check"), path}, QStringList{QStringLiteral("copy"), path} + target,
                 words("library|add|--library") + QStringList{directory.path(), path},
                 words("library|compose|--library") + QStringList{directory.path(), QStringLiteral("--from"), path}
                     + target}) {
            const auto result = m_velgor.run(arguments);
            QCOMPARE(result.status, 2);
            QVERIFY(!result.errors.contains('\x1b') && !result.output.contains('\x1b'));
            const QStringList lines = result.errorLines();
            QVERIFY2(lines.last().startsWith(u"velgor: "), result.errors.constData());
            QVERIFY2(lines.last().contains(path.section(u'\x1b', 0, 0)), result.errors.constData());
        }
        QCOMPARE(directory.stamps(), before);
        QVERIFY(!QFile::exists(output()));
    }

    void undecodableLibraryIsNotTouched_data() { addCommands(true); }
    void undecodableLibraryIsNotTouched()
    {
        QFETCH(const QStringList, command);
        for (const QByteArray &content :
            {QByteArray(), QByteArray("{\"patches\":[{\"id\":"), QByteArray("[]"), QByteArray("\0\xff", 2)}) {
            const LibraryDirectory directory;
            ProgramFiles::copyLibrary(QStringLiteral("ok"), directory);
            directory.write(libraryFile, content);
            const auto before = directory.stamps();
            const auto result = m_velgor.library(directory.path(), command);
            QCOMPARE(result.status, 2);
            QVERIFY(result.errors.contains("\nvelgor: "));
            QVERIFY(!result.output.contains(" added, "));
            QCOMPARE(directory.stamps(), before);
            QVERIFY(!QFile::exists(output()));
        }
    }

    void libraryFileThatIsNoFileIsNotTouched_data() { addCommands(true); }
    void libraryFileThatIsNoFileIsNotTouched()
    {
        QFETCH(const QStringList, command);
        m_velgor.setTimeLimit(5'000);
        const LibraryDirectory directory;
        ProgramFiles::copyLibrary(QStringLiteral("ok"), directory);
        QFile::remove(directory.filePath(libraryFile));
        QCOMPARE(mkfifo(QFile::encodeName(directory.filePath(libraryFile)).constData(), 0600), 0);
        const auto before = directory.stamps();
        QCOMPARE(m_velgor.library(directory.path(), command).status, 2);
        QCOMPARE(directory.stamps(), before);
    }

    void incompleteLibraryKeepsADatedCopy_data() { addCommands(false); }
    void incompleteLibraryKeepsADatedCopy()
    {
        QFETCH(const QStringList, command);
        const LibraryDirectory directory;
        ProgramFiles::copyLibrary(QStringLiteral("one_missing_file"), directory);
        const auto before = directory.stamps();
        const auto listed = m_velgor.library(directory.path(), words("list"));
        QCOMPARE(listed.status, 0);
        QVERIFY2(
            listed.errors.contains("velgor: warning: ") && listed.errors.contains("A/B"), listed.errors.constData());
        QCOMPARE(directory.stamps(), before);

        const QByteArray old = directory.read(libraryFile);
        const auto changed = m_velgor.library(directory.path(), command);
        QCOMPARE(changed.status, 0);
        QStringList copies = directory.files();
        copies.removeIf([](const QString &name) { return name.startsWith(u"lib-") || name == libraryFile; });
        QCOMPARE(copies.size(), 1);
        QCOMPARE(directory.read(copies.first()), old);
        QVERIFY2(changed.errors.contains("was kept as ") && changed.errors.contains(copies.first().toUtf8()),
            changed.errors.constData());
        const auto again = m_velgor.library(directory.path(), words("list"));
        QVERIFY(!again.errors.contains("warning"));
    }

    void libraryInUseIsNotChanged_data() { addCommands(false); }
    void libraryInUseIsNotChanged()
    {
        QFETCH(const QStringList, command);
        const LibraryDirectory directory;
        ProgramFiles::copyLibrary(QStringLiteral("ok"), directory);
        QLockFile lock(directory.filePath(lockFile));
        lock.setStaleLockTime(0);
        QVERIFY(lock.tryLock());
        const auto before = directory.stamps();
        const auto result = m_velgor.library(directory.path(), command);
        QCOMPARE(result.status, 2);
        QCOMPARE(result.errorLines(),
            QStringList(QStringLiteral(
                "velgor: %1: the library is in use by another program, says its lock file .velgorlibrary.lock")
                            .arg(directory.path())));
        QCOMPARE(directory.stamps(), before);
        QCOMPARE(m_velgor.library(directory.path(), words("list")).status, 0);
    }

    void lockLeftByACrashIsTakenOver()
    {
        const LibraryDirectory directory;
        ProgramFiles::copyLibrary(QStringLiteral("ok"), directory);
        // No process has a number beyond the system's own limit of 2^22.
        directory.write(lockFile,
            "4194305\nvelgor\n" + QSysInfo::machineHostName().toUtf8() + '\n' + QSysInfo::machineUniqueId() + '\n'
                + QSysInfo::bootUniqueId() + '\n');
        QCOMPARE(
            m_velgor
                .library(directory.path(), {QStringLiteral("set"), lead, QStringLiteral("--name"), QStringLiteral("x")})
                .status,
            0);
        QVERIFY(directory.has(QStringLiteral("lib-x.%1.prst").arg(lead)));
        QVERIFY(!directory.has(lockFile));
    }

    void directoryThatIsAFileIsRefused_data() { addCommands(true); }
    void directoryThatIsAFileIsRefused()
    {
        QFETCH(const QStringList, command);
        const QString file = m_velgor.filePath(QStringLiteral("file"));
        ProgramFiles::write(file, "precious");
        const auto result = m_velgor.library(file, command);
        QCOMPARE(result.status, 2);
        QVERIFY(result.errorLines().last().contains(file));
        QCOMPARE(ProgramFiles::read(file), QByteArray("precious"));
    }

    void missingDirectoryIsMadeByAddAlone_data() { addCommands(true); }
    void missingDirectoryIsMadeByAddAlone()
    {
        QFETCH(const QStringList, command);
        const LibraryDirectory parent;
        const QString missing = parent.filePath(QStringLiteral("a/b"));
        const bool isAdd = command.first() == QStringLiteral("add");
        const auto result = m_velgor.library(missing, command);
        QCOMPARE(result.status, isAdd ? 0 : 2);
        QCOMPARE(QFile::exists(parent.filePath(QStringLiteral("a"))), isAdd);
        if (!isAdd) {
            QVERIFY(result.errorLines().last().contains(missing));
        }
    }

    void missingDirectoryOfThePreferencesIsAnEmptyLibrary()
    {
        const QString missing = m_velgor.filePath(QStringLiteral("not-yet"));
        m_velgor.preferLibrary(missing);
        const auto result = m_velgor.run(words("library|list|--json"));
        QCOMPARE(result.status, 0);
        const Json json = result.json();
        QVERIFY(json.at("total") == 0 && json.at("patches").empty() && json.at("defaultPatch").is_null());
        QCOMPARE(m_velgor.run(words("library|remove|1")).status, 2);
        QVERIFY(!QFile::exists(missing));
        QVERIFY(QFile::remove(m_velgor.preferencesFile()));
        QCOMPARE(m_velgor.run(words("library|list")).status, 0);
    }

    void namesAreShownEscaped()
    {
        const LibraryDirectory directory;
        const QString name = QStringLiteral("a\x1b[2J\nb\u202e");
        const QString file = m_velgor.filePath(QStringLiteral("escape.prst"));
        ProgramFiles::write(file, TestRecords::fileBytes({TestRecords::patch(name, 1)}));
        const QByteArray shown = "a\\u{1b}[2J\\nb\\u{202e}";
        const QString path = directory.path();
        for (const auto &result : {m_velgor.run({QStringLiteral("list"), file}),
                 m_velgor.library(path, {QStringLiteral("add"), file}), m_velgor.library(path, words("list"))}) {
            QCOMPARE(result.status, 0);
            QVERIFY2(result.output.contains(shown), result.output.constData());
            QVERIFY(!result.output.contains('\x1b') && !result.errors.contains('\x1b'));
        }
        const Json json = m_velgor.library(path, words("list|--json")).json();
        QCOMPARE(text(json.at("patches").at(0).at("name")), name);
        const auto similar =
            m_velgor.library(path, {QStringLiteral("similar"), text(json.at("patches").at(0).at("id"))});
        QVERIFY(similar.output.contains(shown));
    }
};

VELGOR_TEST(TestHostileInput)
#include "tst_HostileInput.moc"
