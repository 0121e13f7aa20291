#include "KeptLibraries.h"
#include "LibraryJournal.h"
#include "StoreFixture.h"
#include "TemporaryFiles.h"
#include "TestProgram.h"

#include <QTest>

#include <algorithm>

using namespace TestLibraries;
using Kind = LibraryFinding::Kind;

class TestDoctorRescue : public QObject {
    Q_OBJECT

private:
    LibraryState m_three = importedThree();
    VelgorPatch m_lead = m_three.patches.first();

private Q_SLOTS:
    void patchWithoutFileIsRescuedFromAFileThatHoldsIt()
    {
        StoreFixture store(m_three);
        QVERIFY(QFile::rename(store.filePath(fileOf(m_lead)), store.filePath(QStringLiteral("lib-x.7.prst"))));
        const LibraryFinding finding = store.finding();
        QVERIFY(finding.kind == Kind::PatchWithoutFile && finding.rescued);
        store.repair();
        QList<VelgorPatch> patches = store.loaded();
        QVERIFY(areIdentical(patches, m_three.patches));
        // The file under the wrong name stays, and is of no more account.
        const LibraryHealth health = store.examine();
        QVERIFY(health.findings.isEmpty());
        QCOMPARE(health.notes.size(), 1);
        QVERIFY(health.notes.first().kind == Kind::SpareFile);
        QCOMPARE(health.notes.first().file, QStringLiteral("lib-x.7.prst"));
    }

    void fileWithoutEntryIsAdopted()
    {
        StoreFixture store;
        LibraryState two = m_three;
        two.patches.removeFirst();
        QVERIFY(!store.save(two).hasError());
        store.write(fileOf(m_lead), patchBytes(m_lead));
        const LibraryFinding finding = store.finding();
        QVERIFY(finding.kind == Kind::FileWithoutEntry && finding.rescued);
        store.repair();
        QVERIFY(store.examine().findings.isEmpty());
        const VelgorPatch adopted = store.loaded().last();
        QCOMPARE(adopted.id(), m_lead.id());
        QCOMPARE(adopted.records->patchData, m_lead.records->patchData);
    }

    void adoptedFileGetsBackWhatAFormerLibraryFileKnows()
    {
        StoreFixture store(m_three);
        VelgorPatch renamed = m_lead.withId(m_lead.id());
        renamed.name = QStringLiteral("Renamed");
        LibraryState former = m_three;
        former.patches.first() = renamed;
        store.write(QStringLiteral("velgorlibrary-20260101T000000-00.json"), LibraryJson::encode(m_three));
        store.write(QStringLiteral("velgorlibrary-20260102T000000-00.json"), LibraryJson::encode(former));
        LibraryState two = m_three;
        two.patches.removeFirst();
        store.write(libraryFile, LibraryJson::encode(two));
        store.repair();
        QVERIFY(TestPatches::isIdentical(store.loaded().first(), renamed));
        QVERIFY(store.examine().findings.isEmpty());
    }

    void damagedLibraryFileIsRebuiltFromThePatchFiles()
    {
        StoreFixture store(m_three);
        store.write(QStringLiteral("velgorlibrary-20260101T000000-00.json"), LibraryJson::encode(m_three));
        store.write(libraryFile, "garbled");
        const LibraryHealth health = store.examine();
        QVERIFY(health.findings.first().kind == Kind::DamagedLibraryFile);
        QCOMPARE(health.rescuedPatches().size(), 3);
        store.repair();
        QList<VelgorPatch> patches = store.loaded();
        QCOMPARE(patches.size(), 3);
        for (const VelgorPatch &patch : std::as_const(m_three.patches)) {
            QVERIFY(std::any_of(patches.begin(), patches.end(),
                [&patch](const VelgorPatch &other) { return TestPatches::isIdentical(patch, other); }));
        }
        QCOMPARE(store.datedCopies().size(), 2);
        QCOMPARE(store.read(store.datedCopies().last()), QByteArray("garbled"));
    }

