#include "CommandFixture.h"
#include "TestProgram.h"
#include "TestRecords.h"

#include <QCoreApplication>
#include <QTest>

namespace {

using Json = VelgorProcess::Json;

QString text(const Json &value)
{
    return value.is_string() ? QString::fromStdString(value.get<std::string>()) : QString();
}

QStringList texts(const Json &values, const char *key = nullptr)
{
    QStringList result;
    for (const Json &value : values) {
        result.append(text(key == nullptr ? value : value.at(key)));
    }
    return result;
}

} // namespace

/// The commands that read and change a library. Each starts from the three patches of a sample library.
class TestLibraryCommands : public QObject, private CommandFixture {
    Q_OBJECT

private:
    [[nodiscard]] QStringList namesInFile(const QString &path) const
    {
        return namesIn(m_velgor.run({QStringLiteral("list"), path, QStringLiteral("--json")}).json());
    }
    [[nodiscard]] QString output() const { return m_velgor.filePath(QStringLiteral("out.prst")); }
    [[nodiscard]] QString inputFile(const QString &name, const QByteArray &bytes) const
    {
        ProgramFiles::write(m_velgor.filePath(name), bytes);
        return m_velgor.filePath(name);
    }

private Q_SLOTS:
    void init()
    {
        startWithSample();
        QFile::remove(output());
    }

    /// Whatever was done, nothing but the library is left, with one file for each patch.
    void cleanup()
    {
        qsizetype patches = 0;
        for (const QString &name : m_directory->files()) {
            const bool isPatch = name.startsWith(u"lib-") && name.endsWith(u".prst");
            patches += isPatch ? 1 : 0;
            QVERIFY2(isPatch || name == QStringLiteral("velgorlibrary.json"), qPrintable(name));
        }
        QVERIFY(listed().at("total") == patches);
    }

    void listGivesTheKeysOfTheLibraryFile()
    {
        const QByteArray bytes = m_directory->read(QStringLiteral("velgorlibrary.json"));
        Json stored = Json::parse(bytes.begin(), bytes.end());
        for (Json &entry : stored.at("patches")) {
            entry.at("id") = std::to_string(entry.at("id").get<quint64>());
        }
        const auto result = library(QStringLiteral("list|--json"));
        QCOMPARE(result.status, 0);
        const Json expected{{"directory", m_directory->path().toStdString()}, {"defaultPatch", slashed.toStdString()},
            {"total", 3}, {"patches", stored.at("patches")}};
        QCOMPARE(result.json().dump(), expected.dump());
        QCOMPARE(QString::fromUtf8(result.output), QString::fromStdString(expected.dump(2) + '\n'));
        QCOMPARE(m_directory->read(QStringLiteral("velgorlibrary.json")), bytes);
    }

    void tableShowsEveryPatch()
    {
        const QStringList lines = QString::fromUtf8(library(QStringLiteral("list")).output).split(u'\n');
        QCOMPARE(lines.size(), 6);
        QVERIFY(lines.at(1).startsWith(lead + u' ') && lines.at(1).endsWith(u"guitar drive  fat amp"));
        QVERIFY(lines.at(2).contains(u"default") && lines.at(2).contains(u"user IR"));
        QVERIFY(lines.at(3).contains(QString::fromUtf8("Größe")));
        QCOMPARE(lines.at(4), QStringLiteral("3 of 3 patches"));
    }

