#include "LibraryJson.h"
#include "LibraryJsonReader.h"
#include "LibraryJsonTexts.h"
#include "TestPatches.h"
#include "TestProgram.h"

#include <QTest>

#include <bit>
#include <limits>

using namespace LibraryJsonTexts;

namespace {

#ifdef VELGOR_SANITIZED
constexpr int batches = 100; // a million values take minutes there
#else
constexpr int batches = 1000;
#endif

constexpr quint64 largestId = std::numeric_limits<quint64>::max();

bool areIdentical(const LibraryState &a, const LibraryState &b)
{
    return a.defaultPatch == b.defaultPatch
        && std::equal(a.patches.begin(), a.patches.end(), b.patches.begin(), b.patches.end(), TestPatches::isIdentical);
}

VelgorPatch randomPatch(QRandomGenerator &random)
{
    VelgorPatch patch(random.generate64() >> random.bounded(64U));
    patch.name = TestPatches::randomText(random, 20);
    patch.comment = TestPatches::randomText(random, 100);
    patch.version = TestPatches::randomText(random, 5);
    patch.date.seconds = random.generateDouble() * 1e9;
    for (bool *flag : {&patch.hasUserIR, &patch.guitar, &patch.bass, &patch.clean, &patch.crunch, &patch.drive,
             &patch.higain, &patch.rythm, &patch.solo, &patch.empty}) {
        *flag = random.bounded(2) == 0;
    }
    return patch;
}

} // namespace

