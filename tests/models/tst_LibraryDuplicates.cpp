#include "StoredLibraries.h"
#include "TestPatches.h"
#include "TestProgram.h"
#include "VelgorLibrary.h"

#include <QTest>

using namespace StoredLibraries;
using TestPatches::imported;

class TestLibraryDuplicates : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void presetDataComesBackUnderASynonym()
    {
        VelgorLibrary library(abc, std::nullopt);
        library.append(TestRecords::file({TestRecords::patch(lead)}), true, 2);
        QCOMPARE(names(library), QStringLiteral("a,b,c"));
        QVERIFY(library.patches().at(1).records);
        QCOMPARE(library.patches().at(1).records->patchData.name, lead);
    }

    void aDuplicateGetsASuffix_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QStringList>("taken");
        QTest::addColumn<QString>("copy");
        QStringList nine;
        QStringList ninetyNine;
        for (int x = 1; x < 100; ++x) {
            (x < 10 ? nine : ninetyNine).append(QStringLiteral("Crunchy Rhythm-%1").arg(x).right(x < 10 ? 99 : 16));
            ninetyNine.append(QStringLiteral("L-%1").arg(x));
        }
        QTest::newRow("short") << lead << QStringList() << "Lead-1";
        QTest::newRow("taken once") << lead << QStringList{QStringLiteral("Lead-1")} << "Lead-2";
        QTest::newRow("a gap is used") << lead << QStringList{QStringLiteral("Lead-2")} << "Lead-1";
        QTest::newRow("letter case counts") << lead << QStringList{QStringLiteral("lead-1")} << "Lead-1";
        QTest::newRow("16 characters") << "Crunchy Rhythm 1" << QStringList() << "Crunchy Rhythm-1";
        QTest::newRow("two digits") << "Crunchy Rhythm 1" << nine << "Crunchy Rhyth-10";
        QTest::newRow("three digits") << "L" << ninetyNine << "L-100";
        QTest::newRow("of a duplicate") << "Lead-1" << QStringList() << "Lead-1-1";
        QTest::newRow("empty") << "" << QStringList() << "-1";
        QTest::newRow("longer than a field") << QStringLiteral("x").repeated(40) << QStringList()
                                             << QStringLiteral("x").repeated(14) + QStringLiteral("-1");
        const QString guitar = QString::fromUtf8("\U0001F3B8");
        QTest::newRow("characters are code points")
            << guitar.repeated(16) << QStringList() << guitar.repeated(3) + QStringLiteral("-1");
    }

    void aDuplicateGetsASuffix()
    {
        QFETCH(const QString, name);
        QFETCH(const QStringList, taken);
        QFETCH(const QString, copy);
        VelgorLibrary library(storedPatches(taken), std::nullopt);
        const VelgorPatch patch = imported(name);
        library.append(patch, false, false);
        library.append(patch, true, false);
        QCOMPARE(library.patches().size(), taken.size() + 2);
        QCOMPARE(library.patches().last().name, copy);
        QCOMPARE(library.patches().last().id(), imported(copy).id());
    }

    void duplicatesGoToTheEndWhateverTheLocation()
    {
        VelgorLibrary library;
        const VelgorPatch patch = imported(lead);
        library.append(patch, false, false);
        library.append(imported(QStringLiteral("Other"), 2), false, false);
        library.append(patch, true, false, 0);
        library.append(patch, true, true, 0);
        QCOMPARE(names(library), QStringLiteral("Lead,Other,Lead-1,Lead-2"));
        QCOMPARE(library.order(), TestPatches::ids(library.patches()));
    }

    void theIncomingPatchIsCopiedUnderTheFoundName()
    {
        VelgorLibrary library;
        const VelgorPatch patch = imported(lead);
        library.append(patch, false, false);
        VelgorPatch renamed = patch;
        renamed.name = QStringLiteral("Solo");
        QVERIFY(library.update(renamed));
        VelgorPatch incoming = imported(QStringLiteral("Other"), 2);
        incoming.comment = QStringLiteral("incoming");
        library.append(incoming, true, false, VelgorLibrary::atEnd, patch.id());
        QCOMPARE(names(library), QStringLiteral("Solo,Solo-1"));
        QCOMPARE(library.patches().last().comment, incoming.comment);
        QCOMPARE(library.patches().last().records->patchData.data, incoming.records->patchData.data);
        QCOMPARE(library.patches().last().id(), imported(QStringLiteral("Solo-1"), 2).id());
    }

    void copiesWhoseNamesHashAlikeGetIdsOfTheirOwn()
    {
        // The last of nine bytes does not count: "Lead xx-1" and "Lead xx-2" have one hash.
        VelgorLibrary library;
        const VelgorPatch patch = imported(QStringLiteral("Lead xx"));
        QCOMPARE(imported(QStringLiteral("Lead xx-1")).id(), imported(QStringLiteral("Lead xx-2")).id());
        library.append(patch, false, false);
        library.append(patch, true, false);
        library.append(patch, true, false);
        library.append(patch, true, false);
        QCOMPARE(names(library), QStringLiteral("Lead xx,Lead xx-1,Lead xx-2,Lead xx-3"));
        const QList<quint64> ids = TestPatches::ids(library.patches());
        QCOMPARE(QSet<quint64>(ids.begin(), ids.end()).size(), 4);
        QCOMPARE(library.patches().last().records->patchData.name, QStringLiteral("Lead xx-3"));
    }

    void aDuplicateWithoutPresetDataKeepsItsName()
    {
        VelgorLibrary library(abc, std::nullopt);
        library.append(abc.first(), true, false);
        QCOMPARE(names(library), QStringLiteral("a,b,c,a"));
        QVERIFY(library.patches().last().id() != 1);
    }

    void duplicatingTheSelectionNeedsOne_data()
    {
        QTest::addColumn<std::optional<quint64>>("id");
        QTest::addColumn<QString>("expected");
        QTest::newRow("a patch") << std::optional<quint64>(2) << QStringLiteral("a,b,c,b");
        QTest::newRow("unknown") << std::optional<quint64>(9) << QStringLiteral("a,b,c");
        QTest::newRow("absent") << std::optional<quint64>() << QStringLiteral("a,b,c");
    }

    void duplicatingTheSelectionNeedsOne()
    {
        QFETCH(const std::optional<quint64>, id);
        VelgorLibrary library(abc, std::nullopt);
        library.duplicateSelection(id);
        QTEST(names(library), "expected");
    }
};

VELGOR_TEST(TestLibraryDuplicates)
#include "tst_LibraryDuplicates.moc"
