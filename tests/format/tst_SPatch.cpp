#include "DiagnosticRecorder.h"
#include "SPatch.h"
#include "TestProgram.h"
#include "TestRecords.h"

#include <QCoreApplication>
#include <QTest>
#include <QtEndian>

#include <functional>

namespace {

/// A patch block that claims `size` bytes and has `dataBytes` bytes of data.
QByteArray block(quint32 size, int dataBytes, const QByteArray &name = "Lead")
{
    QByteArray sizeField(4, '\0');
    qToLittleEndian(size, sizeField.data());
    return "MRAP" + sizeField + QByteArray::fromHex("A13412A2") + name.leftJustified(16, '\0')
        + QByteArray(dataBytes, 'd');
}

const QStringList refusal{QStringLiteral("Wrong data size in Patch data")};

} // namespace

class TestSPatch : public QObject {
    Q_OBJECT

    using Change = std::function<void(SPatch &)>;

private Q_SLOTS:
    void everyFieldStandsAtItsOffset()
    {
        const DiagnosticRecorder recorder;
        const auto patch = SPatch::fromData("xx" + block(25, 5) + "tail", 2);
        QVERIFY(patch);
        QCOMPARE(QByteArrayView(patch->mrap), QByteArrayView("MRAP"));
        QCOMPARE(patch->size, 25U);
        QCOMPARE(patch->sep, 0xA1);
        QCOMPARE(patch->pos, 0x1234);
        QCOMPARE(patch->sep2, 0xA2);
        QCOMPARE(patch->name, QStringLiteral("Lead"));
        QCOMPARE(patch->data, QByteArray("ddddd"));
        QCOMPARE(patch->length, 33);
        QCOMPARE(recorder.lines(), QStringList());
    }

    void sizeOf21GivesOneDataByteAndLength29()
    {
        const auto patch = SPatch::fromData(block(21, 1), 0);
        QVERIFY(patch);
        QCOMPARE(patch->data, QByteArray("d"));
        QCOMPARE(patch->length, 29);
    }

    void anyTagParses() { QVERIFY(SPatch::fromData(block(21, 1).replace(0, 4, "NoNo"), 0)); }