    void listFiltersAndSorts_data()
    {
        QTest::addColumn<QString>("options");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("names");
        const QString all = QString::fromUtf8("Lead|A/B|Größe");
        QTest::newRow("part of a name") << "--name|EA" << 0 << "Lead";
        QTest::newRow("case beyond ASCII") << QString::fromUtf8("--name|GRÖ") << 0 << QString::fromUtf8("Größe");
        QTest::newRow("words of a comment in any order") << "--comment|AMP fat" << 0 << "Lead";
        QTest::newRow("one word that is not there") << "--comment|fat lamp" << 1 << "";
        QTest::newRow("flag") << "--bass" << 0 << "A/B";
        QTest::newRow("two flags") << "--guitar|--drive" << 0 << "Lead";
        QTest::newRow("flags no patch has together") << "--guitar|--bass" << 1 << "";
        QTest::newRow("user impulse response") << "--user-ir" << 0 << "A/B";
        QTest::newRow("empty texts filter nothing") << "--name||--comment|" << 0 << all;
        QTest::newRow("upwards") << "--sort|name" << 0 << QString::fromUtf8("A/B|Größe|Lead");
        QTest::newRow("downwards") << "--sort|-name" << 0 << QString::fromUtf8("Lead|Größe|A/B");
        QTest::newRow("sorted and filtered")
            << QString::fromUtf8("--sort|-name|--name|e") << 0 << QString::fromUtf8("Lead|Größe");
    }
    void listFiltersAndSorts()
    {
        QFETCH(const QString, options);
        QFETCH(const QString, names);
        const auto result = library(QStringLiteral("list|--json|") + options);
        QTEST(result.status, "status");
        const Json json = result.json();
        QCOMPARE(namesIn(json), names.isEmpty() ? QStringList() : words(names));
        QVERIFY(json.at("total") == 3);
        QCOMPARE(QString::fromUtf8(result.output), QString::fromStdString(json.dump(2) + '\n'));
    }

    void wrongCommandChangesNothing_data()
    {
        QTest::addColumn<QString>("arguments");
        QTest::newRow("unknown order") << "list|--sort|date";
        QTest::newRow("set, unknown id") << "set|12345|--name|x";
        QTest::newRow("set, no id") << "set|Lead|--name|x";
        QTest::newRow("set, id with a sign") << "set|+LEAD|--name|x";
        QTest::newRow("set, id beyond 64 bits") << "set|18446744073709551616|--name|x";
        QTest::newRow("set, nothing to set") << "set|LEAD";
        QTest::newRow("set, flag neither on nor off") << "set|LEAD|--name|x|--guitar|maybe";
        QTest::newRow("duplicate, unknown id") << "duplicate|12345";
        QTest::newRow("remove, unknown id first") << "remove|12345|LEAD";
        QTest::newRow("remove, unknown id last") << "remove|LEAD|SLASHED|12345";
        QTest::newRow("similar, unknown id") << "similar|12345|--json";
        QTest::newRow("export, unknown id last") << "export|LEAD|12345|-o|out.prst";
        QTest::newRow("export, nowhere to go") << "export|LEAD";
        QTest::newRow("export, no such directory") << "export|LEAD|-o|none/out.prst";
        QTest::newRow("add, malformed") << "add|MALFORMED";
        QTest::newRow("add, missing") << "add|none.prst";
        QTest::newRow("compose, unknown id") << "compose|--slot|1.1=12345|-o|out.prst";
        QTest::newRow("compose, nowhere to go") << "compose|--slot|1.1=LEAD";
        QTest::newRow("compose, same slot twice") << "compose|--slot|1.1=LEAD|--slot|1.1=SLASHED|-o|out.prst";
        QTest::newRow("compose, bank 0") << "compose|--slot|0.1=LEAD|-o|out.prst";
        QTest::newRow("compose, number 4") << "compose|--slot|1.4=LEAD|-o|out.prst";
        QTest::newRow("compose, beyond the list") << "compose|--slot|34.1=LEAD|-o|out.prst";
        QTest::newRow("compose, huge bank") << "compose|--slot|99999999999999999999.1=LEAD|-o|out.prst";
        QTest::newRow("compose, no id") << "compose|--slot|1.1|-o|out.prst";
        QTest::newRow("compose, missing list") << "compose|--from|none.prst|-o|out.prst";
        QTest::newRow("compose, malformed list") << "compose|--from|MALFORMED|-o|out.prst";
    }
    void wrongCommandChangesNothing()
    {
        QFETCH(QString, arguments);
        arguments.replace(QStringLiteral("LEAD"), lead).replace(QStringLiteral("SLASHED"), slashed);
        arguments.replace(QStringLiteral("MALFORMED"), ProgramFiles::sample(QStringLiteral("malformed/count_0")));
        ProgramFiles::write(output(), "as it was");
        const auto before = m_directory->stamps();
        const auto result = library(arguments);
        QCOMPARE(result.status, 2);
        QVERIFY2(result.errors.contains("velgor: "), result.errors.constData());
        QCOMPARE(m_directory->stamps(), before);
        QCOMPARE(ProgramFiles::read(output()), QByteArray("as it was"));
    }

