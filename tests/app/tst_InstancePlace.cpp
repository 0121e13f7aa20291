#include "InstancePlace.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

#include <unistd.h>

namespace {

constexpr auto ownersAlone =
    QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadUser | QFile::WriteUser | QFile::ExeUser;

} // namespace

class TestInstancePlace : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_runtime = std::make_unique<QTemporaryDir>();
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_runtime->path()));
    }

    void bestPlaceIsSharedByTheApplicationsSandboxes()
    {
        const QStringList sockets = InstancePlace::sockets(m_runtime->path());
        QCOMPARE(sockets.size(), 2);
        QCOMPARE(QFileInfo(sockets.first()).path(),
            m_runtime->filePath(QStringLiteral("app/org.example.VelgorLibraryManager")));
        QCOMPARE(QFileInfo(sockets.last()).path(), m_runtime->path());
    }

    void directoryHasOnePlaceUnderAllItsNames()
    {
        const QString directory = m_runtime->filePath(QStringLiteral("library"));
        QVERIFY(QDir().mkdir(directory));
        const QString link = m_runtime->filePath(QStringLiteral("link"));
        QVERIFY(QFile::link(directory, link));
        QCOMPARE(InstancePlace::sockets(link), InstancePlace::sockets(directory));
        QVERIFY(InstancePlace::sockets(m_runtime->path()) != InstancePlace::sockets(directory));
    }

    void runtimeDirectoryOfAnotherUserIsNoPlace()
    {
        if (geteuid() != 0) {
            QSKIP("only root can give a directory away");
        }
        QCOMPARE(chown(QFile::encodeName(m_runtime->path()).constData(), 65534, 65534), 0);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("runtime directory .* is not owned")));
        // Qt has another one then.
        for (const QString &socket : InstancePlace::sockets(QStringLiteral("/library"))) {
            QVERIFY(!socket.startsWith(m_runtime->path()));
        }
    }

    void missingDirectoriesAreMadeForTheUserAlone()
    {
        const QString socket = InstancePlace::sockets(m_runtime->path()).first();
        QVERIFY(!InstancePlace::isTrusted(socket));
        QVERIFY(InstancePlace::prepare(socket));
        QVERIFY(InstancePlace::isTrusted(socket));
        for (const QString &name : {QStringLiteral("app"), QStringLiteral("app/org.example.VelgorLibraryManager")}) {
            QCOMPARE(QFile::permissions(m_runtime->filePath(name)), ownersAlone);
        }
        QVERIFY(InstancePlace::prepare(socket));
    }

    void directoryOfAnotherUserIsNotTrusted()
    {
        if (geteuid() != 0) {
            QSKIP("only root can give a directory away");
        }
        const QString socket = InstancePlace::sockets(m_runtime->path()).first();
        QVERIFY(InstancePlace::prepare(socket));
        const QByteArray folder = QFile::encodeName(QFileInfo(socket).path());
        QCOMPARE(chown(folder.constData(), 65534, 65534), 0);
        QVERIFY(!InstancePlace::prepare(socket));
        QVERIFY(!InstancePlace::isTrusted(socket));
    }

    void directoryThatOthersCanChangeIsNotTrusted()
    {
        const QString socket = InstancePlace::sockets(m_runtime->path()).first();
        QVERIFY(InstancePlace::prepare(socket));
        QVERIFY(QFile::setPermissions(QFileInfo(socket).path(), ownersAlone | QFile::WriteOther));
        QVERIFY(!InstancePlace::isTrusted(socket));
    }

    void fileInTheWayIsNotTrusted()
    {
        QFile file(m_runtime->filePath(QStringLiteral("app")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(!InstancePlace::prepare(InstancePlace::sockets(m_runtime->path()).first()));
    }

private:
    std::unique_ptr<QTemporaryDir> m_runtime;
};

VELGOR_TEST(TestInstancePlace)
#include "tst_InstancePlace.moc"
