#include "ContentListModel.h"
#include "PatchPayload.h"
#include "PatchRoles.h"
#include "TestPatches.h"
#include "TestProgram.h"
#include "VelgorContent.h"

#include <QAbstractItemModelTester>
#include <QCoreApplication>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>

#include <functional>
#include <memory>

using TestPatches::imported;

namespace {

SPresetFile fileOf(int count)
{
    QList<SPatch> patches;
    for (int i = 0; i < count; ++i) {
        patches.append(TestRecords::patch(QStringLiteral("P%1").arg(i), i + 1));
    }
    return TestRecords::file(patches);
}

} // namespace

class TestContentListModel : public QObject {
    Q_OBJECT

    struct Shown {
        VelgorContent content;
        ContentListModel model{content};
        QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
        QSignalSpy resets{&model, &QAbstractItemModel::modelReset};
        QSignalSpy inserted{&model, &QAbstractItemModel::rowsInserted};
        QSignalSpy removed{&model, &QAbstractItemModel::rowsRemoved};
        QSignalSpy moved{&model, &QAbstractItemModel::rowsMoved};
        QSignalSpy changed{&model, &QAbstractItemModel::dataChanged};

        explicit Shown(int count = 0)
        {
            if (count > 0) {
                content.populate(fileOf(count));
            }
            forget();
        }
        void forget()
        {
            for (QSignalSpy *spy : {&resets, &inserted, &removed, &moved, &changed}) {
                spy->clear();
            }
        }
        /// Signals since forget(), as "reset insert remove move change".
        [[nodiscard]] QString signalCounts() const
        {
            QStringList counts;
            for (const QSignalSpy *spy : {&resets, &inserted, &removed, &moved, &changed}) {
                counts.append(QString::number(spy->count()));
            }
            return counts.join(u' ');
        }
        [[nodiscard]] const QList<VelgorContentPatch> &list() const { return content.velgorContentPatchList(); }
        [[nodiscard]] QVariant data(int row, int role) const { return model.index(row).data(role); }
        [[nodiscard]] QString rows() const
        {
            QStringList rows;
            for (int row = 0; row < model.rowCount(); ++row) {
                rows.append(data(row, Qt::DisplayRole).toString());
            }
            return rows.join(u';');
        }
    };

private Q_SLOTS:
    void aChangeIsTranslatedOneToOne_data()
    {
        using Change = std::function<void(Shown &)>;
        QTest::addColumn<Change>("change");
        QTest::addColumn<QString>("signalCounts");
        QTest::addColumn<QString>("rows");
        const auto row = [](const char *name, const char *counts, const char *rows, const Change &change) {
            QTest::newRow(name) << change << QString::fromLatin1(counts) << QString::fromLatin1(rows);
        };
        row("placed", "0 0 0 0 1", "1.1 P0;1.2 New;1.3 P2;2.1 P3",
            [](Shown &shown) { shown.content.setPatch(imported(QStringLiteral("New")), 1); });
        row("replaced", "0 0 0 0 1", "1.1 P0;1.2 P1;1.3 New;2.1 P3",
            [](Shown &shown) { shown.content.replace(shown.list().at(2).id, imported(QStringLiteral("New"))); });
        row("moved", "0 0 0 1 1", "1.1 P3;1.2 P0;1.3 P1;2.1 P2", [](Shown &shown) { shown.content.move(3, 0); });
        row("moved onto itself", "0 0 0 0 0", "1.1 P0;1.2 P1;1.3 P2;2.1 P3",
            [](Shown &shown) { shown.content.move(3, 4); });
        row("two moved", "0 0 0 0 1", "1.1 P1;1.2 P3;1.3 P0;2.1 P2", [](Shown &shown) {
            shown.content.move(QList<qsizetype>{1, 3}, 0);
        });
        row("renamed in the library", "0 0 0 0 1", "1.1 P0;1.2 New;1.3 P2;2.1 P3", [](Shown &shown) {
            VelgorPatch patch = shown.list().at(1).patch;
            patch.name = QStringLiteral("New");
            shown.content.propagateChangedPatch(patch);
        });
        row("shortened", "0 0 1 0 0", "1.1 P0;1.2 P1", [](Shown &shown) {
            shown.content.setLimit(2);
            shown.content.adjust(std::nullopt);
        });
        row("lengthened", "0 1 0 0 0", "1.1 P0;1.2 P1;1.3 P2;2.1 P3;2.2 -empty-", [](Shown &shown) {
            shown.content.setLimit(5);
            shown.content.adjust(std::nullopt);
        });
        row("imported", "1 0 0 0 0", "1.1 P0", [](Shown &shown) { shown.content.populate(fileOf(1)); });
        row("selected", "0 0 0 0 0", "1.1 P0;1.2 P1;1.3 P2;2.1 P3",
            [](Shown &shown) { shown.content.setSelections({shown.list().first().id}); });
    }

