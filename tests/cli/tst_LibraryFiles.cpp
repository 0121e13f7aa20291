#include "CommandFixture.h"
#include "TestProgram.h"
#include "TestRecords.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

namespace {

const QString leadFile = QStringLiteral("lib-Lead.8725204569585644227.prst");
const QString libraryFile = QStringLiteral("velgorlibrary.json");

} // namespace

/// What commands do with files in a library directory that are not as the library leaves them.
class TestLibraryFiles : public QObject, private CommandFixture {
    Q_OBJECT

private:
    /// Runs a command on the library without the rights of root.
    [[nodiscard]] Result asNobody(const QString &command) const
    {
        QStringList arguments = words(QStringLiteral("--reuid=65534|--regid=65534|--clear-groups"))
            << VelgorProcess::executable() << QStringLiteral("library") << words(command);
        arguments << QStringLiteral("--library") << m_directory->path();
        QProcess process;
        process.setWorkingDirectory(QStringLiteral("/"));
        process.start(QStringLiteral("setpriv"), arguments);
        process.waitForFinished();
        return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
    }
    [[nodiscard]] QString output() const { return m_velgor.filePath(QStringLiteral("out.prst")); }

private Q_SLOTS:
    void init()
    {
        startWithSample();
        QFile::remove(output());
    }

    void removeLeavesAFileInADirectoryBelowAndSaysSo()
    {
        const QString below = QStringLiteral("backup/notes.%1.txt").arg(lead);
        m_directory->write(below, "mine");
        const auto result = library({QStringLiteral("remove"), lead});
        QCOMPARE(result.status, 0);
        QVERIFY2(result.errors.contains("notes."), result.errors.constData());
        QCOMPARE(m_directory->read(below), QByteArray("mine"));
        QVERIFY(!m_directory->has(leadFile));
        QVERIFY(library({QStringLiteral("list"), QStringLiteral("--json")}).json().at("total") == 2);
    }

    void removalThatFailedIsNoFailureOfALaterChange()
    {
        if (geteuid() != 0) {
            QSKIP("only root can give files to somebody else");
        }
        // In a directory that is everybody's, nobody removes files of others.
        const auto path = [this](const QString &name) { return QFile::encodeName(m_directory->filePath(name)); };
        QVERIFY(chmod(QFile::encodeName(m_directory->parentPath()).constData(), 0755) == 0);
        QVERIFY(chmod(path({}).constData(), 01777) == 0);
        QVERIFY(chown(path(libraryFile).constData(), 65534, 65534) == 0);
        QCOMPARE(asNobody(QStringLiteral("remove|%1").arg(lead)).status, 2);
        const Result changed = asNobody(QStringLiteral("set|%1|--comment|x").arg(slashed));
        QVERIFY2(changed.status == 0 && changed.errors.contains("lib-Lead."), changed.errors.constData());
        QVERIFY(m_directory->has(leadFile));
    }

