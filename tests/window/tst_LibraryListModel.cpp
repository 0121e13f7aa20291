#include "LibraryEditor.h"
#include "LibraryListModel.h"
#include "PatchPayload.h"
#include "PatchRoles.h"
#include "ShownLibrary.h"
#include "TestPatches.h"
#include "TestProgram.h"
#include "VelgorContent.h"
#include "VelgorLibrary.h"

#include <QTest>

#include <functional>
#include <memory>

using namespace ShownLibrary;
using TestPatches::imported;

class TestLibraryListModel : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anEditIsTranslatedToWhatItChangesInView_data()
    {
        using Change = std::function<void(Shown &)>;
        QTest::addColumn<Change>("change");
        QTest::addColumn<QString>("signalCounts");
        QTest::addColumn<QString>("rows");
        const auto row = [](const char *name, const char *counts, const char *rows, const Change &change) {
            QTest::newRow(name) << change << QString::fromLatin1(counts) << QString::fromLatin1(rows);
        };
        // The filter shows the names with an "a" of "xa by xc ya".
        row("edit of a shown patch", "0 0 0 0 0 1", "xa ya",
            [](Shown &shown) { edit(shown, 0, [](VelgorPatch &patch) { patch.solo = true; }); });
        row("edit of a hidden patch", "0 0 0 0 0 0", "xa ya",
            [](Shown &shown) { edit(shown, 1, [](VelgorPatch &patch) { patch.solo = true; }); });
        row("edit that changes nothing", "0 0 0 0 0 0", "xa ya",
            [](Shown &shown) { edit(shown, 0, [](VelgorPatch &) {}); });
        row("edit that hides", "0 0 0 1 0 0", "ya",
            [](Shown &shown) { edit(shown, 0, [](VelgorPatch &patch) { patch.name = QStringLiteral("z"); }); });
        row("edit that shows", "0 0 1 0 0 0", "xa baby ya",
            [](Shown &shown) { edit(shown, 1, [](VelgorPatch &patch) { patch.name = QStringLiteral("baby"); }); });
        row("shown patch appended", "0 0 1 0 0 0", "xa ya na",
            [](Shown &shown) { shown.library.append(patch(QStringLiteral("na")), false, false); });
        row("hidden patch appended", "0 0 0 0 0 0", "xa ya",
            [](Shown &shown) { shown.library.append(patch(QStringLiteral("n")), false, false); });
        row("patch inserted in between", "0 0 1 0 0 0", "xa na ya",
            [](Shown &shown) { shown.library.append(patch(QStringLiteral("na")), false, false, 2); });
        row("some of several shown", "0 0 1 0 0 0", "xa ya na ma", [](Shown &shown) {
            shown.library.appendNew(
                {patch(QStringLiteral("na")), patch(QStringLiteral("o")), patch(QStringLiteral("ma"))});
        });
        row("move among hidden rows", "0 0 0 0 0 0", "xa ya", [](Shown &shown) { shown.library.move(1, 3); });
        row("shown patch moved over a hidden one", "0 0 0 0 0 0", "xa ya",
            [](Shown &shown) { shown.library.move(0, 2); });
        row("shown patch moved over a shown one", "0 0 0 0 1 0", "ya xa",
            [](Shown &shown) { shown.library.move(3, 0); });
        row("hidden patch deleted", "0 0 0 0 0 0", "xa ya",
            [](Shown &shown) { shown.library.deletePatch(shown.idOf(2)); });
        row("sort", "0 1 0 0 0 0", "xa ya", [](Shown &shown) { shown.library.sort(); });
        row("neighbours deleted", "0 0 0 1 0 0", "ya", [](Shown &shown) {
            shown.library.deletePatches({shown.idOf(0), shown.idOf(1)});
        });
        row("patches apart deleted", "1 0 0 0 0 0", "", [](Shown &shown) {
            shown.library.deletePatches({shown.idOf(0), shown.idOf(3)});
        });
        row("another library", "1 0 0 0 0 0", "ma",
            [](Shown &shown) { shown.library.adopt({.patches = {patch(QStringLiteral("ma"))}}); });
        row("same filter", "0 0 0 0 0 0", "xa ya",
            [](Shown &shown) { shown.model.setFilter(named(QStringLiteral("a"))); });
        row("filter that shows the same", "0 0 0 0 0 0", "xa ya",
            [](Shown &shown) { shown.model.setFilter(named(QStringLiteral("A"))); });
        row("filter that shows others", "1 0 0 0 0 0", "by ya",
            [](Shown &shown) { shown.model.setFilter(named(QStringLiteral("y"))); });
        row("other selection", "0 0 0 0 0 0", "xa ya", [](Shown &shown) { shown.library.setSelection(12); });
        row("other default patch", "0 0 0 0 0 1", "xa ya",
            [](Shown &shown) { shown.library.setDefaultPatch(shown.idOf(0)); });
        row("ticking", "0 0 0 0 0 1", "xa ya", [](Shown &shown) { shown.library.setIsMultiSel(true); });
    }

    void anEditIsTranslatedToWhatItChangesInView()
    {
        using Change = std::function<void(Shown &)>;
        QFETCH(const Change, change);
        QFETCH(const QString, signalCounts);
        QFETCH(const QString, rows);
        Shown shown(QStringLiteral("xa by xc ya"));
        shown.model.setFilter(named(QStringLiteral("a")));
        shown.forget();
        change(shown);
        QCOMPARE(shown.signalCounts(), signalCounts);
        QCOMPARE(shown.rows(), rows);
    }

    void anyChangeLeavesTheRowsThatTheFilterShows_data()
    {
        QTest::addColumn<bool>("isFiltered");
        QTest::addColumn<int>("seed");
        for (int seed = 1; seed <= 6; ++seed) {
            QTest::addRow("unfiltered %d", seed) << false << seed;
            QTest::addRow("filtered %d", seed) << true << seed;
        }
    }

    void anyChangeLeavesTheRowsThatTheFilterShows()
    {
        QFETCH(const bool, isFiltered);
        QFETCH(const int, seed);
        QRandomGenerator random(static_cast<quint32>(seed));
        Shown shown;
        if (isFiltered) {
            LibraryViewFilter filter;
            filter.filterPatch.solo = true;
            shown.model.setFilter(filter);
        }
        for (int step = 0; step < 400; ++step) {
            QList<std::pair<QPersistentModelIndex, quint64>> followed;
            for (int row = 0; row < shown.model.rowCount(); ++row) {
                followed.append({QPersistentModelIndex(shown.model.index(row)), shown.model.idAt(row)});
            }
            shown.forget();
            takeStep(shown, random);
            QList<quint64> rows;
            for (int row = 0; row < shown.model.rowCount(); ++row) {
                rows.append(shown.model.idAt(row));
                QCOMPARE(shown.model.indexOf(rows.last()).row(), row);
                QCOMPARE(shown.idOf(shown.model.libraryRow(row)), rows.last());
            }
            const QList<VelgorPatch> expected = shown.model.filter().filter(shown.library.patches());
            QCOMPARE(rows, TestPatches::ids(expected));
            const bool isLonePlaceholder = expected.size() == 1 && expected.first().empty;
            QCOMPARE(shown.model.filteredVelgorPatchesCount(), isLonePlaceholder ? 0 : expected.size());
            QCOMPARE(shown.model.libraryRow(shown.model.rowCount()), shown.library.patches().size());
            for (const auto &[index, id] : followed) {
                if (index.isValid()) {
                    QCOMPARE(shown.model.idAt(index.row()), id);
                } else {
                    QVERIFY(!shown.resets.isEmpty() || !rows.contains(id));
                }
            }
        }
    }

