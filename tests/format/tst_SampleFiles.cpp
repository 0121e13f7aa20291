#include "DiagnosticRecorder.h"
#include "PatchWriter.h"
#include "PresetFileChecker.h"
#include "SPresetFile.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QTest>

#include <nlohmann/json.hpp>

#include <functional>

namespace {

using Json = nlohmann::json;

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString text(const Json &value)
{
    return QString::fromStdString(value.get<std::string>());
}

/// A number, or the text of one that is too large for some JSON readers.
quint64 number(const Json &value)
{
    return value.is_string() ? text(value).toULongLong() : value.get<quint64>();
}

QByteArray bytesOf(const Json &hex)
{
    return QByteArray::fromHex(text(hex).toLatin1());
}

QString sha256(QByteArrayView bytes)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(bytes);
    return QString::fromLatin1(hash.result().toHex());
}

QStringList stringList(const Json &values)
{
    QStringList result;
    for (const Json &value : values) {
        result.append(text(value));
    }
    return result;
}

/// What the checker has to say about the samples that are not what a clean export would have written.
QStringList expectedFindings(const QString &sample)
{
    static const QHash<QString, QString> codes{
        {QStringLiteral("checksum_wrong"), QStringLiteral("checksum")},
        {QStringLiteral("desc_offsets_wrong"), QStringLiteral("descriptor-offset header-size")},
        {QStringLiteral("desc_size_plus1"), QStringLiteral("descriptor-size")},
        {QStringLiteral("fuzz_10"), QStringLiteral("checksum")},
        {QStringLiteral("fuzz_35"), QStringLiteral("checksum descriptor-offset patch-tag")},
        {QStringLiteral("ir_numbers"), QStringLiteral("user-ir-number")},
        {QStringLiteral("ir_size_0"), QStringLiteral("user-ir-size")},
        {QStringLiteral("ir_size_4"), QStringLiteral("user-ir-number")},
        {QStringLiteral("ir_size_9"), QStringLiteral("user-ir-number")},
        {QStringLiteral("name_invalid_utf8"), QStringLiteral("name")},
        {QStringLiteral("name_zero_middle"), QStringLiteral("name")},
        {QStringLiteral("pos_shuffled"), QStringLiteral("position")},
        {QStringLiteral("trailing_bytes"), QStringLiteral("trailing-bytes")},
    };
    return codes.value(sample).split(u' ', Qt::SkipEmptyParts);
}

struct Sample {
    QByteArray data;
    Json facts;
};

Sample load(const QString &path)
{
    const QByteArray json = contents(path.chopped(5) + QStringLiteral(".json"));
    return {.data = contents(path), .facts = Json::parse(json.begin(), json.end(), nullptr, false)};
}

} // namespace

class TestSampleFiles : public QObject {
    Q_OBJECT

private:
    static void addRows(const std::function<bool(const Json &)> &wanted)
    {
        QTest::addColumn<QString>("path");
        const QDir directory(QStringLiteral(VELGOR_TEST_DATA "/samples"));
        int count = 0;
        for (const QString &folder :
            {QStringLiteral("realistic"), QStringLiteral("edge"), QStringLiteral("malformed")}) {
            const QDir samples(directory.filePath(folder));
            for (const QString &name : samples.entryList({QStringLiteral("*.prst")}, QDir::Files, QDir::Name)) {
                const QString path = samples.filePath(name);
                if (wanted(load(path).facts)) {
                    QTest::newRow(qPrintable(folder + u'/' + name.chopped(5))) << path;
                    ++count;
                }
            }
        }
        QVERIFY(count > 0);
    }

    static bool isReadable(const Json &facts) { return text(facts.at("outcome")) == QStringLiteral("ok"); }
    static bool isAny(const Json &facts) { return facts.is_object(); }

private Q_SLOTS:
    void sampleIsTheOneDescribed_data()
    {
        addRows([](const Json &) { return true; });
    }
    void sampleIsTheOneDescribed()
    {
        QFETCH(const QString, path);
        const Sample sample = load(path);
        QVERIFY(sample.facts.is_object());
        QCOMPARE(quint64(sample.data.size()), number(sample.facts.at("file_size")));
        if (sample.facts.contains("file_sha256")) {
            QCOMPARE(sha256(sample.data), text(sample.facts.at("file_sha256")));
        }
    }

    void outcomeAndLinesAreAsStated_data() { addRows(isAny); }
    void outcomeAndLinesAreAsStated()
    {
        QFETCH(const QString, path);
        const Sample sample = load(path);
        DiagnosticRecorder recorder;
        const auto file = SPresetFile::fromData(sample.data);
        QCOMPARE(bool(file), isReadable(sample.facts));
        QCOMPARE(recorder.take(), stringList(sample.facts.at("diagnostics")));
    }

    void headerIsAsStated_data() { addRows(isReadable); }
    void headerIsAsStated()
    {
        QFETCH(const QString, path);
        const Sample sample = load(path);
        const auto file = SPresetFile::fromData(sample.data);
        QVERIFY(file);
        const Json &header = sample.facts.at("header");
        QCOMPARE(QByteArrayView(file->headerDesc.tsrp), bytesOf(header.at("tsrp")));
        QCOMPARE(file->headerDesc.size, number(header.at("size")));
        QCOMPARE(QByteArrayView(file->headerDesc.pm0), bytesOf(header.at("pm0")));
        QCOMPARE(file->headerDesc.sep, number(header.at("sep")));
        QCOMPARE(file->headerDesc.nbpatches, number(header.at("nbpatches")));
        QCOMPARE(QByteArrayView(file->headerDesc.filler), bytesOf(header.at("filler")));
    }

