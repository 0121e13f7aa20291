#include "DiagnosticRecorder.h"
#include "FatalStop.h"
#include "PatchWriter.h"
#include "SPresetFile.h"
#include "TestProgram.h"
#include "TestRecords.h"

#include <QCoreApplication>
#include <QTest>
#include <QtEndian>

#include <functional>

namespace {

// Of a file with two patches: 48 bytes of header and descriptors, then blocks of 28 bytes and the data.
constexpr int dataSize = 12;
constexpr int firstBlock = 48;
constexpr int secondBlock = firstBlock + 28 + dataSize;
constexpr int plainEnd = secondBlock + 28 + dataSize;

QList<SPatch> twoPatches()
{
    return {TestRecords::patch(QStringLiteral("Lead"), 1, dataSize),
        TestRecords::patch(QStringLiteral("Solo"), 2, dataSize)};
}

QByteArray twoPatchBytes(const QList<SUserIR> &userIRs = {})
{
    return TestRecords::fileBytes(twoPatches(), userIRs);
}

QByteArray withUInt32(QByteArray bytes, qsizetype offset, quint32 value)
{
    qToLittleEndian(value, bytes.data() + offset);
    return bytes;
}

QByteArray withCount(QByteArray bytes, quint16 count)
{
    qToLittleEndian(count, bytes.data() + 14);
    return bytes;
}

QStringList lines(const char *recordLine, const QString &fileLine)
{
    return {QString::fromLatin1(recordLine), fileLine};
}

} // namespace

class TestSPresetFile : public QObject {
    Q_OBJECT

    using Change = std::function<void(SPresetFile &)>;

private Q_SLOTS:
    void descriptorSizesEqualToThePatchesGivePlaceholders()
    {
        const DiagnosticRecorder recorder;
        const auto file = SPresetFile::fromData(twoPatchBytes());
        QVERIFY(file);
        QCOMPARE(file->userIRs, (QList<SUserIR>{SUserIR(), SUserIR()}));
        QCOMPARE(file->patches.size(), 2);
        QCOMPARE(file->headerPatchDescs.size(), 2);
        QCOMPARE(file->length, 3);
        QCOMPARE(recorder.lines(), QStringList());
    }

    void descriptorSmallerThanThePatchGivesAPlaceholder()
    {
        const auto file = SPresetFile::fromData(withUInt32(twoPatchBytes(), 36, 0));
        QVERIFY(file);
        QCOMPARE(file->userIRs.first(), SUserIR());
        QCOMPARE(file->patches.at(1).name, QStringLiteral("Solo"));
    }

    void descriptorLargerThanThePatchBringsAUserIR_data()
    {
        QTest::addColumn<int>("excess");
        QTest::newRow("8 + k bytes larger") << 8 + 20;
        QTest::newRow("one byte larger") << 1;
        QTest::newRow("far larger") << 0x7FFFFF00;
    }

    void descriptorLargerThanThePatchBringsAUserIR()
    {
        QFETCH(const int, excess);
        const QByteArray bytes = twoPatchBytes({TestRecords::userIR(0, 7, 20), SUserIR()});
        const auto file = SPresetFile::fromData(withUInt32(bytes, 36, static_cast<quint32>(28 + dataSize + excess)));
        QVERIFY(file);
        QCOMPARE(file->userIRs, (QList<SUserIR>{TestRecords::userIR(0, 7, 20), SUserIR()}));
        QCOMPARE(file->patches.at(1).name, QStringLiteral("Solo"));
    }

