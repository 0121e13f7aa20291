#include "TestPatches.h"
#include "TestProgram.h"
#include "TransferablePatch.h"
#include "VelgorContentPatch.h"

#include <QCoreApplication>
#include <QTest>

#include <functional>

#include <limits>

namespace {

const QByteArray slotId = "12345678-9ABC-DEF0-1234-56789ABCDEF0";

QByteArray payload(const QByteArray &rest)
{
    return "{" + rest + R"("id":1,"name":"Lead","origin":1})";
}

} // namespace

class TestTransferablePatch : public QObject {
    Q_OBJECT

    using Change = std::function<void(TransferablePatch &)>;

private Q_SLOTS:
    void libraryPatchHasNoSlot()
    {
        const auto payload = TransferablePatch::ofLibraryPatch(TestPatches::stored(7, QStringLiteral("Lead")));
        QCOMPARE(payload.encode(), QByteArray(R"({"id":7,"name":"Lead","origin":1})"));
        const auto decoded = TransferablePatch::decode(payload.encode());
        QVERIFY(decoded);
        QVERIFY(!decoded->cid);
        QVERIFY(*decoded == payload);
    }

    void slotIdComesBackExactly()
    {
        const VelgorContentPatch slot(TestPatches::stored(7, QStringLiteral("Lead")));
        const auto payload = TransferablePatch::ofSlot(slot);
        QCOMPARE(payload.cid, std::optional(slot.id));
        QCOMPARE(payload.origin, 0);
        QVERIFY(TransferablePatch::decode(payload.encode()) == payload);
        QVERIFY(payload.encode().contains(slot.id.toByteArray(QUuid::WithoutBraces).toUpper()));
    }

    void typeIdentifierEndsInTheFixedName()
    {
        QVERIFY(TransferablePatch::typeIdentifier().endsWith(QStringLiteral(".velgorpatch")));
    }

    void anyPayloadComesBack()
    {
        QRandomGenerator random(1);
        for (int i = 0; i < 2000; ++i) {
            TransferablePatch payload;
            if (random.bounded(2) == 0) {
                payload.cid = QUuid::createUuid();
            }
            payload.id = i == 0 ? std::numeric_limits<quint64>::max() : random.generate64() >> random.bounded(64U);
            payload.name = TestPatches::randomText(random, 20);
            payload.origin = static_cast<qint64>(random.generate64());
            const auto decoded = TransferablePatch::decode(payload.encode());
            QVERIFY2(decoded == payload, payload.encode().constData());
        }
    }