    void restoringIsPreviewedAndCanBeTakenBack()
    {
        StoreFixture store(m_three);
        const QString former = QStringLiteral("velgorlibrary-20260101T000000-00.json");
        LibraryState then = m_three;
        then.patches.removeAt(2);
        then.patches.first().comment = QStringLiteral("former words");
        then.patches.append(imported(QStringLiteral("Gone"), 7));
        then.defaultPatch = m_lead.id();
        store.write(former, LibraryJson::encode(then));

        QVERIFY(store.start());
        const auto preview = KeptLibraries::preview(store.path(), former, store.library.state());
        QVERIFY(preview);
        QCOMPARE(preview->comingBack, QStringList());
        QCOMPARE(preview->changing, QStringList{QStringLiteral("Lead")});
        QCOMPARE(preview->leaving, QStringList{QStringLiteral("Clean")});
        QCOMPARE(preview->withoutFile, QStringList{QStringLiteral("Gone")});

        store.library.adopt({.patches = preview->patches, .defaultPatch = preview->defaultPatch});
        store.storage.keepLibraryFile();
        store.storage.save(store.library);
        QCOMPARE(store.storage.keptFiles().size(), 1);
        QCOMPARE(store.loadedNames(), (QStringList{QStringLiteral("Lead"), QStringLiteral("A/B")}));
        QCOMPARE(store.load().library->defaultPatch, std::optional(m_lead.id()));

        const QString kept = QFileInfo(store.storage.keptFiles().constFirst()).fileName();
        const auto back = KeptLibraries::preview(store.path(), kept, store.library.state());
        QCOMPARE(back->comingBack, QStringList{QStringLiteral("Clean")});
        QVERIFY(areIdentical(back->patches, m_three.patches));
    }

    void formerLibraryFileThatCannotBeReadHasNoPreview()
    {
        StoreFixture store;
        store.write(QStringLiteral("velgorlibrary-20260101T000000-00.json"), "garbled");
        QVERIFY(!KeptLibraries::preview(store.path(), QStringLiteral("velgorlibrary-20260101T000000-00.json"), {}));
        QVERIFY(!KeptLibraries::preview(store.path(), QStringLiteral("missing.json"), {}));
    }

    void damagedCopyOfAPatchWithoutFileIsNoRescue()
    {
        StoreFixture store(m_three);
        QVERIFY(QFile::remove(store.filePath(fileOf(m_lead))));
        store.write(QStringLiteral("copy.%1.prst").arg(m_lead.id()), "damaged");
        const LibraryHealth health = store.examine();
        QCOMPARE(health.findings.size(), 2);
        QVERIFY(health.findings.first().kind == Kind::ForeignFile);
        QVERIFY(health.findings.last().kind == Kind::PatchWithoutFile);
        QVERIFY(health.rescuedPatches().isEmpty());
    }

