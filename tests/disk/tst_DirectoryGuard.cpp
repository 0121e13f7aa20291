#include "DirectoryGuard.h"
#include "LibraryDirectory.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTest>

#include <chrono>
#include <memory>
#include <thread>

class TestDirectoryGuard : public QObject {
    Q_OBJECT

private Q_SLOTS:
    static void directoryIsGuardedByOneAtATime()
    {
        const LibraryDirectory directory;
        auto first = std::make_unique<DirectoryGuard>(directory.path());
        QVERIFY(first->isHeld());
        QElapsedTimer timer;
        timer.start();
        QVERIFY(!DirectoryGuard(directory.path()).isHeld());
        QVERIFY(timer.elapsed() > 1000);
        first.reset();
        QVERIFY(DirectoryGuard(directory.path()).isHeld());
        QCOMPARE(directory.files(), QStringList());
    }

    static void shortHoldingIsWaitedFor()
    {
        const LibraryDirectory directory;
        auto first = std::make_unique<DirectoryGuard>(directory.path());
        std::thread other([&first] {
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
            first.reset();
        });
        const bool isHeld = DirectoryGuard(directory.path()).isHeld();
        other.join();
        QVERIFY(isHeld);
    }

    static void whatIsNoDirectoryIsNotGuarded()
    {
        const LibraryDirectory directory;
        directory.write(QStringLiteral("file"), "x");
        QVERIFY(!DirectoryGuard(directory.filePath(QStringLiteral("missing"))).isHeld());
        QVERIFY(!DirectoryGuard(directory.filePath(QStringLiteral("file"))).isHeld());
    }
};

VELGOR_TEST(TestDirectoryGuard)
#include "tst_DirectoryGuard.moc"
