#include "LibraryDirectory.h"
#include "ProgramFiles.h"
#include "TestProgram.h"
#include "TestRecords.h"
#include "VelgorProcess.h"

#include <QCoreApplication>
#include <QTest>

namespace {

using Json = VelgorProcess::Json;

const QString libraryFile = QStringLiteral("velgorlibrary.json");
const QString lead = QStringLiteral("8725204569585644227");

QStringList doctor(std::initializer_list<QString> options = {})
{
    return QStringList{QStringLiteral("doctor"), QStringLiteral("--json")} + QStringList(options);
}

QStringList codes(const Json &document)
{
    QStringList result;
    for (const Json &finding : document["findings"]) {
        result.append(QString::fromStdString(finding["code"].get<std::string>()));
    }
    return result;
}

QString fileOfLead(const LibraryDirectory &directory)
{
    return directory.files().filter(lead).value(0);
}

QStringList formerFiles(const LibraryDirectory &directory)
{
    return directory.files().filter(QStringLiteral("velgorlibrary-"));
}

} // namespace

class TestDoctorCommand : public QObject {
    Q_OBJECT

private:
    VelgorProcess m_velgor;

private Q_SLOTS:
    void soundLibraryEndsWithNothingFound()
    {
        const LibraryDirectory directory;
        ProgramFiles::copyLibrary(QStringLiteral("ok"), directory);
        const auto before = directory.stamps();
        const auto result = m_velgor.library(directory.path(), doctor());
        QCOMPARE(result.status, 0);
        QVERIFY(result.json()["findings"].empty() && result.json()["keptLibraries"].empty());
        const auto lines = m_velgor.library(directory.path(), {QStringLiteral("doctor")});
        QCOMPARE(lines.status, 0);
        QVERIFY(lines.output.contains("0 findings"));
        QCOMPARE(directory.stamps(), before);
    }

    void examiningTellsAndChangesNothing()
    {
        const LibraryDirectory directory;
        ProgramFiles::copyLibrary(QStringLiteral("ok"), directory);
        directory.write(fileOfLead(directory), "damaged");
        directory.write(QStringLiteral("mine.%1.bak").arg(lead), "mine");
        directory.write(QStringLiteral(".velgor-writing-1"), "x");
        const auto before = directory.stamps();
        const auto result = m_velgor.library(directory.path(), doctor());
        QCOMPARE(result.status, 1);
        QStringList found = codes(result.json());
        found.sort();
        QCOMPARE(found,
            (QStringList{QStringLiteral("foreignFile"), QStringLiteral("leftover"), QStringLiteral("unreadableFile")}));
        QCOMPARE(m_velgor.library(directory.path(), {QStringLiteral("doctor")}).status, 1);
        QCOMPARE(directory.stamps(), before);
    }

    void patchFromElsewhereIsToldByEveryCommandThatReadsIt()
    {
        const LibraryDirectory directory;
        ProgramFiles::copyLibrary(QStringLiteral("ok"), directory);
        const QString file = fileOfLead(directory);
        directory.write(file, TestRecords::fileBytes({TestRecords::patch(QStringLiteral("Other"), 7)}));
        const auto listed = m_velgor.library(directory.path(), {QStringLiteral("list")});
        QCOMPARE(listed.status, 0);
        QVERIFY(listed.errors.contains(
            "Lead: its file holds \"Other\", which may be another patch (" + file.toUtf8() + ')'));
        const auto examined = m_velgor.library(directory.path(), doctor());
        QCOMPARE(examined.status, 1);
        QCOMPARE(codes(examined.json()), QStringList{QStringLiteral("fileOfOtherContent")});
        QVERIFY(!examined.errors.contains("may hold"));
    }

    void lostEntryIsAddedWithItsComment()
    {
        const LibraryDirectory directory;
        ProgramFiles::copyLibrary(QStringLiteral("ok"), directory);
        const QStringList setComment{
            QStringLiteral("set"), lead, QStringLiteral("--comment"), QStringLiteral("my words")};
        QCOMPARE(m_velgor.library(directory.path(), setComment).status, 0);
        const QString file = fileOfLead(directory);
        const QByteArray bytes = directory.read(file);
        QVERIFY(QFile::remove(directory.filePath(file)));
        const QStringList other{QStringLiteral("add"), ProgramFiles::sample(QStringLiteral("realistic/half51"))};
        QCOMPARE(m_velgor.library(directory.path(), other).status, 0);
        QVERIFY(!directory.read(libraryFile).contains("my words"));
        directory.write(file, bytes);

        const auto result = m_velgor.library(directory.path(), doctor({QStringLiteral("--repair")}));
        QCOMPARE(result.status, 0);
        QCOMPARE(result.json()["added"].size(), 1U);
        QCOMPARE(result.json()["added"][0].get<std::string>(), lead.toStdString());
        QVERIFY(directory.read(libraryFile).contains("my words"));
        QCOMPARE(m_velgor.library(directory.path(), doctor()).status, 0);
    }