    void addKeepsWhatIsReadable()
    {
        const QString fresh = inputFile(QStringLiteral("fresh.prst"),
            TestRecords::fileBytes(
                {TestRecords::patch(QStringLiteral("New"), 5), TestRecords::patch(QStringLiteral("New"), 5)}));
        const QString bad = ProgramFiles::sample(QStringLiteral("malformed/count_0"));
        const QString known = m_directory->filePath(QStringLiteral("lib-Lead.%1.prst").arg(lead));
        const auto result = library(QStringList({QStringLiteral("add|--json"), bad, fresh, known}).join(u'|'));
        QCOMPARE(result.status, 2);
        const Json json = result.json();
        QCOMPARE(texts(json, "file"), QStringList({bad, fresh, known}));
        QVERIFY(json.at(0).at("added").empty() && json.at(0).at("known").empty());
        QVERIFY(text(json.at(0).at("error")).contains(bad));
        QCOMPARE(json.at(1).at("added").size(), std::size_t(1));
        QVERIFY(json.at(1).at("known") == json.at(1).at("added"));
        QVERIFY(json.at(1).at("error").is_null());
        QCOMPARE(texts(json.at(2).at("known")), QStringList(lead));
        QCOMPARE(namesIn(listed()), words(QString::fromUtf8("Lead|A/B|Größe|New")));
        QCOMPARE(texts(listed().at("patches"), "id").last(), text(json.at(1).at("added").at(0)));
    }

    void addOfWhatIsThereWritesNothing()
    {
        const auto before = m_directory->stamps();
        const auto result =
            library(QStringLiteral("add|") + m_directory->filePath(QStringLiteral("lib-Lead.%1.prst").arg(lead)));
        QCOMPARE(result.status, 0);
        QVERIFY(result.output.contains("already there") && result.output.contains("0 added, 1 already there"));
        QCOMPARE(m_directory->stamps(), before);
    }

    void setChangesWhatIsAsked()
    {
        const Json before = patch(lead);
        QCOMPARE(
            library(
                QStringLiteral("set|%1|--name|Größe/x|--comment|\"a\"\n|--guitar|off|--solo|on|--default").arg(lead))
                .status,
            0);
        Json expected = before;
        expected.at("name") = "Größe/x";
        expected.at("comment") = "\"a\"\n";
        expected.at("guitar") = false;
        expected.at("solo") = true;
        QCOMPARE(patch(lead).dump(), expected.dump());
        QCOMPARE(text(listed().at("defaultPatch")), lead);
        QVERIFY(m_directory->has(QStringLiteral("lib-Größe$x.%1.prst").arg(lead)));
        QVERIFY(!m_directory->has(QStringLiteral("lib-Lead.%1.prst").arg(lead)));
    }

    void duplicateAddsACopyWithTheSameSound()
    {
        const auto result = library(QStringLiteral("duplicate|") + slashed);
        QCOMPARE(result.status, 0);
        const Json last = listed().at("patches").back();
        QCOMPARE(QString::fromUtf8(result.output),
            text(last.at("id")) + QStringLiteral("  ") + text(last.at("name")) + u'\n');
        QVERIFY(text(last.at("name")) != QStringLiteral("A/B"));
        QStringList similar = texts(library(QStringLiteral("similar|--json|") + slashed).json());
        QCOMPARE(similar, QStringList({slashed, text(last.at("id"))}));
    }

    void duplicateThatCannotBeSavedTellsOfNoCopy()
    {
        // In the place of the journal nothing can be written.
        m_directory->write(QStringLiteral(".velgorlibrary.journal/x"), "x");
        const auto result = library(QStringLiteral("duplicate|") + slashed);
        QCOMPARE(result.status, 2);
        QCOMPARE(result.output, QByteArray());
        QVERIFY(QDir(m_directory->filePath(QStringLiteral(".velgorlibrary.journal"))).removeRecursively());
    }

