#include "DiskFiles.h"
#include "LibraryDoctor.h"
#include "LibraryJournal.h"
#include "OrdinaryUser.h"
#include "StoreFixture.h"
#include "TemporaryFiles.h"
#include "TestProgram.h"

#include <QSysInfo>
#include <QTest>

#include <algorithm>

#include <unistd.h>

using namespace TestLibraries;
using Kind = LibraryFinding::Kind;

class TestLibraryDoctor : public QObject {
    Q_OBJECT

private:
    LibraryState m_three = importedThree();
    VelgorPatch m_lead = m_three.patches.first();

private Q_SLOTS:
    void directoryThatCannotBeListedIsFound()
    {
        StoreFixture store(importedThree());
        const OrdinaryUser user(store, 0300);
        const LibraryHealth health = store.examine();
        QVERIFY(std::any_of(health.findings.begin(), health.findings.end(),
            [](const LibraryFinding &finding) { return finding.kind == Kind::UnlistedDirectory; }));
    }

    void itReportsEachPatchAndGoesOnWhileFilesAndContentsAreLookedAt()
    {
        StoreFixture store(importedThree());
        QList<qsizetype> reported;
        std::ignore = LibraryDoctor(store.path(), [&reported](qsizetype done, qsizetype) {
            reported.append(done);
            return true;
        }).examine();
        const qsizetype later = store.files().size() + importedThree().patches.size();
        QCOMPARE(reported, (QList<qsizetype>{1, 2, 3} + QList<qsizetype>(later, 3)));
    }

    void examinationEndsWithTheReportThatSaysSo()
    {
        StoreFixture store(importedThree());
        for (const int last : {1, 2, 3, 5, 8}) {
            int reports = 0;
            std::ignore = LibraryDoctor(store.path(), [&](qsizetype, qsizetype) { return ++reports < last; }).examine();
            // Where the loading ends, the examination of what was loaded asks once more.
            QVERIFY2(reports >= last && reports <= last + 2, qPrintable(QString::number(reports)));
        }
    }

    void whatAJournalNamesAndIsNoPatchIsALeftover()
    {
        StoreFixture store;
        const QString temporary = TemporaryFiles::prefix() + QStringLiteral("x");
        store.write(libraryFile, "cut");
        store.write(temporary, "no patch");
        store.write(journalFile, LibraryJournal{.staged = {{42, temporary}}, .removed = {}}.encode());
        const LibraryHealth health = store.examine();
        QVERIFY(std::any_of(health.findings.begin(), health.findings.end(), [&](const LibraryFinding &finding) {
            return finding.kind == Kind::Leftover && finding.file == temporary;
        }));
    }

    void soundLibraryHasNoFindings()
    {
        StoreFixture store(m_three);
        store.write(QStringLiteral("notes.txt"), "mine");
        const auto before = store.stamps();
        QVERIFY(store.examine().findings.isEmpty());
        QCOMPARE(store.stamps(), before);
        QVERIFY(StoreFixture().examine().findings.isEmpty());
    }

    void patchWithoutFileIsFound()
    {
        StoreFixture store(m_three);
        QFile::remove(store.filePath(fileOf(m_lead)));
        const LibraryFinding finding = store.finding();
        QVERIFY(finding.kind == Kind::PatchWithoutFile && !finding.rescued);
        QCOMPARE(finding.name, QStringLiteral("Lead"));
        QCOMPARE(finding.id, m_lead.id());
    }

    void unreadableFileIsFoundOnce()
    {
        StoreFixture store(m_three);
        store.write(fileOf(m_lead), "damaged");
        const LibraryFinding finding = store.finding();
        QVERIFY(finding.kind == Kind::UnreadableFile && !finding.rescued && !finding.reason.isEmpty());
        QCOMPARE(finding.file, fileOf(m_lead));
        QCOMPARE(finding.name, QStringLiteral("Lead"));
    }

    void fileOfAnotherPatchIsFound()
    {
        StoreFixture store(m_three);
        store.write(fileOf(m_lead), patchBytes(m_three.patches.at(1)));
        const LibraryFinding finding = store.finding();
        QVERIFY(finding.kind == Kind::FileOfOtherContent && !finding.rescued);
        QCOMPARE(finding.file, fileOf(m_lead));
        QVERIFY(finding.reason.contains(QStringLiteral("A/B")));
    }

