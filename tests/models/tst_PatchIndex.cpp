#include "PatchIndex.h"
#include "TestPatches.h"
#include "TestProgram.h"
#include "Utf8Text.h"

#include <QCoreApplication>
#include <QTest>

#include <algorithm>
#include <numeric>

using TestPatches::stored;

namespace {

qsizetype walkTo(quint64 id, const QList<VelgorPatch> &patches)
{
    return TestPatches::ids(patches).indexOf(id);
}

} // namespace

class TestPatchIndex : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void nothingIsFoundInAnEmptyList()
    {
        PatchIndex index;
        QCOMPARE(index.positionOf(0, {}), -1);
        QVERIFY(!index.containsName({}, {}));
    }

    void theFirstOfEqualIdsIsFound()
    {
        PatchIndex index;
        QList<VelgorPatch> patches{stored(1, QStringLiteral("a")), stored(2, QStringLiteral("b"))};
        patches.append(stored(2, QStringLiteral("c")));
        QCOMPARE(index.positionOf(2, patches), 1);
        patches.append(stored(1, QStringLiteral("d")));
        index.appended(patches.last(), 3);
        QCOMPARE(index.positionOf(1, patches), 0);
        QVERIFY(index.containsName(QStringLiteral("d"), patches));
    }

    void aNameIsThereAsLongAsOnePatchHasIt()
    {
        PatchIndex index;
        const QString lead = QStringLiteral("Lead");
        const QString other = QStringLiteral("Other");
        QList<VelgorPatch> patches{stored(1, lead), stored(2, lead)};
        QVERIFY(index.containsName(lead, patches));
        for (qsizetype row = 0; row < patches.size(); ++row) {
            QVERIFY(index.containsName(lead, patches));
            const VelgorPatch before = patches.at(row);
            patches[row].name = other;
            index.changed(row, before, patches.at(row));
            QVERIFY(index.containsName(other, patches));
        }
        QVERIFY(!index.containsName(lead, patches));
    }

    void anEditLowerCasesTheEditedTextAlone()
    {
        PatchIndex index;
        QList<VelgorPatch> patches;
        for (quint64 id = 0; id < 1000; ++id) {
            patches.append(stored(id, QStringLiteral("Lead %1").arg(id)));
        }
        const qsizetype nameBytes = index.names(patches).byteCount();
        const char *const bytes = index.names(patches).at(0).data();
        const qsizetype commentBytes = index.comments(patches).byteCount();
        const VelgorPatch before = patches.at(500);
        patches[500].comment = QStringLiteral("FAT");
        index.changed(500, before, patches.at(500));
        QCOMPARE(index.names(patches).byteCount(), nameBytes);
        QCOMPARE(static_cast<const void *>(index.names(patches).at(0).data()), static_cast<const void *>(bytes));
        QCOMPARE(index.comments(patches).byteCount(), commentBytes + 3);
    }

    void agreesWithAWalkAfterAnyChanges_data()
    {
        QTest::addColumn<quint32>("seed");
        for (quint32 seed = 1; seed <= 5; ++seed) {
            QTest::addRow("seed %u", seed) << seed;
        }
    }

    void agreesWithAWalkAfterAnyChanges()
    {
        QFETCH(const quint32, seed);
        QRandomGenerator random(seed);
        PatchIndex index;
        QList<VelgorPatch> patches;
        for (int step = 0; step < 8000 && !QTest::currentTestFailed(); ++step) {
            change(random, index, patches);
            // Not after every step, so that the index also sees changes while parts of it are not made.
            if (random.bounded(3) == 0) {
                ask(random, index, patches);
            }
        }
    }

