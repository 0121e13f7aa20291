#include "LibraryAnnouncements.h"
#include "PatchIdentity.h"
#include "PatchName.h"
#include "TestPatches.h"
#include "TestProgram.h"
#include "VelgorLibrary.h"

#include <QCoreApplication>
#include <QSet>
#include <QTest>

using TestPatches::ids;
using TestPatches::imported;
using TestPatches::names;

namespace {

/// One sound under names of nine bytes, whose last one the hash leaves out.
QList<VelgorPatch> presets(int count)
{
    QList<VelgorPatch> patches;
    for (int number = 1; number <= count; ++number) {
        patches.append(imported(QStringLiteral("Preset %1").arg(number, 2, 10, QLatin1Char('0'))));
    }
    return patches;
}

/// Different sounds with one name and one hash: each has the same change at two places 8 bytes apart.
QList<VelgorPatch> alike(int count)
{
    QList<VelgorPatch> patches;
    SPatch record = TestRecords::patch(QStringLiteral("Lead"), 1, 32);
    for (int number = 0; number < count; ++number) {
        SPatch changed = record;
        for (const qsizetype place : {0, 8}) {
            for (int i = 0; i < 4; ++i) {
                changed.data[place + i] =
                    static_cast<char>(record.data.at(place + i) ^ static_cast<char>(number >> (8 * i)));
            }
        }
        patches.append(VelgorPatch(changed, SUserIR(), TestRecords::header()));
    }
    return patches;
}

QStringList contentsOf(const VelgorLibrary &library)
{
    QStringList texts;
    for (const VelgorPatch &patch : library.patches()) {
        texts.append(patch.name + u' ' + QString::fromLatin1(patch.records->patchData.data.first(16).toHex()));
    }
    texts.sort();
    return texts;
}

} // namespace

