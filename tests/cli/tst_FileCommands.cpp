#include "ProgramFiles.h"
#include "TestProgram.h"
#include "TestRecords.h"
#include "VelgorProcess.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QTest>

#include <functional>

namespace {

using Json = VelgorProcess::Json;

Json factsOf(const QString &sample)
{
    const QByteArray text = ProgramFiles::read(ProgramFiles::sample(sample).chopped(5) + QStringLiteral(".json"));
    return Json::parse(text.begin(), text.end(), nullptr, false);
}

QString text(const Json &value)
{
    return QString::fromStdString(value.get<std::string>());
}

bool isReadable(const Json &facts)
{
    return facts.at("outcome") == "ok";
}

QStringList keysOf(const Json &object)
{
    QStringList keys;
    for (const auto &entry : object.items()) {
        keys.append(QString::fromStdString(entry.key()));
    }
    return keys;
}

QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(u' ');
}

QStringList diagnosticsOf(const Json &facts)
{
    QStringList lines;
    for (const Json &line : facts.at("diagnostics")) {
        lines.append(text(line));
    }
    return lines;
}

/// What the list says of a patch, made of what is known of it.
Json expectedPatch(const Json &fact)
{
    const bool hasUserIR = fact.at("hasUserIR");
    return {{"index", fact.at("index")}, {"bank", fact.at("bank")}, {"number", fact.at("number")},
        {"name", fact.at("name")}, {"id", fact.at("id")}, {"version", fact.at("version")}, {"hasUserIR", hasUserIR},
        {"pos", fact.at("pos")}, {"dataSize", fact.at("data_length")}, {"userIRSize", fact.at("user_ir_size")},
        {"userIRNumber", hasUserIR ? fact.at("user_ir_number") : Json(nullptr)}};
}

QStringList codesOf(const Json &entry)
{
    QStringList codes;
    for (const Json &finding : entry.at("findings")) {
        codes.append(text(finding.at("code")));
    }
    return codes;
}

} // namespace

/// The commands that need no library.
class TestFileCommands : public QObject {
    Q_OBJECT

private:
    static void addSamples(const std::function<bool(const Json &)> &wanted)
    {
        QTest::addColumn<QString>("sample");
        for (const char *folder : {"realistic", "edge", "malformed"}) {
            const QDir samples(QStringLiteral(VELGOR_TEST_DATA "/samples/") + QLatin1String(folder));
            for (const QString &name : samples.entryList({QStringLiteral("*.prst")}, QDir::Files, QDir::Name)) {
                const QString sample = QLatin1String(folder) + u'/' + name.chopped(5);
                if (wanted(factsOf(sample))) {
                    QTest::newRow(qPrintable(sample)) << sample;
                }
            }
        }
    }
    static void addReadable() { addSamples(isReadable); }
    static void addMalformed()
    {
        addSamples([](const Json &facts) { return !isReadable(facts); });
    }

    [[nodiscard]] VelgorProcess::Result run(const char *command, const QString &path, const char *option) const
    {
        return m_velgor.run({QLatin1String(command), path, QLatin1String(option)});
    }

    [[nodiscard]] QString output() const { return m_velgor.filePath(QStringLiteral("out.prst")); }

    VelgorProcess m_velgor;

private Q_SLOTS:
    void listGivesWhatTheFileHolds_data() { addReadable(); }
    void listGivesWhatTheFileHolds()
    {
        QFETCH(const QString, sample);
        const Json facts = factsOf(sample);
        const QString path = ProgramFiles::sample(sample);
        const auto result = run("list", path, "--json");
        QCOMPARE(result.status, 0);
        QCOMPARE(result.errorLines(), diagnosticsOf(facts));
        const Json json = result.json();
        QCOMPARE(keysOf(json), words("file count version tailBit checksum patches"));
        QCOMPARE(text(json.at("file")), path);
        QVERIFY(json.at("count") == facts.at("count"));
        QVERIFY(json.at("version") == facts.at("patches").at(0).at("version"));
        QVERIFY(json.at("tailBit") == facts.at("tail_byte"));
        const Json stored = facts.at("checksum_stored");
        const Json computed = facts.at("checksum_computed");
        QCOMPARE(json.at("checksum").dump(),
            Json({{"stored", stored}, {"computed", computed}, {"valid", stored == computed}}).dump());
        QCOMPARE(json.at("patches").size(), facts.at("patches").size());
        for (std::size_t i = 0; i < facts.at("patches").size(); ++i) {
            QCOMPARE(json.at("patches").at(i).dump(), expectedPatch(facts.at("patches").at(i)).dump());
        }
    }

