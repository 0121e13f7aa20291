#include "ProgramFiles.h"
#include "TestProgram.h"
#include "TestRecords.h"
#include "VelgorProcess.h"

#include <QCoreApplication>
#include <QTest>

namespace {

using Json = VelgorProcess::Json;

const QString lead = QStringLiteral("8725204569585644227");
const QString slashed = QStringLiteral("3702531371783571771");

} // namespace

/// New lists made of a library's patches.
class TestComposeCommand : public QObject {
    Q_OBJECT

private:
    VelgorProcess m_velgor;
    LibraryDirectory m_directory;

    [[nodiscard]] VelgorProcess::Result compose(const QStringList &options) const
    {
        return m_velgor.library(
            m_directory.path(), QStringList{QStringLiteral("compose"), QStringLiteral("-o"), output()} + options);
    }
    [[nodiscard]] QString output() const { return m_velgor.filePath(QStringLiteral("out.prst")); }
    [[nodiscard]] QStringList names() const
    {
        QStringList result;
        const Json list = m_velgor.run({QStringLiteral("list"), output(), QStringLiteral("--json")}).json();
        for (const Json &patch : list.at("patches")) {
            result.append(QString::fromStdString(patch.at("name").get<std::string>()));
        }
        return result;
    }

private Q_SLOTS:
    void init()
    {
        ProgramFiles::copyLibrary(QStringLiteral("ok"), m_directory);
        QFile::remove(output());
    }

    void slotsStandAtTheirPlaces()
    {
        const auto before = m_directory.stamps();
        const auto result = compose({QStringLiteral("--slot"), QStringLiteral("1.1=") + lead,
            QStringLiteral("--slot=33.3=") + lead, QStringLiteral("--slot"), QStringLiteral("2.2=") + lead});
        QCOMPARE(result.status, 0);
        QCOMPARE(result.output, QByteArray());
        QVERIFY(!result.errors.contains("warning"));
        QStringList expected(99, QStringLiteral("A/B"));
        expected[0] = expected[4] = expected[98] = QStringLiteral("Lead");
        QCOMPARE(names(), expected);
        QCOMPARE(m_velgor.run({QStringLiteral("check"), output()}).status, 0);
        QCOMPARE(m_directory.stamps(), before);
    }

    void startingListKeepsItsNamesAndLength()
    {
        const QString from = m_velgor.filePath(QStringLiteral("from.prst"));
        ProgramFiles::write(from,
            TestRecords::fileBytes(
                {TestRecords::patch(QStringLiteral("P"), 1), TestRecords::patch(QStringLiteral("Q"), 2),
                    TestRecords::patch(QStringLiteral("R"), 3), TestRecords::patch(QStringLiteral("S"), 4)}));
        QCOMPARE(
            compose({QStringLiteral("--from"), from, QStringLiteral("--slot"), QStringLiteral("1.2=") + lead}).status,
            0);
        QCOMPARE(names(),
            QStringList({QStringLiteral("P"), QStringLiteral("Lead"), QStringLiteral("R"), QStringLiteral("S")}));
        QFile::remove(output());
        QCOMPARE(
            compose({QStringLiteral("--from"), from, QStringLiteral("--slot"), QStringLiteral("2.2=") + lead}).status,
            2);
        QVERIFY(!QFile::exists(output()));
    }

    /// A patch of the starting list that the library knows under another name.
    void startingListKeepsNamesThatTheLibraryChanged()
    {
        const QString from = m_directory.filePath(QStringLiteral("lib-Lead.%1.prst").arg(lead));
        const QString copy = m_velgor.filePath(QStringLiteral("copy.prst"));
        ProgramFiles::write(copy, ProgramFiles::read(from));
        QCOMPARE(m_velgor
                     .library(m_directory.path(),
                         {QStringLiteral("set"), lead, QStringLiteral("--name"), QStringLiteral("New")})
                     .status,
            0);
        QCOMPARE(compose({QStringLiteral("--from"), copy}).status, 0);
        QCOMPARE(names(), QStringList(QStringLiteral("Lead")));
        QCOMPARE(m_velgor
                     .library(m_directory.path(),
                         {QStringLiteral("set"), lead, QStringLiteral("--name"), QStringLiteral("Lead")})
                     .status,
            0);
    }

    void mixedFirmwareVersionsAreAWarning()
    {
        const QString from = m_velgor.filePath(QStringLiteral("newer.prst"));
        ProgramFiles::write(from,
            TestRecords::fileBytes(
                {TestRecords::patch(QStringLiteral("P"), 1), TestRecords::patch(QStringLiteral("Q"), 2)}, {}, "V1.21"));
        const auto mixed =
            compose({QStringLiteral("--from"), from, QStringLiteral("--slot"), QStringLiteral("1.1=") + lead});
        QCOMPARE(mixed.status, 0);
        QCOMPARE(mixed.errorLines().filter(QStringLiteral("velgor: warning: ")).size(), 1);
        QVERIFY(mixed.errors.contains("V1.20, V1.21"));
        // Nothing of the old version is left when both slots are replaced.
        const auto replaced = compose({QStringLiteral("--from"), from, QStringLiteral("--slot"),
            QStringLiteral("1.1=") + lead, QStringLiteral("--slot"), QStringLiteral("1.2=") + slashed});
        QCOMPARE(replaced.status, 0);
        QVERIFY(!replaced.errors.contains("warning"));
    }

    void withoutDefaultPatchThereIsNothingToFillWith()
    {
        const LibraryDirectory other;
        ProgramFiles::copyLibrary(QStringLiteral("default_null"), other);
        const QStringList arguments{QStringLiteral("compose"), QStringLiteral("-o"), output(), QStringLiteral("--slot"),
            QStringLiteral("1.1=") + lead};
        const auto result = m_velgor.library(other.path(), arguments);
        QCOMPARE(result.status, 2);
        QVERIFY(result.errors.contains("no default patch"));
        QVERIFY(!QFile::exists(output()));
        QCOMPARE(m_velgor.library(other.path(), {QStringLiteral("set"), lead, QStringLiteral("--default")}).status, 0);
        QCOMPARE(m_velgor.library(other.path(), arguments).status, 0);
        QCOMPARE(names().count(QStringLiteral("Lead")), 99);
    }
};

VELGOR_TEST(TestComposeCommand)
#include "tst_ComposeCommand.moc"
