#include "DiagnosticRecorder.h"
#include "LibraryJournal.h"
#include "SettledExamination.h"
#include "TestLibraries.h"
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

/// Patches whose ids are the hashes of their content, as an import gives them.
LibraryState importedThree()
{
    LibraryState content = three();
    for (VelgorPatch &patch : content.patches) {
        patch = patch.withId(VelgorPatch::staticSimpleHash(patch));
    }
    return content;
}

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
        const LibraryDirectory directory;
        QVERIFY(!save(directory, importedThree()).hasError());
        directory.write(stray, "damaged");
        if (isLocked) {
            lock(directory);
        }
        const LibraryHealth health = SettledExamination::examine(directory.path());
        QCOMPARE(health.findings.size(), 1);
        QCOMPARE(health.findings.first().file, stray);
    }

    void stepsOfARunningSaveAreNoFindings()
    {
        const LibraryDirectory directory;
        LibraryState two = importedThree();
        const VelgorPatch removed = two.patches.takeLast();
        QVERIFY(!save(directory, two).hasError());
        lock(directory);
        const QString file = LibraryFileNames::patchFile(removed.name, removed.id());
        LibraryJournal journal;
        journal.removed = {removed.id()};
        directory.write(LibraryFileNames::journalFile(), journal.encode());
        directory.write(file, patchBytes(removed));
        directory.write(stray, "damaged");
        std::thread other([&] {
            std::this_thread::sleep_for(std::chrono::milliseconds(150));
            QFile::remove(directory.filePath(file));
            QFile::remove(directory.filePath(LibraryFileNames::journalFile()));
            QFile::remove(directory.filePath(LibraryFileNames::lockFile()));
        });
        const LibraryHealth health = SettledExamination::examine(directory.path());
        other.join();
        QCOMPARE(health.findings.size(), 1);
        QCOMPARE(health.findings.first().file, stray);
    }

    void saveThatDoesNotEndIsNotWaitedFor()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, importedThree()).hasError());
        lock(directory);
        directory.write(LibraryFileNames::journalFile(), LibraryJournal().encode());
        directory.write(stray, "damaged");
        const LibraryHealth health = SettledExamination::examine(directory.path());
        QCOMPARE(health.findings.size(), 1);
        QCOMPARE(health.findings.first().file, stray);
    }
};

VELGOR_TEST(TestSettledExamination)
#include "tst_SettledExamination.moc"
