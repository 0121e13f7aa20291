#include "DeskFixture.h"
#include "TestProgram.h"

#include <QRandomGenerator>

#include <algorithm>
#include <functional>

using TestPatches::isIdentical;

namespace {

const QString abc = QStringLiteral("A B C");

/// The words of the steps, the last one last.
QStringList namesOf(const QUndoStack &steps)
{
    QStringList names;
    for (int i = 0; i < steps.count(); ++i) {
        names.append(steps.text(i));
    }
    return names;
}

/// What is stored and exported.
struct State {
    QList<VelgorPatch> patches;
    std::optional<quint64> defaultPatch;
    QList<VelgorContentPatch> list;
    QMap<QString, int> versions;
    bool isTailBitInverse;

    static State of(const DeskFixture &desk)
    {
        return {desk.library.patchesInOwnOrder(), desk.library.defaultPatch(), desk.content.velgorContentPatchList(),
            desk.content.versions(), desk.content.inverseTailBit()};
    }

    bool operator==(const State &other) const
    {
        const auto isSameSlot = [](const VelgorContentPatch &a, const VelgorContentPatch &b) {
            return a.id == b.id && a.bank == b.bank && a.number == b.number && isIdentical(a.patch, b.patch);
        };
        return std::equal(patches.begin(), patches.end(), other.patches.begin(), other.patches.end(), isIdentical)
            && std::equal(list.begin(), list.end(), other.list.begin(), other.list.end(), isSameSlot)
            && defaultPatch == other.defaultPatch && versions == other.versions
            && isTailBitInverse == other.isTailBitInverse;
    }
};

/// While the user chooses a file, something else is done.
struct SlowChoice : FakeFileDialogs {
    std::function<void()> meanwhile;

    std::optional<QString> askOpenFile(const QString &title) override
    {
        meanwhile();
        return FakeFileDialogs::askOpenFile(title);
    }
};

QList<quint64> someIds(const VelgorLibrary &library, QRandomGenerator &random)
{
    QList<quint64> ids;
    for (const VelgorPatch &patch : library.patches()) {
        if (!patch.empty && random.bounded(4) == 0) {
            ids.append(patch.id());
        }
    }
    return ids;
}

/// One thing that a user might do, of every kind.
void doAnything(DeskFixture &desk, QRandomGenerator &random)
{
    const qsizetype row = random.bounded(desk.library.patches().size());
    const qsizetype slot = random.bounded(desk.content.velgorContentPatchList().size());
    VelgorPatch patch = desk.library.patches().at(row);
    desk.library.setSelection(patch.id());
    switch (random.bounded(14)) {
    case 0:
        desk.tick({row});
        desk.libraryEditor.tickToo(someIds(desk.library, random));
        desk.libraryEditor.deleteAndGoOn();
        break;
    case 1:
        patch.comment = TestPatches::randomText(random, 9);
        desk.libraryEditor.edit(patch);
        break;
    case 2:
        patch.name = TestPatches::randomText(random, 9);
        desk.libraryEditor.edit(patch);
        break;
    case 3:
        desk.libraryEditor.flipFlagOfSelected(random.bounded(2) ? &VelgorPatch::guitar : &VelgorPatch::solo);
        break;
    case 4:
        desk.libraryEditor.duplicateSelected();
        break;
    case 5:
        desk.libraryEditor.setSelectedAsDefault();
        break;
    case 6:
        desk.libraryEditor.sort();
        break;
    case 7:
        desk.libraryEditor.drop({desk.row(row)}, random.bounded(desk.library.count() + 1));
        break;
    case 8:
        desk.libraryEditor.drop({desk.slot(slot)}, 0);
        break;
    case 9:
        desk.contentEditor.dropDest(patch.id(), slot);
        break;
    case 10:
        desk.selectSlots({slot});
        desk.contentEditor.replaceSelectedSlots();
        break;
    case 11:
        desk.contentEditor.moveSlots({slot}, random.bounded(desk.content.velgorContentPatchList().size()));
        break;
    case 12:
        desk.contentEditor.setInverseTailBit(!desk.content.inverseTailBit());
        break;
    default:
        desk.libraryEditor.flipMultiSelection();
    }
}

} // namespace

