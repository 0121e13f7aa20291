#include "InstanceMessage.h"
#include "LibraryFileNames.h"
#include "StartsElsewhere.h"
#include "StoreFixture.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTest>

#include <unistd.h>

using namespace std::chrono_literals;
using namespace StartsElsewhere;
using Outcome = SingleInstance::Outcome;

namespace {

/// Has the runtime directory stand at a path of so many bytes.
void useLongRuntime(const LibraryDirectory &directory, qsizetype length)
{
    const QByteArray parent = QFile::encodeName(directory.parentPath()) + '/';
    const QString path = QFile::decodeName(parent.leftJustified(length, 'x'));
    if (!QDir().mkpath(path) || !QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner)) {
        qFatal("no runtime directory");
    }
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(path));
}

} // namespace

/// Where the sockets are through which starts find each other.
class TestInstanceRuntime : public QObject {
    Q_OBJECT

    OwnRuntime m_runtime;

private Q_SLOTS:
    void init() { m_runtime.begin(); }

    static void usersDoNotMeet()
    {
        StoreFixture store;
        SingleInstance first(store.path());
        const QSignalSpy activated(&first, &SingleInstance::activated);
        QCOMPARE(first.start({}), Outcome::First);
        const QTemporaryDir otherRuntime;
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(otherRuntime.path()));
        const Start second = startElsewhere(store.path(), {}, 200ms);
        QCOMPARE(second.outcome, Outcome::Refused);
        QVERIFY(second.reason.contains(store.path()));
        QCOMPARE(activated.count(), 0);
    }

    /// As between two sandboxes of the application.
    void runtimeDirectoriesMayShareTheApplicationsAlone()
    {
        StoreFixture store;
        const QTemporaryDir other;
        SingleInstance first(store.path());
        const QSignalSpy activated(&first, &SingleInstance::activated);
        QCOMPARE(first.start({}), Outcome::First);
        QVERIFY(QDir(other.path()).mkdir(QStringLiteral("app")));
        const QString shared = QStringLiteral("/app/org.example.VelgorLibraryManager");
        QVERIFY(QFile::link(m_runtime.path() + shared, other.path() + shared));
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(other.path()));
        QCOMPARE(startElsewhere(store.path(), {}).outcome, Outcome::HandedOver);
        QTRY_COMPARE(activated.count(), 1);
    }

    static void directoryThatIsNotTheUsersIsNeitherUsedNorAsked()
    {
        if (geteuid() != 0) {
            QSKIP("only root can give a directory away");
        }
        StoreFixture store;
        const QString socket = socketOf(store);
        const AnsweringServer server(socket, InstanceMessage::yes.toByteArray());
        QCOMPARE(chown(QFile::encodeName(QFileInfo(socket).path()).constData(), 65534, 65534), 0);
        SingleInstance first(store.path());
        const QSignalSpy activated(&first, &SingleInstance::activated);
        QCOMPARE(first.start({}), Outcome::First);
        QCOMPARE(store.lines.lines().size(), 1);
        QVERIFY(store.lines.lines().first().contains(socket));
        QCOMPARE(startElsewhere(store.path(), {}).outcome, Outcome::HandedOver);
        QTRY_COMPARE(activated.count(), 1);
    }

    static void longRuntimePathStillLetsStartsMeet()
    {
        StoreFixture store;
        useLongRuntime(store, 70);
        SingleInstance first(store.path());
        const QSignalSpy activated(&first, &SingleInstance::activated);
        QCOMPARE(first.start({}), Outcome::First);
        QCOMPARE(store.lines.lines().size(), 1);
        QVERIFY(store.lines.lines().first().contains(QStringLiteral("sandboxes")));
        QCOMPARE(startElsewhere(store.path(), {}).outcome, Outcome::HandedOver);
        QTRY_COMPARE(activated.count(), 1);
    }

    static void startWithoutAPlaceForSocketsHasTheLock()
    {
        StoreFixture store;
        useLongRuntime(store, 110);
        SingleInstance first(store.path());
        QCOMPARE(first.start({}), Outcome::First);
        QCOMPARE(store.lines.lines().size(), 1);
        QCOMPARE(startElsewhere(store.path(), {}, 100ms).outcome, Outcome::Refused);
    }
};

VELGOR_TEST(TestInstanceRuntime)
#include "tst_InstanceRuntime.moc"
