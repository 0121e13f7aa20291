#include "DiagnosticRecorder.h"
#include "SHeaderPatchDesc.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QTest>

#include <functional>

class TestSHeaderPatchDesc : public QObject {
    Q_OBJECT

    using Change = std::function<void(SHeaderPatchDesc &)>;

private Q_SLOTS:
    void eightBytesParse()
    {
        const DiagnosticRecorder recorder;
        const auto descriptor = SHeaderPatchDesc::fromData(QByteArray::fromHex("0102030405060788"), 0);
        QVERIFY(descriptor);
        QCOMPARE(descriptor->offset, 0x04030201U);
        QCOMPARE(descriptor->size, 0x88070605U);
        QCOMPARE(descriptor->length, 8);
        QCOMPARE(recorder.lines(), QStringList());
    }

    void parsesAtAnOffset()
    {
        const auto descriptor = SHeaderPatchDesc::fromData(QByteArray::fromHex("AAAAAA0100000002000000BB"), 3);
        QVERIFY(descriptor);
        QCOMPARE(*descriptor, (SHeaderPatchDesc{.offset = 1, .size = 2}));
    }

    void tooFewBytesAreRefused_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<qint64>("offset");
        QTest::newRow("seven bytes") << 7 << qint64{0};
        QTest::newRow("seven bytes after the offset") << 39 << qint64{32};
        QTest::newRow("offset at the end") << 32 << qint64{32};
        QTest::newRow("offset behind the end") << 32 << qint64{40};
    }

    void tooFewBytesAreRefused()
    {
        QFETCH(const int, size);
        QFETCH(const qint64, offset);
        DiagnosticRecorder recorder;
        QVERIFY(!SHeaderPatchDesc::fromData(QByteArray(size, 'x'), offset));
        QCOMPARE(recorder.take(), QStringList{QStringLiteral("Wrong data size in HeaderPatchDesc")});
    }

    void aDifferenceInAnyFieldCounts_data()
    {
        QTest::addColumn<Change>("change");
        const auto row = [](const char *name, const Change &change) { QTest::newRow(name) << change; };
        row("offset", [](SHeaderPatchDesc &descriptor) { ++descriptor.offset; });
        row("size", [](SHeaderPatchDesc &descriptor) { ++descriptor.size; });
        row("length", [](SHeaderPatchDesc &descriptor) { ++descriptor.length; });
    }

    void aDifferenceInAnyFieldCounts()
    {
        QFETCH(const Change, change);
        const SHeaderPatchDesc one = {.offset = 48, .size = 92};
        SHeaderPatchDesc other = one;
        QVERIFY(one == other);
        change(other);
        QVERIFY(one != other);
    }
};

VELGOR_TEST(TestSHeaderPatchDesc)
#include "tst_SHeaderPatchDesc.moc"
