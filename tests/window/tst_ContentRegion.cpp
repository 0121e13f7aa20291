#include "PatchRoles.h"
#include "ShownWidgets.h"
#include "TestProgram.h"
#include "WindowFixture.h"

#include <QAction>
#include <QApplication>

using namespace ShownWidgets;

namespace {

const QString disclaimer = QStringLiteral("I know that this file has not been created by a genuine Ostrel product and "
                                          "I assume taking the risk of using it.");

QString title(const WindowFixture &window)
{
    const QList<QLabel *> all = window.window->findChildren<QLabel *>();
    for (const QLabel *label : all) {
        if (label->accessibleName().startsWith(QStringLiteral("Selection for"))) {
            return label->accessibleName();
        }
    }
    return {};
}

QString usedSlots(const WindowFixture &window)
{
    QStringList positions;
    const QAbstractItemModel *model = window.contentList()->model();
    for (int row = 0; row < model->rowCount(); ++row) {
        const QModelIndex index = model->index(row, 0);
        if (index.data(PatchRoles::IsPlaceUsed).toBool()) {
            positions.append(index.data(PatchRoles::Position).toString());
        }
    }
    return positions.join(u' ');
}

QStringList namesIn(const QString &path)
{
    QFile file(path);
    const auto presets = SPresetFile::fromData(file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray());
    QStringList names;
    for (const SPatch &patch : presets ? presets->patches : QList<SPatch>()) {
        names.append(patch.name);
    }
    return names;
}

} // namespace

