#include "FakeLibraryStorage.h"
#include "LibraryEditor.h"
#include "LibraryListModel.h"
#include "PatchPayload.h"
#include "PatchRoles.h"
#include "TestPatches.h"
#include "TestProgram.h"
#include "VelgorContent.h"
#include "VelgorLibrary.h"

#include <QAbstractItemModelTester>
#include <QCoreApplication>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>

#include <functional>
#include <memory>

using TestPatches::imported;

namespace {

LibraryViewFilter named(const QString &name)
{
    LibraryViewFilter filter;
    filter.filterPatch.name = name;
    return filter;
}

VelgorPatch patch(const QString &name, bool isSolo = false)
{
    VelgorPatch patch = imported(name, name.at(0).unicode());
    patch.solo = isSolo;
    return patch;
}

} // namespace

class TestLibraryListModel : public QObject {
    Q_OBJECT

    /// A model under a tester, and the patch ids that persistent indexes are to follow.
    struct Shown {
        VelgorLibrary library;
        FakeLibraryStorage storage;
        VelgorContent content;
        LibraryEditor editor{library, content, storage};
        LibraryListModel model{library, editor};
        QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
        QSignalSpy resets{&model, &QAbstractItemModel::modelReset};
        QSignalSpy layouts{&model, &QAbstractItemModel::layoutChanged};
        QSignalSpy inserted{&model, &QAbstractItemModel::rowsInserted};
        QSignalSpy removed{&model, &QAbstractItemModel::rowsRemoved};
        QSignalSpy moved{&model, &QAbstractItemModel::rowsMoved};
        QSignalSpy changed{&model, &QAbstractItemModel::dataChanged};

        explicit Shown(const QString &names = {})
        {
            QList<VelgorPatch> patches;
            for (const QString &name : names.split(u' ', Qt::SkipEmptyParts)) {
                patches.append(patch(name));
            }
            library.appendNew(patches);
            forget();
        }
        void forget()
        {
            for (QSignalSpy *spy : {&resets, &layouts, &inserted, &removed, &moved, &changed}) {
                spy->clear();
            }
        }
        [[nodiscard]] QString rows() const
        {
            QStringList names;
            for (int row = 0; row < model.rowCount(); ++row) {
                names.append(model.index(row).data(PatchRoles::Name).toString());
            }
            return names.join(u' ');
        }
        [[nodiscard]] quint64 idOf(qsizetype row) const { return library.patches().at(row).id(); }
        /// Signals since forget(), as "reset layout insert remove move change".
        [[nodiscard]] QString signalCounts() const
        {
            QStringList counts;
            for (const QSignalSpy *spy : {&resets, &layouts, &inserted, &removed, &moved, &changed}) {
                counts.append(QString::number(spy->count()));
            }
            return counts.join(u' ');
        }
        [[nodiscard]] QVariant data(int row, int role) const { return model.index(row).data(role); }
    };