private:
    /// Few of each, so that they often are equal.
    static VelgorPatch anyPatch(QRandomGenerator &random)
    {
        static const QStringList words{QString(), QStringLiteral("Lead"), QStringLiteral("lead-1"),
            QStringLiteral("Lead-2"), QStringLiteral("\u00c4 Lead"), QStringLiteral("\u0130"),
            QStringLiteral("a longer text than the others have"), QString(QChar(0xD800)) + u'x'};
        // Half a surrogate pair seldom comes, and stays until its patch goes.
        const auto word = [&random] { return words.at(random.bounded(random.bounded(20) == 0 ? 8 : 7)); };
        const quint64 id = random.bounded(30U);
        if (random.bounded(3) == 0) {
            VelgorPatch patch = stored(id, word());
            patch.comment = word();
            return patch;
        }
        VelgorPatch patch = TestPatches::imported(word(), random.bounded(3)).withId(id);
        patch.comment = word();
        return patch;
    }

    static void change(QRandomGenerator &random, PatchIndex &index, QList<VelgorPatch> &patches)
    {
        const auto anyRow = [&] { return random.bounded(patches.size()); };
        const int kind = patches.isEmpty() ? 0 : random.bounded(9);
        if (kind <= 2) {
            const VelgorPatch patch = anyPatch(random);
            index.appended(patch, patches.size());
            patches.append(patch);
        } else if (kind == 3) {
            patches.insert(anyRow(), anyPatch(random));
            index.invalidate();
        } else if (kind == 4) {
            QList<qsizetype> rows;
            for (qsizetype row = 0; row < patches.size(); ++row) {
                if (random.bounded(patches.size() > 40 ? 2 : 8) == 0) {
                    rows.append(row);
                }
            }
            index.removed(rows);
            for (qsizetype i = rows.size(); i-- > 0;) {
                patches.removeAt(rows.at(i));
            }
        } else if (kind <= 6) {
            const qsizetype row = anyRow();
            const VelgorPatch after = anyPatch(random).withId(patches.at(row).id());
            index.changed(row, patches.at(row), after);
            patches[row] = after;
        } else if (kind == 7) {
            const qsizetype from = anyRow();
            const qsizetype to = anyRow();
            index.moved(from, to);
            patches.move(from, to);
        } else {
            QList<qsizetype> formerRows(patches.size());
            std::iota(formerRows.begin(), formerRows.end(), 0);
            std::shuffle(formerRows.begin(), formerRows.end(), random);
            QList<VelgorPatch> shuffled;
            for (const qsizetype row : std::as_const(formerRows)) {
                shuffled.append(patches.at(row));
            }
            index.reordered(formerRows);
            patches = shuffled;
        }
    }

    static void compareTexts(const CaselessTexts &texts, const QList<VelgorPatch> &patches, QString VelgorPatch::*text)
    {
        QCOMPARE(texts.size(), patches.size());
        qsizetype bytes = 0;
        for (qsizetype row = 0; row < patches.size(); ++row) {
            const std::string_view key = texts.at(row);
            QCOMPARE(QByteArray(key.data(), static_cast<qsizetype>(key.size())),
                Utf8Text::caselessKey(patches.at(row).*text));
            bytes += static_cast<qsizetype>(key.size());
            QVERIFY((patches.at(row).*text).isValidUtf16() || !texts.canSearch(QStringLiteral("x")));
        }
        QVERIFY(texts.byteCount() <= 2 * bytes + 4096);
    }

    static void ask(QRandomGenerator &random, PatchIndex &index, const QList<VelgorPatch> &patches)
    {
        const QStringList names = TestPatches::names(patches);
        switch (random.bounded(6)) {
        case 0: {
            const quint64 id = random.bounded(30U);
            QCOMPARE(index.positionOf(id, patches), walkTo(id, patches));
            break;
        }
        case 1: {
            const QString name = anyPatch(random).name;
            QCOMPARE(index.containsName(name, patches), names.contains(name));
            break;
        }
        case 2: {
            const QString stem = QStringLiteral("Lead-");
            qint64 free = 1;
            while (names.contains(stem + QString::number(free))) {
                ++free;
            }
            QCOMPARE(index.freeNumber(stem, 1, patches), std::optional(free));
            break;
        }
        case 3:
            compareTexts(index.names(patches), patches, &VelgorPatch::name);
            break;
        case 4:
            compareTexts(index.comments(patches), patches, &VelgorPatch::comment);
            break;
        default:
            QCOMPARE(index.soundHashes(patches).size(), patches.size());
            for (qsizetype row = 0; row < patches.size(); ++row) {
                QCOMPARE(index.soundHashes(patches).at(row), patches.at(row).soundHash());
            }
        }
    }
};

VELGOR_TEST(TestPatchIndex)
#include "tst_PatchIndex.moc"
