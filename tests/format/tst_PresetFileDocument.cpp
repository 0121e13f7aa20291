#include "PatchWriter.h"
#include "PresetFileChecker.h"
#include "TestProgram.h"
#include "TestRecords.h"

#include <QCoreApplication>
#include <QFile>
#include <QTest>

#include <algorithm>

namespace {

QString document()
{
    QFile file(QStringLiteral(VELGOR_DOCUMENTS "/preset-file-format.md"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

SPatch patch()
{
    SPatch patch = TestRecords::patch(QStringLiteral("Lead"), 1, 4);
    patch.data = QByteArray::fromHex("10203040");
    return patch;
}

SUserIR userIR()
{
    SUserIR userIR = TestRecords::userIR(0, 1, 10);
    userIR.data = QByteArray::fromHex("00000000A1A2A3A4A5A6");
    return userIR;
}

QByteArray exampleBytes()
{
    SHeaderDesc header = TestRecords::header(1);
    std::ranges::fill(header.filler, '\0');
    return *PatchWriter::encodePatches(*SPresetFile::fromRecords(header, {patch()}, {userIR()}));
}

/// Sixteen bytes a line, each line with its offset.
QString dump(const QByteArray &bytes)
{
    QString text;
    for (qsizetype offset = 0; offset < bytes.size(); offset += 16) {
        const QByteArray hex = bytes.mid(offset, 16).toHex(' ');
        text += QStringLiteral("%1  %2\n").arg(offset, 4, 16, QChar(u'0')).arg(QString::fromLatin1(hex));
    }
    return text;
}

QString hexWord(quint64 value)
{
    return QStringLiteral("0x%1").arg(value, 16, 16, QChar(u'0'));
}

} // namespace

class TestPresetFileDocument : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void exampleBytesAreWhatTheWriterGives()
    {
        const QString expected = QStringLiteral("```\n%1```\n").arg(dump(exampleBytes()));
        QVERIFY2(document().contains(expected), qPrintable(expected));
    }

    void exampleIsAFileWithoutFindings()
    {
        const PresetFileReport report = PresetFileChecker::check(exampleBytes());
        QVERIFY(report.file);
        QVERIFY(report.findings.isEmpty());
        QVERIFY(report.roundTrip);
    }

    void exampleHashesAreWhatTheCodeGives_data()
    {
        QTest::addColumn<QString>("line");
        QTest::newRow("patch block") << QStringLiteral("| patch block | %1 |").arg(hexWord(patch().simpleHash()));
        QTest::newRow("user IR") << QStringLiteral("| user IR | %1 |").arg(hexWord(userIR().simpleHash()));
        const quint64 id = patch().simpleHash() ^ userIR().simpleHash();
        QTest::newRow("id") << QStringLiteral("| id | %1, in decimal %2 |").arg(hexWord(id)).arg(id);
        const quint64 similarity = patch().simpleHash(QString()) ^ userIR().simpleHash();
        QTest::newRow("similarity") << QStringLiteral("| id with an empty name | %1 |").arg(hexWord(similarity));
    }

    void exampleHashesAreWhatTheCodeGives()
    {
        QFETCH(const QString, line);
        QVERIFY2(document().contains(line), qPrintable(line));
    }

    void findingCodesAreDocumented_data()
    {
        QTest::addColumn<QString>("code");
        for (const char *code : {"header-size", "descriptor-offset", "descriptor-size", "patch-tag", "position", "name",
                 "user-ir-tag", "user-ir-size", "user-ir-number", "checksum", "trailing-bytes"}) {
            QTest::newRow(code) << QString::fromLatin1(code);
        }
    }

    void findingCodesAreDocumented()
    {
        QFETCH(const QString, code);
        QVERIFY(document().contains(QStringLiteral("| `%1` |").arg(code)));
    }
};

VELGOR_TEST(TestPresetFileDocument)
#include "tst_PresetFileDocument.moc"
