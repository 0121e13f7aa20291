#include "DiagnosticRecorder.h"
#include "PatchWriter.h"
#include "PresetFileChecker.h"
#include "TestProgram.h"
#include "TestRecords.h"

#include <QCoreApplication>
#include <QTest>

namespace {

// Offsets in a file of two patches of 38 bytes, each followed by a user IR of 28 bytes.
constexpr int firstBlock = 48;
constexpr int firstUserIR = firstBlock + 38;
constexpr int secondBlock = firstUserIR + 28;
constexpr int secondUserIR = secondBlock + 38;
constexpr int tail = secondUserIR + 28;

QByteArray goodBytes()
{
    return TestRecords::fileBytes(
        {TestRecords::patch(QStringLiteral("Lead"), 1, 10), TestRecords::patch(QStringLiteral("Solo"), 2, 10)},
        {TestRecords::userIR(0, 1, 20), TestRecords::userIR(1, 2, 20)});
}

/// Puts `bytes` at `offset` and makes the checksum right again.
QByteArray changed(qsizetype offset, const QByteArray &bytes)
{
    QByteArray file = goodBytes().replace(offset, bytes.size(), bytes);
    const quint16 checksum = PatchWriter::calcChecksum(QByteArrayView(file).chopped(2));
    file[file.size() - 2] = static_cast<char>(checksum & 0xFFU);
    file[file.size() - 1] = static_cast<char>(checksum >> 8U);
    return file;
}

QStringList codes(const PresetFileReport &report)
{
    QStringList result;
    for (const PresetFileFinding &finding : report.findings) {
        result.append(finding.code);
    }
    return result;
}

} // namespace

class TestPresetFileChecker : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanFileHasNoFindings()
    {
        const DiagnosticRecorder recorder;
        const PresetFileReport report = PresetFileChecker::check(goodBytes());
        QVERIFY(report.file);
        QCOMPARE(codes(report), QStringList());
        QVERIFY(report.roundTrip);
        QCOMPARE(recorder.lines(), QStringList());
    }

    void malformedFileHasNoFindingsButLines()
    {
        DiagnosticRecorder recorder;
        const PresetFileReport report = PresetFileChecker::check(goodBytes().first(60));
        QVERIFY(!report.file);
        QCOMPARE(codes(report), QStringList());
        QVERIFY(!report.roundTrip);
        QCOMPARE(recorder.take().size(), 2);
    }

    void damageIsFound_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<QString>("code");
        QTest::addColumn<qint64>("offset");
        QTest::addColumn<bool>("roundTrip");
        const auto row = [](const char *name, const QByteArray &data, const char *code, qint64 offset,
                             bool roundTrip = false) {
            QTest::newRow(name) << data << QString::fromLatin1(code) << offset << roundTrip;
        };
        row("header size", changed(4, "\x01"), "header-size", 4);
        row("descriptor offset", changed(40, "\x01"), "descriptor-offset", 40);
        row("descriptor size", changed(36, "\x7F"), "descriptor-size", 36);
        row("tag unlike the first patch's", changed(secondBlock, "X"), "patch-tag", secondBlock, true);
        row("position", changed(secondBlock + 9, "\x07"), "position", secondBlock + 9);
        row("position below the place in the list", changed(secondBlock + 9, QByteArray(1, '\0')), "position",
            secondBlock + 9);
        row("position's high byte", changed(secondBlock + 10, "\x07"), "position", secondBlock + 9);
        row("name goes on after a zero byte", changed(firstBlock + 12 + 8, "x"), "name", firstBlock + 12);
        row("name in the last byte of the field", changed(firstBlock + 12 + 15, "x"), "name", firstBlock + 12);
        row("name is not UTF-8", changed(firstBlock + 12, "\xFF"), "name", firstBlock + 12, true);
        row("user-IR tag unlike the first one's", changed(secondUserIR, "X"), "user-ir-tag", secondUserIR, true);
        row("user-IR number", changed(secondUserIR + 8, "\x05"), "user-ir-number", secondUserIR + 8);
        row("user-IR number below the place in the list", changed(secondUserIR + 8, QByteArray(1, '\0')),
            "user-ir-number", secondUserIR + 8);
        row("user-IR number's high byte", changed(secondUserIR + 11, "\x05"), "user-ir-number", secondUserIR + 8);
        row("checksum", goodBytes().chopped(1) + "\x7F", "checksum", tail + 1);
        row("trailing bytes", goodBytes() + "x", "trailing-bytes", tail + 3);
    }

    void damageIsFound()
    {
        QFETCH(const QByteArray, data);
        QFETCH(const QString, code);
        QFETCH(const qint64, offset);
        QFETCH(const bool, roundTrip);
        const PresetFileReport report = PresetFileChecker::check(data);
        QVERIFY(report.file);
        QCOMPARE(codes(report), QStringList{code});
        QCOMPARE(report.findings.first().offset, offset);
        QVERIFY(!report.findings.first().message.isEmpty());
        QCOMPARE(report.roundTrip, roundTrip);
    }

    void userIRWithoutRoomForItsNumberIsFound_data()
    {
        QTest::addColumn<int>("size");
        QTest::newRow("1 byte") << 1;
        QTest::newRow("3 bytes") << 3;
    }

    void userIRWithoutRoomForItsNumberIsFound()
    {
        QFETCH(const int, size);
        const PresetFileReport report = PresetFileChecker::check(
            TestRecords::fileBytes({TestRecords::patch(QStringLiteral("Lead"))}, {TestRecords::userIR(0, 1, size)}));
        QCOMPARE(codes(report), QStringList{QStringLiteral("user-ir-size")});
        QVERIFY(report.roundTrip);
    }

    void firstUserIRSetsTheTag()
    {
        QList<SUserIR> userIRs(3);
        userIRs[1] = TestRecords::userIR(1);
        userIRs[1].risu[0] = 'X';
        userIRs[2] = TestRecords::userIR(2);
        const PresetFileReport report = PresetFileChecker::check(
            TestRecords::fileBytes(QList<SPatch>(3, TestRecords::patch(QStringLiteral("Lead"))), userIRs));
        QCOMPARE(codes(report), QStringList{QStringLiteral("user-ir-tag")});
        QVERIFY(report.findings.first().message.contains(QStringLiteral("patch 2")));
    }

    void everyDamageIsListed()
    {
        QByteArray data = goodBytes() + "xyz";
        data[4] = 1;
        data[firstBlock + 9] = 1;
        const PresetFileReport report = PresetFileChecker::check(data);
        QCOMPARE(codes(report),
            (QStringList{QStringLiteral("position"), QStringLiteral("header-size"), QStringLiteral("checksum"),
                QStringLiteral("trailing-bytes")}));
    }
};

VELGOR_TEST(TestPresetFileChecker)
#include "tst_PresetFileChecker.moc"
