#include "ProgramFiles.h"
#include "TestProgram.h"
#include "TestRecords.h"
#include "VelgorProcess.h"

#include <QCoreApplication>
#include <QSet>
#include <QTest>

#include <algorithm>
#include <memory>

namespace {

using Json = VelgorProcess::Json;

/// One sound under names that hash alike in tens.
QList<SPatch> presets(int count)
{
    QList<SPatch> records;
    for (int number = 1; number <= count; ++number) {
        records.append(TestRecords::patch(QStringLiteral("Preset %1").arg(number, 2, 10, QLatin1Char('0'))));
    }
    return records;
}

/// Two sounds with one name and one hash: they differ in the same way at two places 8 bytes apart.
QList<SPatch> twins()
{
    const SPatch record = TestRecords::patch(QStringLiteral("Twin"), 9);
    SPatch other = record;
    for (const qsizetype place : {8, 16}) {
        other.data[place] = static_cast<char>(other.data.at(place) ^ 0x40);
    }
    return {record, other};
}

QStringList ids(const Json &values)
{
    QStringList result;
    for (const Json &value : values) {
        result.append(QString::fromStdString(value.is_object() ? value.at("id").dump() : value.dump()).remove(u'"'));
    }
    return result;
}

} // namespace

/// Patches whose hashes are equal and whose bytes or names are not, from files into a library and out again.
class TestEqualIds : public QObject {
    Q_OBJECT

    VelgorProcess m_velgor;
    std::unique_ptr<LibraryDirectory> m_directory;

    [[nodiscard]] VelgorProcess::Result run(const QStringList &arguments) const
    {
        return m_velgor.library(m_directory->path(), arguments);
    }
    [[nodiscard]] QString file(const QList<SPatch> &records) const
    {
        const QString path = m_velgor.filePath(QStringLiteral("list.prst"));
        ProgramFiles::write(path, TestRecords::fileBytes(records));
        return path;
    }
    [[nodiscard]] Json add(const QList<SPatch> &records) const
    {
        return run({QStringLiteral("add"), file(records), QStringLiteral("--json")}).json().at(0);
    }
    [[nodiscard]] Json listed() const
    {
        return run({QStringLiteral("list"), QStringLiteral("--json")}).json().at("patches");
    }
    [[nodiscard]] QByteArray exported(const QStringList &patchIds) const
    {
        const QString path = m_velgor.filePath(QStringLiteral("out.prst"));
        QFile::remove(path);
        std::ignore = run(QStringList{QStringLiteral("export")} + patchIds + QStringList{QStringLiteral("-o"), path});
        return ProgramFiles::read(path);
    }

private Q_SLOTS:
    void init() { m_directory = std::make_unique<LibraryDirectory>(); }

    void patchesWithOneHashAreAllAddedAndKnownFromThenOn()
    {
        const QList<SPatch> records = presets(99);
        const QStringList added = ids(add(records).at("added"));
        QCOMPARE(added.size(), 99);
        QCOMPARE(QSet<QString>(added.begin(), added.end()).size(), 99);
        QCOMPARE(ids(listed()), added);
        QCOMPARE(m_directory->files().filter(QStringLiteral(".prst")).size(), 99);
        QCOMPARE(exported(added), TestRecords::fileBytes(records));
        const Json again = add(records);
        QCOMPARE(ids(again.at("known")), added);
        QVERIFY(again.at("added").empty());
        QCOMPARE(run({QStringLiteral("doctor")}).status, 0);
    }

    void anEditMeansOnePatch()
    {
        const QStringList added = ids(add(presets(20)).at("added"));
        QCOMPARE(
            run({QStringLiteral("set"), added.at(14), QStringLiteral("--comment"), QStringLiteral("fat")}).status, 0);
        QCOMPARE(ids(run({QStringLiteral("list"), QStringLiteral("--comment"), QStringLiteral("fat"),
                             QStringLiteral("--json")})
                         .json()
                         .at("patches")),
            QStringList{added.at(14)});
    }

    void aListInAnotherOrderIsKnownAsAWhole()
    {
        QList<SPatch> records = presets(12) + twins();
        const QStringList added = ids(add(records).at("added"));
        QCOMPARE(added.size(), 14);
        std::reverse(records.begin(), records.end());
        QStringList known = ids(add(records).at("known"));
        std::reverse(known.begin(), known.end());
        QCOMPARE(known, added);
        // The one with the hash goes; the others stay what they are, and it comes back.
        QCOMPARE(run({QStringLiteral("remove"), added.first()}).status, 0);
        const Json again = add(records);
        QCOMPARE(ids(again.at("added")), QStringList{added.first()});
        QCOMPARE(again.at("known").size(), 13U);
        QCOMPARE(m_directory->files().filter(QStringLiteral(".prst")).size(), 14);
    }