    void aChangeIsTranslatedOneToOne()
    {
        using Change = std::function<void(Shown &)>;
        QFETCH(const Change, change);
        QFETCH(const QString, signalCounts);
        QFETCH(const QString, rows);
        Shown shown(4);
        change(shown);
        QCOMPARE(shown.signalCounts(), signalCounts);
        QCOMPARE(shown.rows(), rows);
    }

    void slotsMovedTogetherAreOneNewLayoutThatIndexesFollow()
    {
        Shown shown(4);
        const QSignalSpy layouts(&shown.model, &QAbstractItemModel::layoutChanged);
        QList<QPersistentModelIndex> indexes;
        for (int row = 0; row < 4; ++row) {
            indexes.append(shown.model.index(row));
        }
        shown.content.move(QList<qsizetype>{0, 1, 3}, 3);
        QCOMPARE(layouts.count(), 1);
        QCOMPARE(indexes.at(0).row(), 1);
        QCOMPARE(indexes.at(1).row(), 2);
        QCOMPARE(indexes.at(2).row(), 0);
        QCOMPARE(indexes.at(3).row(), 3);
    }

    void anyChangeLeavesTheSlotsAsRows_data()
    {
        QTest::addColumn<int>("seed");
        for (int seed = 1; seed <= 8; ++seed) {
            QTest::addRow("%d", seed) << seed;
        }
    }

    void anyChangeLeavesTheSlotsAsRows()
    {
        QFETCH(const int, seed);
        QRandomGenerator random(static_cast<quint32>(seed));
        Shown shown;
        for (int step = 0; step < 300; ++step) {
            QList<std::pair<QPersistentModelIndex, QUuid>> followed;
            for (int row = 0; row < shown.model.rowCount(); ++row) {
                followed.append({QPersistentModelIndex(shown.model.index(row)), shown.list().at(row).id});
            }
            shown.forget();
            const bool isReplacing = takeStep(shown, random);
            QCOMPARE(shown.model.rowCount(), shown.list().size());
            QSet<QUuid> present;
            for (int row = 0; row < shown.model.rowCount(); ++row) {
                const VelgorContentPatch &slot = shown.list().at(row);
                present.insert(slot.id);
                QCOMPARE(shown.data(row, PatchRoles::Name).toString(), slot.patch.name);
                QCOMPARE(shown.data(row, PatchRoles::Position).toString(),
                    QStringLiteral("%1.%2").arg(row / 3 + 1).arg(row % 3 + 1));
            }
            for (const auto &[index, id] : followed) {
                if (index.isValid()) {
                    QVERIFY(isReplacing || shown.list().at(index.row()).id == id);
                } else {
                    QVERIFY(!shown.resets.isEmpty() || !present.contains(id));
                }
            }
        }
    }