    void fileThatIsNotThePatchsIsNeverExportedForIt_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        const SPatch other = TestRecords::patch(QStringLiteral("Other"), 7);
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("damaged") << QByteArray("damaged");
        QTest::newRow("another patch") << TestRecords::fileBytes({other});
        QTest::newRow("a list") << TestRecords::fileBytes({TestRecords::patch(QStringLiteral("Lead")), other});
    }
    void fileThatIsNotThePatchsIsNeverExportedForIt()
    {
        QFETCH(const QByteArray, bytes);
        const QByteArray good = m_directory->read(leadFile);
        ProgramFiles::write(m_velgor.filePath(QStringLiteral("lead.prst")), good);
        QCOMPARE(library({QStringLiteral("remove"), lead}).status, 0);
        m_directory->write(leadFile, bytes);
        const auto added = library({QStringLiteral("add"), m_velgor.filePath(QStringLiteral("lead.prst"))});
        QCOMPARE(added.status, 0);
        QVERIFY2(added.errors.contains("was kept as "), added.errors.constData());
        QCOMPARE(m_directory->read(leadFile), good);
        QCOMPARE(m_directory->read(QStringLiteral("damaged-%1-00.prst").arg(lead)), bytes);
        QCOMPARE(library({QStringLiteral("export"), lead, QStringLiteral("-o"), output()}).status, 0);
        QCOMPARE(ProgramFiles::read(output()), good);
    }

    void damageThatCanStillBeReadIsToldAndKept_data()
    {
        QTest::addColumn<QList<int>>("places");
        QTest::newRow("a byte of the sound") << QList<int>{100};
        // Where the lowest bits are equal: the hash, an exclusive-or, does not see the change, and the sum does.
        QTest::newRow("two bytes of the sound") << QList<int>{101, 109};
        QTest::newRow("the header") << QList<int>{20};
    }
    void damageThatCanStillBeReadIsToldAndKept()
    {
        QFETCH(const QList<int>, places);
        const QByteArray good = m_directory->read(leadFile);
        QByteArray bad = good;
        for (const int place : places) {
            bad[place] = static_cast<char>(bad.at(place) ^ 1);
        }
        m_directory->write(leadFile, bad);
        const auto listed = library({QStringLiteral("list"), QStringLiteral("--json")});
        QCOMPARE(listed.status, 0);
        QVERIFY2(listed.errors.contains("Lead: its file is damaged, as its checksum is wrong (lib-Lead."),
            listed.errors.constData());
        const auto health = library({QStringLiteral("doctor")});
        QCOMPARE(health.status, 1);
        QVERIFY2(health.output.contains("its checksum is wrong"), health.output.constData());
        QCOMPARE(library({QStringLiteral("set"), slashed, QStringLiteral("--solo"), QStringLiteral("on")}).status, 0);
        QCOMPARE(m_directory->read(leadFile), bad);
    }

    void originalTakesThePlaceOfADamagedPatch_data() { damageThatCanStillBeReadIsToldAndKept_data(); }
    void originalTakesThePlaceOfADamagedPatch()
    {
        QFETCH(const QList<int>, places);
        const QByteArray good = m_directory->read(leadFile);
        QByteArray bad = good;
        for (const int place : places) {
            bad[place] = static_cast<char>(bad.at(place) ^ 1);
        }
        m_directory->write(leadFile, bad);
        ProgramFiles::write(m_velgor.filePath(QStringLiteral("lead.prst")), good);
        QCOMPARE(library({QStringLiteral("add"), m_velgor.filePath(QStringLiteral("lead.prst"))}).status, 0);
        const auto after = library({QStringLiteral("list"), QStringLiteral("--json")});
        QCOMPARE(after.errors, QByteArray("Loading library from directory\n"));
        QCOMPARE(after.json().at("total").get<int>(), 3);
        QCOMPARE(after.json().at("patches").at(0).at("comment").get<std::string>(), std::string("fat amp"));
        QCOMPARE(m_directory->read(leadFile), good);
        QCOMPARE(m_directory->read(QStringLiteral("damaged-%1-00.prst").arg(lead)), bad);
    }

    void keysOfANewerVersionAreKeptBeforeTheyAreLost()
    {
        const QByteArray text = m_directory->read(libraryFile).replace("{\"patches\"", "{\"format\":2,\"patches\"");
        m_directory->write(libraryFile, text);
        QCOMPARE(library({QStringLiteral("list")}).status, 0);
        QCOMPARE(m_directory->read(libraryFile), text);
        const auto result = library({QStringLiteral("set"), lead, QStringLiteral("--comment"), QStringLiteral("new")});
        QCOMPARE(result.status, 0);
        QVERIFY2(result.errors.contains("the former library file was kept as "), result.errors.constData());
        const QStringList kept = m_directory->files().filter(QStringLiteral("velgorlibrary-"));
        QCOMPARE(kept.size(), 1);
        QCOMPARE(m_directory->read(kept.first()), text);
    }
};

VELGOR_TEST(TestLibraryFiles)
#include "tst_LibraryFiles.moc"