    void soundsWithOneHashAreToldApart()
    {
        const QStringList added = ids(add(twins()).at("added"));
        QCOMPARE(added.size(), 2);
        QCOMPARE(exported(added), TestRecords::fileBytes(twins()));
        for (const QString &id : added) {
            QCOMPARE(ids(run({QStringLiteral("similar"), id, QStringLiteral("--json")}).json()), QStringList{id});
        }
        QCOMPARE(run({QStringLiteral("duplicate"), added.last()}).status, 0);
        QCOMPARE(run({QStringLiteral("similar"), added.last(), QStringLiteral("--json")}).json().size(), 2U);
        QCOMPARE(run({QStringLiteral("similar"), added.first(), QStringLiteral("--json")}).json().size(), 1U);
    }

    void copiesOfNamesWithMultiByteLettersExportUnderNamesOfTheirOwn()
    {
        const SPatch record = TestRecords::patch(QString::fromUtf8("Ритмгита"));
        const QString id = ids(add({record}).at("added")).first();
        QCOMPARE(run({QStringLiteral("duplicate"), id}).status, 0);
        QCOMPARE(run({QStringLiteral("duplicate"), id}).status, 0);
        const auto file = SPresetFile::fromData(exported(ids(listed())));
        QVERIFY(file);
        QStringList names;
        for (const SPatch &patch : file->patches) {
            names.append(patch.name);
        }
        QCOMPARE(names.join(u','), QString::fromUtf8("Ритмгита,Ритмгит-1,Ритмгит-2"));
        // The exported copies are the copies.
        QCOMPARE(ids(add(file->patches).at("known")), ids(listed()));
        QCOMPARE(listed().size(), 3U);
    }

    void whatHasTheIdOfAPatchThatCannotBeReadNowGetsAnother()
    {
        const QString first = ids(add(presets(1)).at("added")).constFirst();
        std::ignore = run({QStringLiteral("set"), first, QStringLiteral("--comment"), QStringLiteral("mine")});
        const QString path = m_directory->filePath(QStringLiteral("lib-Preset 01.%1.prst").arg(first));
        const QString elsewhere = m_velgor.filePath(QStringLiteral("elsewhere.prst"));
        QVERIFY(QFile::rename(path, elsewhere) && QFile::link(elsewhere, path));

        const QString second = ids(add({presets(2).last()}).at("added")).constFirst();
        QVERIFY(second != first);
        QVERIFY(QFile::remove(path) && QFile::rename(elsewhere, path));
        QCOMPARE(ids(listed()), (QStringList{first, second}));
        QCOMPARE(listed().at(0).at("comment").get<std::string>(), std::string("mine"));
        QCOMPARE(run({QStringLiteral("remove"), second}).status, 0);
        QVERIFY(QFile::exists(path));
    }

    void patchThatCannotBeReadNowIsKnownWhenItComesAgain_data()
    {
        QTest::addColumn<bool>("isLink");
        QTest::newRow("behind a link") << true;
        QTest::newRow("gone") << false;
    }
    void patchThatCannotBeReadNowIsKnownWhenItComesAgain()
    {
        QFETCH(const bool, isLink);
        const QString id = ids(add(presets(1)).at("added")).constFirst();
        const QString path = m_directory->filePath(QStringLiteral("lib-Preset 01.%1.prst").arg(id));
        QCOMPARE(run({QStringLiteral("set"), id, QStringLiteral("--comment"), QStringLiteral("mine"),
                         QStringLiteral("--solo"), QStringLiteral("on"), QStringLiteral("--default")})
                     .status,
            0);
        QVERIFY(QFile::remove(path) && (!isLink || QFile::link(m_velgor.filePath(QStringLiteral("nowhere")), path)));
        const auto refused = run({QStringLiteral("export"), id, QStringLiteral("-o"), QStringLiteral("-")});
        QCOMPARE(refused.status, 2);
        QVERIFY2(refused.errors.contains("was left out, as its file cannot be read"), refused.errors.constData());
        QCOMPARE(ids(add(presets(1)).at("added")), QStringList{id});
        QCOMPARE(ids(listed()), QStringList{id});
        QCOMPARE(listed().at(0).at("comment").get<std::string>(), std::string("mine"));
        QVERIFY(listed().at(0).at("solo").get<bool>());
        QCOMPARE(run({QStringLiteral("list"), QStringLiteral("--json")}).json().at("defaultPatch").get<std::string>(),
            id.toStdString());
        QCOMPARE(run({QStringLiteral("set"), id, QStringLiteral("--comment"), QString()}).status, 0);
        QCOMPARE(listed().at(0).at("comment").get<std::string>(), std::string());
    }
};

VELGOR_TEST(TestEqualIds)
#include "tst_EqualIds.moc"