    void listShowsOneLineForEachPatch()
    {
        const QString path = m_velgor.filePath(QStringLiteral("two.prst"));
        ProgramFiles::write(path,
            TestRecords::fileBytes(
                {TestRecords::patch(QStringLiteral("Lead"), 1), TestRecords::patch(QString(u'ß'), 2)},
                {SUserIR{}, TestRecords::userIR(1)}));
        const Json patches = run("list", path, "--json").json().at("patches");
        const auto result = m_velgor.run({QStringLiteral("list"), path});
        QCOMPARE(result.status, 0);
        QStringList lines = QString::fromUtf8(result.output).split(u'\n');
        QVERIFY(lines.takeLast().isEmpty());
        static const QRegularExpression gap(QStringLiteral("  +"));
        QCOMPARE(lines.size(), 3);
        QCOMPARE(lines.at(0).split(gap),
            QStringList({QStringLiteral("Slot"), QStringLiteral("Name"), QStringLiteral("User IR"),
                QStringLiteral("Version"), QStringLiteral("Bytes"), QStringLiteral("Id")}));
        QCOMPARE(lines.at(1).split(gap),
            QStringList({QStringLiteral("1.1"), QStringLiteral("Lead"), QStringLiteral("V1.20"), QStringLiteral("64"),
                text(patches.at(0).at("id"))}));
        QCOMPARE(lines.at(2).split(gap),
            QStringList({QStringLiteral("1.2"), QString(u'ß'), QStringLiteral("user IR"), QStringLiteral("V1.20"),
                QStringLiteral("64"), text(patches.at(1).at("id"))}));
        QCOMPARE(lines.at(1).indexOf(u"V1.20"), lines.at(2).indexOf(u"V1.20"));
    }

    void malformedFileIsRefusedInLinesOfItsOwn_data() { addMalformed(); }
    void malformedFileIsRefusedInLinesOfItsOwn()
    {
        QFETCH(const QString, sample);
        const QString path = ProgramFiles::sample(sample);
        ProgramFiles::write(output(), "as it was");
        for (const QStringList &arguments : {QStringList{QStringLiteral("list"), path},
                 QStringList{QStringLiteral("list"), path, QStringLiteral("--json")},
                 QStringList{QStringLiteral("check"), path},
                 QStringList{QStringLiteral("copy"), path, QStringLiteral("-o"), output()}}) {
            const auto result = m_velgor.run(arguments);
            QCOMPARE(result.status, 2);
            QCOMPARE(result.output, QByteArray());
            QStringList lines = result.errorLines();
            QVERIFY2(lines.last().startsWith(u"velgor: ") && lines.last().contains(path), result.errors.constData());
            lines.removeLast();
            QCOMPARE(lines, diagnosticsOf(factsOf(sample)));
        }
        QCOMPARE(ProgramFiles::read(output()), QByteArray("as it was"));
    }

    void checkFindsWhatReadingAndWritingAgainWouldChange_data() { addReadable(); }
    void checkFindsWhatReadingAndWritingAgainWouldChange()
    {
        QFETCH(const QString, sample);
        const QString path = ProgramFiles::sample(sample);
        const bool isIdentical = factsOf(sample).at("roundtrip_identical");
        const auto result = run("check", path, "--json");
        QCOMPARE(result.status, isIdentical ? 0 : 1);
        const Json json = result.json();
        QCOMPARE(json.size(), std::size_t(1));
        const Json &entry = json.at(0);
        QCOMPARE(keysOf(entry), words("file readable findings roundTrip"));
        QCOMPARE(text(entry.at("file")), path);
        QVERIFY(entry.at("readable") == true);
        QVERIFY(entry.at("roundTrip") == isIdentical);
        QCOMPARE(entry.at("findings").empty(), isIdentical);
        for (const Json &finding : entry.at("findings")) {
            QCOMPARE(keysOf(finding), words("code message offset"));
        }
        const QString shown = QString::fromUtf8(m_velgor.run({QStringLiteral("check"), path}).output);
        QCOMPARE(shown == path + QStringLiteral(": ok\n"), isIdentical);
    }

    void checkNamesTheFault_data()
    {
        QTest::addColumn<QString>("sample");
        QTest::addColumn<QStringList>("codes");
        QTest::newRow("checksum") << "edge/checksum_wrong" << words("checksum");
        QTest::newRow("trailing bytes") << "edge/trailing_bytes" << words("trailing-bytes");
        QTest::newRow("name") << "edge/name_zero_middle" << words("name");
        QTest::newRow("descriptor size") << "edge/desc_size_plus1" << words("descriptor-size");
    }
    void checkNamesTheFault()
    {
        QFETCH(const QString, sample);
        QFETCH(const QStringList, codes);
        const QString path = ProgramFiles::sample(sample);
        const auto result = run("check", path, "--json");
        QStringList found = codesOf(result.json().at(0));
        found.removeDuplicates();
        QCOMPARE(found, codes);
        const QByteArray shown = m_velgor.run({QStringLiteral("check"), path}).output;
        QVERIFY2(shown.contains('(' + codes.first().toUtf8() + ")\n"), shown.constData());
    }

