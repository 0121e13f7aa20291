#include "LibraryJson.h"
#include "TestPatches.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QTest>

#include <limits>

using TestPatches::imported;

namespace {

/// A patch with something in every field.
VelgorPatch fullPatch()
{
    VelgorPatch patch = imported(QStringLiteral("Lead"), 1, TestRecords::userIR(7));
    patch.comment = QStringLiteral("fat");
    patch.date = {12.5};
    patch.guitar = patch.clean = patch.drive = patch.rythm = patch.empty = true;
    return patch;
}

} // namespace

class TestVelgorPatch : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void namedPatchHasNoPresetData()
    {
        const VelgorPatch patch(QStringLiteral("Template"), true);
        QCOMPARE(patch.name, QStringLiteral("Template"));
        QVERIFY(patch.hasUserIR);
        QCOMPARE(patch.comment, QString());
        QCOMPARE(patch.version, QStringLiteral("!NONE"));
        QVERIFY(std::abs(patch.date.seconds - ReferenceDate::now().seconds) < 60);
        QVERIFY(!patch.guitar && !patch.bass && !patch.clean && !patch.crunch && !patch.drive && !patch.higain);
        QVERIFY(!patch.rythm && !patch.solo && !patch.empty);
        QVERIFY(!patch.records);
    }

    void randomIdsAreFreshAndNeverNegative()
    {
        QSet<quint64> ids;
        quint64 bits = 0;
        for (int i = 0; i < 1000; ++i) {
            const quint64 id = VelgorPatch(QString(), false).id();
            ids.insert(id);
            bits |= id;
        }
        QCOMPARE(ids.size(), 1000);
        QCOMPARE(bits, static_cast<quint64>(std::numeric_limits<qint64>::max()));
    }

    void importedPatchHoldsItsRecords()
    {
        const SPatch record = TestRecords::patch(QStringLiteral("Lead"), 3);
        const SUserIR userIR = TestRecords::userIR(7);
        const SHeaderDesc header = TestRecords::header(5, "V1.21");
        const VelgorPatch patch(record, userIR, header);
        QCOMPARE(patch.id(), record.simpleHash() ^ userIR.simpleHash());
        QCOMPARE(patch.name, QStringLiteral("Lead"));
        QCOMPARE(patch.version, QStringLiteral("V1.21"));
        QVERIFY(patch.records == (PresetRecords{record, userIR, header}));
        QVERIFY(patch.comment.isEmpty() && !patch.guitar && !patch.solo && !patch.empty);
        QVERIFY(std::abs(patch.date.seconds - ReferenceDate::now().seconds) < 60);
    }

    void identicalRecordsGiveTheSameId()
    {
        const SUserIR userIR = TestRecords::userIR(7);
        QCOMPARE(imported(QStringLiteral("Lead"), 1, userIR).id(), imported(QStringLiteral("Lead"), 1, userIR).id());
        QCOMPARE(imported(QStringLiteral("Lead"), 1, userIR, "V9.99").id(),
            imported(QStringLiteral("Lead"), 1, userIR).id());
    }

    void anotherNameGivesAnotherId()
    {
        QVERIFY(imported(QStringLiteral("Lead")).id() != imported(QStringLiteral("Leaf")).id());
    }

    void userIRDecidesHasUserIR_data()
    {
        QTest::addColumn<SUserIR>("userIR");
        QTest::addColumn<bool>("hasUserIR");
        SUserIR sizeZero = TestRecords::userIR(0);
        sizeZero.size = 0;
        QTest::newRow("placeholder") << SUserIR() << false;
        QTest::newRow("size of 0") << sizeZero << false;
        QTest::newRow("a user impulse response") << TestRecords::userIR(0) << true;
        QTest::newRow("of one byte") << TestRecords::userIR(0, 1, 1) << true;
    }

    void userIRDecidesHasUserIR()
    {
        QFETCH(const SUserIR, userIR);
        QFETCH(const bool, hasUserIR);
        QCOMPARE(imported(QStringLiteral("Lead"), 1, userIR).hasUserIR, hasUserIR);
    }

    void versionIsTheWholeField_data()
    {
        QTest::addColumn<QByteArray>("field");
        QTest::addColumn<QString>("version");
        QTest::newRow("five letters") << QByteArray("V1.20") << QStringLiteral("V1.20");
        QTest::newRow("spaces stay") << QByteArray(" V1  ") << QStringLiteral(" V1  ");
        QTest::newRow("zero bytes stay") << QByteArray("V1\0\0\0", 5) << QString::fromUtf8("V1\0\0\0", 5);
        QTest::newRow("only zero bytes") << QByteArray(5, '\0') << QString(5, QChar(u'\0'));
        QTest::newRow("beyond ASCII") << QByteArray("V\xC3\xA9.1") << QString::fromUtf8("V\xC3\xA9.1");
        QTest::newRow("byte order mark") << QByteArray("\xEF\xBB\xBF"
                                                       "12")
                                         << QChar(0xFEFF) + QStringLiteral("12");
        QTest::newRow("not UTF-8") << QByteArray("V1.2\xFF") << QStringLiteral("xxxxx");
        QTest::newRow("cut sequence") << QByteArray("V1.2\xC3") << QStringLiteral("xxxxx");
        QTest::newRow("overlong") << QByteArray("V1.\xC0\x80") << QStringLiteral("xxxxx");
        QTest::newRow("surrogate") << QByteArray("V1\xED\xA0\x80") << QStringLiteral("xxxxx");
    }

    void versionIsTheWholeField()
    {
        QFETCH(const QByteArray, field);
        QFETCH(const QString, version);
        QCOMPARE(imported(QStringLiteral("Lead"), 1, {}, field).version, version);
    }

    void copyUnderANewName()
    {
        const VelgorPatch from = fullPatch();
        const VelgorPatch copy = VelgorPatch::copyNamed(from, QStringLiteral("Lead-1"));
        SPatch record = from.records->patchData;
        record.name = QStringLiteral("Lead-1");
        QCOMPARE(copy.id(), record.simpleHash() ^ from.records->userIRData.simpleHash());
        VelgorPatch expected = from.withId(copy.id());
        expected.name = QStringLiteral("Lead-1");
        expected.records->patchData = record;
        QVERIFY(TestPatches::isIdentical(copy, expected));
        QCOMPARE(from.records->patchData.name, QStringLiteral("Lead"));
    }

    void copyUnderItsOwnNameKeepsTheId()
    {
        QVERIFY(TestPatches::isIdentical(VelgorPatch::copyNamed(fullPatch(), QStringLiteral("Lead")), fullPatch()));
    }

    void idOfACopyIsTheHashOfItsFullName()
    {
        const QString longName = QStringLiteral("Much longer than the field of a name");
        const VelgorPatch copy = VelgorPatch::copyNamed(imported(QStringLiteral("Lead")), longName);
        QCOMPARE(copy.name, longName);
        QCOMPARE(copy.id(), imported(longName).id());
    }

    void copyWithoutPresetDataKeepsItsNameAndGetsARandomId()
    {
        VelgorPatch from(QStringLiteral("Empty library"), true);
        from.empty = from.solo = true;
        from.comment = QStringLiteral("kept");
        const VelgorPatch copy = VelgorPatch::copyNamed(from, QStringLiteral("Other"));
        const VelgorPatch second = VelgorPatch::copyNamed(from, QStringLiteral("Other"));
        QCOMPARE(copy.name, QStringLiteral("Empty library"));
        QVERIFY(copy.id() != from.id() && copy.id() != second.id());
        QVERIFY(TestPatches::isIdentical(copy.withId(from.id()), from));
    }

    void copyWithoutRecordsKeepsItsName()
    {
        VelgorPatch from = fullPatch();
        from.records.reset();
        const VelgorPatch copy = VelgorPatch::copyNamed(from, QStringLiteral("Other"));
        QCOMPARE(copy.name, QStringLiteral("Lead"));
        QVERIFY(copy.id() != from.id());
        QVERIFY(copy == from);
        QVERIFY(!copy.records);
    }

    void equalityComparesWhatTheUserSees_data()
    {
        QTest::addColumn<VelgorPatch>("other");
        QTest::addColumn<bool>("isEqual");
        const auto row = [](const char *name, bool isEqual, const auto &change) {
            VelgorPatch patch = fullPatch();
            change(patch);
            QTest::newRow(name) << patch << isEqual;
        };
        row("nothing", true, [](VelgorPatch &) {});
        row("id", true, [](VelgorPatch &patch) { patch = patch.withId(patch.id() + 1); });
        row("empty", true, [](VelgorPatch &patch) { patch.empty = !patch.empty; });
        row("preset data", true, [](VelgorPatch &patch) { patch.records.reset(); });
        row("name", false, [](VelgorPatch &patch) { patch.name = QStringLiteral("lead"); });
        row("comment", false, [](VelgorPatch &patch) { patch.comment += u' '; });
        row("version", false, [](VelgorPatch &patch) { patch.version = QStringLiteral("v1.20"); });
        row("date", false, [](VelgorPatch &patch) { patch.date.seconds = std::nextafter(12.5, 13.0); });
        row("hasUserIR", false, [](VelgorPatch &patch) { patch.hasUserIR = false; });
        row("guitar", false, [](VelgorPatch &patch) { patch.guitar = false; });
        row("bass", false, [](VelgorPatch &patch) { patch.bass = true; });
        row("clean", false, [](VelgorPatch &patch) { patch.clean = false; });
        row("crunch", false, [](VelgorPatch &patch) { patch.crunch = true; });
        row("drive", false, [](VelgorPatch &patch) { patch.drive = false; });
        row("higain", false, [](VelgorPatch &patch) { patch.higain = true; });
        row("rythm", false, [](VelgorPatch &patch) { patch.rythm = false; });
        row("solo", false, [](VelgorPatch &patch) { patch.solo = true; });
    }

    void equalityComparesWhatTheUserSees()
    {
        QFETCH(const VelgorPatch, other);
        QFETCH(const bool, isEqual);
        QCOMPARE(fullPatch() == other, isEqual);
        QCOMPARE(other == fullPatch(), isEqual);
    }

    void hashUnderAnotherNameIsThatOfThePatchOfThatName()
    {
        const VelgorPatch patch = imported(QStringLiteral("Lead"), 1, TestRecords::userIR(1));
        const VelgorPatch other = imported(QStringLiteral("Other"), 1, TestRecords::userIR(1));
        QCOMPARE(VelgorPatch::staticSimpleHash(patch, QStringLiteral("Other")), other.id());
        QCOMPARE(VelgorPatch::staticSimpleHash(patch), patch.id());
        QCOMPARE(patch.soundHash(), other.soundHash());
        QCOMPARE(patch.soundHash(), std::optional(VelgorPatch::staticSimpleHash(patch, QString())));
    }

    void hashWithoutPatchRecordIsRandom()
    {
        const VelgorPatch bare(QStringLiteral("Lead"), false);
        QVERIFY(VelgorPatch::staticSimpleHash(bare) != VelgorPatch::staticSimpleHash(bare));
        const std::optional<VelgorPatch> none;
        QVERIFY(VelgorPatch::staticSimpleHash(none) != VelgorPatch::staticSimpleHash(none));
        QVERIFY(!VelgorPatch(QString(), false).soundHash());
    }

    void copiesAreIndependent()
    {
        const VelgorPatch first = fullPatch();
        VelgorPatch second = first;
        second.records->patchData.data[0] = static_cast<char>(second.records->patchData.data.at(0) + 1);
        second.comment += u'!';
        QVERIFY(TestPatches::isIdentical(first, fullPatch()));
    }

    void jsonNeverContainsPresetBytes()
    {
        VelgorPatch patch = fullPatch();
        patch.records->patchData.data = "PRESETBYTES";
        patch.records->userIRData.data = "IRBYTES";
        patch.records->headerData.filler.fill('F');
        const QByteArray text = LibraryJson::encodePatch(patch);
        QVERIFY(!text.contains("PRESETBYTES") && !text.contains("IRBYTES") && !text.contains("FFFF"));
        QVERIFY(!text.contains("Data"));
        patch.records.reset();
        QCOMPARE(LibraryJson::encodePatch(patch), text);
    }
};

VELGOR_TEST(TestVelgorPatch)
#include "tst_VelgorPatch.moc"
