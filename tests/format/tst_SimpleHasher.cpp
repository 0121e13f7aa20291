#include "SimpleHasher.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QTest>

class TestSimpleHasher : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void bytesFoldIntoLittleEndianWords_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<quint64>("hash");
        const quint64 word = Q_UINT64_C(0x0807060504030201);
        QTest::newRow("no bytes change nothing") << QByteArray() << quint64{0};
        QTest::newRow("one byte changes nothing") << QByteArray::fromHex("FF") << quint64{0};
        QTest::newRow("two bytes") << QByteArray::fromHex("01F2") << quint64{0xF201};
        QTest::newRow("seven bytes") << QByteArray::fromHex("01020304050687") << Q_UINT64_C(0x87060504030201);
        QTest::newRow("eight bytes are one word") << QByteArray::fromHex("0102030405060708") << word;
        QTest::newRow("the ninth byte has no effect") << QByteArray::fromHex("0102030405060708FF") << word;
        QTest::newRow("bytes nine and ten are a second word")
            << QByteArray::fromHex("01020304050607081122") << (word ^ 0x2211U);
        QTest::newRow("two equal words cancel out")
            << QByteArray::fromHex("01020304050607080102030405060708") << quint64{0};
        QTest::newRow("the seventeenth byte has no effect")
            << QByteArray::fromHex("00000000000000000102030405060708FF") << word;
        QTest::newRow("eighteen bytes") << QByteArray::fromHex("00000000000000000102030405060708AABB")
                                        << (word ^ 0xBBAAU);
    }

    void bytesFoldIntoLittleEndianWords()
    {
        QFETCH(const QByteArray, bytes);
        QFETCH(const quint64, hash);
        SimpleHasher hasher;
        hasher.combine(bytes);
        QCOMPARE(hasher.hash(), hash);
    }

    void startsAtItsSeed()
    {
        SimpleHasher hasher(0x1234);
        QCOMPARE(hasher.hash(), quint64{0x1234});
        hasher.combine(QByteArray::fromHex("34120000"));
        QCOMPARE(hasher.hash(), quint64{0});
    }

    void everyBufferStartsAWordOfItsOwn()
    {
        SimpleHasher hasher;
        hasher.combine(QByteArray::fromHex("0102"));
        hasher.combine(QByteArray::fromHex("1020"));
        QCOMPARE(hasher.hash(), quint64{0x2211});
    }

    void everyByteCountsExceptALoneLastOne()
    {
        for (int size = 0; size <= 40; ++size) {
            for (int i = 0; i < size; ++i) {
                QByteArray bytes(size, '\0');
                bytes[i] = 1;
                SimpleHasher hasher;
                hasher.combine(bytes);
                const bool isLoneLast = i == size - 1 && size % 8 == 1;
                QCOMPARE(hasher.hash(), isLoneLast ? quint64{0} : quint64{1} << (8 * (i % 8)));
            }
        }
    }
};

VELGOR_TEST(TestSimpleHasher)
#include "tst_SimpleHasher.moc"
