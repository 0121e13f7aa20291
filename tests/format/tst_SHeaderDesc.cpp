#include "DiagnosticRecorder.h"
#include "SHeaderDesc.h"
#include "TestProgram.h"
#include "TestRecords.h"

#include <QCoreApplication>
#include <QTest>

#include <functional>

class TestSHeaderDesc : public QObject {
    Q_OBJECT

    using Change = std::function<void(SHeaderDesc &)>;

private Q_SLOTS:
    void thirtyTwoBytesParse()
    {
        const QByteArray data = TestRecords::fileBytes({TestRecords::patch(QStringLiteral("Lead"))}).first(32);
        const DiagnosticRecorder recorder;
        const auto header = SHeaderDesc::fromData(data, 0);
        QVERIFY(header);
        QCOMPARE(header->nbpatches, 1);
        QCOMPARE(header->length, 32);
        QCOMPARE(header->tailBit, 0xFF);
        QCOMPARE(recorder.lines(), QStringList());
    }

    void everyFieldStandsAtItsOffset()
    {
        QByteArray data(32, '\0');
        for (int i = 0; i < data.size(); ++i) {
            data[i] = static_cast<char>(0xC0 + i);
        }
        const auto header = SHeaderDesc::fromData(data, 0);
        QVERIFY(header);
        QCOMPARE(QByteArrayView(header->tsrp), QByteArrayView(data).first(4));
        QCOMPARE(header->size, 0xC7C6C5C4U);
        QCOMPARE(QByteArrayView(header->pm0), QByteArrayView(data).sliced(8, 5));
        QCOMPARE(header->sep, 0xCD);
        QCOMPARE(header->nbpatches, 0xCFCE);
        QCOMPARE(QByteArrayView(header->filler), QByteArrayView(data).last(16));
    }

    void parsesAtAnOffset()
    {
        const QByteArray data = QByteArray(5, 'x') + QByteArray(32, 'y') + QByteArray(5, 'z');
        const auto header = SHeaderDesc::fromData(data, 5);
        QVERIFY(header);
        QCOMPARE(*header, *SHeaderDesc::fromData(QByteArray(32, 'y'), 0));
    }

    void tooFewBytesAreRefused_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<qint64>("offset");
        QTest::newRow("31 bytes") << 31 << qint64{0};
        QTest::newRow("no bytes") << 0 << qint64{0};
        QTest::newRow("31 bytes after the offset") << 40 << qint64{9};
        QTest::newRow("offset behind the end") << 40 << qint64{41};
        QTest::newRow("offset before the start") << 40 << qint64{-1};
        QTest::newRow("largest offset") << 40 << std::numeric_limits<qint64>::max();
    }

    void tooFewBytesAreRefused()
    {
        QFETCH(const int, size);
        QFETCH(const qint64, offset);
        DiagnosticRecorder recorder;
        QVERIFY(!SHeaderDesc::fromData(QByteArray(size, 'x'), offset));
        QCOMPARE(recorder.take(), QStringList{QStringLiteral("Wrong data size in HeaderDesc")});
    }

    void anyTagParses()
    {
        const auto header = SHeaderDesc::fromData(QByteArray(32, 'x'), 0);
        QVERIFY(header);
        QCOMPARE(QByteArrayView(header->tsrp), QByteArrayView("xxxx"));
    }

    void countOfZeroParses()
    {
        const auto header = SHeaderDesc::fromData(QByteArray(32, '\0'), 0);
        QVERIFY(header);
        QCOMPARE(header->nbpatches, 0);
        QCOMPARE(header->length, 32);
    }

    void aDifferenceInAnyFieldCounts_data()
    {
        QTest::addColumn<Change>("change");
        const auto row = [](const char *name, const Change &change) { QTest::newRow(name) << change; };
        row("tag", [](SHeaderDesc &header) { header.tsrp[3] = 'x'; });
        row("size", [](SHeaderDesc &header) { ++header.size; });
        row("version", [](SHeaderDesc &header) { header.pm0[4] = 'x'; });
        row("separator", [](SHeaderDesc &header) { ++header.sep; });
        row("count", [](SHeaderDesc &header) { ++header.nbpatches; });
        row("filler", [](SHeaderDesc &header) { header.filler[15] = 'x'; });
        row("length", [](SHeaderDesc &header) { ++header.length; });
        row("tail byte", [](SHeaderDesc &header) { ++header.tailBit; });
    }

    void aDifferenceInAnyFieldCounts()
    {
        QFETCH(const Change, change);
        const SHeaderDesc one = TestRecords::header();
        SHeaderDesc other = one;
        QVERIFY(one == other);
        change(other);
        QVERIFY(one != other);
    }
};

VELGOR_TEST(TestSHeaderDesc)
#include "tst_SHeaderDesc.moc"
