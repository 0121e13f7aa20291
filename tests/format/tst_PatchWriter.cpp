#include "DiagnosticRecorder.h"
#include "FatalStop.h"
#include "PatchWriter.h"
#include "TestProgram.h"
#include "TestRecords.h"

#include <QCoreApplication>
#include <QTest>

namespace {

SPatch lead(int dataSize = 10)
{
    return TestRecords::patch(QStringLiteral("Lead"), 1, dataSize);
}

} // namespace

class TestPatchWriter : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void checksumSplitsTheSumOfTheBytes_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<quint16>("checksum");
        QTest::newRow("no bytes") << QByteArray() << quint16{0};
        QTest::newRow("one byte") << QByteArray::fromHex("5A") << quint16{0x0A05};
        QTest::newRow("sum 0x1234 counts as 0x34")
            << QByteArray(0x12, '\xFF') + QByteArray::fromHex("46") << quint16{0x0403};
        QTest::newRow("sum 0x100 is 0") << QByteArray::fromHex("FF01") << quint16{0};
        QTest::newRow("all bits") << QByteArray::fromHex("FF") << quint16{0x0F0F};
    }

    void checksumSplitsTheSumOfTheBytes()
    {
        QFETCH(const QByteArray, data);
        QFETCH(const quint16, checksum);
        QCOMPARE(PatchWriter::calcChecksum(data), checksum);
    }

    void checksumStandsLowByteFirstAtTheEnd()
    {
        const QByteArray bytes = TestRecords::fileBytes({lead()});
        unsigned sum = 0;
        for (const char byte : bytes.chopped(2)) {
            sum += static_cast<quint8>(byte);
        }
        QCOMPARE(static_cast<quint8>(bytes.at(bytes.size() - 2)), (sum >> 4U) & 0x0FU);
        QCOMPARE(static_cast<quint8>(bytes.back()), sum & 0x0FU);
    }

    void oneChecksumIsWrittenAs03And04()
    {
        SPresetFile file = TestRecords::file({lead()});
        // The tail byte is free: it brings the sum to 0x34.
        file.tailBit = 0;
        const QByteArray body = PatchWriter::encodePatches(file)->chopped(2);
        unsigned sum = 0;
        for (const char byte : body) {
            sum += static_cast<quint8>(byte);
        }
        file.tailBit = static_cast<quint8>(0x34U - sum);
        QCOMPARE(PatchWriter::encodePatches(file)->last(2), QByteArray::fromHex("0304"));
    }

    void headerIsWrittenBackWithTheRealCount()
    {
        SHeaderDesc header = TestRecords::header(500);
        header.sep = 0x42;
        const auto file = SPresetFile::fromRecords(header, {lead(), lead()}, {SUserIR(), SUserIR()});
        QVERIFY(file);
        const auto bytes = PatchWriter::encodePatches(*file);
        QVERIFY(bytes);
        QCOMPARE(bytes->first(32),
            "TSRP" + QByteArray::fromHex("74000000") + "V1.20" + QByteArray::fromHex("420200") + "0123456789ABCDEF");
        QCOMPARE(bytes->size(), 0x74 + 8 + 3);
        QCOMPARE(static_cast<quint8>(bytes->at(bytes->size() - 3)), 0x5A);
    }

    void descriptorsAreWrittenAsTheyStand()
    {
        SPresetFile file = TestRecords::file({lead()});
        file.headerPatchDescs = {{.offset = 0x04030201, .size = 0x08070605}};
        QCOMPARE(PatchWriter::encodePatches(file)->sliced(32, 8), QByteArray::fromHex("0102030405060708"));
    }

    void nameIsPaddedWithZeroBytes()
    {
        const QByteArray bytes = TestRecords::fileBytes({lead()});
        QCOMPARE(bytes.sliced(40 + 12, 16), "Lead" + QByteArray(12, '\0'));
    }

    void longNameMakesTheFieldLonger()
    {
        SPatch patch = lead();
        const qsizetype plainSize = TestRecords::fileBytes({patch}).size();
        patch.name = QString(16, u'\u00E9');
        QCOMPARE(TestRecords::fileBytes({patch}).size(), plainSize + 16);
    }

    void positionsAreRenumbered()
    {
        SPatch first = lead();
        first.pos = 7;
        SPatch second = lead();
        second.pos = 0;
        const QByteArray bytes = TestRecords::fileBytes({first, second});
        QCOMPARE(bytes.sliced(48 + 9, 2), QByteArray::fromHex("0000"));
        QCOMPARE(bytes.sliced(48 + 38 + 9, 2), QByteArray::fromHex("0100"));
        QCOMPARE(static_cast<int>(bytes.at(48 + 8)), 1);
        QCOMPARE(static_cast<int>(bytes.at(48 + 11)), 2);
    }

    void positionsTakeTwoBytes()
    {
        const QByteArray bytes = TestRecords::fileBytes(QList<SPatch>(300, lead(1)));
        QCOMPARE(bytes.sliced(32 + 8 * 300 + 29 * 299 + 9, 2), QByteArray::fromHex("2B01"));
    }

    void userIRNumbersAreRenumbered()
    {
        const SUserIR twelve = TestRecords::userIR(12, 3, 20);
        const QByteArray bytes = TestRecords::fileBytes({lead(), lead(), lead()}, {SUserIR(), SUserIR(), twelve});
        const qsizetype block = 32 + 3 * 8 + 3 * 38;
        QCOMPARE(bytes.sliced(block, 28), "RISU" + QByteArray::fromHex("1400000002000000") + twelve.data.sliced(4));
    }

    void shortUserIRGetsAsMuchOfItsNumberAsFits_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<QByteArray>("written");
        QTest::newRow("1 byte") << 1
                                << QByteArray::fromHex("5249535501000000"
                                                       "01");
        QTest::newRow("2 bytes") << 2
                                 << QByteArray::fromHex("5249535502000000"
                                                        "0100");
        QTest::newRow("3 bytes") << 3
                                 << QByteArray::fromHex("5249535503000000"
                                                        "010000");
        QTest::newRow("4 bytes") << 4
                                 << QByteArray::fromHex("5249535504000000"
                                                        "01000000");
    }

    void shortUserIRGetsAsMuchOfItsNumberAsFits()
    {
        QFETCH(const int, size);
        QFETCH(const QByteArray, written);
        const QByteArray bytes =
            TestRecords::fileBytes({lead(), lead()}, {SUserIR(), TestRecords::userIR(0x77777777, 3, size)});
        QCOMPARE(bytes.sliced(48 + 2 * 38).chopped(3), written);
        QVERIFY(SPresetFile::fromData(bytes));
    }

    void userIROfSizeZeroIsNotWritten()
    {
        QCOMPARE(TestRecords::fileBytes({lead()}, {TestRecords::userIR(0, 1, 0)}), TestRecords::fileBytes({lead()}));
    }

    void incoherentFilesAreRefused_data()
    {
        QTest::addColumn<SPresetFile>("file");
        const SPresetFile good = TestRecords::file({lead(), lead()});
        SPresetFile file = good;
        file.headerDesc.size = 11;
        QTest::newRow("header size 11") << file;
        file = good;
        file.headerPatchDescs.clear();
        QTest::newRow("no descriptors") << file;
        file.patches.clear();
        file.userIRs.clear();
        QTest::newRow("nothing at all") << file;
        file = good;
        file.headerPatchDescs.removeLast();
        QTest::newRow("one descriptor too few") << file;
        file = good;
        file.patches.removeLast();
        QTest::newRow("one patch too few") << file;
        file = good;
        file.userIRs.removeLast();
        QTest::newRow("one user IR too few") << file;
    }

    void incoherentFilesAreRefused()
    {
        QFETCH(const SPresetFile, file);
        DiagnosticRecorder recorder;
        QVERIFY(!PatchWriter::encodePatches(file));
        QCOMPARE(recorder.take(), QStringList{QStringLiteral("Incoherent presets to be encoded")});
    }

    void headerSizeOf12IsWritten()
    {
        SPresetFile file = TestRecords::file({lead()});
        file.headerDesc.size = 12;
        QVERIFY(PatchWriter::encodePatches(file));
    }

    void moreThan65535PatchesStopTheProgram()
    {
        const auto encode = [](int count) {
            const SPresetFile file = TestRecords::file(QList<SPatch>(count, lead(1)));
            return fatalStopOf([&file] { (void)PatchWriter::encodePatches(file); });
        };
        QVERIFY(!encode(65535));
        QVERIFY(encode(65536));
    }

    void sixtyFiveThousandPatchesReadBack()
    {
        const SPresetFile file = TestRecords::file(QList<SPatch>(65535, lead(1)));
        const auto read = SPresetFile::fromData(*PatchWriter::encodePatches(file));
        QVERIFY(read);
        QCOMPARE(read->patches.size(), 65535);
        QCOMPARE(read->patches.last().pos, 65534);
    }
};

VELGOR_TEST(TestPatchWriter)
#include "tst_PatchWriter.moc"
