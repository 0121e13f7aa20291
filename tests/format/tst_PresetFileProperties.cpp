#include "DiagnosticRecorder.h"
#include "PatchName.h"
#include "PatchWriter.h"
#include "PresetFileChecker.h"
#include "TestProgram.h"
#include "TestRecords.h"

#include <QCoreApplication>
#include <QFile>
#include <QRandomGenerator>
#include <QTest>
#include <QtEndian>

#include <algorithm>

#include <sys/resource.h>
#include <unistd.h>

namespace {

/// While it lives, the process may take no more than `bytes` beyond what it has: a large allocation fails the test.
class MemoryLimit {
public:
    explicit MemoryLimit(rlim_t bytes)
    {
        getrlimit(RLIMIT_AS, &m_previous);
        QFile pages(QStringLiteral("/proc/self/statm"));
        if (pages.open(QIODevice::ReadOnly)) {
            const auto used =
                pages.readAll().split(' ').first().toULongLong() * static_cast<rlim_t>(sysconf(_SC_PAGESIZE));
            const rlimit limit{.rlim_cur = used + bytes, .rlim_max = m_previous.rlim_max};
            setrlimit(RLIMIT_AS, &limit);
        }
    }
    ~MemoryLimit() { setrlimit(RLIMIT_AS, &m_previous); }
    Q_DISABLE_COPY_MOVE(MemoryLimit)

private:
    rlimit m_previous{};
};

class RandomRecords {
public:
    explicit RandomRecords(quint32 seed)
        : m_random(seed)
    {
    }

    int upTo(int limit) { return m_random.bounded(limit + 1); }

    QByteArray bytes(int count)
    {
        QByteArray result(count, '\0');
        for (char &byte : result) {
            byte = static_cast<char>(m_random.bounded(256));
        }
        return result;
    }

    template <std::size_t Size>
    std::array<char, Size> array()
    {
        std::array<char, Size> result;
        std::ranges::copy(bytes(static_cast<int>(Size)), result.begin());
        return result;
    }

    QString name()
    {
        static const QList<QString> scripts{
            QStringLiteral("abcXYZ 019/\\.$-"),
            QStringLiteral(u"\u00E9\u00C9\u00DF\u0130\u0131\u01C5"),
            QStringLiteral(u"\u03B1\u03A9\u0416\u044F\u05D0\u0639"),
            QStringLiteral(u"\u0E01\u0915\u093F\u4E2D\u3042\uAC00\uFF21"),
            QStringLiteral(u"e\u0301o\u0308\u200D\uFEFF\uFFFF"),
        };
        QString text;
        for (int left = upTo(20); left > 0; --left) {
            const qsizetype script = m_random.bounded(static_cast<int>(scripts.size()) + 1);
            text += script == scripts.size()
                ? QStringLiteral(u"\U0001F3B8")
                : QString(scripts.at(script).at(upTo(static_cast<int>(scripts.at(script).size()) - 1)));
        }
        return PatchName::fitted(text);
    }

    SPatch patch(qsizetype index)
    {
        SPatch patch = TestRecords::patch(name(), upTo(1000000), 1 + upTo(upTo(3) == 0 ? 2000 : 40));
        patch.mrap = array<4>();
        patch.sep = static_cast<quint8>(upTo(255));
        patch.sep2 = static_cast<quint8>(upTo(255));
        patch.pos = static_cast<quint16>(index);
        return patch;
    }

    SUserIR userIR(qsizetype index)
    {
        SUserIR userIR =
            TestRecords::userIR(static_cast<quint32>(index), upTo(1000000), 1 + upTo(upTo(3) == 0 ? 3000 : 12));
        userIR.risu = array<4>();
        return userIR;
    }

    SHeaderDesc header(qsizetype count)
    {
        SHeaderDesc header = TestRecords::header(static_cast<quint16>(count));
        header.tsrp = array<4>();
        header.pm0 = array<5>();
        header.sep = static_cast<quint8>(upTo(255));
        header.filler = array<16>();
        header.tailBit = static_cast<quint8>(upTo(255));
        return header;
    }

private:
    QRandomGenerator m_random;
};

QByteArray threePatches()
{
    return TestRecords::fileBytes(
        {TestRecords::patch(QStringLiteral("One"), 1, 9), TestRecords::patch(QStringLiteral(u"Tw\u00F6"), 2, 1),
            TestRecords::patch(QStringLiteral("Three"), 3, 30)},
        {SUserIR(), TestRecords::userIR(1, 4, 12), SUserIR()});
}

} // namespace

