#include "ByteWriter.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QTest>

class TestByteWriter : public QObject {
    Q_OBJECT

private Q_SLOTS:
    static void integersAreWrittenLowestByteFirst()
    {
        ByteWriter writer;
        writer.writeUInt8(0x01);
        writer.writeUInt16(0x2345);
        writer.writeUInt32(0x6789'ABCD);
        QCOMPARE(writer.take(), QByteArray::fromHex("014523CDAB8967"));
    }

    static void anyExpectedSizeGivesTheSameBytes_data()
    {
        QTest::addColumn<qsizetype>("expected");
        QTest::newRow("nothing") << qsizetype(0);
        QTest::newRow("too little") << qsizetype(5);
        QTest::newRow("exact") << qsizetype(12);
        QTest::newRow("too much") << qsizetype(1'000);
    }
    static void anyExpectedSizeGivesTheSameBytes()
    {
        QFETCH(const qsizetype, expected);
        ByteWriter writer(expected);
        QVERIFY(writer.written().isEmpty());
        writer.writeBytes("abc");
        writer.writeBytes({});
        writer.writeArray(std::array{'d', 'e', 'f'});
        QCOMPARE(writer.written(), QByteArrayView("abcdef"));
        writer.writeBytes("ghijkl");
        QCOMPARE(writer.take(), QByteArray("abcdefghijkl"));
        QCOMPARE(writer.take(), QByteArray());
        writer.writeBytes("m");
        QCOMPARE(writer.take(), QByteArray("m"));
    }
};

VELGOR_TEST(TestByteWriter)
#include "tst_ByteWriter.moc"