/// Which patches a library takes for one and the same when it keeps them.
class TestVelgorLibraryKeeping : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void patchesWithOneIdAreAllKept_data()
    {
        QTest::addColumn<QList<VelgorPatch>>("patches");
        QTest::newRow("names") << presets(99);
        QTest::newRow("sounds") << alike(30);
    }

    void patchesWithOneIdAreAllKept()
    {
        QFETCH(const QList<VelgorPatch>, patches);
        VelgorLibrary library;
        const QList<quint64> kept = library.appendNew(patches);
        QCOMPARE(library.count(), patches.size());
        QCOMPARE(ids(library.patches()), kept);
        QCOMPARE(QSet<quint64>(kept.begin(), kept.end()).size(), patches.size());
        QCOMPARE(kept.first(), patches.first().id());
        // The same list again, at once and one by one: nothing is new.
        QCOMPARE(library.appendNew(patches), kept);
        for (qsizetype i = 0; i < patches.size(); ++i) {
            QCOMPARE(library.append(patches.at(i), false, false), kept.at(i));
            QCOMPARE(library.knownId(patches.at(i)), std::optional(kept.at(i)));
        }
        QCOMPARE(library.count(), patches.size());
        // As does a library that was loaded from disk.
        VelgorLibrary loaded(library.patches(), std::nullopt);
        QCOMPARE(loaded.appendNew(patches), kept);
        QCOMPARE(loaded.count(), patches.size());
    }

    void theOrderDoesNotChangeWhatIsKept()
    {
        QList<VelgorPatch> patches = presets(12);
        VelgorLibrary library;
        library.appendNew(patches);
        std::reverse(patches.begin(), patches.end());
        VelgorLibrary reversed;
        reversed.appendNew(patches);
        QCOMPARE(contentsOf(reversed), contentsOf(library));
        library.appendNew(patches);
        QCOMPARE(library.count(), 12);
    }

    void aPatchIsRecognisedWhenTheOneWithItsIdIsGone()
    {
        const QList<VelgorPatch> patches = presets(3);
        VelgorLibrary library;
        const QList<quint64> kept = library.appendNew(patches);
        library.deletePatch(kept.first());
        QCOMPARE(library.appendNew({patches.at(2), patches.at(1)}), (QList<quint64>{kept.at(2), kept.at(1)}));
        QCOMPARE(library.count(), 2);
        QCOMPARE(library.appendNew(patches), kept);
        QCOMPARE(names(library.patches()).join(u','), QStringLiteral("Preset 02,Preset 03,Preset 01"));
    }

    void aFreshIdIsTheSameInEveryLibrary()
    {
        const QList<VelgorPatch> patches = presets(2);
        VelgorLibrary library;
        VelgorLibrary other;
        other.append(imported(QStringLiteral("Other"), 5), false, false);
        const QList<quint64> kept = library.appendNew(patches);
        QCOMPARE(other.appendNew(patches), kept);
        QCOMPARE(kept.last(), PatchIdentity::freshId(patches.last(), 1));
    }

    void aRenamedPatchIsStillKnownAndHoldsItsIdAgainstOthers()
    {
        const QList<VelgorPatch> patches = presets(2);
        VelgorLibrary library;
        library.append(patches.first(), false, false);
        VelgorPatch renamed = library.patches().first();
        renamed.name = QStringLiteral("Preset 02");
        library.update(renamed);
        QVERIFY(library.knownId(patches.first()));
        QVERIFY(!library.knownId(patches.last()));
        library.appendNew(patches);
        QCOMPARE(names(library.patches()).join(u','), QStringLiteral("Preset 02,Preset 02"));
    }

    void aPatchUnderAnIdThatItsContentDoesNotGiveIsRecognised()
    {
        // As libraries have them whose copies got ids by chance, or whose file named an id twice.
        const VelgorPatch patch = imported(QStringLiteral("Lead"));
        VelgorLibrary library({patch.withId(5), imported(QStringLiteral("Solo"), 2)}, std::nullopt);
        QCOMPARE(library.knownId(patch), std::optional<quint64>(5));
        library.append(imported(QStringLiteral("Clean"), 3), false, false);
        QCOMPARE(library.append(patch, false, false), 5U);
        QCOMPARE(library.count(), 3);
        library.deletePatch(5);
        QVERIFY(!library.knownId(patch));
        QCOMPARE(library.append(patch, false, false), patch.id());
    }

    void replacingSparesAnotherPatchWithTheId()
    {
        const QList<VelgorPatch> patches = alike(2);
        VelgorLibrary library;
        library.append(patches.first(), false, false);
        library.append(patches.last(), false, true);
        QCOMPARE(library.count(), 2);
        QCOMPARE(library.patches().first().records->patchData, patches.first().records->patchData);
        QCOMPARE(library.patches().last().records->patchData, patches.last().records->patchData);
    }

    void soundsThatHashAlikeAreNotSimilar()
    {
        QList<VelgorPatch> patches = alike(3);
        VelgorLibrary library;
        const QList<quint64> kept = library.appendNew(patches);
        library.append(patches.at(1), true, false);
        const MultiSelections similar = library.findSimilarPatches(kept.at(1));
        QCOMPARE(similar.count(true), 2);
        QVERIFY(similar.isTicked(kept.at(1)) && similar.isTicked(library.patches().last().id()));
    }

    void copiesWhoseNamesHashAlikeGetIdsOfTheirContent()
    {
        const VelgorPatch patch = imported(QStringLiteral("Lead xx"));
        VelgorLibrary library;
        VelgorLibrary other;
        for (VelgorLibrary *each : {&library, &other}) {
            each->append(patch, false, false);
            each->append(patch, true, false);
            each->append(patch, true, false);
        }
        QCOMPARE(ids(library.patches()), ids(other.patches()));
        QCOMPARE(library.append(imported(QStringLiteral("Lead xx-2")), false, false), library.patches().last().id());
        QCOMPARE(library.count(), 3);
    }

    void aCopyOfARenamedCopysFormerNameIsAPatchOfItsOwn()
    {
        const VelgorPatch patch = imported(QStringLiteral("Lead"));
        VelgorLibrary library;
        library.append(patch, false, false);
        const quint64 first = library.append(patch, true, false);
        VelgorPatch renamed = library.patches().last();
        renamed.name = QStringLiteral("Solo");
        library.update(renamed);
        const quint64 second = library.append(patch, true, false);
        QCOMPARE(names(library.patches()).join(u','), QStringLiteral("Lead,Solo,Lead-1"));
        QVERIFY(first != second);
        QCOMPARE(library.getPatchFromId(second)->patch->name, QStringLiteral("Lead-1"));
    }

    void theSuffixOfACopyFitsTheField_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("copy");
        QTest::newRow("two bytes a letter") << QString::fromUtf8("Ритмгита") << QString::fromUtf8("Ритмгит-1");
        QTest::newRow("three") << QString::fromUtf8("リードギター") << QString::fromUtf8("リードギ-1");
        QTest::newRow("four") << QString::fromUtf8("🎸🎸🎸🎸") << QString::fromUtf8("🎸🎸🎸-1");
        QTest::newRow("a letter that does not fit whole")
            << QString::fromUtf8("Crunch Rhythmé") << QStringLiteral("Crunch Rhythm-1");
        QTest::newRow("short") << QString::fromUtf8("Ритм") << QString::fromUtf8("Ритм-1");
        QTest::newRow("a zero character") << QStringLiteral("Le") + QChar(u'\0') + QStringLiteral("ad") << "Lead-1";
    }

    void theSuffixOfACopyFitsTheField()
    {
        QFETCH(const QString, name);
        VelgorLibrary library;
        const VelgorPatch patch = imported(name);
        library.append(patch, false, false);
        for (int copy = 0; copy < 12; ++copy) {
            library.append(patch, true, false);
        }
        QTEST(library.patches().at(1).name, "copy");
        QSet<QByteArray> fields;
        for (const VelgorPatch &each : library.patches().sliced(1)) {
            QCOMPARE(each.records->patchData.nameField().size(), 16);
            QCOMPARE(PatchName::fitted(each.name), each.name);
            fields.insert(each.records->patchData.nameField());
        }
        QCOMPARE(fields.size(), 12);
    }

    void restoredPatchesHaveTheirIdsAndTakeNobodysPlace()
    {
        VelgorLibrary library;
        const QList<VelgorPatch> patches = alike(2);
        library.append(patches.first(), false, false);
        LibraryAnnouncements announcements(library);
        library.restore({patches.first().withId(5), patches.last(), patches.last().withId(6)});
        QCOMPARE(ids(library.patches()), (QList<quint64>{patches.first().id(), 5, 6}));
        QCOMPARE(announcements.take(), QStringLiteral("+insert 1 2; insert 1 2"));
    }
};

VELGOR_TEST(TestVelgorLibraryKeeping)
#include "tst_VelgorLibraryKeeping.moc"