class TestPresetFileProperties : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void randomRecordsSurviveWritingAndReading_data()
    {
        QTest::addColumn<int>("count");
        const QList<int> counts{
            1, 2, 3, 4, 5, 7, 8, 15, 31, 32, 33, 50, 64, 98, 99, 100, 128, 150, 200, 255, 256, 257, 299, 300};
        for (const int count : counts) {
            QTest::addRow("%d patches", count) << count;
        }
    }

    void randomRecordsSurviveWritingAndReading()
    {
        QFETCH(const int, count);
        for (quint32 round = 0; round < 4; ++round) {
            const quint32 seed = static_cast<quint32>(count) * 10 + round;
            RandomRecords random(seed);
            QList<SPatch> patches;
            QList<SUserIR> userIRs;
            for (int i = 0; i < count; ++i) {
                patches.append(random.patch(i));
                userIRs.append(random.upTo(2) == 0 ? random.userIR(i) : SUserIR());
            }
            // What comes in from elsewhere has the positions and numbers of its old file.
            QList<SPatch> incoming = patches;
            QList<SUserIR> incomingIRs = userIRs;
            for (int i = 0; i < count; ++i) {
                incoming[i].pos = static_cast<quint16>(random.upTo(65535));
                const QByteArray number = random.bytes(qMin(4, static_cast<int>(userIRs.at(i).data.size())));
                incomingIRs[i].data.replace(0, number.size(), number);
            }
            const auto assembled = SPresetFile::fromRecords(random.header(count), incoming, incomingIRs);
            QVERIFY(assembled);
            const auto bytes = PatchWriter::encodePatches(*assembled);
            QVERIFY(bytes);

            SPresetFile expected = *assembled;
            expected.patches = patches;
            expected.userIRs = userIRs;
            expected.checksum = PatchWriter::calcChecksum(QByteArrayView(*bytes).chopped(2));
            QCOMPARE(qint64{bytes->size()}, expected.headerDesc.size + 8 + 3);
            const auto read = SPresetFile::fromData(*bytes);
            QVERIFY2(read, qPrintable(QStringLiteral("seed %1").arg(seed)));
            QVERIFY2(*read == expected, qPrintable(QStringLiteral("seed %1").arg(seed)));
            QVERIFY(PresetFileChecker::check(*bytes).roundTrip);
        }
    }

    void everyTruncationIsRefusedWithALine()
    {
        const QByteArray bytes = threePatches();
        DiagnosticRecorder recorder;
        for (qsizetype size = 0; size < bytes.size(); ++size) {
            // A buffer of its own, so that a sanitizer sees a read beyond it.
            const QByteArray cut(bytes.constData(), size);
            QVERIFY2(!SPresetFile::fromData(cut), qPrintable(QString::number(size)));
            QVERIFY(!recorder.take().isEmpty());
        }
    }

    void everyChangedByteIsRefusedOrFound()
    {
        const QByteArray original = threePatches();
        DiagnosticRecorder recorder;
        int readable = 0;
        for (qsizetype i = 0; i < original.size(); ++i) {
            for (unsigned change = 1; change <= 0xFF; ++change) {
                QByteArray bytes(original.constData(), original.size());
                bytes[i] = static_cast<char>(static_cast<quint8>(bytes.at(i)) ^ change);
                const PresetFileReport report = PresetFileChecker::check(bytes);
                const QStringList lines = recorder.take();
                const QString where = QStringLiteral("byte %1 changed by %2").arg(i).arg(change);
                QVERIFY2(!report.roundTrip, qPrintable(where));
                QVERIFY2(lines.isEmpty() == report.file.has_value(), qPrintable(where));
                QVERIFY2(report.findings.isEmpty() != report.file.has_value(), qPrintable(where));
                readable += report.file ? 1 : 0;
            }
        }
        QVERIFY(readable > 0);
    }

    void hugeClaimsAreRefusedWithoutLargeAllocation_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<QString>("lastLine");
        QByteArray tiny = threePatches().first(40);
        qToLittleEndian(quint16{65535}, tiny.data() + 14);
        QTest::newRow("65,535 patches claimed in 40 bytes")
            << tiny << QStringLiteral("Missing HeaderPatchDesc in data for index 1");

        const QList<quint32> sizes{0xFFFFFFFF, 0xFFFFFFFE, 0xFFFFFFF8, 0xFFFFFFF7, 0xFFFFFFEC, 0xFFFFFFEB, 0xFFFFFFE4,
            0xFFFFFF00, 0x80000014, 0x80000000, 0x7FFFFFFF, 0x7FFFFFF7, 0x40000000};
        for (const quint32 size : sizes) {
            QByteArray bytes = threePatches();
            qToLittleEndian(size, bytes.data() + 56 + 4);
            QTest::addRow("patch of 0x%X bytes", size)
                << bytes << QStringLiteral("Missing Patch content in data for index 0");
            bytes = threePatches();
            qToLittleEndian(size, bytes.data() + 56 + 37 + 29 + 4);
            QTest::addRow("user IR of 0x%X bytes", size)
                << bytes << QStringLiteral("Missing UserIR content in data for index 1");
            bytes = threePatches();
            qToLittleEndian(size, bytes.data() + 32 + 4);
            // The next patch block is taken for a user IR, and is one by its size.
            QTest::addRow("descriptor of 0x%X bytes", size)
                << bytes << QStringLiteral("Missing Patch content in data for index 1");
        }
    }

    void hugeClaimsAreRefusedWithoutLargeAllocation()
    {
        QFETCH(const QByteArray, data);
        QFETCH(const QString, lastLine);
        DiagnosticRecorder recorder;
        {
            const MemoryLimit limit(256U << 20U);
            QVERIFY(!SPresetFile::fromData(data));
        }
        const QStringList lines = recorder.take();
        QCOMPARE(lines.size(), 2);
        QCOMPARE(lines.last(), lastLine);
    }

    void hugeHeaderSizeIsNotBelieved()
    {
        QByteArray bytes = threePatches();
        qToLittleEndian(0xFFFFFFFFU, bytes.data() + 4);
        const MemoryLimit limit(256U << 20U);
        const PresetFileReport report = PresetFileChecker::check(bytes);
        QVERIFY(report.file);
        QVERIFY(!report.roundTrip);
    }
};

VELGOR_TEST(TestPresetFileProperties)
#include "tst_PresetFileProperties.moc"