    void removeTakesPatchesAndTheirFiles()
    {
        QCOMPARE(library(QStringLiteral("remove|%1|%2").arg(slashed, lead)).status, 0);
        QCOMPARE(texts(listed().at("patches"), "id"), QStringList(accented));
        QVERIFY(listed().at("defaultPatch").is_null());
        QCOMPARE(m_directory->files().size(), 2);
        QCOMPARE(library(QStringLiteral("remove|%1|%1").arg(accented)).status, 0);
        QVERIFY(listed().at("total") == 0);
        QCOMPARE(library(QStringLiteral("list")).status, 0);
        QCOMPARE(library(QStringLiteral("list|--guitar")).status, 1);
    }

    void exportKeepsTheOrderAsked()
    {
        QCOMPARE(library(QStringLiteral("export|%1|%2|%1|-o|%3").arg(accented, lead, output())).status, 0);
        QCOMPARE(namesInFile(output()), words(QString::fromUtf8("Größe|Lead|Größe")));
        QCOMPARE(m_velgor.run({QStringLiteral("check"), output()}).status, 0);
    }

    void newNameIsExported_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("exported");
        QTest::newRow("short") << "Solo"
                               << "Solo";
        QTest::newRow("16 bytes") << "0123456789abcdef"
                                  << "0123456789abcdef";
        QTest::newRow("too long") << "0123456789abcdefg"
                                  << "0123456789abcdef";
        QTest::newRow("cut before a character") << QString::fromUtf8("0123456789abcdeß") << "0123456789abcde";
        QTest::newRow("whole characters") << QString::fromUtf8("東京の夜景色") << QString::fromUtf8("東京の夜景");
        QTest::newRow("beyond one UTF-16 unit") << QString::fromUtf8("0123456789abc🎸") << "0123456789abc";
    }
    void newNameIsExported()
    {
        QFETCH(const QString, name);
        QFETCH(const QString, exported);
        const QString export1 = QStringLiteral("export|%1|-o|%2").arg(lead, output());
        const QString compose = QStringLiteral("compose|--slot|2.2=%1|-o|%2").arg(lead, output());
        // Composed under the old name first, so that nothing remembered can stand for the new one.
        QCOMPARE(library(compose).status, 0);
        QCOMPARE(namesInFile(output()).at(4), QStringLiteral("Lead"));
        QCOMPARE(library(QStringLiteral("set|%1|--name|%2").arg(lead, name)).status, 0);
        QCOMPARE(text(patch(lead).at("name")), name);
        QCOMPARE(library(export1).status, 0);
        QCOMPARE(namesInFile(output()), QStringList(exported));
        QCOMPARE(library(compose).status, 0);
        QCOMPARE(namesInFile(output()).at(4), exported);
    }

    void unlistableDirectoryIsUsedWithAWarning()
    {
        const LibraryDirectory spaced(QStringLiteral("my patches"));
        const QString file = inputFile(QStringLiteral("one.prst"), fileOf(QStringLiteral("One"), 1));
        const auto added = m_velgor.library(spaced.path(), {QStringLiteral("add"), file});
        QCOMPARE(added.status, 0);
        QVERIFY2(added.errors.contains("velgor: warning: " + spaced.path().toUtf8()), added.errors.constData());
        QCOMPARE(spaced.files().size(), 2);
        const auto result = m_velgor.library(spaced.path(), {QStringLiteral("list"), QStringLiteral("--json")});
        QCOMPARE(result.status, 0);
        QCOMPARE(namesIn(result.json()), QStringList(QStringLiteral("One")));
    }

    void preferencesNameTheDirectory()
    {
        m_velgor.preferLibrary(m_directory->path());
        const QByteArray before = ProgramFiles::read(m_velgor.preferencesFile());
        for (const QString &arguments : {QStringLiteral("library|set|%1|--name|Pref").arg(lead),
                 QStringLiteral("library|duplicate|") + lead, QStringLiteral("library|list")}) {
            QCOMPARE(m_velgor.run(words(arguments)).status, 0);
        }
        QCOMPARE(text(patch(lead).at("name")), QStringLiteral("Pref"));
        QVERIFY(listed().at("total") == 4);
        QCOMPARE(ProgramFiles::read(m_velgor.preferencesFile()), before);
        QCOMPARE(QDir(m_velgor.filePath(QStringLiteral("config/velgor"))).entryList(QDir::Files | QDir::Hidden),
            QStringList(QStringLiteral("velgor-library-manager.conf")));
    }
};

VELGOR_TEST(TestLibraryCommands)
#include "tst_LibraryCommands.moc"
