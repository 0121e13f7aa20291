#include "LibraryJournal.h"
#include "SettledExamination.h"
#include "StoreFixture.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QSysInfo>
#include <QTest>

#include <chrono>
#include <thread>

#include <unistd.h>

using namespace TestLibraries;

namespace {

const QString stray = LibraryFileNames::patchFile(QStringLiteral("Stray"), 99);

/// The lock of a program that lives as long as this one.
void lock(const LibraryDirectory &directory)
{
    directory.write(LibraryFileNames::lockFile(),
        QStringLiteral("%1\nvelgor\n%2\n\n\n").arg(getppid()).arg(QSysInfo::machineHostName()).toUtf8());
}

} // namespace

class TestSettledExamination : public QObject {
    Q_OBJECT

private:
    DiagnosticRecorder m_lines;

private Q_SLOTS:
    void whatStaysIsFound_data()
    {
        QTest::addColumn<bool>("isLocked");
        QTest::newRow("alone") << false;
        QTest::newRow("beside a program that does nothing") << true;
    }
    void whatStaysIsFound()
    {
        QFETCH(const bool, isLocked);
        StoreFixture store(importedThree());
        store.write(stray, "damaged");
        if (isLocked) {
            lock(store);
        }
        const LibraryHealth health = SettledExamination::examine(store.path());
        QCOMPARE(health.findings.size(), 1);
        QCOMPARE(health.findings.first().file, stray);
    }

    void stepsOfARunningSaveAreNoFindings()
    {
        StoreFixture store;
        LibraryState two = importedThree();
        const VelgorPatch removed = two.patches.takeLast();
        QVERIFY(!store.save(two).hasError());
        lock(store);
        const QString file = fileOf(removed);
        LibraryJournal journal;
        journal.removed = {removed.id()};
        store.write(journalFile, journal.encode());
        store.write(file, patchBytes(removed));
        store.write(stray, "damaged");
        std::thread other([&] {
            std::this_thread::sleep_for(std::chrono::milliseconds(150));
            QFile::remove(store.filePath(file));
            QFile::remove(store.filePath(journalFile));
            QFile::remove(store.filePath(LibraryFileNames::lockFile()));
        });
        const LibraryHealth health = SettledExamination::examine(store.path());
        other.join();
        QCOMPARE(health.findings.size(), 1);
        QCOMPARE(health.findings.first().file, stray);
    }

    void saveThatDoesNotEndIsNotWaitedFor()
    {
        StoreFixture store(importedThree());
        lock(store);
        store.write(journalFile, LibraryJournal().encode());
        store.write(stray, "damaged");
        const LibraryHealth health = SettledExamination::examine(store.path());
        QCOMPARE(health.findings.size(), 1);
        QCOMPARE(health.findings.first().file, stray);
    }
};

VELGOR_TEST(TestSettledExamination)
#include "tst_SettledExamination.moc"
