#include "StoreFixture.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QTest>

using namespace TestLibraries;

namespace {

const QByteArrayList keys{"id", "name", "hasUserIR", "comment", "version", "date", "guitar", "bass", "clean", "crunch",
    "drive", "higain", "rythm", "solo", "empty"};

/// One library with its patch files; each text takes the place of its library file in turn.
class StoredLibrary {
public:
    [[nodiscard]] QByteArray text() const { return m_text; }

    /// The text with the value of a key of the first patch, or of the library, exchanged.
    [[nodiscard]] QByteArray with(const QByteArray &key, const QByteArray &value) const
    {
        const auto [from, to] = valueOf(key);
        return m_text.first(from) + value + m_text.sliced(to);
    }

    [[nodiscard]] QByteArray without(const QByteArray &key) const
    {
        const auto [from, to] = valueOf(key);
        const qsizetype start = m_text.indexOf('"' + key + "\":");
        const bool isLast = m_text.at(to) == '}';
        return m_text.first(isLast ? start - 1 : start) + m_text.sliced(isLast ? to : to + 1);
    }

    [[nodiscard]] QByteArray doubled(const QByteArray &key) const
    {
        const auto [from, to] = valueOf(key);
        const qsizetype start = m_text.indexOf('"' + key + "\":");
        return m_text.first(start) + m_text.sliced(start, to - start) + ',' + m_text.sliced(start);
    }

    /// Loads `text` as a program does that then saves one new patch where `isSaved`, and says what went wrong. `names`
    /// are the patches that are loaded; nothing stands for a refusal.
    QString faultOf(const QByteArray &text, const std::optional<QStringList> &names, bool isSaved)
    {
        m_store.write(libraryFile, text);
        const auto before = m_store.stamps();
        LibraryStorageManager storage(m_store.path());
        const auto library = storage.decodeLibrary();
        QString fault;
        if (m_store.stamps() != before) {
            fault = QStringLiteral("loading changed the directory");
        } else if (storage.readError() == names.has_value()) {
            fault = names ? QStringLiteral("refused") : QStringLiteral("not refused");
        } else if (library && TestPatches::names(library->patches) != names.value_or(QStringList())) {
            fault = QStringLiteral("loaded: ") + TestPatches::names(library->patches).join(u'|');
        } else if (!library && names && !names->isEmpty()) {
            fault = QStringLiteral("nothing loaded");
        }
        // A whole list that is empty holds nothing that a save could lose.
        const bool isLossy = !names || (!names->isEmpty() && names->size() < 3);
        if (fault.isEmpty() && isLossy && isSaved) {
            fault = faultOfSave(storage, text, before);
        }
        return fault;
    }

private:
    QString faultOfSave(LibraryStorageManager &storage, const QByteArray &text, const QMap<QString, QString> &before)
    {
        VelgorLibrary fresh({patch(QStringLiteral("New"), 99, 9)}, std::nullopt);
        storage.save(fresh);
        QString fault = storage.writeError() ? storage.writeProblems().join(u'|') : QString();
        const auto contents = m_store.contents();
        bool isKept = false;
        for (auto file = contents.cbegin(); file != contents.cend(); ++file) {
            isKept = isKept || (LibraryFileNames::isDatedCopy(file.key()) && file.value() == text);
        }
        if (!isKept) {
            fault += QStringLiteral(" the refused file was not kept aside");
        }
        for (const QString &name : m_store.files()) {
            if (name.startsWith(u"lib-") && before.contains(name)
                && m_store.stamps().value(name) != before.value(name)) {
                fault += QStringLiteral(" touched ") + name;
            }
            if (!before.contains(name)) {
                QFile::remove(m_store.filePath(name));
            }
        }
        return fault;
    }

    [[nodiscard]] std::pair<qsizetype, qsizetype> valueOf(const QByteArray &key) const
    {
        const qsizetype from = m_text.indexOf('"' + key + "\":") + key.size() + 3;
        qsizetype to = from;
        for (bool isText = false; isText || (m_text.at(to) != ',' && m_text.at(to) != '}'); ++to) {
            isText = isText != (m_text.at(to) == '"');
        }
        return {from, to};
    }

