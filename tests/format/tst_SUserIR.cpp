#include "DiagnosticRecorder.h"
#include "SUserIR.h"
#include "TestProgram.h"
#include "TestRecords.h"

#include <QCoreApplication>
#include <QTest>
#include <QtEndian>

#include <functional>

namespace {

/// A user-IR block that claims `size` bytes.
QByteArray block(quint32 size, const QByteArray &data)
{
    QByteArray sizeField(4, '\0');
    qToLittleEndian(size, sizeField.data());
    return "RISU" + sizeField + data;
}

SUserIR withData(const QByteArray &data)
{
    return *SUserIR::fromData(block(static_cast<quint32>(data.size()), data), 0);
}

} // namespace

class TestSUserIR : public QObject {
    Q_OBJECT

    using Change = std::function<void(SUserIR &)>;

private Q_SLOTS:
    void everyFieldStandsAtItsOffset()
    {
        const DiagnosticRecorder recorder;
        const auto userIR = SUserIR::fromData("xx" + block(6, "abcdef") + "tail", 2);
        QVERIFY(userIR);
        QCOMPARE(QByteArrayView(userIR->risu), QByteArrayView("RISU"));
        QCOMPARE(userIR->size, 6U);
        QCOMPARE(userIR->data, QByteArray("abcdef"));
        QCOMPARE(userIR->length, 14);
        QCOMPARE(recorder.lines(), QStringList());
    }

    void sizeOf0ParsesWithLength8AndNumber0()
    {
        const auto userIR = SUserIR::fromData(block(0, {}), 0);
        QVERIFY(userIR);
        QCOMPARE(userIR->data, QByteArray());
        QCOMPARE(userIR->length, 8);
        QCOMPARE(userIR->getFirstUInt32(), 0U);
        QCOMPARE(userIR->simpleHash(), quint64{0});
    }

    void anyTagParses() { QVERIFY(SUserIR::fromData(block(1, "a").replace(0, 4, "NoNo"), 0)); }

    void badSizesAreRefused_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<QString>("line");
        const QString noRecord = QStringLiteral("Wrong data size in UserIR");
        const QString noData = QStringLiteral("Wrong data size or userIrSize in UserIR");
        QTest::newRow("no bytes") << QByteArray() << noRecord;
        QTest::newRow("seven bytes") << block(0, {}).first(7) << noRecord;
        QTest::newRow("one byte missing") << block(6, "abcde") << noData;
        QTest::newRow("nothing after the size field") << block(1, {}) << noData;
        QTest::newRow("size 0x7FFFFFFF") << block(0x7FFFFFFFU, "abcdef") << noData;
        QTest::newRow("size 0x80000000") << block(0x80000000U, "abcdef") << noData;
        QTest::newRow("size 0xFFFFFFF8, wraps to 0 with the 8 bytes before it")
            << block(0xFFFFFFF8U, "abcdef") << noData;
        QTest::newRow("size 0xFFFFFFFF") << block(0xFFFFFFFFU, "abcdef") << noData;
    }

    void badSizesAreRefused()
    {
        QFETCH(const QByteArray, data);
        QFETCH(const QString, line);
        DiagnosticRecorder recorder;
        QVERIFY(!SUserIR::fromData(data, 0));
        QCOMPARE(recorder.take(), QStringList{line});
    }

    void numberIsTheFirstFourDataBytes_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<quint32>("number");
        QTest::newRow("07 00 00 00 is 7") << QByteArray::fromHex("07000000AABB") << 7U;
        QTest::newRow("little-endian") << QByteArray::fromHex("010203F4") << 0xF4030201U;
        QTest::newRow("three bytes give 0") << QByteArray::fromHex("070000") << 0U;
    }

    void numberIsTheFirstFourDataBytes()
    {
        QFETCH(const QByteArray, data);
        QFETCH(const quint32, number);
        QCOMPARE(withData(data).getFirstUInt32(), number);
    }

    void placeholderHasNoBytesAndHashesToZero()
    {
        const SUserIR placeholder;
        QCOMPARE(QByteArrayView(placeholder.risu), QByteArrayView("RISU"));
        QCOMPARE(placeholder.size, 0U);
        QCOMPARE(placeholder.length, 0);
        QCOMPARE(placeholder.data, QByteArray());
        QCOMPARE(placeholder.getFirstUInt32(), 0U);
        QCOMPARE(placeholder.simpleHash(), quint64{0});
    }

    void numberDoesNotChangeTheHash()
    {
        QCOMPARE(TestRecords::userIR(3, 5, 64).simpleHash(), TestRecords::userIR(98, 5, 64).simpleHash());
        QVERIFY(TestRecords::userIR(3, 5, 64).simpleHash() != TestRecords::userIR(3, 6, 64).simpleHash());
    }

    void hashIsSizeAndResponse_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<quint64>("hash");
        QTest::newRow("one byte: the size alone") << QByteArray::fromHex("FF") << quint64{1};
        QTest::newRow("four bytes: the size alone") << QByteArray::fromHex("FFFFFFFF") << quint64{4};
        QTest::newRow("five bytes: a lone byte does not count") << QByteArray::fromHex("00000000FF") << quint64{5};
        QTest::newRow("six bytes") << QByteArray::fromHex("000000000110") << (quint64{0x1001} ^ 6U);
        QTest::newRow("thirteen bytes: the ninth of the response does not count")
            << QByteArray::fromHex("000000000000000000000080FF") << (Q_UINT64_C(0x8000000000000000) ^ 13U);
    }

    void hashIsSizeAndResponse()
    {
        QFETCH(const QByteArray, data);
        QFETCH(const quint64, hash);
        QCOMPARE(withData(data).simpleHash(), hash);
    }

    void aDifferenceInAnyFieldCounts_data()
    {
        QTest::addColumn<Change>("change");
        const auto row = [](const char *name, const Change &change) { QTest::newRow(name) << change; };
        row("tag", [](SUserIR &userIR) { userIR.risu[3] = 'x'; });
        row("size", [](SUserIR &userIR) { ++userIR.size; });
        row("number", [](SUserIR &userIR) { userIR.data[0] = 'x'; });
        row("last byte", [](SUserIR &userIR) { userIR.data.back() = static_cast<char>(userIR.data.back() + 1); });
        row("length", [](SUserIR &userIR) { ++userIR.length; });
    }

    void aDifferenceInAnyFieldCounts()
    {
        QFETCH(const Change, change);
        const SUserIR one = TestRecords::userIR(7);
        SUserIR other = one;
        QVERIFY(one == other);
        change(other);
        QVERIFY(one != other);
    }
};

VELGOR_TEST(TestSUserIR)
#include "tst_SUserIR.moc"
