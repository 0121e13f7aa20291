#include "ApplicationId.h"
#include "DiagnosticRecorder.h"
#include "LibraryDirectory.h"
#include "OrdinaryUser.h"
#include "StateFile.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QTest>

#include <memory>

namespace {

const QString formerName = QStringLiteral("velgor/velgor-library-manager-state.ini");
const QString newName = QStringLiteral("state/own/state.ini");

void setAge(const QString &path, int days)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(QDateTime::currentDateTimeUtc().addDays(-days), QFileDevice::FileModificationTime));
}

} // namespace

class TestStateFile : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<const LibraryDirectory>();
        m_former = m_home->filePath(QStringLiteral("data/") + formerName);
        m_path = m_home->filePath(newName);
    }

    static void usualPathIsInTheStateDirectory_data()
    {
        QTest::addColumn<QByteArray>("named");
        QTest::addColumn<QString>("directory");
        QTest::newRow("named") << QByteArray("/somewhere/state") << QStringLiteral("/somewhere/state");
        QTest::newRow("with a slash") << QByteArray("/somewhere/state/") << QStringLiteral("/somewhere/state");
        QTest::newRow("empty") << QByteArray("") << QDir::homePath() + QStringLiteral("/.local/state");
        QTest::newRow("relative") << QByteArray("state") << QDir::homePath() + QStringLiteral("/.local/state");
    }
    static void usualPathIsInTheStateDirectory()
    {
#if !defined(Q_OS_UNIX) || defined(Q_OS_DARWIN)
        QSKIP("The platform has no such variable");
#endif
        QFETCH(const QByteArray, named);
        QFETCH(const QString, directory);
        qputenv("XDG_STATE_HOME", named);
        QCOMPARE(StateFile::usualPath(), directory + QStringLiteral("/org.example.VelgorLibraryManager/state.ini"));
        QCOMPARE(ApplicationId::text(), QStringLiteral("org.example.VelgorLibraryManager"));
        qunsetenv("XDG_STATE_HOME");
        QCOMPARE(StateFile::usualPath(),
            QDir::homePath() + QStringLiteral("/.local/state/org.example.VelgorLibraryManager/state.ini"));
    }

    void formerPathsAreThoseOfBothKindsOfBuild()
    {
#if !defined(Q_OS_UNIX) || defined(Q_OS_DARWIN)
        QSKIP("The platform has no such variables");
#endif
        qputenv("XDG_STATE_HOME", QFile::encodeName(m_home->filePath(QStringLiteral("state"))));
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_home->filePath(QStringLiteral("data"))));
        QCOMPARE(
            StateFile::formerPaths(), (QStringList{m_home->filePath(QStringLiteral("state/") + formerName), m_former}));
    }

    void withoutAFormerFileNothingIsMade()
    {
        QCOMPARE(StateFile::inherit(m_path, {m_former}), m_path);
        QCOMPARE(m_home->files(), QStringList());
        QVERIFY(!m_home->has(QStringLiteral("state")));
    }

    void formerFileIsMovedAndItsDirectoryRemoved()
    {
        m_home->write(QStringLiteral("data/") + formerName, "former");
        m_home->write(QStringLiteral("data/") + formerName + QStringLiteral(".lock"), "");
        m_home->write(QStringLiteral("data/other"), "");
        QCOMPARE(StateFile::inherit(m_path, {m_former}), m_path);
        QCOMPARE(m_home->files(), (QStringList{QStringLiteral("data/other"), newName}));
        QCOMPARE(m_home->read(newName), QByteArray("former"));
        QVERIFY(!m_home->has(QStringLiteral("data/velgor")));
        QCOMPARE(StateFile::inherit(m_path, {m_former}), m_path);
        QCOMPARE(m_home->read(newName), QByteArray("former"));
    }

    void directoryWithSomethingElseInItStays()
    {
        m_home->write(QStringLiteral("data/") + formerName, "former");
        m_home->write(QStringLiteral("data/velgor/other"), "other");
        QCOMPARE(StateFile::inherit(m_path, {m_former}), m_path);
        QCOMPARE(m_home->files(), (QStringList{QStringLiteral("data/velgor/other"), newName}));
    }

    void latestOfSeveralIsTaken_data()
    {
        QTest::addColumn<int>("first");
        QTest::addColumn<int>("second");
        QTest::addColumn<QByteArray>("taken");
        QTest::newRow("the first") << 1 << 2 << QByteArray("first");
        QTest::newRow("the second") << 2 << 1 << QByteArray("second");
    }
    void latestOfSeveralIsTaken()
    {
        QFETCH(const int, first);
        QFETCH(const int, second);
        QFETCH(const QByteArray, taken);
        m_home->write(QStringLiteral("data/") + formerName, "first");
        m_home->write(QStringLiteral("former-state/") + formerName, "second");
        const QString other = m_home->filePath(QStringLiteral("former-state/") + formerName);
        setAge(m_former, first);
        setAge(other, second);
        QCOMPARE(StateFile::inherit(m_path, {m_former, other}), m_path);
        QCOMPARE(m_home->read(newName), taken);
        // The other one is no leftover that may be thrown away.
        QCOMPARE(m_home->files().size(), 2);
    }

    void fileThatIsThereIsNeverReplaced_data()
    {
        QTest::addColumn<bool>("isLink");
        QTest::newRow("a file") << false;
        QTest::newRow("a link to nothing") << true;
    }
    void fileThatIsThereIsNeverReplaced()
    {
        QFETCH(const bool, isLink);
        m_home->write(QStringLiteral("data/") + formerName, "former");
        if (isLink) {
            QVERIFY(QDir().mkpath(QFileInfo(m_path).path()) && QFile::link(QStringLiteral("/nowhere"), m_path));
        } else {
            m_home->write(newName, "new");
        }
        QCOMPARE(StateFile::inherit(m_path, {m_former}), m_path);
        QCOMPARE(m_home->read(QStringLiteral("data/") + formerName), QByteArray("former"));
        QCOMPARE(m_home->read(newName), isLink ? QByteArray() : QByteArray("new"));
        QCOMPARE(QFileInfo(m_path).isSymLink(), isLink);
    }

    void linkIsFollowedAndWhatItLeadsToStays()
    {
        m_home->write(QStringLiteral("collection/state"), "former");
        QVERIFY(QDir().mkpath(QFileInfo(m_former).path()));
        QVERIFY(QFile::link(QStringLiteral("../../collection/state"), m_former));
        QCOMPARE(StateFile::inherit(m_path, {m_former}), m_path);
        QCOMPARE(m_home->read(newName), QByteArray("former"));
        QVERIFY(!QFileInfo(m_path).isSymLink());
        QCOMPARE(m_home->read(QStringLiteral("collection/state")), QByteArray("former"));
        QVERIFY(!m_home->has(QStringLiteral("data/velgor")));
    }

    void anotherFileSystemGetsACopy()
    {

        const QTemporaryDir elsewhere(QStringLiteral("/dev/shm/velgor-XXXXXX"));
        struct stat here = {};
        struct stat there = {};
        if (!elsewhere.isValid() || stat(QFile::encodeName(m_home->path()).constData(), &here) != 0
            || stat(QFile::encodeName(elsewhere.path()).constData(), &there) != 0 || here.st_dev == there.st_dev) {
            QSKIP("There is no second file system");
        }
        m_home->write(QStringLiteral("data/") + formerName, "former");
        const QString path = elsewhere.filePath(newName);
        QCOMPARE(StateFile::inherit(path, {m_former}), path);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("former"));
        QCOMPARE(QDir(QFileInfo(path).path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
            QStringList{QStringLiteral("state.ini")});
        QVERIFY(!m_home->has(QStringLiteral("data/velgor")));
    }

    void whatCannotBeMovedIsGoneOnWith()
    {
        m_home->write(QStringLiteral("data/") + formerName, "former");
        const QString closed = m_home->filePath(QStringLiteral("state"));
        QVERIFY(QDir().mkpath(closed));
        constexpr auto reading =
            QFileDevice::ReadOwner | QFileDevice::ExeOwner | QFileDevice::ReadOther | QFileDevice::ExeOther;
        QVERIFY(QFile::setPermissions(closed, reading));
        DiagnosticRecorder recorder;
        {
            const OrdinaryUser user(*m_home, 0755);
            QCOMPARE(StateFile::inherit(m_path, {m_former}), m_former);
        }
        QCOMPARE(m_home->files(), QStringList{QStringLiteral("data/") + formerName});
        QCOMPARE(m_home->read(QStringLiteral("data/") + formerName), QByteArray("former"));
        QCOMPARE(recorder.lines().size(), 1);
        QVERIFY(recorder.take().first().startsWith(QStringLiteral("%1 cannot be moved to %2: ").arg(m_former, m_path)));
        QVERIFY(QFile::setPermissions(closed, reading | QFileDevice::WriteOwner));
        QCOMPARE(StateFile::inherit(m_path, {m_former}), m_path);
        QCOMPARE(m_home->files(), QStringList{newName});
        QCOMPARE(recorder.take(), QStringList());
    }

private:
    std::unique_ptr<const LibraryDirectory> m_home;
    QString m_former;
    QString m_path;
};

VELGOR_TEST(TestStateFile)
#include "tst_StateFile.moc"
