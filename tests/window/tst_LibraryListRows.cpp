#include "LibraryEditor.h"
#include "LibraryListModel.h"
#include "PatchPayload.h"
#include "PatchRoles.h"
#include "ShownLibrary.h"
#include "TestPatches.h"
#include "TestProgram.h"
#include "VelgorContent.h"
#include "VelgorLibrary.h"

#include <QMimeData>
#include <QTest>

#include <functional>
#include <memory>

using namespace ShownLibrary;
using TestPatches::imported;

class TestLibraryListRows : public QObject {
    Q_OBJECT

private Q_SLOTS:
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
        shown.library.setDefaultPatch(shown.idOf(1));
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
};

VELGOR_TEST(TestLibraryListRows)
#include "tst_LibraryListRows.moc"