    void adoptedFileKeepsTheNameThatTheUserGave_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("found");
        QTest::newRow("unchanged") << QStringLiteral("Lead") << QStringLiteral("Lead");
        QTest::newRow("given") << QStringLiteral("My Solo. v.2") << QStringLiteral("My Solo. v.2");
        QTest::newRow("not for a file name") << QStringLiteral("A/B") << QStringLiteral("A$B");
        QTest::newRow("empty") << QString() << QString();
    }

    void adoptedFileKeepsTheNameThatTheUserGave()
    {
        QFETCH(const QString, name);
        StoreFixture store;
        VelgorPatch named = m_lead;
        named.name = name;
        QVERIFY(!store.save({{named}, std::nullopt}).hasError());
        QVERIFY(QFile::remove(store.filePath(libraryFile)));
        store.repair();
        const QList<VelgorPatch> patches = store.loaded();
        QCOMPARE(patches.size(), 1);
        QTEST(patches.first().name, "found");
        QCOMPARE(patches.first().id(), m_lead.id());
        QCOMPARE(patches.first().records->patchData, m_lead.records->patchData);
        QVERIFY(store.has(fileOf(named)));
        QVERIFY(store.examine().findings.isEmpty());
    }

    void renamedCopyIsAdoptedUnderItsName()
    {
        StoreFixture store;
        const QString name = QString(14, QChar(0x00e4)) + QStringLiteral("-1");
        const VelgorPatch copy = VelgorPatch::copyNamed(m_lead, name);
        QVERIFY(!store.save({{m_lead, copy}, std::nullopt}).hasError());
        QVERIFY(QFile::remove(store.filePath(libraryFile)));
        store.repair();
        QList<VelgorPatch> patches = store.loaded();
        QCOMPARE(patches.size(), 2);
        QVERIFY(std::any_of(patches.begin(), patches.end(),
            [&copy](const VelgorPatch &patch) { return patch.id() == copy.id() && patch.name == copy.name; }));
    }

    void stagedPatchOfADamagedLibraryIsRescued()
    {
        StoreFixture store;
        const VelgorPatch unknown = imported(QStringLiteral("Unknown"), 9);
        QVERIFY(!store.save(m_three).hasError());
        // The last two were about to be put in place when the library file was cut.
        const QString stagedClean = TemporaryFiles::prefix() + QStringLiteral("a");
        const QString stagedUnknown = TemporaryFiles::prefix() + QStringLiteral("b");
        QVERIFY(QFile::rename(store.filePath(fileOf(m_three.patches.last())), store.filePath(stagedClean)));
        store.write(stagedUnknown, patchBytes(unknown));
        LibraryJournal journal;
        journal.staged = {{m_three.patches.last().id(), stagedClean}, {unknown.id(), stagedUnknown}};
        store.write(journalFile, journal.encode());
        store.write(QStringLiteral("velgorlibrary-20260101T000000-00.json"), LibraryJson::encode(m_three));
        store.write(libraryFile, LibraryJson::encode(m_three).chopped(9));

        const LibraryHealth health = store.examine();
        QCOMPARE(health.rescuedPatches().size(), 4);
        const auto named = std::find_if(health.findings.begin(), health.findings.end(),
            [&stagedUnknown](const LibraryFinding &finding) { return finding.file == stagedUnknown; });
        QVERIFY(named != health.findings.end() && named->kind == Kind::FileWithoutEntry);
        QCOMPARE(named->name, QStringLiteral("Unknown"));
        QVERIFY(!named->reason.isEmpty());
        store.repair();
        QList<VelgorPatch> patches = store.loaded();
        QCOMPARE(patches.size(), 4);
        QVERIFY(areIdentical(patches.first(3), m_three.patches));
        QCOMPARE(patches.last().id(), unknown.id());
        QCOMPARE(patches.last().records->patchData, unknown.records->patchData);
        QVERIFY(store.has(fileOf(unknown)));
    }

    void exchangedFilesArePutRight()
    {
        StoreFixture store(m_three);
        const VelgorPatch &clean = m_three.patches.last();
        store.write(fileOf(m_lead), patchBytes(clean));
        store.write(fileOf(clean), patchBytes(m_lead));
        QCOMPARE(TestPatches::ids(store.examine().rescuedPatches()).size(), 2);
        store.repair();
        QVERIFY(areIdentical(store.load().library->patches, m_three.patches));
        QVERIFY(store.examine().findings.isEmpty());
    }

    void copyElsewhereOfAnOverwrittenPatchPutsItRight()
    {
        StoreFixture store(m_three);
        store.write(QStringLiteral("lib-x.7.prst"), patchBytes(m_lead));
        store.write(fileOf(m_lead), patchBytes(m_three.patches.last()));
        QVERIFY(store.examine().notes.isEmpty());
        store.repair();
        QVERIFY(areIdentical(store.load().library->patches, m_three.patches));
    }

    void previewTellsOfTheDefaultPatchAndTheOrder()
    {
        StoreFixture store;
        LibraryState now = m_three;
        now.defaultPatch = m_lead.id();
        QVERIFY(!store.save(now).hasError());
        const QString former = QStringLiteral("velgorlibrary-20260101T000000-00.json");
        const auto previewOf = [&](const LibraryState &then) {
            store.write(former, LibraryJson::encode(then));
            return *KeptLibraries::preview(store.path(), former, now);
        };
        LibraryState then = now;
        QVERIFY(!previewOf(then).isDefaultChanging && !previewOf(then).isOrderChanging);
        then.defaultPatch = m_three.patches.last().id();
        QVERIFY(previewOf(then).isDefaultChanging);
        QCOMPARE(previewOf(then).defaultName, QStringLiteral("Clean"));
        then.defaultPatch = 77;
        QVERIFY(previewOf(then).isDefaultChanging && previewOf(then).defaultName.isEmpty());
        then = now;
        then.patches.removeAt(1);
        QVERIFY(!previewOf(then).isOrderChanging);
        then.patches.swapItemsAt(0, 1);
        QVERIFY(previewOf(then).isOrderChanging && !previewOf(then).isDefaultChanging);
    }

    void previewTellsMissingFilesFromUnreadableOnes()
    {
        StoreFixture store(m_three);
        const QString former = QStringLiteral("velgorlibrary-20260101T000000-00.json");
        store.write(former, LibraryJson::encode(m_three));
        QVERIFY(QFile::remove(store.filePath(fileOf(m_lead))));
        store.write(fileOf(m_three.patches.last()), "damaged");
        const auto preview = KeptLibraries::preview(store.path(), former, m_three);
        QCOMPARE(preview->withoutFile, QStringList{QStringLiteral("Lead")});
        QCOMPARE(preview->unreadable.size(), 1);
        QCOMPARE(preview->unreadable.first().name, QStringLiteral("Clean"));
        QVERIFY(!preview->unreadable.first().reason.isEmpty());
    }
};

VELGOR_TEST(TestDoctorRescue)
#include "tst_DoctorRescue.moc"