class TestLibraryJson : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void keysAndTheirOrderAreFixed()
    {
        VelgorPatch patch(largestId);
        patch.name = QStringLiteral("Lead");
        patch.comment = QStringLiteral("fat");
        patch.version = QStringLiteral("V1.20");
        patch.date = {700000000.125};
        patch.hasUserIR = patch.guitar = patch.clean = patch.drive = patch.rythm = patch.empty = true;
        QCOMPARE(LibraryJson::encodePatch(patch), objectOf(patchMembers()));
        QCOMPARE(LibraryJson::encode({{patch}, 7}), libraryOf(objectOf(patchMembers()), "7"));
        const auto decoded = LibraryJson::decode(libraryOf(objectOf(patchMembers()), "7"));
        QVERIFY(decoded && areIdentical(*decoded, {{patch}, 7}));
    }

    void emptyLibraryIsAnEmptyList()
    {
        QCOMPARE(LibraryJson::encode({}), QByteArray(R"({"patches":[],"defaultPatch":null})"));
        const auto decoded = LibraryJson::decode(LibraryJson::encode({}));
        QVERIFY(decoded && decoded->patches.isEmpty() && !decoded->defaultPatch);
    }

    void decodedPatchesHaveNoPresetData()
    {
        const auto decoded =
            LibraryJson::decode(LibraryJson::encode({{TestPatches::imported(QStringLiteral("Lead"))}, {}}));
        QVERIFY(decoded);
        const VelgorPatch &patch = decoded->patches.first();
        QVERIFY(!patch.records);
    }

    void anyLibraryComesBack()
    {
        QRandomGenerator random(3);
        for (int round = 0; round < 300; ++round) {
            LibraryState library;
            for (int count = random.bounded(12); count > 0; --count) {
                library.patches.append(randomPatch(random));
            }
            if (random.bounded(2) == 0) {
                library.defaultPatch = random.generate64();
            }
            const QByteArray text = LibraryJson::encode(library);
            const auto decoded = LibraryJson::decode(text);
            QVERIFY2(decoded && areIdentical(*decoded, library), text.constData());
            QCOMPARE(LibraryJson::encode(*decoded), text);
        }
    }

    void everyIdIsExact_data()
    {
        QTest::addColumn<quint64>("id");
        for (const quint64 id : {quint64(0), quint64(1), (quint64(1) << 53) + 1, quint64(largestId) >> 1,
                 (quint64(largestId) >> 1) + 1, largestId}) {
            QTest::addRow("%llu", static_cast<unsigned long long>(id)) << id;
        }
    }

    void everyIdIsExact()
    {
        QFETCH(const quint64, id);
        const auto decoded = LibraryJson::decode(LibraryJson::encode({{VelgorPatch(id)}, id}));
        QVERIFY(decoded);
        QCOMPARE(decoded->patches.first().id(), id);
        QCOMPARE(decoded->defaultPatch, std::optional(id));
    }

    void everyCharacterComesBack()
    {
        for (char32_t first = 0; first <= 0x10FFFF; first += 0x1000) {
            QString text;
            for (char32_t character = first; character < first + 0x1000; ++character) {
                if (character < 0xD800 || character > 0xDFFF) {
                    text += QString::fromUcs4(&character, 1);
                }
            }
            VelgorPatch patch(quint64(1));
            patch.name = patch.comment = patch.version = text;
            const auto decoded = LibraryJson::decode(LibraryJson::encode({{patch}, {}}));
            QVERIFY(decoded);
            QCOMPARE(decoded->patches.first(), patch);
        }
    }

    void escapesAreRead()
    {
        const auto decoded = LibraryJson::decode(
            libraryWith("name", "\"\\\"\\\\\\/\\b\\f\\n\\r\\t\\u0000\\u00e9\\uFEFF\\ud83c\\udfb8\""));
        QVERIFY(decoded);
        QCOMPARE(decoded->patches.first().name, QString::fromUtf8("\"\\/\b\f\n\r\t\0\u00e9\uFEFF\U0001F3B8", 18));
    }

    void anyIdAndDateComeBackToTheLastBit()
    {
        QRandomGenerator random(4);
        using Limits = std::numeric_limits<double>;
        QList<double> extremes{0.0, -0.0, Limits::max(), Limits::lowest(), Limits::min(), Limits::denorm_min(),
            Limits::epsilon(), 1e15, 1e16, 1e17, 9007199254740993.0, 0.1, 1e-5};
        constexpr int batchSize = 1000;
        for (int batch = 0; batch < batches; ++batch) {
            LibraryState library;
            library.patches.reserve(batchSize);
            while (library.patches.size() < batchSize) {
                // Half of them any bit pattern, half of them times of this century.
                double seconds = library.patches.size() % 2 == 0
                    ? std::bit_cast<double>(random.generate64())
                    : static_cast<double>(random.bounded(3000000000000LL)) / 1000.0;
                if (!extremes.isEmpty()) {
                    seconds = extremes.takeLast();
                }
                if (std::isfinite(seconds)) {
                    VelgorPatch patch(random.generate64() >> random.bounded(64U));
                    patch.date = {seconds};
                    library.patches.append(patch);
                }
            }
            const auto decoded = LibraryJson::decode(LibraryJson::encode(library));
            QVERIFY(decoded);
            const auto isExact = [](const VelgorPatch &a, const VelgorPatch &b) {
                return a.id() == b.id()
                    && std::bit_cast<quint64>(a.date.seconds) == std::bit_cast<quint64>(b.date.seconds);
            };
            QVERIFY(std::equal(decoded->patches.begin(), decoded->patches.end(), library.patches.begin(),
                library.patches.end(), isExact));
        }
    }

    void textIsThatOfAJsonTree()
    {
        QRandomGenerator random(5);
        for (int round = 0; round < 3000; ++round) {
            VelgorPatch patch = randomPatch(random);
            patch.date = {round % 2 == 0 ? std::bit_cast<double>(random.generate64()) : patch.date.seconds};
            nlohmann::ordered_json tree;
            for (const PatchField &field : PatchFields::all()) {
                if (field.text) {
                    tree[field.key] = (patch.*(field.text)).toStdString();
                } else if (field.flag) {
                    tree[field.key] = patch.*(field.flag);
                } else if (qstrcmp(field.key, "id") == 0) {
                    tree[field.key] = patch.id();
                } else {
                    tree[field.key] = patch.date.seconds;
                }
            }
            QCOMPARE(LibraryJson::encodePatch(patch), QByteArray::fromStdString(tree.dump()));
        }
    }

    void listingIsThatOfAJsonTreeWithIdsAsText()
    {
        QRandomGenerator random(6);
        QList<VelgorPatch> patches;
        nlohmann::ordered_json tree;
        for (int count = 0; count < 100; ++count) {
            patches.append(randomPatch(random));
            const QByteArray text = LibraryJson::encodePatch(patches.last());
            tree["patches"].push_back(nlohmann::ordered_json::parse(text.begin(), text.end()));
            tree["patches"].back()["id"] = std::to_string(patches.last().id());
            QCOMPARE("{\n  \"patches\": [\n" + LibraryJson::listing(patches) + "\n  ]\n}",
                QByteArray::fromStdString(tree.dump(2)));
        }
        QCOMPARE(LibraryJson::listing({}), QByteArray());
    }

    void dates_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<double>("seconds");
        QTest::newRow("integer") << QByteArray("5") << 5.0;
        QTest::newRow("negative integer") << QByteArray("-5") << -5.0;
        QTest::newRow("fraction") << QByteArray("0.1") << 0.1;
        QTest::newRow("exponent") << QByteArray("1E3") << 1000.0;
        QTest::newRow("beyond 64 bits") << QByteArray("100000000000000000000") << 1e20;
        QTest::newRow("largest 64-bit number") << QByteArray("18446744073709551615") << 18446744073709551615.0;
        QTest::newRow("vanishing") << QByteArray("1e-400") << 0.0;
        QTest::newRow("many digits") << QByteArray("0.1000000000000000055511151231257827") << 0.1;
    }

    void dates()
    {
        QFETCH(const QByteArray, text);
        const auto decoded = LibraryJson::decode(libraryWith("date", text));
        QVERIFY(decoded);
        QTEST(decoded->patches.first().date.seconds, "seconds");
    }

    void aDefaultPatchIsReadLeniently_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<std::optional<quint64>>("defaultPatch");
        const std::optional<quint64> none;
        QTest::newRow("missing") << QByteArray(R"({"patches":[]})") << none;
        for (const char *value :
            {"null", "true", "\"5\"", "-1", "1.5", "18446744073709551616", "[5]", "{\"a\":[5]}", "[]"}) {
            QTest::newRow(value) << libraryOf({}, value) << none;
        }
        QTest::newRow("an id") << libraryOf({}, "5") << std::optional<quint64>(5);
        QTest::newRow("the largest id") << libraryOf({}, "18446744073709551615") << std::optional<quint64>(largestId);
        QTest::newRow("before the patches")
            << QByteArray(R"({"defaultPatch":5,"patches":[]})") << std::optional<quint64>(5);
        QTest::newRow("doubled, the last counts")
            << QByteArray(R"({"defaultPatch":5,"patches":[],"defaultPatch":6})") << std::optional<quint64>(6);
        QTest::newRow("doubled, the last is none")
            << QByteArray(R"({"defaultPatch":5,"patches":[],"defaultPatch":"x"})") << none;
        QTest::newRow("in another object") << QByteArray(R"({"patches":[],"x":{"defaultPatch":5}})") << none;
        QTest::newRow("not in the list") << libraryOf(objectOf(patchMembers()), "5") << std::optional<quint64>(5);
    }

    void aDefaultPatchIsReadLeniently()
    {
        QFETCH(const QByteArray, text);
        const auto decoded = LibraryJson::decode(text);
        QVERIFY(decoded);
        QTEST(decoded->defaultPatch, "defaultPatch");
    }

    void textsThatAreNotUtf8AreRefused_data()
    {
        QTest::addColumn<QByteArray>("value");
        QTest::newRow("stray byte") << QByteArray("\"\x80\"");
        QTest::newRow("overlong") << QByteArray("\"\xC0\xAF\"");
        QTest::newRow("surrogate") << QByteArray("\"\xED\xA0\x80\"");
        QTest::newRow("beyond Unicode") << QByteArray("\"\xF4\x90\x80\x80\"");
        QTest::newRow("lone escaped surrogate") << QByteArray("\"\\ud800\"");
        QTest::newRow("control character") << QByteArray("\"\x01\"");
    }

    void textsThatAreNotUtf8AreRefused()
    {
        QFETCH(const QByteArray, value);
        QVERIFY(!LibraryJson::decode(libraryWith("name", value)));
    }

    void unknownKeysAreSkipped_data()
    {
        QTest::addColumn<QByteArray>("value");
        for (const char *value : {"null", "true", "1", "-1", "1.5", "18446744073709551616", "\"id\"", "[]", "{}",
                 R"({"patches":[{}],"id":"x","defaultPatch":3})", R"([[{"id":[{"name":null}]}],"guitar",1])"}) {
            QTest::newRow(value) << QByteArray(value);
        }
        QTest::newRow("nested 100,000 deep") << QByteArray(100000, '[') + QByteArray(100000, ']');
        QTest::newRow("objects nested 100,000 deep")
            << QByteArray(R"({"id":)").repeated(100000) + "1" + QByteArray(100000, '}');
    }

    void unknownKeysAreSkipped()
    {
        QFETCH(const QByteArray, value);
        const auto plain = LibraryJson::decode(libraryOf(objectOf(patchMembers()), "5"));
        for (qsizetype place = 0; place <= patchMembers().size(); ++place) {
            QList<Member> members = patchMembers();
            members.insert(place, {"", value, {}});
            const QByteArray patch = objectOf(members);
            const auto decoded = LibraryJson::decode("{\"x\":" + value + ",\"patches\":[" + patch + "],\"y\":" + value
                + ",\"defaultPatch\":5,\"z\":" + value + '}');
            QVERIFY(decoded);
            QVERIFY(areIdentical(*decoded, *plain));
            if (value.size() > 1000) {
                break;
            }
        }
    }

    void theLastOfDoubledKeysCounts()
    {
        QList<Member> members = patchMembers();
        members.prepend({"name", "\"first\"", {}});
        members.prepend({"id", "3", {}});
        members.append({"solo", "true", {}});
        const auto decoded = LibraryJson::decode(libraryOf(objectOf(members)));
        QVERIFY(decoded);
        QCOMPARE(decoded->patches.first().id(), largestId);
        QCOMPARE(decoded->patches.first().name, QStringLiteral("Lead"));
        QVERIFY(decoded->patches.first().solo);
    }

    void spacesAndAMarkAtTheStartAreAccepted()
    {
        QByteArray text = libraryOf(objectOf(patchMembers()), "5");
        text.replace(',', " ,\r\n\t").replace(':', " : ").replace('[', "[\n");
        QVERIFY(LibraryJson::decode("\n" + text + "\n"));
        QVERIFY(LibraryJson::decode("\xEF\xBB\xBF" + text));
    }
};

VELGOR_TEST(TestLibraryJson)

#include "tst_LibraryJson.moc"