    void checkKeepsTheOrderOfItsFiles()
    {
        const QString good = ProgramFiles::sample(QStringLiteral("edge/one_patch"));
        const QString odd = ProgramFiles::sample(QStringLiteral("edge/checksum_wrong"));
        const QString bad = ProgramFiles::sample(QStringLiteral("malformed/count_0"));
        const auto found = m_velgor.run({QStringLiteral("check"), QStringLiteral("--json"), good, odd});
        QCOMPARE(found.status, 1);
        const auto result = m_velgor.run({QStringLiteral("check"), QStringLiteral("--json"), bad, odd, good});
        QCOMPARE(result.status, 2);
        const Json json = result.json();
        QCOMPARE(json.size(), std::size_t(3));
        QCOMPARE(json.at(0).dump(),
            Json({{"file", bad.toStdString()}, {"readable", false}, {"findings", Json::array()}, {"roundTrip", false}})
                .dump());
        QCOMPARE(text(json.at(1).at("file")), odd);
        QVERIFY(json.at(1).at("readable") == true);
        QCOMPARE(text(json.at(2).at("file")), good);
        QVERIFY(json.at(2).at("findings").empty());
    }

    void checkComparesFirmwareVersions()
    {
        const QString older = ProgramFiles::sample(QStringLiteral("edge/version_v120"));
        const QString newer = ProgramFiles::sample(QStringLiteral("edge/version_v121"));
        QCOMPARE(m_velgor.run({QStringLiteral("check"), newer}).status, 0);
        QCOMPARE(m_velgor.run({QStringLiteral("check"), older, older}).status, 0);
        const auto result = m_velgor.run({QStringLiteral("check"), QStringLiteral("--json"), older, newer, older});
        QCOMPARE(result.status, 1);
        const Json json = result.json();
        QCOMPARE(codesOf(json.at(0)), QStringList());
        QCOMPARE(codesOf(json.at(1)), words("version"));
        QCOMPARE(codesOf(json.at(2)), QStringList());
    }

    void copyWritesTheListAnew_data() { addReadable(); }
    void copyWritesTheListAnew()
    {
        QFETCH(const QString, sample);
        ProgramFiles::write(output(), "replaced");
        const auto result =
            m_velgor.run({QStringLiteral("copy"), ProgramFiles::sample(sample), QStringLiteral("-o"), output()});
        QCOMPARE(result.status, 0);
        QCOMPARE(result.output, QByteArray());
        QCOMPARE(ProgramFiles::sha256(ProgramFiles::read(output())), text(factsOf(sample).at("reencoded_sha256")));
    }

    void copyOntoItselfIsAllowed()
    {
        const QString source = ProgramFiles::sample(QStringLiteral("edge/trailing_bytes"));
        ProgramFiles::write(output(), ProgramFiles::read(source));
        QCOMPARE(m_velgor.run({QStringLiteral("copy"), output(), QStringLiteral("-o"), output()}).status, 0);
        QCOMPARE(m_velgor.run({QStringLiteral("check"), output()}).status, 0);
    }

    void copyThatCannotBeWrittenFails_data()
    {
        QTest::addColumn<QString>("target");
        QTest::newRow("no such directory") << m_velgor.filePath(QStringLiteral("none/out.prst"));
        QTest::newRow("a directory") << m_velgor.home();
        QTest::newRow("an empty name") << QString();
    }
    void copyThatCannotBeWrittenFails()
    {
        QFETCH(const QString, target);
        const QString source = ProgramFiles::sample(QStringLiteral("edge/one_patch"));
        const QStringList before = QDir(m_velgor.home()).entryList(QDir::AllEntries | QDir::Hidden);
        const auto result = m_velgor.run({QStringLiteral("copy"), source, QStringLiteral("-o"), target});
        QCOMPARE(result.status, 2);
        QVERIFY(result.errorLines().last().startsWith(u"velgor: "));
        QCOMPARE(QDir(m_velgor.home()).entryList(QDir::AllEntries | QDir::Hidden), before);
    }
};

VELGOR_TEST(TestFileCommands)
#include "tst_FileCommands.moc"
