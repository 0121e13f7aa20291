#include "DiagnosticRecorder.h"
#include "PatchWriter.h"
#include "PresetFileChecker.h"
#include "TestProgram.h"
#include "TestRecords.h"

#include <QCoreApplication>
#include <QTest>

namespace {

/// How many other values each byte of the 99-patch file gets; 0 leaves that file out. Cutting and changing it at every
/// byte with all 255 takes an hour under the address sanitizer, and some minutes without.
int valuesInLongForm()
{
    return qBound(0, qEnvironmentVariableIntValue("VELGOR_HOSTILE_VALUES"), 255);
}

QByteArray threePatches(bool withUserIRs)
{
    const QList<SPatch> patches{TestRecords::patch(QStringLiteral("One"), 1, 9),
        TestRecords::patch(QStringLiteral(u"Tw\u00F6"), 2, 1),
        TestRecords::patch(QStringLiteral("Exactly sixteen!"), 3, 30)};
    return withUserIRs
        ? TestRecords::fileBytes(patches, {TestRecords::userIR(0, 4, 4), TestRecords::userIR(1, 5, 12), SUserIR()})
        : TestRecords::fileBytes(patches);
}

QByteArray fullList()
{
    QList<SPatch> patches;
    QList<SUserIR> userIRs;
    for (int i = 0; i < 99; ++i) {
        patches.append(TestRecords::patch(QStringLiteral("Patch %1").arg(i), i + 1, 40));
        userIRs.append(i % 3 == 0 ? TestRecords::userIR(static_cast<quint32>(i), i + 1, 20) : SUserIR());
    }
    return TestRecords::fileBytes(patches, userIRs);
}

/// What makes `bytes` hostile to the reader; empty when it is refused with a line, or read into something that is
/// written again and comes back equal. A changed file that passes for a good one is hostile too.
QString faultOf(const QByteArray &bytes, DiagnosticRecorder &recorder, int &readable)
{
    const PresetFileReport report = PresetFileChecker::check(bytes);
    const QStringList lines = recorder.take();
    if (!report.file) {
        return lines.isEmpty() ? QStringLiteral("refused without a line") : QString();
    }
    ++readable;
    if (!lines.isEmpty()) {
        return QStringLiteral("read, with the line ") + lines.first();
    }
    if (report.findings.isEmpty() || report.roundTrip) {
        return QStringLiteral("damage that the strict check does not find");
    }
    const auto assembled =
        SPresetFile::fromRecords(report.file->headerDesc, report.file->patches, report.file->userIRs);
    const auto written = assembled ? PatchWriter::encodePatches(*assembled) : assembled.problem();
    const PresetFileReport again = written ? PresetFileChecker::check(*written) : PresetFileReport();
    if (!again.file || !again.roundTrip || again.file->patches.size() != report.file->patches.size()) {
        return QStringLiteral("read, but not written so that it can be read again");
    }
    for (qsizetype i = 0; i < again.file->patches.size(); ++i) {
        if (again.file->patches.at(i).simpleHash() != report.file->patches.at(i).simpleHash()
            || again.file->userIRs.at(i).simpleHash() != report.file->userIRs.at(i).simpleHash()) {
            return QStringLiteral("patch %1 sounds different after it was written").arg(i);
        }
    }
    recorder.take();
    return {};
}

} // namespace

/// Damage at every byte of a preset file. VELGOR_HOSTILE_VALUES=N adds a file of 99 patches with N values a byte.
class TestHostilePresetFile : public QObject {
    Q_OBJECT

    static void addFiles()
    {
        QTest::addColumn<QByteArray>("original");
        QTest::addColumn<int>("values");
        QTest::newRow("three patches") << threePatches(false) << 255;
        QTest::newRow("three patches, user IRs") << threePatches(true) << 255;
        if (valuesInLongForm() > 0) {
            QTest::newRow("99 patches") << fullList() << valuesInLongForm();
        }
    }

private Q_SLOTS:
    void everyTruncationIsRefusedWithALine_data() { addFiles(); }
    void everyTruncationIsRefusedWithALine()
    {
        QFETCH(const QByteArray, original);
        DiagnosticRecorder recorder;
        for (qsizetype size = 0; size < original.size(); ++size) {
            // A buffer of its own, so that a sanitizer sees a read beyond it.
            const QByteArray cut(original.constData(), size);
            QVERIFY2(!SPresetFile::fromData(cut), qPrintable(QString::number(size)));
            QVERIFY2(!recorder.take().isEmpty(), qPrintable(QString::number(size)));
        }
        QVERIFY(SPresetFile::fromData(original));
    }

    void everyChangedByteIsRefusedOrReadIntoWhatCanBeWritten_data() { addFiles(); }
    void everyChangedByteIsRefusedOrReadIntoWhatCanBeWritten()
    {
        QFETCH(const QByteArray, original);
        QFETCH(const int, values);
        DiagnosticRecorder recorder;
        int readable = 0;
        int tried = 0;
        for (qsizetype i = 0; i < original.size(); ++i) {
            for (int step = 1; step <= values; ++step) {
                // Spread over all values; one value alone turns the highest bit.
                const int change = values == 255 ? step : 128 + step * 255 / values;
                QByteArray bytes(original.constData(), original.size());
                bytes[i] = static_cast<char>(static_cast<quint8>(bytes.at(i)) + (change % 256 == 0 ? 1 : change));
                const QString fault = faultOf(bytes, recorder, readable);
                QVERIFY2(
                    fault.isEmpty(), qPrintable(QStringLiteral("byte %1 plus %2: %3").arg(i).arg(change).arg(fault)));
                ++tried;
            }
        }
        qInfo("%d changes, %d readable", tried, readable);
        QVERIFY(readable > 0 && readable < tried);
    }
};

VELGOR_TEST(TestHostilePresetFile)
#include "tst_HostilePresetFile.moc"