class TestEditHistory : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aDeleteComesBackWithAllThatBelongedToIt()
    {
        DeskFixture desk(QStringLiteral("A B C D"));
        desk.libraryEditor.setDefaultPatch(desk.idOf(2));
        desk.tick({0, 2});
        desk.library.setSelection(desk.idOf(1));
        const State before = State::of(desk);
        desk.calls.calls.clear();
        desk.libraryEditor.deleteSelected();
        QCOMPARE(desk.shown(), QStringLiteral("B D"));
        const State after = State::of(desk);
        desk.history.steps().undo();
        QVERIFY(State::of(desk) == before);
        QVERIFY(desk.library.multiSelections().isTicked(desk.idOf(2)));
        desk.history.steps().redo();
        QVERIFY(State::of(desk) == after);
        const QString removed = QStringLiteral("remove %1,%2")
                                    .arg(DeskFixture::patch(QStringLiteral("A")).id())
                                    .arg(DeskFixture::patch(QStringLiteral("C")).id());
        QCOMPARE(desk.calls.calls,
            (QStringList{removed, QStringLiteral("save B,D"), QStringLiteral("delayedSave A,B,C,D"), removed,
                QStringLiteral("save B,D")}));
    }

    void typingIsOneStepAField()
    {
        DeskFixture desk(abc, QStringLiteral("B"));
        const VelgorPatch before = desk.library.patches().at(1);
        const VelgorPatch beforeInSlot = desk.content.velgorContentPatchList().first().patch;
        VelgorPatch edited = before;
        for (const QString &text : {QStringLiteral("w"), QStringLiteral("wa"), QStringLiteral("warm")}) {
            edited.comment = text;
            desk.libraryEditor.edit(edited);
        }
        edited.name = QStringLiteral("New");
        desk.libraryEditor.edit(edited);
        edited.guitar = true;
        desk.libraryEditor.edit(edited);
        edited.bass = true;
        desk.libraryEditor.edit(edited);
        QCOMPARE(namesOf(desk.history.steps()).size(), 4);
        for (int i = 0; i < 3; ++i) {
            desk.history.steps().undo();
        }
        QCOMPARE(desk.library.patches().at(1).name, QStringLiteral("B"));
        QCOMPARE(desk.content.velgorContentPatchList().first().patch.comment, QStringLiteral("warm"));
        desk.history.steps().undo();
        QVERIFY(isIdentical(desk.library.patches().at(1), before));
        QVERIFY(isIdentical(desk.content.velgorContentPatchList().first().patch, beforeInSlot));
        QVERIFY(!desk.history.steps().canUndo());
    }

    void whatChangesNothingIsNoStep()
    {
        DeskFixture desk(abc);
        desk.libraryEditor.edit(desk.library.patches().first());
        desk.libraryEditor.drop({desk.row(1)}, 1);
        desk.libraryEditor.sort();
        desk.library.setSelection(desk.idOf(0));
        desk.libraryEditor.setDefaultPatch(12);
        QCOMPARE(desk.history.steps().count(), 0);
        QCOMPARE(desk.calls.calls, QStringList());
    }

    void aSortedOrderThatIsKeptComesBack()
    {
        DeskFixture desk(QStringLiteral("C A B"));
        desk.libraryEditor.sort();
        const State before = State::of(desk);
        desk.libraryEditor.drop({desk.row(0)}, 0);
        QCOMPARE(TestPatches::names(desk.library.patchesInOwnOrder()).join(u' '), abc);
        QCOMPARE(desk.calls.calls, QStringList{QStringLiteral("delayedSave A,B,C")});
        desk.history.steps().undo();
        QVERIFY(State::of(desk) == before);
        QCOMPARE(TestPatches::names(desk.library.patchesInOwnOrder()).join(u' '), QStringLiteral("C A B"));
        QCOMPARE(desk.calls.calls.size(), 2);
    }

    void anotherLibraryEndsTheHistory()
    {
        DeskFixture desk(abc);
        desk.libraryEditor.drop({desk.row(0)}, 3);
        const std::optional loaded = LibraryState();
        desk.libraryEditor.adoptLoaded(loaded, {});
        QVERIFY(!desk.history.steps().canUndo());
    }

    void whatHappensWhileAFileIsChosenIsNoPartOfTheImport()
    {
        DeskFixture desk(abc);
        FakeFileAccess access;
        SlowChoice dialogs;
        PatchFileHandler handler(access, &dialogs);
        ContentFiles contentFiles(desk.content, handler, desk.history);
        const QString path = QStringLiteral("/list.prst");
        access.files.insert(path, TestRecords::fileBytes({TestRecords::patch(QStringLiteral("X"))}, {SUserIR()}));
        dialogs.answer = path;
        dialogs.meanwhile = [&] { desk.libraryEditor.drop({desk.row(0)}, 3); };
        contentFiles.importFile();
        QCOMPARE(namesOf(desk.history.steps()).join(u';'), QStringLiteral("Move of \"A\";Import"));
        desk.history.steps().undo();
        QVERIFY(desk.content.velgorContentPatchList().isEmpty());
        QCOMPARE(desk.shown(), QStringLiteral("B C A"));
        dialogs.meanwhile = [&] { desk.libraryEditor.adoptLoaded(LibraryState(), {}); };
        contentFiles.importFile();
        QCOMPARE(namesOf(desk.history.steps()), QStringList{QStringLiteral("Import")});
        desk.history.steps().undo();
        QCOMPARE(desk.library.count(), 0);
    }

    void anImportTakenBackBringsBackTheFormerFile()
    {
        DeskFixture desk;
        ContentFiles &contentFiles = desk.contentFiles;
        const QString first = QStringLiteral("/first.prst");
        const QString second = QStringLiteral("/second.prst");
        desk.memory.files.insert(first, TestRecords::fileBytes({TestRecords::patch(QStringLiteral("X"))}, {SUserIR()}));
        desk.memory.files.insert(
            second, TestRecords::fileBytes({TestRecords::patch(QStringLiteral("Y"))}, {SUserIR()}));
        contentFiles.importFile(first);
        contentFiles.importFile(second);
        QUndoStack &steps = desk.history.steps();
        steps.undo();
        QCOMPARE(contentFiles.fileName(), first);
        QVERIFY(!contentFiles.isModified());
        steps.undo();
        QCOMPARE(contentFiles.fileName(), QString());
        steps.redo();
        QCOMPARE(contentFiles.fileName(), first);
        // Where the list was exported to meanwhile is no part of a step.
        desk.contentEditor.setInverseTailBit(true);
        desk.dialogs.answer = second;
        QVERIFY(contentFiles.exportList());
        steps.undo();
        QCOMPARE(contentFiles.fileName(), second);
        QVERIFY(contentFiles.isModified());
    }

    void stepsAreCalledByWhatWasDone()
    {
        DeskFixture desk(abc, QStringLiteral("X Y"));
        desk.library.setSelection(desk.idOf(0));
        desk.libraryEditor.duplicateSelected();
        desk.libraryEditor.setSelectedAsDefault();
        desk.libraryEditor.flipFlagOfSelected(&VelgorPatch::guitar);
        desk.libraryEditor.drop({desk.row(0)}, 2);
        desk.selectSlots({0, 1});
        desk.libraryEditor.keepSelectedSlots();
        desk.contentEditor.moveSlots({0}, 2);
        desk.contentEditor.replaceSelectedSlots();
        desk.contentEditor.dropDest(desk.idOf(0), 0);
        desk.contentEditor.reset();
        desk.tick({0, 1});
        desk.libraryEditor.deleteSelected();
        QCOMPARE(namesOf(desk.history.steps()).join(u';'),
            QStringLiteral("Duplicate of a Patch;Choice of the Default Patch;Mark of a Patch;Move of \"A\";"
                           "Keeping of 2 Patches;Move of a Slot;Replacing of 2 Slots;Placing of a Patch;New List;"
                           "Delete of 2 Patches"));
    }

    void anyWalkCanBeTakenBackAndDoneAgain()
    {
        constexpr quint32 walks = 5;
        constexpr int deeds = 500;
        for (quint32 seed = 1; seed <= walks; ++seed) {
            DeskFixture desk(QStringLiteral("A B C D E F G"), QStringLiteral("A X Y B Z C"));
            QUndoStack &steps = desk.history.steps();
            QRandomGenerator random(seed);
            QList<State> states{State::of(desk)};
            for (int i = 0; i < deeds; ++i) {
                const int before = steps.index();
                doAnything(desk, random);
                if (steps.index() > before) {
                    states.append(State::of(desk));
                } else {
                    states.last() = State::of(desk);
                }
            }
            QCOMPARE(states.size(), steps.count() + 1);
            QVERIFY(steps.count() > deeds / 2);
            for (int at = steps.count(), i = 0; i < deeds * 4; ++i) {
                const bool isBack = i < deeds ? at > 0 : random.bounded(2) == 0;
                if (isBack ? steps.canUndo() : steps.canRedo()) {
                    at += isBack ? -1 : 1;
                    isBack ? steps.undo() : steps.redo();
                    QVERIFY2(
                        State::of(desk) == states.at(at), qPrintable(QStringLiteral("%1 at %2").arg(seed).arg(at)));
                }
                if (i % 7 == 0) {
                    desk.libraryEditor.sort();
                    QVERIFY(State::of(desk) == states.at(at));
                }
            }
        }
    }
};

VELGOR_TEST(TestEditHistory)
#include "tst_EditHistory.moc"
