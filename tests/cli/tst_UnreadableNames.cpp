#include "ProgramFiles.h"
#include "SPresetFile.h"
#include "TestProgram.h"
#include "TestRecords.h"
#include "VelgorProcess.h"

#include <QCoreApplication>
#include <QTest>

namespace {

const QByteArray badField = QByteArray("Caf\xE9").leftJustified(16, '\0');

/// Two patches with names that are no text, which differ in their bytes alone, and one with a name.
QByteArray list()
{
    SPatch bad = TestRecords::patch(QStringLiteral("_error_"), 3);
    bad.unreadableName = badField;
    SPatch other = bad;
    other.unreadableName = QByteArray("\xFF\xFE").leftJustified(16, '\0');
    return TestRecords::fileBytes({bad, TestRecords::patch(QStringLiteral("Lead")), other});
}

} // namespace

/// Names in preset files that are not UTF-8: the user is told, and no byte of them is lost.
class TestUnreadableNames : public QObject {
    Q_OBJECT

    VelgorProcess m_velgor;
    LibraryDirectory m_directory;

    [[nodiscard]] QString input() const { return m_velgor.filePath(QStringLiteral("list.prst")); }
    [[nodiscard]] QString output() const { return m_velgor.filePath(QStringLiteral("out.prst")); }

private Q_SLOTS:
    void init()
    {
        ProgramFiles::write(input(), list());
        QFile::remove(output());
    }

    void everyCommandThatTakesPatchesFromTheFileWarns_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("copy") << QStringList{QStringLiteral("copy"), input(), QStringLiteral("-o"), output()};
        const QStringList library{QStringLiteral("library"), QStringLiteral("--library"), m_directory.path()};
        QTest::newRow("add") << library + QStringList{QStringLiteral("add"), input()};
        QTest::newRow("compose") << library
                + QStringList{
                    QStringLiteral("compose"), QStringLiteral("--from"), input(), QStringLiteral("-o"), output()};
    }

    void everyCommandThatTakesPatchesFromTheFileWarns()
    {
        QFETCH(const QStringList, arguments);
        const VelgorProcess::Result result = m_velgor.run(arguments);
        QCOMPARE(result.status, 0);
        const QStringList lines = result.errorLines().filter(QStringLiteral("_error_"));
        QCOMPARE(lines.size(), 1);
        QVERIFY(lines.first().startsWith(QStringLiteral("velgor: warning: ") + input()));
        QVERIFY(lines.first().endsWith(QStringLiteral(": 1.1, 1.3")));
        ProgramFiles::write(input(), TestRecords::fileBytes({TestRecords::patch(QStringLiteral("Lead"))}));
        QVERIFY(m_velgor.run(arguments).errorLines().filter(QStringLiteral("_error_")).isEmpty());
    }

    void aDuplicateHasANameOfItsOwn()
    {
        const LibraryDirectory directory;
        const auto library = [&](const QStringList &arguments) {
            return m_velgor.library(directory.path(), arguments);
        };
        QCOMPARE(library({QStringLiteral("add"), input()}).status, 0);
        const auto patches = library({QStringLiteral("list"), QStringLiteral("--json")}).json().at("patches");
        const QString id = QString::fromStdString(patches.at(0).at("id").get<std::string>());
        QCOMPARE(library({QStringLiteral("duplicate"), id}).status, 0);
        const QStringList files =
            QDir(directory.path()).entryList({QStringLiteral("lib-_error_-1.*.prst")}, QDir::Files);
        QCOMPARE(files.size(), 1);
        const auto stored = SPresetFile::fromData(directory.read(files.first()));
        QCOMPARE(stored->patches.first().name, QStringLiteral("_error_-1"));
        QCOMPARE(stored->patches.first().unreadableName, QByteArray());
    }

    void aCopyOfTheFileHasItsBytes()
    {
        QCOMPARE(m_velgor.run({QStringLiteral("copy"), input(), QStringLiteral("-o"), output()}).status, 0);
        QCOMPARE(ProgramFiles::read(output()), list());
    }

    void theLibraryGivesTheBytesBackUntilThePatchIsRenamed()
    {
        const auto run = [this](
                             const QStringList &arguments) { return m_velgor.library(m_directory.path(), arguments); };
        std::ignore = run({QStringLiteral("add"), input()});
        QStringList ids;
        const auto library = run({QStringLiteral("list"), QStringLiteral("--json")}).json();
        for (const auto &patch : library.at("patches")) {
            ids.append(QString::fromStdString(patch.at("id").dump()).remove(u'"'));
        }
        QCOMPARE(ids.size(), 3);
        const auto exported = [&] {
            std::ignore =
                run(QStringList{QStringLiteral("export")} + ids + QStringList{QStringLiteral("-o"), output()});
            return ProgramFiles::read(output());
        };
        QCOMPARE(exported(), list());
        QCOMPARE(run({QStringLiteral("set"), ids.first(), QStringLiteral("--solo"), QStringLiteral("on")}).status, 0);
        QCOMPARE(exported(), list());
        QCOMPARE(run({QStringLiteral("set"), ids.first(), QStringLiteral("--name"), QStringLiteral("Cafe")}).status, 0);
        const auto file = SPresetFile::fromData(exported());
        QVERIFY(file);
        QCOMPARE(file->patches.first().name, QStringLiteral("Cafe"));
        QVERIFY(!file->patches.last().unreadableName.isEmpty());
    }
};

VELGOR_TEST(TestUnreadableNames)
#include "tst_UnreadableNames.moc"
