#include "ContentSlots.h"
#include "DiagnosticRecorder.h"
#include "FakeFiles.h"
#include "PatchFileHandler.h"
#include "TestPatches.h"
#include "TestProgram.h"
#include "VelgorContent.h"

#include <QSignalSpy>
#include <QTest>

using namespace ContentSlots;
using TestPatches::imported;

namespace {

using Versions = QMap<QString, int>;

const QString v120 = QStringLiteral("V1.20");
const QString v121 = QStringLiteral("V1.21");
const QString none = QStringLiteral("!NONE");

} // namespace

class TestContentAnnouncements : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyChangeIsAnnouncedOnce()
    {
        VelgorContent content;
        Announcements announcements(content);
        content.populate(fileOf(4));
        QCOMPARE(announcements.take(), QStringLiteral("+reset; limit; reset; versions"));
        content.checkVersions();
        QCOMPARE(announcements.take(), QStringLiteral("versions"));
        content.checkVersions();
        content.recountVersions();
        QCOMPARE(announcements.take(), QString());
        content.setPatch(imported(QStringLiteral("Same version")), 2);
        QCOMPARE(announcements.take(), QStringLiteral("change 2 2"));
        content.setPatch(imported(QStringLiteral("Other"), 1, {}, "V1.21"), 3);
        QCOMPARE(announcements.take(), QStringLiteral("change 3 3; versions"));
        content.checkVersions();
        QCOMPARE(announcements.take(), QStringLiteral("mixVersions"));
        content.move(0, 3);
        QCOMPARE(announcements.take(), QStringLiteral("+move 0 3; move 0 3; change 0 2"));
        content.setLimit(6);
        content.adjust(std::nullopt);
        QCOMPARE(announcements.take(), QStringLiteral("limit; +insert 4 5; insert 4 5"));
        content.setLimit(1);
        content.adjust(std::nullopt);
        QCOMPARE(announcements.take(), QStringLiteral("limit; +remove 1 5; remove 1 5"));
        content.adjust(std::nullopt);
        content.renum();
        QCOMPARE(announcements.take(), QString());
        content.createNew(imported(QStringLiteral("Lead")));
        QCOMPARE(announcements.take(), QStringLiteral("+reset; limit; reset"));
        content.propagateChangedPatch(imported(QStringLiteral("Not there")));
        QCOMPARE(announcements.take(), QString());
    }

    void whatChangesManySlotsIsAnnouncedOnce()
    {
        VelgorContent content;
        content.populate(fileOf(8));
        Announcements announcements(content);
        const VelgorPatch other = imported(QStringLiteral("Other"), 9, {}, "V1.21");
        content.setPatches(QList<VelgorPatch>(3, other), 2);
        QCOMPARE(announcements.take(), QStringLiteral("change 2 4; versions"));
        content.setPatches(QList<VelgorPatch>(3, other), 6);
        QCOMPARE(announcements.take(), QStringLiteral("change 6 7; versions"));
        content.setPatches({}, 2);
        content.setPatches({other}, 8);
        QCOMPARE(announcements.take(), QString());
        content.replace(QList<qsizetype>{1, 5, 6}, imported(QStringLiteral("New"), 8));
        QCOMPARE(announcements.take(), QStringLiteral("change 1 6"));
        QCOMPARE(names(content).join(u','), QStringLiteral("Patch 0,New,Other,Other,Other,New,New,Other"));
        content.propagateChangedPatch(other);
        QCOMPARE(announcements.take(), QStringLiteral("change 2 7"));
        content.move(QList<qsizetype>{1, 5}, 5);
        QCOMPARE(announcements.take(), QStringLiteral("+reorder; reorder; change 1 4"));
        content.move(QList<qsizetype>{1, 2}, 2);
        QCOMPARE(announcements.take(), QString());
    }

    void replaceIsAnnouncedOnceWithItsPlace()
    {
        VelgorContent content;
        content.populate(fileOf(4));
        Announcements announcements(content);
        QStringList seen;
        connect(&content, &VelgorContent::rowsChanged, this, [&] { seen.append(places(content).at(2)); });
        content.replace(content.velgorContentPatchList().at(2).id, imported(QStringLiteral("New")));
        QCOMPARE(seen, QStringList{QStringLiteral("1-3")});
    }

    void soundHashesAreThoseOfTheSlots()
    {
        QRandomGenerator random(1);
        VelgorContent content;
        const auto compare = [&content] {
            const auto &list = content.velgorContentPatchList();
            QCOMPARE(content.soundHashes().size(), list.size());
            for (qsizetype row = 0; row < list.size(); ++row) {
                QCOMPARE(content.soundHashes().at(row), list.at(row).patch.soundHash());
            }
        };
        connect(&content, &VelgorContent::reordered, this, compare);
        connect(&content, &VelgorContent::rowMoved, this, compare);
        connect(&content, &VelgorContent::limitChanged, this, compare);
        const auto anyPatch = [&random] {
            return random.bounded(4) == 0 ? VelgorPatch(QStringLiteral("None"), false)
                                          : imported(QStringLiteral("Lead"), random.bounded(5));
        };
        for (int step = 0; step < 2000; ++step) {
            const qsizetype size = content.velgorContentPatchList().size();
            switch (size == 0 ? 0 : random.bounded(7)) {
            case 0:
                content.populate(fileOf(1 + random.bounded(12)));
                break;
            case 1:
                content.setLimit(1 + random.bounded(12));
                content.adjust(anyPatch());
                break;
            case 2:
                content.setPatches({anyPatch(), anyPatch()}, random.bounded(size));
                break;
            case 3:
                content.replace(QList<qsizetype>{random.bounded(size)}, anyPatch());
                break;
            case 4:
                content.move(random.bounded(size), random.bounded(size + 1));
                break;
            case 5:
                content.move(QList<qsizetype>{0, size - 1}.first(size > 1 ? 2 : 1), random.bounded(size + 1));
                break;
            default: {
                VelgorPatch patch = content.velgorContentPatchList().at(random.bounded(size)).patch;
                patch.records = anyPatch().records;
                content.propagateChangedPatch(patch);
            }
            }
            compare();
        }
    }

    void populateCountsVersionsAndThePlaceholders()
    {
        VelgorContent content;
        content.populate(fileOf(5));
        QCOMPARE(content.versions(), (Versions{{v120, 5}, {none, 0}}));
        content.checkVersions();
        QCOMPARE(content.versions(), (Versions{{v120, 5}}));
        QVERIFY(!content.mixVersions());
    }

    void populateStartsTheVersionTableAnew()
    {
        VelgorContent content;
        content.populate(fileOf(5, "V1.21"));
        content.populate(fileOf(2));
        QCOMPARE(content.versions(), (Versions{{v120, 2}, {none, 0}}));
        QCOMPARE(content.velgorContentPatchList().size(), 2);
    }

    void setPatchMovesACountFromOneVersionToTheOther()
    {
        VelgorContent content;
        content.populate(fileOf(5));
        content.setPatch(imported(QStringLiteral("New"), 9, {}, "V1.21"), 3);
        QCOMPARE(content.versions(), (Versions{{v120, 4}, {v121, 1}, {none, 0}}));
        content.checkVersions();
        QVERIFY(content.mixVersions());
        content.setPatch(imported(QStringLiteral("Old")), 3);
        QCOMPARE(content.versions(), (Versions{{v120, 5}, {v121, 0}}));
        content.checkVersions();
        QVERIFY(!content.mixVersions());
        QCOMPARE(content.versions(), (Versions{{v120, 5}}));
    }

    void aSetterThatChangesNothingAnnouncesNothing()
    {
        VelgorContent content;
        const auto check = [&](auto signal, const auto &set) {
            QSignalSpy spy(&content, signal);
            set(true);
            set(true);
            if (spy.count() != 1) {
                return false;
            }
            set(false);
            set(false);
            return spy.count() == 2;
        };
        QVERIFY(check(&VelgorContent::openErrorChanged, [&](bool on) { content.setOpenError(on); }));
        QVERIFY(check(&VelgorContent::saveErrorChanged, [&](bool on) { content.setSaveError(on); }));
        QVERIFY(check(&VelgorContent::selectDefaultChanged, [&](bool on) { content.setSelectDefault(on); }));
        QVERIFY(check(&VelgorContent::mixVersionsChanged, [&](bool on) { content.setMixVersions(on); }));
        QVERIFY(check(&VelgorContent::inverseTailBitChanged, [&](bool on) { content.setInverseTailBit(on); }));
        QVERIFY(check(&VelgorContent::limitChanged, [&](bool on) { content.setLimit(on ? 3 : 0); }));
        const QSet<QUuid> some{QUuid::createUuid()};
        QVERIFY(check(
            &VelgorContent::selectionsChanged, [&](bool on) { content.setSelections(on ? some : QSet<QUuid>()); }));
    }

    void cancellingTheImportIsNoError()
    {
        FakeFileAccess files;
        FakeFileDialogs dialogs;
        PatchFileHandler handler(files, &dialogs);
        VelgorContent content;
        Announcements announcements(content);
        content.openPresetFile(handler);
        QVERIFY(!content.openError());
        QCOMPARE(announcements.take(), QString());
    }

    void importFillsTheListAndClearsTheError()
    {
        FakeFileAccess files;
        FakeFileDialogs dialogs;
        files.files.insert(
            QStringLiteral("a.prst"), TestRecords::fileBytes({TestRecords::patch(QStringLiteral("Lead"))}));
        dialogs.answer = QStringLiteral("a.prst");
        PatchFileHandler handler(files, &dialogs);
        VelgorContent content;
        content.setOpenError(true);
        content.openPresetFile(handler);
        QCOMPARE(names(content), QStringList{QStringLiteral("Lead")});
        QVERIFY(!content.openError());
    }

    void importOfAnUnreadableFileSetsTheError()
    {
        const DiagnosticRecorder recorder;
        FakeFileAccess files;
        FakeFileDialogs dialogs;
        files.files.insert(QStringLiteral("cut"), "TSRP");
        PatchFileHandler handler(files, &dialogs);
        for (const char *path : {"cut", "missing"}) {
            VelgorContent content;
            content.populate(fileOf(2));
            dialogs.answer = QLatin1String(path);
            content.openPresetFile(handler);
            QVERIFY(content.openError());
            QCOMPARE(names(content).size(), 2);
        }
    }
};

VELGOR_TEST(TestContentAnnouncements)
#include "tst_ContentAnnouncements.moc"