class TestContentRegion : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theNextStepIsSaidAfterAnImport()
    {
        const QString keep = QKeySequence(Qt::CTRL | Qt::Key_K).toString(QKeySequence::NativeText);
        const QString intoEmpty = QStringLiteral("Next: select slots on the left and press %1 to keep them, or drag "
                                                 "them into the library.")
                                      .arg(keep);
        const QString besidePatches = QStringLiteral("Next: select slots on the left and press %1 to keep them, or "
                                                     "drag a library patch onto a slot to replace it.")
                                          .arg(keep);
        const auto empty = WindowFixture::shown({});
        QVERIFY(!empty->isSaid(intoEmpty));
        empty->importList(QStringLiteral("A B"));
        QVERIFY(empty->isSaid(intoEmpty));
        const auto filled = WindowFixture::shown(QStringLiteral("Lead"));
        QVERIFY(!filled->isSaid(besidePatches));
        filled->importList(QStringLiteral("A B"));
        QVERIFY(filled->isSaid(QStringLiteral("Select item in library to see details")));
        QVERIFY(filled->isSaid(besidePatches));
        WindowFixture::click(filled->libraryList(), 0);
        QVERIFY(!filled->isSaid(besidePatches));
    }

    void anEmptyListHasNoElementsAndNothingToExport()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead"));
        QCOMPARE(title(*window), QStringLiteral("Selection for your Velgor (0 elements)"));
        QVERIFY(!window->isEnabled(QStringLiteral("Export")));
        QVERIFY(window->isEnabled(QStringLiteral("Import")));
        QVERIFY(window->isEnabled(QStringLiteral("Reset")));
    }

    void anImportFillsTheRowsByBankAndNumber()
    {
        const auto window = WindowFixture::shown({});
        window->dialogs.answer = window->presetFile(QStringLiteral("a.prst"), QStringLiteral("One Two Three Four"));
        QVERIFY(window->press(QStringLiteral("Import")));
        QCOMPARE(title(*window), QStringLiteral("Selection for your Velgor (4 elements)"));
        const QAbstractItemModel *rows = window->contentList()->model();
        QCOMPARE(rows->index(0, 0).data().toString(), QStringLiteral("1.1 One"));
        QCOMPARE(rows->index(3, 0).data().toString(), QStringLiteral("2.1 Four"));
        window->dialogs.answer = window->presetFile(QStringLiteral("b.prst"), QStringLiteral("Solo"));
        QVERIFY(window->choose(QStringLiteral("Import...")));
        QCOMPARE(title(*window), QStringLiteral("Selection for your Velgor (1 elements)"));
        QCOMPARE(window->dialogs.asked.size(), 2);
    }

    void anImportThatFailsIsToldAndChangesNothing()
    {
        const auto window = WindowFixture::shown({}, QStringLiteral("One Two"));
        window->dialogs.answer = window->parentPath() + QStringLiteral("/none.prst");
        QVERIFY(window->press(QStringLiteral("Import")));
        QCOMPARE(window->message(), QStringLiteral("Could not import file"));
        QVERIFY(window->messageText().contains(QStringLiteral("none.prst")));
        QVERIFY(window->answer(QStringLiteral("OK")));
        QCOMPARE(window->message(), QString());
        QVERIFY(!window->content.openError());
        QCOMPARE(window->slotNames(), QStringLiteral("One Two"));
    }

    void cancelledDialogsSayNothing()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead"), QStringLiteral("One Two"));
        QVERIFY(window->press(QStringLiteral("Import")));
        QCOMPARE(window->message(), QString());
        QVERIFY(window->press(QStringLiteral("Export")));
        QVERIFY(window->answer(QStringLiteral("OK")));
        QCOMPARE(window->message(), QString());
        WindowFixture::click(window->libraryList(), 0);
        QVERIFY(window->choose(QStringLiteral("Export One Patch")));
        QCOMPARE(window->message(), QString());
        QCOMPARE(window->dialogs.asked.size(), 3);
        QCOMPARE(window->slotNames(), QStringLiteral("One Two"));
    }

    void noNewListWithoutADefaultPatch_data()
    {
        QTest::addColumn<bool>("byMenu");
        QTest::newRow("button") << false;
        QTest::newRow("menu") << true;
    }

    void noNewListWithoutADefaultPatch()
    {
        QFETCH(const bool, byMenu);
        const auto window = WindowFixture::shown(QStringLiteral("Lead"), QStringLiteral("One Two"));
        const auto reset = [&] {
            return byMenu ? window->choose(QStringLiteral("New Velgor file")) : window->press(QStringLiteral("Reset"));
        };
        QVERIFY(reset());
        QCOMPARE(window->message(), QStringLiteral("You have to select a default patch in the library"));
        QVERIFY(window->answer(QStringLiteral("OK")));
        QVERIFY(!window->content.selectDefault());
        QCOMPARE(window->slotNames(), QStringLiteral("One Two"));
        WindowFixture::click(window->libraryList(), 0);
        QVERIFY(window->press(QStringLiteral("Default")));
        QVERIFY(reset());
        QCOMPARE(title(*window), QStringLiteral("Selection for your Velgor (99 elements)"));
        QCOMPARE(window->message(), QString());
        const QAbstractItemModel *rows = window->contentList()->model();
        QCOMPARE(rows->index(98, 0).data().toString(), QStringLiteral("33.3 Lead"));
    }

    void aDefaultPatchThatWasDeletedIsNone()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells"));
        WindowFixture::click(window->libraryList(), 0);
        QVERIFY(window->press(QStringLiteral("Default")));
        QVERIFY(window->press(QStringLiteral("Delete")));
        QVERIFY(window->answer(QStringLiteral("Yes")));
        QVERIFY(window->press(QStringLiteral("Reset")));
        QCOMPARE(window->message(), QStringLiteral("You have to select a default patch in the library"));
        QCOMPARE(window->content.velgorContentPatchList().size(), 0);
    }

    void anExportNeedsTheRiskToBeTaken_data()
    {
        QTest::addColumn<bool>("byMenu");
        QTest::newRow("button") << false;
        QTest::newRow("menu") << true;
    }

    void anExportNeedsTheRiskToBeTaken()
    {
        QFETCH(const bool, byMenu);
        const auto window = WindowFixture::shown({}, QStringLiteral("One Two"));
        const auto start = [&] {
            return byMenu ? window->choose(QStringLiteral("Export...")) : window->press(QStringLiteral("Export"));
        };
        const QString path = window->parentPath() + QStringLiteral("/out.prst");
        window->dialogs.answer = path;
        QVERIFY(start());
        QCOMPARE(window->message(), disclaimer);
        QVERIFY(window->answer(QStringLiteral("I don't accept")));
        QVERIFY(window->dialogs.asked.isEmpty());
        QVERIFY(start());
        QVERIFY(window->answer(QStringLiteral("OK")));
        QCOMPARE(window->message(), QString());
        QCOMPARE(namesIn(path).join(u' '), QStringLiteral("One Two"));
    }

    void anExportThatFailsIsTold()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead"), QStringLiteral("One Two"));
        window->dialogs.answer = window->parentPath() + QStringLiteral("/nowhere/out.prst");
        QVERIFY(window->press(QStringLiteral("Export")));
        QVERIFY(window->answer(QStringLiteral("OK")));
        QCOMPARE(window->message(), QStringLiteral("Could not export file"));
        QVERIFY(window->messageText().contains(QStringLiteral("out.prst")));
        QVERIFY(window->answer(QStringLiteral("OK")));
        QVERIFY(!window->content.saveError());
        WindowFixture::click(window->libraryList(), 0);
        QVERIFY(window->choose(QStringLiteral("Export One Patch")));
        QCOMPARE(window->message(), QStringLiteral("Could not export file"));
    }

    void theSelectedLibraryPatchIsExportedAlone()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells"), QStringLiteral("One Two"));
        const QString path = window->parentPath() + QStringLiteral("/one.prst");
        window->dialogs.answer = path;
        WindowFixture::click(window->libraryList(), 1);
        QVERIFY(window->choose(QStringLiteral("Export One Patch")));
        QCOMPARE(namesIn(path), QStringList{QStringLiteral("Bells")});
    }

    void severalSlotsAreSelectedWithShiftAndControl()
    {
        const auto window = WindowFixture::shown({}, QStringLiteral("One Two Three Four Five"));
        WindowFixture::click(window->contentList(), 1);
        WindowFixture::click(window->contentList(), 3, Qt::ShiftModifier);
        WindowFixture::click(window->contentList(), 2, Qt::ControlModifier);
        QCOMPARE(window->contentEditor.selectedRows(), (QList<qsizetype>{1, 3}));
        QCOMPARE(window->selectedRows(window->contentList()), QStringLiteral("1 3"));
    }

    void aNewListForgetsTheSelection()
    {
        const auto window = WindowFixture::shown({}, QStringLiteral("One Two"));
        WindowFixture::click(window->contentList(), 1);
        window->importList(QStringLiteral("Three Four"));
        QVERIFY(window->content.selections().isEmpty());
        QCOMPARE(window->selectedRows(window->contentList()), QString());
        QVERIFY(!window->menuEntry(QStringLiteral("Keep Selected Slots in Library"))->isEnabled());
    }

    void slotsThatHoldTheSelectedPatchAreMarkedWhateverTheirName()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead"), QStringLiteral("Bells Lead Choir Lead"));
        WindowFixture::click(window->libraryList(), 0);
        QCOMPARE(usedSlots(*window), QStringLiteral("1.2 2.1"));
        window->content.setPatch(VelgorPatch::copyNamed(window->library.patches().first(), QStringLiteral("Other")), 0);
        WindowFixture::settle();
        QCOMPARE(usedSlots(*window), QStringLiteral("1.1 1.2 2.1"));
        window->libraryEditor.select(std::nullopt);
        WindowFixture::settle();
        QCOMPARE(usedSlots(*window), QString());
    }

    void aBadgeOfTheDetailsLeadsToItsSlot()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells"));
        WindowFixture::click(window->libraryList(), 0);
        QVERIFY(window->press(QStringLiteral("Default")));
        QVERIFY(window->press(QStringLiteral("Reset")));
        QVERIFY(window->press(QStringLiteral("Go to slot 3.2")));
        QCOMPARE(window->selectedRows(window->contentList()), QStringLiteral("7"));
        QCOMPARE(window->contentEditor.selectedRows(), QList<qsizetype>{7});
    }

    void messagesComeOneAtATime()
    {
        const auto window = WindowFixture::shown({}, QStringLiteral("One"));
        window->content.setMixVersions(true);
        window->content.setOpenError(true);
        window->storage.setReadError(true);
        QStringList titles;
        while (!window->message().isEmpty() && titles.size() < 4) {
            titles.append(window->message());
            QVERIFY(window->answer(QStringLiteral("OK")) || window->answer(QStringLiteral("Not Now")));
        }
        QCOMPARE(titles.size(), 3);
        QVERIFY(titles.contains(QStringLiteral("Could not import file")));
        QVERIFY(titles.contains(QStringLiteral("You should not mix various versions of Velgor firmware in a preset "
                                               "file")));
        QVERIFY(titles.contains(QStringLiteral("Could not access to library directory.")));
        QVERIFY(!window->content.mixVersions() && !window->storage.readError());
    }
};

VELGOR_WIDGET_TEST(TestContentRegion)
#include "tst_ContentRegion.moc"