    void garbledLibraryIsRebuiltAndKept()
    {
        const LibraryDirectory directory;
        ProgramFiles::copyLibrary(QStringLiteral("ok"), directory);
        const auto before = m_velgor.library(directory.path(), {QStringLiteral("list"), QStringLiteral("--json")});
        directory.write(libraryFile, "garbled");
        const auto examined = m_velgor.library(directory.path(), doctor());
        QCOMPARE(examined.status, 1);
        QVERIFY(codes(examined.json()).contains(QStringLiteral("damagedLibraryFile")));
        QCOMPARE(m_velgor.library(directory.path(), doctor({QStringLiteral("--repair")})).status, 0);
        const auto after = m_velgor.library(directory.path(), {QStringLiteral("list"), QStringLiteral("--json")});
        QCOMPARE(after.json()["total"].get<int>(), before.json()["total"].get<int>());
        QCOMPARE(formerFiles(directory).size(), 1);
        QCOMPARE(directory.read(formerFiles(directory).first()), QByteArray("garbled"));
    }

    void repairOfNothingWritesNothing()
    {
        const LibraryDirectory directory;
        ProgramFiles::copyLibrary(QStringLiteral("ok"), directory);
        const auto before = directory.stamps();
        QCOMPARE(m_velgor.library(directory.path(), doctor({QStringLiteral("--repair")})).status, 0);
        QCOMPARE(directory.stamps(), before);
    }

    void formerLibraryIsPreviewedRestoredAndTakenBack()
    {
        const LibraryDirectory directory;
        ProgramFiles::copyLibrary(QStringLiteral("ok"), directory);
        const QString former = QStringLiteral("velgorlibrary-20260101T000000-00.json");
        directory.write(former, directory.read(libraryFile));
        const QStringList rename{QStringLiteral("set"), lead, QStringLiteral("--name"), QStringLiteral("Renamed")};
        QCOMPARE(m_velgor.library(directory.path(), rename).status, 0);
        const QByteArray renamed = directory.read(libraryFile);

        const auto preview = m_velgor.library(directory.path(), doctor({QStringLiteral("--preview"), former}));
        QCOMPARE(preview.status, 0);
        QCOMPARE(preview.json()["changing"].size(), 1U);
        QVERIFY(preview.json()["leaving"].empty());
        QCOMPARE(directory.read(libraryFile), renamed);

        QCOMPARE(m_velgor.library(directory.path(), doctor({QStringLiteral("--restore"), former})).status, 0);
        QCOMPARE(directory.read(libraryFile), directory.read(former));
        const QString latest = formerFiles(directory).last();
        QCOMPARE(directory.read(latest), renamed);
        QCOMPARE(m_velgor.library(directory.path(), doctor({QStringLiteral("--restore"), latest})).status, 0);
        QCOMPARE(directory.read(libraryFile), renamed);
    }