    void acceptable_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::newRow("without slot") << payload("");
        QTest::newRow("null slot") << payload(R"("cid":null,)");
        QTest::newRow("slot in lower case") << payload(R"("cid":")" + slotId.toLower() + R"(",)");
        QTest::newRow("unknown keys") << payload(R"("x":{"id":[1,{"y":null}]},"":1.5,)");
        QTest::newRow("spaces") << QByteArray(" {\n\"id\" : 1 ,\t\"name\":\"Lead\",\r\"origin\":1 } ");
    }

    void acceptable()
    {
        QFETCH(const QByteArray, json);
        const auto decoded = TransferablePatch::decode(json);
        QVERIFY(decoded);
        QCOMPARE(decoded->id, 1U);
        QCOMPARE(decoded->name, QStringLiteral("Lead"));
        QCOMPARE(decoded->origin, 1);
    }

    void refused_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("no object") << QByteArray("[]");
        QTest::newRow("null") << QByteArray("null");
        QTest::newRow("without id") << QByteArray(R"({"name":"Lead","origin":1})");
        QTest::newRow("without name") << QByteArray(R"({"id":1,"origin":1})");
        QTest::newRow("without origin") << QByteArray(R"({"id":1,"name":"Lead"})");
        for (const char *id : {"null", "-1", "1.5", "\"1\"", "true", "18446744073709551616", "[1]"}) {
            QTest::addRow("id %s", id) << QByteArray(R"({"name":"Lead","origin":1,"id":)") + id + "}";
        }
        for (const char *name : {"null", "1", "[]", "true"}) {
            QTest::addRow("name %s", name) << QByteArray(R"({"id":1,"origin":1,"name":)") + name + "}";
        }
        for (const char *origin : {"null", "1.5", "\"1\"", "false", "99999999999999999999"}) {
            QTest::addRow("origin %s", origin) << QByteArray(R"({"id":1,"name":"Lead","origin":)") + origin + "}";
        }
        for (const char *cid : {"1", "true", "\"\"", "\"x\"", "[]", "\"12345678-9ABC-DEF0-1234\""}) {
            QTest::addRow("cid %s", cid) << payload(QByteArray("\"cid\":") + cid + ",");
        }
        QTest::newRow("trailing text") << payload("") + "x";
        QTest::newRow("name not UTF-8") << QByteArray("{\"id\":1,\"origin\":1,\"name\":\"\xFF\"}");
        QTest::newRow("deep nesting") << QByteArray(100'000, '[');
    }

    void refused()
    {
        QFETCH(const QByteArray, json);
        QVERIFY(!TransferablePatch::decode(json));
    }

    void anOriginBeyondItsRangeIsRefused()
    {
        const auto decoded = TransferablePatch::decode(R"({"id":1,"name":"Lead","origin":18446744073709551615})");
        QVERIFY(!decoded);
    }

    void textAfterTheSlotIdIsRefused_data()
    {
        QTest::addColumn<QByteArray>("cid");
        QTest::newRow("a letter") << slotId + "x";
        QTest::newRow("another id") << slotId + slotId;
    }

    void textAfterTheSlotIdIsRefused()
    {
        QFETCH(const QByteArray, cid);
        QVERIFY(!TransferablePatch::decode(payload("\"cid\":\"" + cid + "\",")));
    }

    void textAfterAZeroByteIsRefused() { QVERIFY(!TransferablePatch::decode(payload("") + '\0' + "x")); }

    void cutTextIsRefused()
    {
        const QByteArray text = payload(R"("cid":")" + slotId + R"(",)");
        for (qsizetype size = 0; size < text.size(); ++size) {
            QVERIFY2(!TransferablePatch::decode(text.first(size)), text.first(size).constData());
        }
    }

    void severalPayloadsComeBackInTheirOrder_data()
    {
        QTest::addColumn<int>("count");
        for (const int count : {0, 1, 2, 99}) {
            QTest::addRow("%d", count) << count;
        }
    }

    void severalPayloadsComeBackInTheirOrder()
    {
        QFETCH(const int, count);
        QList<TransferablePatch> payloads;
        for (int i = 0; i < count; ++i) {
            const VelgorPatch patch = TestPatches::stored(static_cast<quint64>(i), QStringLiteral("Patch %1").arg(i));
            payloads.append(i % 2 == 0 ? TransferablePatch::ofLibraryPatch(patch)
                                       : TransferablePatch::ofSlot(VelgorContentPatch(patch)));
        }
        QVERIFY(TransferablePatch::decodeAll(TransferablePatch::encode(payloads)) == payloads);
    }

    void aSinglePayloadIsAPlainObject()
    {
        const auto payload = TransferablePatch::ofLibraryPatch(TestPatches::stored(7, QStringLiteral("Lead")));
        QCOMPARE(TransferablePatch::encode(QList{payload}), payload.encode());
    }

    void oneUnreadablePayloadRefusesAll_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("number") << QByteArray("7");
        QTest::newRow("object without id") << QByteArray(R"({"name":"Lead","origin":1})");
        QTest::newRow("the second") << "[" + payload("") + R"(,{"id":1,"origin":1}])";
        QTest::newRow("array in the array") << "[[" + payload("") + "]]";
        QTest::newRow("null in the array") << "[" + payload("") + ",null]";
        QTest::newRow("cut") << "[" + payload("");
        QTest::newRow("trailing text") << "[" + payload("") + "]x";
    }

    void oneUnreadablePayloadRefusesAll()
    {
        QFETCH(const QByteArray, json);
        QVERIFY(TransferablePatch::decodeAll(json).isEmpty());
    }

    void deepNestingInAnUnknownKeyIsSkipped()
    {
        const QByteArray nested = QByteArray(100'000, '[') + QByteArray(100'000, ']');
        QVERIFY(TransferablePatch::decode(payload("\"x\":" + nested + ",")));
    }

    void aDifferenceInAnyFieldCounts_data()
    {
        QTest::addColumn<Change>("change");
        const auto row = [](const char *name, const Change &change) { QTest::newRow(name) << change; };
        row("slot", [](TransferablePatch &payload) { payload.cid = QUuid(); });
        row("id", [](TransferablePatch &payload) { ++payload.id; });
        row("name", [](TransferablePatch &payload) { payload.name += u'x'; });
        row("origin", [](TransferablePatch &payload) { payload.origin = TransferablePatch::fromLibrary; });
    }

    void aDifferenceInAnyFieldCounts()
    {
        QFETCH(const Change, change);
        const TransferablePatch one = {.cid = QUuid::createUuid(), .id = 42, .name = QStringLiteral("Lead")};
        TransferablePatch other = one;
        QVERIFY(one == other);
        change(other);
        QVERIFY(one != other);
    }
};

VELGOR_TEST(TestTransferablePatch)
#include "tst_TransferablePatch.moc"