    void renamedPatchIsNoFinding()
    {
        StoreFixture store(m_three);
        m_three.patches.first().name = QStringLiteral("Renamed");
        QVERIFY(!store.save(m_three).hasError());
        QVERIFY(store.examine().findings.isEmpty());
        m_three = importedThree();
    }

    void foreignFilesWithAnIdAreFound_data()
    {
        QTest::addColumn<QString>("file");
        const QString id = QString::number(m_lead.id());
        QTest::newRow("copy") << QStringLiteral("my copy.%1.bak").arg(id);
        QTest::newRow("second file of the patch") << QStringLiteral("lib-Other.%1.prst").arg(id);
        QTest::newRow("in a directory") << QStringLiteral("sub/lib-Lead.%1.prst").arg(id);
    }

    void foreignFilesWithAnIdAreFound()
    {
        QFETCH(const QString, file);
        StoreFixture store(m_three);
        store.write(file, patchBytes(m_lead));
        const LibraryFinding finding = store.finding();
        QVERIFY(finding.kind == Kind::ForeignFile && !finding.rescued);
        QCOMPARE(finding.file, file);
        QCOMPARE(finding.id, m_lead.id());
    }

    void leftoversAreFoundAndSwept()
    {
        StoreFixture store(m_three);
        store.write(TemporaryFiles::prefix() + QStringLiteral("1"), "x");
        store.write(journalFile, LibraryJournal().encode());
        store.write(libraryCopy, "{");
        const LibraryHealth health = store.examine();
        QCOMPARE(health.findings.size(), 3);
        QVERIFY(std::all_of(health.findings.begin(), health.findings.end(),
            [](const LibraryFinding &finding) { return finding.kind == Kind::Leftover; }));
        store.repair();
        QVERIFY(store.examine().findings.isEmpty());
    }

    void keptFilesAreListedTheLatestFirst()
    {
        StoreFixture store(m_three);
        store.write(QStringLiteral("velgorlibrary-20260101T100203-00.json"), LibraryJson::encode(m_three));
        store.write(QStringLiteral("velgorlibrary-20260102T000000-00.json"), "garbled");
        store.write(LibraryFileNames::damagedFile(42, 0), "damaged");
        const LibraryHealth health = store.examine();
        QVERIFY(health.findings.isEmpty());
        QCOMPARE(health.keptLibraries.size(), 2);
        QVERIFY(!health.keptLibraries.first().content);
        QCOMPARE(health.keptLibraries.last().content->patches.size(), 3);
        QCOMPARE(health.keptLibraries.last().keptAt, QDateTime({2026, 1, 1}, {10, 2, 3}, Qt::UTC));
        QCOMPARE(health.keptPatchFiles, QStringList{LibraryFileNames::damagedFile(42, 0)});
    }