    const StoreFixture m_store{three()};
    const QByteArray m_text = m_store.read(libraryFile);
};

} // namespace

/// Library files that are cut, changed or made to harm. Whatever is not loaded whole is kept before it is overwritten.
class TestHostileLibraryFile : public QObject {
    Q_OBJECT

    std::unique_ptr<StoredLibrary> m_library;
    const QStringList m_all{QStringLiteral("Lead"), QStringLiteral("A/B"), QStringLiteral("Clean")};

    void loads(const QByteArray &text, const std::optional<QStringList> &names, bool isSaved = true)
    {
        const QString fault = m_library->faultOf(text, names, isSaved);
        QVERIFY2(fault.isEmpty(), qPrintable(fault + QStringLiteral(": ") + QString::fromUtf8(text.left(2000))));
    }

private Q_SLOTS:
    void init() { m_library = std::make_unique<StoredLibrary>(); }
    /// Before the next one begins, as each puts back what took the lines before it.
    void cleanup() { m_library.reset(); }

    void textCutAtAnyByteIsRefusedAndKept()
    {
        for (qsizetype size = 0; size < m_library->text().size(); ++size) {
            // Saving waits for the disk.
            loads(m_library->text().first(size), std::nullopt, size % 32 == 0);
            if (QTest::currentTestFailed()) {
                return;
            }
        }
        loads(m_library->text(), m_all);
    }

    void everyKeyOfAPatchIsNeeded()
    {
        for (const QByteArray &key : keys) {
            loads(m_library->without(key), std::nullopt);
        }
        loads(m_library->without("patches"), std::nullopt);
        loads(m_library->without("defaultPatch"), m_all);
    }

    void doubledKeysChangeNothing()
    {
        for (const QByteArray &key : keys) {
            loads(m_library->doubled(key), m_all);
        }
        loads(m_library->doubled("defaultPatch"), m_all);
    }

    void otherTypesAreRefused_data()
    {
        QTest::addColumn<QByteArray>("key");
        for (const QByteArray &key : keys + QByteArrayList{"patches"}) {
            QTest::newRow(key.constData()) << key;
        }
    }
    void otherTypesAreRefused()
    {
        QFETCH(const QByteArray, key);
        const bool isText = key == "name" || key == "comment" || key == "version";
        const bool isNumber = key == "id" || key == "date";
        const QList<std::pair<QByteArray, bool>> values{{"null", false}, {"true", !isText && !isNumber},
            {"false", !isText && !isNumber}, {"5", isNumber}, {"\"5\"", isText}, {"{}", false}, {"[5]", false},
            {"[]", false}};
        for (const auto &[value, isItsType] : values) {
            if (!isItsType && (key != "patches" || value != "[]")) {
                const QByteArray text = key == "patches" ? R"({"patches":)" + value + '}' : m_library->with(key, value);
                loads(text, std::nullopt);
            }
        }
    }

    void numbersThatAKeyDoesNotTakeAreRefused_data()
    {
        QTest::addColumn<QByteArray>("key");
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<bool>("isTaken");
        const auto add = [](const char *key, const QByteArrayList &values, bool isTaken) {
            for (const QByteArray &value : values) {
                QTest::addRow("%s %s", key, value.left(30).constData()) << QByteArray(key) << value << isTaken;
            }
        };
        const QByteArray long1000 = QByteArray(1000, '9');
        add("id", {"-1", "-0", "1.5", "42.0", "1e3", "18446744073709551616", "1e999", "-1e999", long1000}, false);
        add("date", {"1e999", "-1e999", long1000, "01", "+1", ".5", "1.", "NaN", "Infinity", "0x10"}, false);
        add("date", {"-1", "-0", "1.5", "1e-999", "18446744073709551616", "1e308", "-1e308"}, true);
        add("defaultPatch", {"1e999", long1000, "01"}, false);
        add("defaultPatch", {"-1", "-0", "1.5", "18446744073709551616", "7", "null", "\"42\"", "{}", "[[]]"}, true);
    }
    void numbersThatAKeyDoesNotTakeAreRefused()
    {
        QFETCH(const QByteArray, key);
        QFETCH(const QByteArray, value);
        QFETCH(const bool, isTaken);
        loads(m_library->with(key, value), isTaken ? std::optional(m_all) : std::nullopt);
    }