    void badSizesAreRefused_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::newRow("size 20, no data bytes") << block(20, 0);
        QTest::newRow("size 20 with bytes behind the block") << block(20, 100);
        QTest::newRow("size 0") << block(0, 100);
        QTest::newRow("one byte missing") << block(30, 9);
        QTest::newRow("size 0x7FFFFFFF") << block(0x7FFFFFFFU, 100);
        QTest::newRow("size 0x80000000") << block(0x80000000U, 100);
        QTest::newRow("size 0xFFFFFFF8, wraps to 0 with the 8 bytes before it") << block(0xFFFFFFF8U, 100);
        QTest::newRow("size 0xFFFFFFFF") << block(0xFFFFFFFFU, 100);
        QTest::newRow("no bytes") << QByteArray();
        QTest::newRow("tag cut") << block(21, 1).first(3);
        QTest::newRow("size field missing") << block(21, 1).first(4);
        QTest::newRow("size field cut") << block(21, 1).first(7);
        QTest::newRow("nothing after the size field") << block(21, 1).first(8);
        QTest::newRow("name cut") << block(21, 1).first(20);
    }

    void badSizesAreRefused()
    {
        QFETCH(const QByteArray, data);
        DiagnosticRecorder recorder;
        QVERIFY(!SPatch::fromData(data, 0));
        QCOMPARE(recorder.take(), refusal);
    }

    void offsetOutsideOfTheDataIsRefused()
    {
        DiagnosticRecorder recorder;
        QVERIFY(!SPatch::fromData(block(21, 1), 30));
        QVERIFY(!SPatch::fromData(block(21, 1), -1));
        QCOMPARE(recorder.take(), refusal + refusal);
    }

    void dataIsACopyOfItsOwn()
    {
        QByteArray bytes = block(25, 5);
        const auto patch = SPatch::fromData(QByteArray::fromRawData(bytes.constData(), bytes.size()), 0);
        bytes.fill('!');
        QVERIFY(patch);
        QCOMPARE(patch->data, QByteArray("ddddd"));
    }

    void aNameThatIsNoTextKeepsItsBytesUntilItIsChanged()
    {
        const QByteArray field = QByteArray("Caf\xE9 \0x", 7).leftJustified(16, '\0');
        auto patch = SPatch::fromData(block(25, 5, field), 0);
        QVERIFY(patch);
        QCOMPARE(patch->name, QStringLiteral("_error_"));
        QCOMPARE(patch->nameField(), field);
        patch->rename(QStringLiteral("_error_"));
        QCOMPARE(patch->nameField(), field);
        patch->rename(QStringLiteral("Cafe"));
        QCOMPARE(patch->nameField(), QByteArray("Cafe").leftJustified(16, '\0'));
        patch->rename(QStringLiteral("_error_"));
        QCOMPARE(patch->nameField(), QByteArray("_error_").leftJustified(16, '\0'));
    }

    void aNewNameIsCutToItsField()
    {
        SPatch patch = TestRecords::patch(QStringLiteral("Lead"));
        patch.rename(QString::fromUtf8("123456789012345\u00e9"));
        QCOMPARE(patch.name, QStringLiteral("123456789012345"));
        QCOMPARE(patch.nameField(), QByteArray("123456789012345\0", 16));
    }

    void placeInTheFileDoesNotChangeTheHash()
    {
        const SPatch patch = TestRecords::patch(QStringLiteral("Lead"));
        SPatch moved = patch;
        moved.pos = 98;
        moved.sep = 0x77;
        moved.sep2 = 0x88;
        QCOMPARE(moved.simpleHash(), patch.simpleHash());
    }

    void contentChangesTheHash_data()
    {
        QTest::addColumn<SPatch>("other");
        const SPatch patch = TestRecords::patch(QStringLiteral("Lead"));
        SPatch other = patch;
        other.name = QStringLiteral("Solo");
        QTest::newRow("name") << other;
        other = patch;
        other.mrap[0] = 'X';
        QTest::newRow("tag") << other;
        other = patch;
        other.size += 1;
        QTest::newRow("size") << other;
        other = patch;
        other.data[63] = static_cast<char>(other.data.at(63) ^ 1);
        QTest::newRow("last data byte") << other;
    }

    void contentChangesTheHash()
    {
        QFETCH(const SPatch, other);
        QVERIFY(other.simpleHash() != TestRecords::patch(QStringLiteral("Lead")).simpleHash());
    }

    void overrideNameHashesLikeThePatchUnderThatName()
    {
        const SPatch lead = TestRecords::patch(QStringLiteral("Lead"));
        const SPatch solo = TestRecords::patch(QStringLiteral("Solo"));
        QVERIFY(lead.simpleHash() != solo.simpleHash());
        QCOMPARE(lead.simpleHash(QStringLiteral("Solo")), solo.simpleHash());
        QCOMPARE(lead.simpleHash(QString()), solo.simpleHash(QStringLiteral("")));
    }

    void hashIsTheExclusiveOrOfTagSizeNameAndData()
    {
        SPatch patch;
        patch.mrap = {1, 0, 0, 0};
        patch.size = 0x22;
        patch.name = QStringLiteral("AB");
        patch.data = QByteArray::fromHex("0000000000000080");
        QCOMPARE(patch.simpleHash(), Q_UINT64_C(0x8000000000000000) ^ 0x4241U ^ 0x22U ^ 1U);
    }

    void nameIsHashedAsTextWithoutPadding()
    {
        SPatch patch;
        patch.name = QStringLiteral("NineBytes");
        SPatch other;
        // As a padded field of 16 bytes the ninth byte would count; as text it is a last byte on its own.
        other.name = QStringLiteral("NineByte!");
        QCOMPARE(other.simpleHash(), patch.simpleHash());
        other.name = QStringLiteral("NineBite!");
        QVERIFY(other.simpleHash() != patch.simpleHash());
    }

    void aDifferenceInAnyFieldCounts_data()
    {
        QTest::addColumn<Change>("change");
        const auto row = [](const char *name, const Change &change) { QTest::newRow(name) << change; };
        row("tag", [](SPatch &patch) { patch.mrap[3] = 'x'; });
        row("size", [](SPatch &patch) { ++patch.size; });
        row("first separator", [](SPatch &patch) { ++patch.sep; });
        row("position", [](SPatch &patch) { ++patch.pos; });
        row("second separator", [](SPatch &patch) { ++patch.sep2; });
        row("name", [](SPatch &patch) { patch.name += u'x'; });
        row("last data byte", [](SPatch &patch) { patch.data.back() = static_cast<char>(patch.data.back() + 1); });
        row("length", [](SPatch &patch) { ++patch.length; });
    }

    void aDifferenceInAnyFieldCounts()
    {
        QFETCH(const Change, change);
        const SPatch one = TestRecords::patch(QStringLiteral("Lead"));
        SPatch other = one;
        QVERIFY(one == other);
        change(other);
        QVERIFY(one != other);
    }
};

VELGOR_TEST(TestSPatch)
#include "tst_SPatch.moc"
