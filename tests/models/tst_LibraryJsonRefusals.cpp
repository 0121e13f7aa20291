#include "LibraryJson.h"
#include "LibraryJsonTexts.h"
#include "TestProgram.h"

#include <QTest>

using namespace LibraryJsonTexts;

class TestLibraryJsonRefusals : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyKeyIsRequired_data()
    {
        QTest::addColumn<QByteArray>("key");
        for (const Member &member : patchMembers()) {
            QTest::newRow(member.key.constData()) << member.key;
        }
    }

    void everyKeyIsRequired()
    {
        QFETCH(const QByteArray, key);
        QVERIFY(LibraryJson::decode(libraryOf(objectOf(patchMembers()))));
        QList<Member> members = patchMembers();
        members.removeIf([&key](const Member &member) { return member.key == key; });
        QCOMPARE(members.size(), 14);
        const QByteArray cut = objectOf(members);
        QVERIFY(!LibraryJson::decode(libraryOf(cut)));
        // A complete patch before it must not lend it its value.
        QVERIFY(!LibraryJson::decode(libraryOf(objectOf(patchMembers()) + ',' + cut)));
        QVERIFY(!LibraryJson::decode(libraryOf(cut + ',' + objectOf(patchMembers()))));
        members.append({key.toUpper(), "1", {}});
        QVERIFY(!LibraryJson::decode(libraryOf(objectOf(members))));
        members.last() = {"x", '{' + QByteArray("\"" + key + "\":1") + '}', {}};
        QVERIFY(!LibraryJson::decode(libraryOf(objectOf(members))));
    }

    void otherTypesAreRefused_data()
    {
        QTest::addColumn<QByteArray>("key");
        QTest::addColumn<QByteArray>("value");
        const QList<Member> values{{{}, "null", "null"}, {{}, "true", "boolean"}, {{}, "\"x\"", "string"},
            {{}, "1", "unsigned"}, {{}, "0", "unsigned"}, {{}, "-1", "number"}, {{}, "1.5", "number"},
            {{}, "18446744073709551616", "number"}, {{}, "1e999", "none"}, {{}, "[]", "none"}, {{}, "{}", "none"},
            {{}, "[1]", "none"}};
        for (const Member &member : patchMembers()) {
            for (const Member &value : values) {
                const bool fits = member.type == value.type || (member.type == "number" && value.type == "unsigned");
                if (!fits) {
                    QTest::addRow("%s: %s", member.key.constData(), value.value.constData())
                        << member.key << value.value;
                }
            }
        }
    }

    void otherTypesAreRefused()
    {
        QFETCH(const QByteArray, key);
        QFETCH(const QByteArray, value);
        QVERIFY(!LibraryJson::decode(libraryWith(key, value)));
    }

    void aNumberThatNoDoubleHoldsIsRefused()
    {
        const auto decoded = LibraryJson::decode(libraryOf({}, "1e999"));
        QVERIFY(!decoded);
    }

    void notALibrary_data()
    {
        QTest::addColumn<QByteArray>("text");
        for (const char *text : {"", " ", "null", "true", "1", "-1", "1.5", "\"x\"", "[]", "{}", "[{}]",
                 R"({"defaultPatch":1})", R"({"patches":null})", R"({"patches":{}})", R"({"patches":1})",
                 R"({"patches":"x"})", R"({"patches":true})", R"({"patches":[1]})", R"({"patches":[-1]})",
                 R"({"patches":[1.5]})", R"({"patches":[null]})", R"({"patches":[true]})", R"({"patches":["x"]})",
                 R"({"patches":[[]]})", R"({"patches":[{}]})", R"({"patches":[[{}]]})", R"({"Patches":[]})",
                 R"({"x":{"patches":[]}})", R"({"patches":[],"patches":null})", R"({"patches":null,"patches":[]})",
                 R"({"patches":[]}x)", R"({"patches":[]}{})", R"({"patches":[],})", R"({"patches":[,]})",
                 R"({patches:[]})", R"({'patches':[]})", "{\"patches\":[]} // remark", R"({"patches":[],"x":01})",
                 R"({"patches":[],"x":NaN})", R"({"patches":[],"x":.5})", "{\"patches\":[],\"x\":\"\xFF\"}",
                 "{\"patches\":[],\"x\":\"\xC0\x80\"}", "{\"patches\":[],\"x\":\"\xED\xA0\x80\"}",
                 "{\"patches\":[],\"x\":\"\n\"}", R"({"patches":[],"x":"\x"})"}) {
            QTest::newRow(*text == '\0' ? "nothing" : text) << QByteArray(text);
        }
    }

    void notALibrary()
    {
        QFETCH(const QByteArray, text);
        QVERIFY(!LibraryJson::decode(text));
    }

    void textAfterAZeroByteIsRefused_data()
    {
        QTest::addColumn<QByteArray>("tail");
        QTest::newRow("a zero byte") << QByteArray(1, '\0');
        QTest::newRow("text behind it") << QByteArray(1, '\0') + "x";
    }

    void textAfterAZeroByteIsRefused()
    {
        QFETCH(const QByteArray, tail);
        QVERIFY(!LibraryJson::decode(libraryOf({}) + tail));
    }

    void nestingInPlaceOfPatchesIsRefused_data()
    {
        QTest::addColumn<QByteArray>("text");
        const QByteArray arrays(100000, '[');
        QTest::newRow("the library") << arrays;
        QTest::newRow("the patches") << R"({"patches":)" + arrays;
        QTest::newRow("open at the end") << R"({"x":)" + arrays;
        QTest::newRow("open objects at the end") << QByteArray(R"({"x":)").repeated(100000);
    }

    void nestingInPlaceOfPatchesIsRefused()
    {
        QFETCH(const QByteArray, text);
        QVERIFY(!LibraryJson::decode(text));
    }

    void secondListOfPatchesIsRefusedForItsLossOfTheFirst()
    {
        QVERIFY(!LibraryJson::decode(R"({"patches":[)" + objectOf(patchMembers()) + R"(],"patches":[]})"));
    }

    void textCutAtAnyByteIsRefused()
    {
        const QByteArray text = libraryOf(objectOf(patchMembers()) + ',' + objectOf(patchMembers()), "5");
        QVERIFY(LibraryJson::decode(text));
        for (qsizetype size = 0; size < text.size(); ++size) {
            QVERIFY2(!LibraryJson::decode(text.first(size)), QByteArray::number(size).constData());
        }
    }
};

VELGOR_TEST(TestLibraryJsonRefusals)

#include "tst_LibraryJsonRefusals.moc"