    void textsThatAreNoLibraryAreRefused_data()
    {
        QTest::addColumn<QByteArray>("text");
        const QByteArray good = m_library ? m_library->text() : StoredLibrary().text();
        const auto named = [](const QByteArray &name) { return StoredLibrary().with("name", '"' + name + '"'); };
        constexpr int deep = 100'000;
        QTest::newRow("patches nested") << R"({"patches":)" + QByteArray(deep, '[') + QByteArray(deep, ']') + '}';
        QTest::newRow("nested and open") << QByteArray(deep, '[');
        QTest::newRow("objects nested and open") << QByteArray(R"({"a":)").repeated(deep);
        QTest::newRow("byte that is no UTF-8") << named("a\xff");
        QTest::newRow("overlong zero") << named("a\xC0\x80");
        QTest::newRow("surrogate in UTF-8") << named("\xED\xA0\x80");
        QTest::newRow("lone escaped surrogate") << named("\\ud800");
        QTest::newRow("escaped surrogates in the wrong order") << named("\\udc00\\ud800");
        QTest::newRow("zero byte in a text") << named(QByteArray("a\0b", 3));
        QTest::newRow("zero byte behind") << good + '\0';
        QTest::newRow("cut and filled with zeros") << good.first(200) + QByteArray(good.size() - 200, '\0');
        QTest::newRow("zeros") << QByteArray(4096, '\0');
        QTest::newRow("text behind") << good + good;
        QTest::newRow("UTF-16") << QByteArray("\xFF\xFE{\0}\0", 6);
        QTest::newRow("comment") << "/* */" + good;
        QTest::newRow("comma at the end") << good.chopped(1) + ",}";
        QTest::newRow("two byte-order marks") << "\xEF\xBB\xBF\xEF\xBB\xBF" + good;
    }
    void textsThatAreNoLibraryAreRefused()
    {
        QFETCH(const QByteArray, text);
        loads(text, std::nullopt);
    }

    void unusualTextsAreLoaded_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QStringList>("names");
        const QByteArray good = StoredLibrary().text();
        const QByteArray deep = QByteArray(100'000, '[') + QByteArray(100'000, ']');
        QTest::newRow("byte-order mark") << "\xEF\xBB\xBF" + good << m_all;
        QTest::newRow("blank space") << "\n\t " + good + "\r\n" << m_all;
        QTest::newRow("unknown key nested 100,000 deep") << R"({"x":)" + deep + ',' + good.sliced(1) << m_all;
        QTest::newRow("unknown key of a patch nested 100,000 deep")
            << StoredLibrary().with("solo", "false,\"x\":" + deep) << m_all;
        QTest::newRow("empty list") << QByteArray(R"({"patches":[]})") << QStringList();
        QTest::newRow("escaped zero in a name") << StoredLibrary().with("name", "\"Le\\u0000ad\"")
                                                << QStringList{QStringLiteral("Le") + QChar(0) + QStringLiteral("ad"),
                                                       QStringLiteral("A/B"), QStringLiteral("Clean")};
        // The second of two equal ids takes the file of its own name, which is none here.
        QTest::newRow("equal ids") << StoredLibrary().with("id", "44")
                                   << QStringList{QStringLiteral("A/B"), QStringLiteral("Clean")};
    }
    void unusualTextsAreLoaded()
    {
        QFETCH(const QByteArray, text);
        QFETCH(const QStringList, names);
        loads(text, names);
    }
};

VELGOR_TEST(TestHostileLibraryFile)
#include "tst_HostileLibraryFile.moc"