    void tailIsAsStated_data() { addRows(isReadable); }
    void tailIsAsStated()
    {
        QFETCH(const QString, path);
        const Sample sample = load(path);
        const auto file = SPresetFile::fromData(sample.data);
        QVERIFY(file);
        QCOMPARE(file->tailBit, number(sample.facts.at("tail_byte")));
        QCOMPARE(file->headerDesc.tailBit, file->tailBit);
        QCOMPARE(file->checksum, number(sample.facts.at("checksum_stored")));
        qint64 tail = 32 + 8 * file->patches.size();
        for (qsizetype i = 0; i < file->patches.size(); ++i) {
            tail += file->patches.at(i).length + file->userIRs.at(i).length;
        }
        QCOMPARE(quint64(tail), number(sample.facts.at("tail_offset")));
        QCOMPARE(quint64(sample.data.size() - tail - 3), number(sample.facts.at("trailing_bytes")));
        QCOMPARE(PatchWriter::calcChecksum(QByteArrayView(sample.data).first(tail + 1)),
            number(sample.facts.at("checksum_computed")));
    }

    void patchesAreAsStated_data() { addRows(isReadable); }
    void patchesAreAsStated()
    {
        QFETCH(const QString, path);
        const Sample sample = load(path);
        const auto file = SPresetFile::fromData(sample.data);
        QVERIFY(file);
        const Json &facts = sample.facts.at("patches");
        QCOMPARE(quint64(file->patches.size()), number(sample.facts.at("count")));
        QCOMPARE(std::size_t(file->patches.size()), facts.size());
        QCOMPARE(file->userIRs.size(), file->patches.size());
        QCOMPARE(file->headerPatchDescs.size(), file->patches.size());
        qint64 offset = 32 + 8 * file->patches.size();
        for (qsizetype i = 0; i < file->patches.size(); ++i) {
            const Json &fact = facts.at(static_cast<std::size_t>(i));
            const SPatch &patch = file->patches.at(i);
            const SUserIR &userIR = file->userIRs.at(i);
            QCOMPARE(quint64(i), number(fact.at("index")));
            // As bytes: Qt's conversion from UTF-8 would drop a byte-order mark.
            QCOMPARE(patch.name.toUtf8(), QByteArray::fromStdString(fact.at("name").get<std::string>()));
            QCOMPARE(patch.pos, number(fact.at("pos")));
            QCOMPARE(quint64(patch.data.size()), number(fact.at("data_length")));
            QCOMPARE(userIR.size != 0, fact.at("hasUserIR").get<bool>());
            QCOMPARE(userIR.size, number(fact.at("user_ir_size")));
            QCOMPARE(userIR.getFirstUInt32(), number(fact.at("user_ir_number")));
            QCOMPARE(quint64(offset), number(fact.at("block_offset")));
            QCOMPARE(file->headerPatchDescs.at(i).offset, number(fact.at("descriptor_offset")));
            QCOMPARE(file->headerPatchDescs.at(i).size, number(fact.at("descriptor_size")));
            QCOMPARE(
                sha256(QByteArrayView(sample.data).sliced(offset, patch.length)), text(fact.at("patch_block_sha256")));
            QCOMPARE(patch.simpleHash() ^ userIR.simpleHash(), number(fact.at("id")));
            QCOMPARE(patch.simpleHash(QString()) ^ userIR.simpleHash(), number(fact.at("similarity")));
            offset += patch.length + userIR.length;
        }
    }

    void writingAgainGivesTheStatedBytes_data() { addRows(isReadable); }
    void writingAgainGivesTheStatedBytes()
    {
        QFETCH(const QString, path);
        const Sample sample = load(path);
        const auto file = SPresetFile::fromData(sample.data);
        QVERIFY(file);
        const auto assembled = SPresetFile::fromRecords(file->headerDesc, file->patches, file->userIRs);
        QVERIFY(assembled);
        const auto bytes = PatchWriter::encodePatches(*assembled);
        QVERIFY(bytes);
        QCOMPARE(quint64(bytes->size()), number(sample.facts.at("reencoded_size")));
        QCOMPARE(sha256(*bytes), text(sample.facts.at("reencoded_sha256")));
        QCOMPARE(*bytes == sample.data, sample.facts.at("roundtrip_identical").get<bool>());
    }

    void checkerFindsWhatIsWrong_data() { addRows(isAny); }
    void checkerFindsWhatIsWrong()
    {
        QFETCH(const QString, path);
        const Sample sample = load(path);
        const DiagnosticRecorder silence;
        const PresetFileReport report = PresetFileChecker::check(sample.data);
        QCOMPARE(report.file.has_value(), isReadable(sample.facts));
        QStringList codes;
        for (const PresetFileFinding &finding : report.findings) {
            codes.append(finding.code);
            QVERIFY(finding.offset && *finding.offset >= 0 && *finding.offset < sample.data.size());
        }
        codes.removeDuplicates();
        codes.sort();
        QCOMPARE(codes, expectedFindings(QFileInfo(path).completeBaseName()));
        if (report.file) {
            const bool isIdentical = sample.facts.at("roundtrip_identical").get<bool>();
            QCOMPARE(report.roundTrip, isIdentical);
            QCOMPARE(codes.isEmpty(), isIdentical);
        }
    }
};

VELGOR_TEST(TestSampleFiles)
#include "tst_SampleFiles.moc"
