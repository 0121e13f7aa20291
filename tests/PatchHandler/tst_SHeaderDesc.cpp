#include "DiagnosticRecorder.h"
#include "SHeaderDesc.h"
#include "TestRecords.h"

#include <QTest>

class TestSHeaderDesc : public QObject {
    Q_OBJECT

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

    void thirtyOneBytesAreRefused()
    {
        DiagnosticRecorder recorder;
        QVERIFY(!SHeaderDesc::fromData(QByteArray(31, 'x'), 0));
        QCOMPARE(recorder.take(), QStringList {QStringLiteral("Wrong data size in HeaderDesc")});
    }

    void anyTagParses()
    {
        const auto header = SHeaderDesc::fromData(QByteArray(32, 'x'), 0);
        QVERIFY(header);
        QCOMPARE(QByteArrayView(header->tsrp), QByteArrayView("xxxx"));
    }
};

QTEST_GUILESS_MAIN(TestSHeaderDesc)
#include "tst_SHeaderDesc.moc"
