#include "PatchName.h"
#include "PresetFileChecker.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

namespace {

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

SPresetFile sample(const char *name)
{
    return *SPresetFile::fromData(bytesOf(QStringLiteral(VELGOR_SAMPLES "/") + QLatin1String(name)));
}

QList<quint64> ids(const SPresetFile &file, const std::optional<QString> &overrideName = std::nullopt)
{
    QList<quint64> result;
    for (qsizetype i = 0; i < file.patches.size(); ++i) {
        result.append(file.patches.at(i).simpleHash(overrideName) ^ file.userIRs.at(i).simpleHash());
    }
    return result;
}

QSet<quint64> setOf(const QList<quint64> &list)
{
    return {list.begin(), list.end()};
}

qsizetype userIRCount(const SPresetFile &file)
{
    return std::count_if(
        file.userIRs.begin(), file.userIRs.end(), [](const SUserIR &userIR) { return userIR.size > 0; });
}

} // namespace

class TestDemoLists : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void generatorMakesTheCommittedBytes()
    {
        const QTemporaryDir directory;
        QCOMPARE(QProcess::execute(QStringLiteral(VELGOR_MAKE_DEMO_LIST), {directory.path()}), 0);
        for (const char *name : {"demo.prst", "demo-new-firmware.prst"}) {
            const QByteArray made = bytesOf(directory.filePath(QLatin1String(name)));
            QVERIFY(!made.isEmpty());
            QVERIFY2(made == bytesOf(QStringLiteral(VELGOR_SAMPLES "/") + QLatin1String(name)), name);
        }
    }

    void generatorReportsAnUnusableDirectory()
    {
        const QTemporaryDir directory;
        QCOMPARE(
            QProcess::execute(QStringLiteral(VELGOR_MAKE_DEMO_LIST), {directory.filePath(QStringLiteral("no"))}), 2);
        QCOMPARE(QProcess::execute(QStringLiteral(VELGOR_MAKE_DEMO_LIST), {}), 2);
    }

    void checkFindsNothing_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("count");
        QTest::addColumn<QByteArray>("version");
        QTest::newRow("list of 99") << QStringLiteral("demo.prst") << 99 << QByteArray("V1.20");
        QTest::newRow("list of newer firmware")
            << QStringLiteral("demo-new-firmware.prst") << 40 << QByteArray("V1.21");
    }

    void checkFindsNothing()
    {
        QFETCH(const QString, name);
        QFETCH(const int, count);
        QFETCH(const QByteArray, version);
        const PresetFileReport report = PresetFileChecker::check(bytesOf(QStringLiteral(VELGOR_SAMPLES "/") + name));
        QVERIFY(report.file);
        QCOMPARE(report.findings.size(), 0);
        QVERIFY(report.roundTrip);
        QCOMPARE(report.file->patches.size(), count);
        QCOMPARE(QByteArrayView(report.file->headerDesc.pm0), QByteArrayView(version));
    }

    void namesAreDifferentAndWhole()
    {
        QSet<QString> names;
        qsizetype beyondAscii = 0;
        const QList<SPatch> patches = sample("demo.prst").patches + sample("demo-new-firmware.prst").patches;
        for (const SPatch &patch : patches) {
            QCOMPARE(PatchName::fitted(patch.name), patch.name);
            names.insert(patch.name);
            beyondAscii += patch.name.toUtf8().size() > patch.name.size() ? 1 : 0;
        }
        QCOMPARE(names.size(), patches.size());
        QVERIFY(beyondAscii >= 10);
    }

    void idsAreDifferent()
    {
        const QList<quint64> all = ids(sample("demo.prst")) + ids(sample("demo-new-firmware.prst"));
        QCOMPARE(setOf(all).size(), all.size());
    }

    void aThirdHasAUserImpulseResponse()
    {
        const qsizetype count = userIRCount(sample("demo.prst"));
        QVERIFY2(count >= 28 && count <= 38, qPrintable(QString::number(count)));
    }

    void sizesAreThoseOfAUnit()
    {
        for (const char *name : {"demo.prst", "demo-new-firmware.prst"}) {
            const SPresetFile file = sample(name);
            for (qsizetype i = 0; i < file.patches.size(); ++i) {
                const qsizetype size = file.patches.at(i).data.size();
                QVERIFY2(size >= 200 && size <= 2300, qPrintable(QString::number(size)));
                const qsizetype responseSize = file.userIRs.at(i).data.size() - SUserIR::numberSize;
                QVERIFY(file.userIRs.at(i).size == 0 || (responseSize >= 2048 && responseSize <= 8192));
            }
        }
    }

    void twelveSoundsAreInBothLists()
    {
        const QList<quint64> older = ids(sample("demo.prst"), QString());
        const QList<quint64> newer = ids(sample("demo-new-firmware.prst"), QString());
        QCOMPARE(setOf(older).size(), older.size());
        QCOMPARE(setOf(older).intersect(setOf(newer)).size(), 12);
    }

    void listsDifferInTheTailByte()
    {
        QVERIFY(sample("demo.prst").tailBit != sample("demo-new-firmware.prst").tailBit);
    }
};

VELGOR_TEST(TestDemoLists)
#include "tst_DemoLists.moc"