private:
    /// One of everything that can happen to a library, on patches chosen by chance.
    static void takeStep(Shown &shown, QRandomGenerator &random)
    {
        VelgorLibrary &library = shown.library;
        const auto upTo = [&random](qsizetype count) { return static_cast<qsizetype>(random.bounded(qint64(count))); };
        const auto fresh = [&] {
            static int made = 0;
            VelgorPatch made_ = imported(QStringLiteral("P%1").arg(++made), 1 + static_cast<int>(random.bounded(3)));
            made_.solo = random.bounded(2) == 0;
            return made_;
        };
        const quint64 id = shown.idOf(upTo(library.patches().size()));
        switch (random.bounded(14)) {
        case 0:
        case 1:
            library.append(fresh(), false, false, upTo(library.count() + 1));
            break;
        case 2:
            library.appendNew({fresh(), fresh(), fresh()});
            break;
        case 3:
        case 4:
        case 5:
            if (library.count() > 0) {
                VelgorPatch patch = *library.getPatchFromId(id)->patch;
                patch.solo = !patch.solo;
                library.update(patch);
            }
            break;
        case 6:
        case 7:
            library.move(upTo(library.patches().size()), upTo(library.patches().size() + 1));
            break;
        case 8:
            library.deletePatch(id);
            break;
        case 9: {
            QList<quint64> ids;
            for (const VelgorPatch &patch : library.patches()) {
                if (random.bounded(3) == 0) {
                    ids.append(patch.id());
                }
            }
            library.deletePatches(ids);
            break;
        }
        case 10:
            library.sort();
            break;
        case 11:
            library.duplicateSelection(id);
            break;
        case 12: {
            library.setIsMultiSel(random.bounded(2) == 0);
            library.setMultiSelections({{{id, random.bounded(2) == 0}}});
            library.setDefaultPatch(id);
            break;
        }
        default:
            if (random.bounded(8) == 0) {
                const bool isEmpty = random.bounded(3) == 0;
                library.adopt({.patches = isEmpty ? QList<VelgorPatch>() : QList{fresh(), fresh()}});
            }
        }
    }
};

VELGOR_TEST(TestLibraryListModel)
#include "tst_LibraryListModel.moc"