    void wrongUseIsRefused_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("two things at once")
            << doctor({QStringLiteral("--repair"), QStringLiteral("--restore"), QStringLiteral("x")});
        QTest::newRow("unknown former library") << doctor({QStringLiteral("--restore"), QStringLiteral("x.json")});
        QTest::newRow("preview of a file elsewhere")
            << doctor({QStringLiteral("--preview"), QStringLiteral("/etc/hostname")});
        QTest::newRow("the library file itself") << doctor({QStringLiteral("--restore"), libraryFile});
    }
    void wrongUseIsRefused()
    {
        QFETCH(const QStringList, arguments);
        const LibraryDirectory directory;
        ProgramFiles::copyLibrary(QStringLiteral("ok"), directory);
        const auto before = directory.stamps();
        const auto result = m_velgor.library(directory.path(), arguments);
        QCOMPARE(result.status, 2);
        QVERIFY(result.errors.contains("velgor: "));
        QCOMPARE(directory.stamps(), before);
    }

    void fileOfAnotherDirectoryIsNotTakenForTheLibrarysOwn_data()
    {
        QTest::addColumn<QString>("option");
        QTest::newRow("preview") << QStringLiteral("--preview");
        QTest::newRow("restore") << QStringLiteral("--restore");
    }
    void fileOfAnotherDirectoryIsNotTakenForTheLibrarysOwn()
    {
        QFETCH(const QString, option);
        const LibraryDirectory directory;
        const LibraryDirectory other;
        ProgramFiles::copyLibrary(QStringLiteral("ok"), directory);
        const QString former = QStringLiteral("velgorlibrary-20260101T000000-00.json");
        directory.write(former, directory.read(libraryFile));
        other.write(former, directory.read(libraryFile));
        const auto before = directory.stamps();
        const auto result = m_velgor.library(directory.path(), doctor({option, other.filePath(former)}));
        QCOMPARE(result.status, 2);
        QVERIFY2(result.errors.contains("not in the library directory"), result.errors.constData());
        QVERIFY(result.output.isEmpty());
        QCOMPARE(directory.stamps(), before);
        QCOMPARE(m_velgor.library(directory.path(), doctor({option, directory.filePath(former)})).status, 0);
    }

    void defaultAndOrderArePreviewed()
    {
        const LibraryDirectory directory;
        ProgramFiles::copyLibrary(QStringLiteral("ok"), directory);
        const QString former = QStringLiteral("velgorlibrary-20260101T000000-00.json");
        Json then = Json::parse(directory.read(libraryFile).toStdString());
        std::swap(then["patches"][0], then["patches"][1]);
        then["defaultPatch"] = nullptr;
        directory.write(former, QByteArray::fromStdString(then.dump()));
        const QStringList setDefault{QStringLiteral("set"), lead, QStringLiteral("--default")};
        QCOMPARE(m_velgor.library(directory.path(), setDefault).status, 0);
        const auto json = m_velgor.library(directory.path(), doctor({QStringLiteral("--preview"), former})).json();
        QVERIFY(json["defaultChanges"].get<bool>() && json["orderChanges"].get<bool>());
        QVERIFY(json["defaultName"].is_null());
        const auto lines =
            m_velgor.library(directory.path(), {QStringLiteral("doctor"), QStringLiteral("--preview"), former});
        QVERIFY2(lines.output.contains("the default patch: none any more\n"), lines.output.constData());
        QVERIFY2(lines.output.contains("the patches get their former order\n"), lines.output.constData());
    }

    void repairThatCannotBeSavedTellsOfNothingAdded()
    {
        const LibraryDirectory directory;
        ProgramFiles::copyLibrary(QStringLiteral("ok"), directory);
        QVERIFY(QFile::rename(
            directory.filePath(fileOfLead(directory)), directory.filePath(QStringLiteral("lib-x.7.prst"))));
        // In the place of the journal nothing can be written.
        directory.write(QStringLiteral(".velgorlibrary.journal/x"), "x");
        const auto result = m_velgor.library(directory.path(), doctor({QStringLiteral("--repair")}));
        QCOMPARE(result.status, 2);
        QVERIFY(result.json()["added"].empty());
        QVERIFY(QDir(directory.filePath(QStringLiteral(".velgorlibrary.journal"))).removeRecursively());
        const auto repaired = m_velgor.library(directory.path(), doctor({QStringLiteral("--repair")}));
        QCOMPARE(repaired.status, 0);
        QCOMPARE(repaired.json()["added"].size(), 1U);
        QCOMPARE(repaired.json()["notes"].size(), 1U);
        QCOMPARE(m_velgor.library(directory.path(), doctor()).status, 0);
    }

    void longNamesAreCutInLines()
    {
        const LibraryDirectory directory;
        ProgramFiles::copyLibrary(QStringLiteral("ok"), directory);
        const QString name(500, u'x');
        const QStringList rename{QStringLiteral("set"), lead, QStringLiteral("--name"), name};
        QCOMPARE(m_velgor.library(directory.path(), rename).status, 0);
        QVERIFY(QFile::remove(directory.filePath(fileOfLead(directory))));
        const auto lines = m_velgor.library(directory.path(), {QStringLiteral("doctor")});
        QCOMPARE(lines.status, 1);
        QVERIFY(lines.output.contains("xxxx") && !lines.output.contains(QByteArray(100, 'x')));
        const auto json = m_velgor.library(directory.path(), doctor()).json();
        QCOMPARE(json["findings"][0]["name"].get<std::string>(), name.toStdString());
    }

    void missingDirectoryIsNoLibrary()
    {
        const LibraryDirectory directory;
        const QString missing = directory.filePath(QStringLiteral("missing"));
        QCOMPARE(m_velgor.library(missing, doctor()).status, 2);
        QCOMPARE(m_velgor.library(missing, doctor({QStringLiteral("--repair")})).status, 2);
        QVERIFY(!directory.has(QStringLiteral("missing")));
    }
};

VELGOR_TEST(TestDoctorCommand)
#include "tst_DoctorCommand.moc"
