#include "ByteReader.h"
#include "FatalStop.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QTest>

class TestByteReader : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void readsInOrder()
    {
        const QByteArray data = QByteArray::fromHex("AA010203040506078899BB");
        ByteReader reader(data, 1);
        QCOMPARE(reader.remaining(), 10);
        QCOMPARE(reader.readUInt8(), 1);
        QCOMPARE(reader.readUInt16(), 0x0302);
        QCOMPARE(reader.readUInt32(), 0x07060504U);
        QCOMPARE(reader.readBytes(2), QByteArray::fromHex("8899"));
        QCOMPARE(QByteArrayView(reader.readArray<1>()), QByteArrayView("\xBB"));
        QCOMPARE(reader.remaining(), 0);
        QCOMPARE(reader.readBytes(0), QByteArray());
    }

    void offsetOutsideOfTheDataLeavesNothing()
    {
        QCOMPARE(ByteReader("abc", 3).remaining(), 0);
        QCOMPARE(ByteReader("abc", 4).remaining(), 0);
        QCOMPARE(ByteReader("abc", -1).remaining(), 0);
        QCOMPARE(ByteReader("abc", std::numeric_limits<qint64>::min()).remaining(), 0);
    }

    void readBeyondTheEndStopsTheProgram()
    {
        QVERIFY(fatalStopOf([] { ByteReader("abc", 0).readUInt32(); }));
        QVERIFY(fatalStopOf([] { ByteReader("abc", 3).readUInt8(); }));
        QVERIFY(fatalStopOf([] { ByteReader("abc", 0).readBytes(-1); }));
        QVERIFY(fatalStopOf([] { ByteReader("abc", 0).readBytes(4); }));
        QVERIFY(!fatalStopOf([] { ByteReader("abcd", 0).readUInt32(); }));
    }
};

VELGOR_TEST(TestByteReader)
#include "tst_ByteReader.moc"