    void fileUnderAnIdThatNobodyHasIsExamined_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("kind");
        QTest::addColumn<bool>("isRescued");
        QTest::addColumn<QString>("reason");
        const VelgorPatch other = imported(QStringLiteral("Other"), 9);
        QTest::newRow("patch that is nowhere else")
            << patchBytes(other) << static_cast<int>(Kind::FileOfOtherContent) << true << QStringLiteral("\"Other\"");
        const QByteArray list = TestRecords::fileBytes({m_lead.records->patchData, other.records->patchData},
            {m_lead.records->userIRData, other.records->userIRData});
        QTest::newRow("list") << list << static_cast<int>(Kind::UnreadableFile) << false
                              << QStringLiteral("a list of 2 patches");
        QTest::newRow("damaged") << QByteArray("damaged") << static_cast<int>(Kind::UnreadableFile) << false
                                 << QString();
    }

    void fileUnderAnIdThatNobodyHasIsExamined()
    {
        QFETCH(const QByteArray, bytes);
        QFETCH(const QString, reason);
        StoreFixture store(m_three);
        store.write(QStringLiteral("lib-X.77.prst"), bytes);
        const LibraryFinding finding = store.finding();
        QCOMPARE(finding.file, QStringLiteral("lib-X.77.prst"));
        QTEST(static_cast<int>(finding.kind), "kind");
        QTEST(finding.rescued.has_value(), "isRescued");
        QVERIFY2(finding.reason.contains(reason), qPrintable(finding.reason));
    }

    void fileThatIsTooLargeIsFound()
    {
        StoreFixture store(m_three);
        store.write(QStringLiteral("lib-X.77.prst"), {});
        QVERIFY(QFile::resize(store.filePath(QStringLiteral("lib-X.77.prst")), DiskFiles::largestFile + 1));
        const LibraryFinding finding = store.finding();
        QVERIFY(finding.kind == Kind::UnreadableFile && !finding.reason.isEmpty());
    }

    void stagedPatchOfASaveThatDidNotCountIsLeftOver()
    {
        StoreFixture store(m_three);
        const VelgorPatch unknown = imported(QStringLiteral("Unknown"), 9);
        const QString staged = TemporaryFiles::prefix() + QStringLiteral("b");
        store.write(staged, patchBytes(unknown));
        LibraryJournal journal;
        journal.staged = {{unknown.id(), staged}};
        store.write(journalFile, journal.encode());
        const LibraryHealth health = store.examine();
        QCOMPARE(health.findings.size(), 2);
        QVERIFY(health.rescuedPatches().isEmpty());
    }

    void filesOfALiveProgramAreNotLeftOver()
    {
        StoreFixture store(m_three);
        const QString host = QSysInfo::machineHostName();
        // The parent of this program lives, and a process number beyond all is nobody's.
        const QString theirs = TemporaryFiles::prefix(host, getppid()) + QStringLiteral("a");
        const QString nobodys = TemporaryFiles::prefix(host, 0x7ffffff0) + QStringLiteral("a");
        store.write(theirs, "x");
        store.write(nobodys, "x");
        QCOMPARE(store.finding().file, nobodys);
        store.write(journalFile, LibraryJournal().encode());
        store.write(libraryCopy, "{");
        QCOMPARE(store.examine().findings.size(), 3);
        const auto lockOf = [&host](qint64 process) {
            return QStringLiteral("%1\nvelgor\n%2\n\n\n").arg(process).arg(host).toUtf8();
        };
        store.write(LibraryFileNames::lockFile(), lockOf(getppid()));
        QCOMPARE(store.finding().file, nobodys);
        store.write(LibraryFileNames::lockFile(), lockOf(0x7ffffff0));
        QCOMPARE(store.examine().findings.size(), 3);
    }

    void whatStandsInAFilesPlaceIsSaid_data()
    {
        QTest::addColumn<bool>("isLink");
        QTest::addColumn<QString>("reason");
        QTest::newRow("link") << true << QStringLiteral("link");
        QTest::newRow("directory") << false << QStringLiteral("directory");
    }

    void whatStandsInAFilesPlaceIsSaid()
    {
        QFETCH(const bool, isLink);
        QFETCH(const QString, reason);
        StoreFixture store(m_three);
        const QString path = store.filePath(fileOf(m_lead));
        QVERIFY(QFile::rename(path, store.parentPath() + QStringLiteral("/elsewhere")));
        QVERIFY(isLink ? QFile::link(store.parentPath() + QStringLiteral("/elsewhere"), path) : QDir().mkdir(path));
        const LibraryFinding finding = store.finding();
        QVERIFY(finding.kind == Kind::PatchWithoutFile);
        QCOMPARE(finding.file, fileOf(m_lead));
        QVERIFY2(finding.reason.contains(reason), qPrintable(finding.reason));
    }

    void directoryThatIsNotThereIsFound()
    {
        StoreFixture store;
        QVERIFY(QDir().rmdir(store.path()));
        const LibraryFinding finding = store.finding();
        QVERIFY(finding.kind == Kind::DamagedLibraryFile && !finding.reason.isEmpty());
    }
};

VELGOR_TEST(TestLibraryDoctor)
#include "tst_LibraryDoctor.moc"