    void malformedFilesAreRefused_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<QStringList>("diagnostics");
        const QByteArray plain = twoPatchBytes();
        const QByteArray withIR = twoPatchBytes({SUserIR(), TestRecords::userIR(1, 7, 20)});
        const auto tail = [](qint64 offset) {
            return QStringList{QStringLiteral("Error with tail in data at offset %1").arg(offset)};
        };
        QTest::newRow("no bytes") << QByteArray()
                                  << lines("Wrong data size in HeaderDesc",
                                         QStringLiteral("Could not decode HeaderDesc"));
        QTest::newRow("header cut") << plain.first(
            31) << lines("Wrong data size in HeaderDesc", QStringLiteral("Could not decode HeaderDesc"));
        QTest::newRow("count of zero") << withCount(plain, 0)
                                       << QStringList{QStringLiteral("Preset file without patches")};
        QTest::newRow("first descriptor cut") << plain.first(39)
                                              << lines("Wrong data size in HeaderPatchDesc",
                                                     QStringLiteral("Missing HeaderPatchDesc in data for index 0"));
        QTest::newRow("second descriptor missing")
            << plain.first(40)
            << lines(
                   "Wrong data size in HeaderPatchDesc", QStringLiteral("Missing HeaderPatchDesc in data for index 1"));
        QTest::newRow("no patch block") << plain.first(firstBlock)
                                        << lines("Wrong data size in Patch data",
                                               QStringLiteral("Missing Patch content in data for index 0"));
        QTest::newRow("second patch block has fewer than 8 bytes")
            << plain.first(secondBlock + 7)
            << lines("Wrong data size in Patch data", QStringLiteral("Missing Patch content in data for index 1"));
        QTest::newRow("second patch block cut")
            << plain.first(plainEnd - 1)
            << lines("Wrong data size in Patch data", QStringLiteral("Missing Patch content in data for index 1"));
        QTest::newRow("patch without data bytes") << withUInt32(plain, firstBlock + 4,
            20) << lines("Wrong data size in Patch data", QStringLiteral("Missing Patch content in data for index 0"));
        QTest::newRow("user IR has fewer than 8 bytes")
            << withIR.first(plainEnd + 7)
            << lines("Wrong data size in UserIR", QStringLiteral("Missing UserIR content in data for index 1"));
        QTest::newRow("user IR cut") << withIR.first(plainEnd + 27)
                                     << lines("Wrong data size or userIrSize in UserIR",
                                            QStringLiteral("Missing UserIR content in data for index 1"));
        QTest::newRow("ends right after the last patch block") << plain.first(plainEnd) << tail(plainEnd);
        QTest::newRow("one tail byte") << plain.first(plainEnd + 1) << tail(plainEnd);
        QTest::newRow("two tail bytes") << plain.first(plainEnd + 2) << tail(plainEnd);
        QTest::newRow("ends right after the last user IR") << withIR.first(plainEnd + 28) << tail(plainEnd + 28);
    }

    void malformedFilesAreRefused()
    {
        QFETCH(const QByteArray, data);
        QFETCH(const QStringList, diagnostics);
        DiagnosticRecorder recorder;
        QVERIFY(!SPresetFile::fromData(data));
        QCOMPARE(recorder.take(), diagnostics);
    }

    void bytesAfterTheChecksumAreIgnored()
    {
        const QByteArray bytes = twoPatchBytes();
        const auto file = SPresetFile::fromData(bytes + "and so on");
        QVERIFY(file);
        QCOMPARE(*file, *SPresetFile::fromData(bytes));
    }

    void wrongChecksumIsKept()
    {
        const DiagnosticRecorder recorder;
        const auto file = SPresetFile::fromData(twoPatchBytes().chopped(2) + QByteArray::fromHex("EFBE"));
        QVERIFY(file);
        QCOMPARE(file->checksum, 0xBEEF);
        QCOMPARE(recorder.lines(), QStringList());
    }

    void tailByteIsCopiedIntoTheHeader()
    {
        QByteArray bytes = twoPatchBytes();
        bytes[bytes.size() - 3] = 0x31;
        const auto file = SPresetFile::fromData(bytes);
        QVERIFY(file);
        QCOMPARE(file->tailBit, 0x31);
        QCOMPARE(file->headerDesc.tailBit, 0x31);
    }

    void tagsHeaderSizeAndDescriptorOffsetsAreNotChecked()
    {
        QByteArray bytes = withUInt32(twoPatchBytes({TestRecords::userIR(0, 7, 20), SUserIR()}), 4, 0xFFFFFFFF);
        bytes = withUInt32(withUInt32(bytes, 32, 0xFFFFFFFF), 40, 0);
        bytes.replace(0, 4, "????").replace("MRAP", "????").replace("RISU", "????");
        const auto file = SPresetFile::fromData(bytes);
        QVERIFY(file);
        QCOMPARE(file->headerDesc.size, 0xFFFFFFFFU);
        QCOMPARE(file->headerPatchDescs.first().offset, 0xFFFFFFFFU);
        QCOMPARE(file->patches.at(1).name, QStringLiteral("Solo"));
        QCOMPARE(file->userIRs.first().data, TestRecords::userIR(0, 7, 20).data);
    }

    void assemblingWhatWasReadGivesTheDescriptorsAgain()
    {
        const auto file = SPresetFile::fromData(twoPatchBytes({TestRecords::userIR(0, 7, 20), SUserIR()}));
        QVERIFY(file);
        const auto assembled = SPresetFile::fromRecords(file->headerDesc, file->patches, file->userIRs);
        QVERIFY(assembled);
        QCOMPARE(assembled->headerPatchDescs, file->headerPatchDescs);
        QCOMPARE(assembled->headerPatchDescs.first().offset, 48U);
        QCOMPARE(assembled->headerPatchDescs.first().size, 28U + dataSize + 28U);
        QCOMPARE(assembled->headerPatchDescs.last().offset, 48U + 28U + dataSize + 28U);
        QCOMPARE(assembled->headerDesc, file->headerDesc);
        QCOMPARE(assembled->checksum, 0);
        QCOMPARE(assembled->length, 3);
    }

    void assemblingComputesTheSizeAndCopiesTheRestOfTheHeader()
    {
        SHeaderDesc header = TestRecords::header(77);
        header.size = 123456;
        header.tailBit = 0x99;
        const auto file = SPresetFile::fromRecords(header, twoPatches(), {SUserIR(), SUserIR()});
        QVERIFY(file);
        header.size = plainEnd - 8;
        QCOMPARE(file->headerDesc, header);
        QCOMPARE(file->tailBit, 0x99);
    }

    void emptyUserIRBlockCountsForNothingWhenAssembled()
    {
        const auto file = SPresetFile::fromRecords(
            TestRecords::header(2), twoPatches(), {TestRecords::userIR(0, 1, 0), TestRecords::userIR(1, 1, 1)});
        QVERIFY(file);
        QCOMPARE(file->headerPatchDescs.first().size, 28U + dataSize);
        QCOMPARE(file->headerPatchDescs.last().size, 28U + dataSize + 9U);
    }

    void incoherentListsAreNotAssembled_data()
    {
        QTest::addColumn<int>("patches");
        QTest::addColumn<int>("userIRs");
        QTest::newRow("no patches") << 0 << 0;
        QTest::newRow("one user IR too few") << 2 << 1;
        QTest::newRow("one user IR too many") << 2 << 3;
    }

    void incoherentListsAreNotAssembled()
    {
        QFETCH(const int, patches);
        QFETCH(const int, userIRs);
        DiagnosticRecorder recorder;
        QVERIFY(!SPresetFile::fromRecords(
            TestRecords::header(), QList<SPatch>(patches, twoPatches().first()), QList<SUserIR>(userIRs)));
        QCOMPARE(recorder.take(), QStringList{QStringLiteral("Incoherent presets to be created")});
    }

    void sizesBeyond32BitsStopTheProgram_data()
    {
        QTest::addColumn<qint64>("firstLength");
        QTest::addColumn<bool>("stops");
        const qint64 limit = 0xFFFFFFFF;
        QTest::newRow("largest offset of the second patch") << limit - firstBlock - 28 - dataSize << false;
        QTest::newRow("offset of the second patch too large") << limit << true;
        QTest::newRow("size of the first patch too large") << limit + 1 << true;
    }

    void sizesBeyond32BitsStopTheProgram()
    {
        QFETCH(const qint64, firstLength);
        QFETCH(const bool, stops);
        QList<SPatch> patches = twoPatches();
        patches.first().length = firstLength;
        const auto message = fatalStopOf([&patches] {
            (void)SPresetFile::fromRecords(TestRecords::header(2), patches, {SUserIR(), SUserIR()});
        });
        QCOMPARE(message.has_value(), stops);
    }

    void aDifferenceInAnyFieldCounts_data()
    {
        QTest::addColumn<Change>("change");
        const auto row = [](const char *name, const Change &change) { QTest::newRow(name) << change; };
        row("header", [](SPresetFile &file) { ++file.headerDesc.sep; });
        row("descriptor", [](SPresetFile &file) { ++file.headerPatchDescs.last().offset; });
        row("patch", [](SPresetFile &file) { file.patches.last().name += u'x'; });
        row("impulse response", [](SPresetFile &file) { ++file.userIRs.last().size; });
        row("tail byte", [](SPresetFile &file) { ++file.tailBit; });
        row("checksum", [](SPresetFile &file) { ++file.checksum; });
        row("length", [](SPresetFile &file) { ++file.length; });
    }

    void aDifferenceInAnyFieldCounts()
    {
        QFETCH(const Change, change);
        const SPresetFile one = TestRecords::file(twoPatches());
        SPresetFile other = one;
        QVERIFY(one == other);
        change(other);
        QVERIFY(one != other);
    }
};

VELGOR_TEST(TestSPresetFile)
#include "tst_SPresetFile.moc"