    void aRowReadsAsItLooks()
    {
        Shown shown(8);
        shown.content.setPatch(imported(QStringLiteral("Lead"), 5, TestRecords::userIR(0), "V1.21"), 7);
        QCOMPARE(shown.data(7, Qt::DisplayRole).toString(), QStringLiteral("3.2 Lead, user IR"));
        QCOMPARE(shown.data(6, Qt::DisplayRole).toString(), QStringLiteral("3.1 P6"));
        QVERIFY(shown.data(7, Qt::AccessibleDescriptionRole).toString().contains(QStringLiteral("1.21")));
        QVERIFY(shown.data(7, PatchRoles::HasUserIR).toBool());
        QVERIFY(!shown.data(6, PatchRoles::HasUserIR).toBool());
        QCOMPARE(shown.data(7, PatchRoles::Version).toString(), QStringLiteral("V1.21"));
        QVERIFY(!shown.data(7, Qt::CheckStateRole).isValid());
    }

    void onlyRowsWhoseUseChangedAreAnnounced()
    {
        Shown shown(4);
        shown.model.setUsedRows({1, 2});
        QCOMPARE(shown.changed.count(), 2);
        QVERIFY(shown.data(1, PatchRoles::IsPlaceUsed).toBool());
        QVERIFY(!shown.data(0, PatchRoles::IsPlaceUsed).toBool());
        shown.model.setUsedRows({2, 3});
        QCOMPARE(shown.changed.count(), 4);
        shown.model.setUsedRows({2, 3});
        QCOMPARE(shown.changed.count(), 4);
        shown.content.populate(fileOf(4));
        QVERIFY(!shown.data(2, PatchRoles::IsPlaceUsed).toBool());
    }

    void aDragCarriesItsSlotsInTheirOrder()
    {
        Shown shown(4);
        const std::unique_ptr<QMimeData> data(shown.model.mimeData({shown.model.index(3), shown.model.index(1)}));
        const QList<TransferablePatch> items = PatchPayload::unpack(data.get());
        QCOMPARE(items.size(), 2);
        QVERIFY(items.first() == TransferablePatch::ofSlot(shown.list().at(1)));
        QVERIFY(items.last() == TransferablePatch::ofSlot(shown.list().at(3)));
        QVERIFY(!shown.model.mimeData({}));
    }

private:
    /// One of everything that can happen to a list; true when slots gave way to new ones in their places.
    static bool takeStep(Shown &shown, QRandomGenerator &random)
    {
        VelgorContent &content = shown.content;
        const auto upTo = [&random](qsizetype count) { return static_cast<qsizetype>(random.bounded(qint64(count))); };
        const VelgorPatch patch = imported(QStringLiteral("N%1").arg(random.bounded(100)), 1);
        if (shown.list().isEmpty() || random.bounded(30) == 0) {
            content.populate(fileOf(1 + static_cast<int>(random.bounded(12))));
            return true;
        }
        const qsizetype count = shown.list().size();
        switch (random.bounded(8)) {
        case 0:
            if (random.bounded(10) == 0) {
                content.createNew(patch);
            }
            return true;
        case 1:
            content.setPatch(patch, upTo(count + 1));
            break;
        case 2:
            content.replace(shown.list().at(upTo(count)).id, patch);
            return true;
        case 3:
            content.move(upTo(count), upTo(count + 1));
            break;
        case 4:
        case 5: {
            QList<qsizetype> rows;
            for (qsizetype row = 0; row < count; ++row) {
                if (random.bounded(3) == 0) {
                    rows.append(row);
                }
            }
            content.move(rows, upTo(count + 1));
            break;
        }
        case 6: {
            VelgorPatch edited = shown.list().at(upTo(count)).patch;
            edited.name += u'x';
            content.propagateChangedPatch(edited);
            break;
        }
        default:
            content.setLimit(1 + static_cast<int>(random.bounded(15)));
            content.adjust(patch);
        }
        return false;
    }
};

VELGOR_TEST(TestContentListModel)
#include "tst_ContentListModel.moc"
