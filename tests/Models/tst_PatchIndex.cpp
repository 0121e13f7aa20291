#include "PatchIndex.h"
#include "TestPatches.h"

#include <QTest>

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
        for (VelgorPatch &patch : patches) {
            QVERIFY(index.containsName(lead, patches));
            patch.name = other;
            index.renamed(lead, other);
            QVERIFY(index.containsName(other, patches));
        }
        QVERIFY(!index.containsName(lead, patches));
    }

    void agreesWithAWalkAfterAnyChanges()
    {
        QRandomGenerator random(2);
        PatchIndex index;
        QList<VelgorPatch> patches;
        const auto randomName = [&random] { return QString::number(random.bounded(8)); };
        for (int step = 0; step < 20'000; ++step) {
            switch (random.bounded(5)) {
            case 0:
                patches.append(stored(random.bounded(30U), randomName()));
                index.appended(patches.last(), patches.size() - 1);
                break;
            case 1:
                patches.insert(random.bounded(patches.size() + 1), stored(random.bounded(30U), randomName()));
                index.invalidate();
                break;
            case 2:
                if (!patches.isEmpty()) {
                    patches.removeAt(random.bounded(patches.size()));
                    index.invalidate();
                }
                break;
            case 3:
                if (!patches.isEmpty()) {
                    QString &name = patches[random.bounded(patches.size())].name;
                    const QString to = randomName();
                    index.renamed(name, to);
                    name = to;
                }
                break;
            default:
                if (patches.size() > 20) {
                    patches.clear();
                    index.invalidate();
                }
            }
            // Not after every step, so that the index also sees changes while it is invalid.
            if (random.bounded(3) == 0) {
                const quint64 id = random.bounded(30U);
                const QString name = randomName();
                QCOMPARE(index.positionOf(id, patches), walkTo(id, patches));
                QCOMPARE(index.containsName(name, patches), TestPatches::names(patches).contains(name));
            }
        }
    }
};

QTEST_GUILESS_MAIN(TestPatchIndex)
#include "tst_PatchIndex.moc"