    static void edit(Shown &shown, qsizetype row, const std::function<void(VelgorPatch &)> &change)
    {
        VelgorPatch patch = shown.library.patches().at(row);
        change(patch);
        shown.library.update(patch);
    }

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
            [](Shown &shown) { shown.library.deletePatch(shown.idOf(2), shown.storage); });
        row("sort", "0 1 0 0 0 0", "xa ya", [](Shown &shown) { shown.library.sort(); });
        row("neighbours deleted", "0 0 0 1 0 0", "ya", [](Shown &shown) {
            shown.library.deletePatches({shown.idOf(0), shown.idOf(1)}, shown.storage);
        });
        row("patches apart deleted", "1 0 0 0 0 0", "", [](Shown &shown) {
            shown.library.deletePatches({shown.idOf(0), shown.idOf(3)}, shown.storage);
        });
        row("another library", "1 0 0 0 0 0", "ma",
            [](Shown &shown) { shown.library.takeOver({.patches = {patch(QStringLiteral("ma"))}}); });
        row("same filter", "0 0 0 0 0 0", "xa ya",
            [](Shown &shown) { shown.model.setFilter(named(QStringLiteral("a"))); });
        row("filter that shows the same", "0 0 0 0 0 0", "xa ya",
            [](Shown &shown) { shown.model.setFilter(named(QStringLiteral("A"))); });
        row("filter that shows others", "1 0 0 0 0 0", "by ya",
            [](Shown &shown) { shown.model.setFilter(named(QStringLiteral("y"))); });
        row("other selection", "0 0 0 0 0 0", "xa ya", [](Shown &shown) { shown.library.setSelection(12); });
        row("other default patch", "0 0 0 0 0 1", "xa ya",
            [](Shown &shown) { shown.library.setDefaultPatch(shown.idOf(0), shown.storage); });
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

    void theEmptyLibraryIsNoPatch()
    {
        Shown shown;
        QCOMPARE(shown.rows(), QStringLiteral("Empty library"));
        QCOMPARE(shown.model.filteredVelgorPatchesCount(), 0);
        QVERIFY(shown.data(0, PatchRoles::IsPlaceholder).toBool());
        QVERIFY(!shown.data(0, Qt::AccessibleDescriptionRole).isValid());
        QVERIFY(!shown.model.flags(shown.model.index(0)).testFlag(Qt::ItemIsDragEnabled));
        shown.model.setFilter(named(QStringLiteral("Lead")));
        QCOMPARE(shown.model.rowCount(), 0);
        QCOMPARE(shown.model.filteredVelgorPatchesCount(), 0);
        shown.library.append(patch(QStringLiteral("Lead")), false, false);
        QCOMPARE(shown.rows(), QStringLiteral("Lead"));
        QCOMPARE(shown.model.filteredVelgorPatchesCount(), 1);
    }

    void aRowReadsAsItLooks()
    {
        Shown shown(QStringLiteral("Lead"));
        shown.library.append(imported(QStringLiteral("Choir"), 5, TestRecords::userIR(0), "V1.21"), false, false);
        QCOMPARE(shown.data(0, Qt::DisplayRole).toString(), QStringLiteral("Lead"));
        QCOMPARE(shown.data(1, Qt::DisplayRole).toString(), QStringLiteral("Choir, user IR"));
        QCOMPARE(shown.data(1, PatchRoles::Name).toString(), QStringLiteral("Choir"));
        QVERIFY(shown.data(1, PatchRoles::HasUserIR).toBool());
        QCOMPARE(shown.data(1, PatchRoles::Version).toString(), QStringLiteral("V1.21"));
        QVERIFY(shown.data(1, Qt::AccessibleDescriptionRole).toString().contains(QStringLiteral("1.21")));
        QVERIFY(!shown.data(1, PatchRoles::IsDefault).toBool());
        shown.library.setDefaultPatch(shown.idOf(1), shown.storage);
        QVERIFY(shown.data(1, PatchRoles::IsDefault).toBool());
        QVERIFY(!shown.data(0, PatchRoles::IsDefault).toBool());
        QVERIFY(shown.data(1, Qt::AccessibleDescriptionRole).toString().endsWith(QStringLiteral("default patch")));
    }

    void whatTheUserSaidOfAPatchIsInTheDescription()
    {
        Shown shown(QStringLiteral("Lead Choir"));
        const QString before = shown.data(1, Qt::AccessibleDescriptionRole).toString();
        edit(shown, 0, [](VelgorPatch &patch) {
            patch.solo = patch.guitar = patch.crunch = true;
            patch.comment = QStringLiteral("\nNeck pickup,  volume at 8\nsecond line");
        });
        QCOMPARE(shown.data(0, Qt::DisplayRole).toString(), QStringLiteral("Lead"));
        const QString description = shown.data(0, Qt::AccessibleDescriptionRole).toString();
        QVERIFY2(description.endsWith(QStringLiteral(", Guitar, Solo, Crunch, Neck pickup, volume at 8")),
            qPrintable(description));
        QCOMPARE(shown.data(1, Qt::AccessibleDescriptionRole).toString(), before);
        QVERIFY(!before.contains(u','));
    }

    void rowsAreTickedWhileTickingOnly()
    {
        Shown shown(QStringLiteral("A B"));
        const QModelIndex index = shown.model.index(1);
        QVERIFY(!index.data(Qt::CheckStateRole).isValid());
        QVERIFY(!shown.model.flags(index).testFlag(Qt::ItemIsUserCheckable));
        QVERIFY(!shown.model.setData(index, Qt::Checked, Qt::CheckStateRole));
        shown.library.setIsMultiSel(true);
        QCOMPARE(index.data(Qt::CheckStateRole).toInt(), static_cast<int>(Qt::Unchecked));
        QVERIFY(shown.model.flags(index).testFlag(Qt::ItemIsUserCheckable));
        QVERIFY(shown.model.setData(index, Qt::Checked, Qt::CheckStateRole));
        QCOMPARE(index.data(Qt::CheckStateRole).toInt(), static_cast<int>(Qt::Checked));
        QVERIFY(shown.library.multiSelections().isTicked(shown.idOf(1)));
        QVERIFY(!shown.library.multiSelections().isTicked(shown.idOf(0)));
        QVERIFY(shown.model.setData(index, Qt::Unchecked, Qt::CheckStateRole));
        QVERIFY(!shown.library.multiSelections().isTicked(shown.idOf(1)));
        QVERIFY(!shown.model.setData(index, QStringLiteral("x"), Qt::EditRole));
    }

    void aDragCarriesAllTickedPatchesOrElseItsRow()
    {
        Shown shown(QStringLiteral("A B C"));
        const auto dragged = [&shown](int row) {
            const std::unique_ptr<QMimeData> data(shown.model.mimeData({shown.model.index(row)}));
            QStringList names;
            for (const TransferablePatch &item : PatchPayload::unpack(data.get())) {
                names.append(item.name);
                if (item.cid || item.origin != TransferablePatch::fromLibrary) {
                    names.append(QStringLiteral("?"));
                }
            }
            return names.join(u' ');
        };
        QCOMPARE(dragged(1), QStringLiteral("B"));
        shown.library.setIsMultiSel(true);
        shown.library.setMultiSelections({{{shown.idOf(0), true}, {shown.idOf(2), true}}});
        QCOMPARE(dragged(2), QStringLiteral("A C"));
        QCOMPARE(dragged(1), QStringLiteral("A C"));
        shown.library.setMultiSelections({});
        QCOMPARE(dragged(1), QStringLiteral("B"));
        shown.library.setMultiSelections({{{shown.idOf(0), true}}});
        shown.library.setIsMultiSel(false);
        QCOMPARE(dragged(2), QStringLiteral("C"));
        QVERIFY(!shown.model.mimeData({}));
        QCOMPARE(shown.model.mimeTypes(), QStringList{TransferablePatch::typeIdentifier()});
    }

    void whatIsNoPayloadUnpacksToNothing()
    {
        QMimeData data;
        QVERIFY(PatchPayload::unpack(nullptr).isEmpty());
        QVERIFY(PatchPayload::unpack(&data).isEmpty());
        data.setText(QStringLiteral(R"({"id":1,"name":"Lead","origin":1})"));
        QVERIFY(PatchPayload::unpack(&data).isEmpty());
        data.setData(TransferablePatch::typeIdentifier(), "{}");
        QVERIFY(PatchPayload::unpack(&data).isEmpty());
        data.setData(TransferablePatch::typeIdentifier(), R"({"id":1,"name":"Lead","origin":1})");
        QCOMPARE(PatchPayload::unpack(&data).size(), 1);
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
            library.deletePatch(id, shown.storage);
            break;
        case 9: {
            QList<quint64> ids;
            for (const VelgorPatch &patch : library.patches()) {
                if (random.bounded(3) == 0) {
                    ids.append(patch.id());
                }
            }
            library.deletePatches(ids, shown.storage);
            break;
        }
        case 10:
            library.sort();
            break;
        case 11:
            library.duplicateSelection(id, shown.storage);
            break;
        case 12: {
            library.setIsMultiSel(random.bounded(2) == 0);
            library.setMultiSelections({{{id, random.bounded(2) == 0}}});
            library.setDefaultPatch(id, shown.storage);
            break;
        }
        default:
            if (random.bounded(8) == 0) {
                const bool isEmpty = random.bounded(3) == 0;
                library.takeOver({.patches = isEmpty ? QList<VelgorPatch>() : QList{fresh(), fresh()}});
            }
        }
    }
};

VELGOR_TEST(TestLibraryListModel)
#include "tst_LibraryListModel.moc"
