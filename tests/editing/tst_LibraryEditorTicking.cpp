#include "DeskFixture.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTest>

using TestPatches::imported;
using TestPatches::names;

namespace {

/// Names that begin alike are shown by a filter for that letter.
struct Desk : DeskFixture {
    explicit Desk(const QString &libraryNames)
    {
        int seed = 0;
        for (const QString &name : wordsOf(libraryNames)) {
            library.append(imported(name, ++seed), false, false);
        }
    }

    [[nodiscard]] QString ticked() const { return names(library.getMultiSelection()).join(u' '); }
    [[nodiscard]] QString selected() const
    {
        const auto found = library.getPatchFromId(library.selection());
        return found ? found->patch->name : QString();
    }
    void filterByName(const QString &name)
    {
        LibraryViewFilter filter;
        filter.filterPatch.name = name;
        libraryEditor.setFilter(filter);
    }
};

const QString six = QStringLiteral("a1 b1 a2 b2 a3 b3");

} // namespace

class TestLibraryEditorTicking : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anotherFilterDeselectsAndTheSameDoesNot()
    {
        Desk desk(six);
        desk.library.setSelection(desk.idOf(0));
        desk.filterByName({});
        QCOMPARE(desk.selected(), QStringLiteral("a1"));
        desk.filterByName(QStringLiteral("a"));
        QCOMPARE(desk.selected(), QString());
    }

    void allMeansWhatTheFilterShows()
    {
        Desk desk(six);
        desk.tick({1});
        desk.filterByName(QStringLiteral("a"));
        desk.libraryEditor.tickAll();
        QCOMPARE(desk.ticked(), QStringLiteral("a1 a2 a3"));
        QCOMPARE(desk.libraryEditor.hiddenCount(desk.library.patches()), 3);
        desk.filterByName({});
        desk.libraryEditor.tickAll();
        QCOMPARE(desk.ticked(), six);
        QCOMPARE(desk.libraryEditor.hiddenCount(desk.library.patches()), 0);
    }

    void tickingOneMoreBeginsWithTheSelectedRow_data()
    {
        QTest::addColumn<QString>("filter");
        QTest::addColumn<QString>("ticked");
        QTest::newRow("shown") << QString() << QStringLiteral("a1 b2");
        QTest::newRow("edited out of the filter") << QStringLiteral("b") << QStringLiteral("b2");
    }

    void tickingOneMoreBeginsWithTheSelectedRow()
    {
        QFETCH(const QString, filter);
        Desk desk(six);
        desk.filterByName(filter);
        desk.library.setSelection(desk.idOf(0));
        desk.libraryEditor.tickToo({desk.idOf(3)});
        QVERIFY(desk.library.isMultiSel());
        QTEST(desk.ticked(), "ticked");
        desk.library.setSelection(desk.idOf(2));
        const QString before = desk.ticked();
        desk.libraryEditor.tickToo({desk.idOf(5)});
        QCOMPARE(desk.ticked(), before + QStringLiteral(" b3"));
    }

    void tickedPatchesAreDuplicatedInTheirOrder()
    {
        Desk desk(QStringLiteral("A B C"));
        desk.tick({2, 0});
        desk.library.setSelection(desk.idOf(1));
        desk.libraryEditor.duplicateSelected();
        QCOMPARE(desk.shown(), QStringLiteral("A B C A-1 C-1"));
        desk.library.setMultiSelections({});
        desk.libraryEditor.duplicateSelected();
        QCOMPARE(desk.shown(), QStringLiteral("A B C A-1 C-1 B-1"));
    }

    void tickedPatchesAreClassifiedTogetherAsOneChange()
    {
        Desk desk(QStringLiteral("A B C D"));
        VelgorPatch patch = desk.library.patches().at(2);
        patch.solo = true;
        desk.library.update(patch);
        desk.tick({0, 2, 3});
        desk.library.setSelection(desk.idOf(1));
        const QSignalSpy changes(&desk.library, &VelgorLibrary::rowsChanged);
        const auto solos = [&desk] {
            QString text;
            for (const VelgorPatch &each : desk.library.patches()) {
                text += each.solo ? u'x' : u'-';
            }
            return text;
        };
        desk.libraryEditor.flipFlagOfSelected(&VelgorPatch::solo);
        QCOMPARE(solos(), QStringLiteral("x-xx"));
        QCOMPARE(changes.count(), 1);
        QCOMPARE(desk.calls.calls.size(), 1);
        desk.libraryEditor.flipFlagOfSelected(&VelgorPatch::solo);
        QCOMPARE(solos(), QStringLiteral("----"));
    }

    void deletingWithoutATickTakesTheRow()
    {
        Desk desk(QStringLiteral("A B C"));
        desk.tick({});
        desk.library.setSelection(desk.idOf(1));
        desk.libraryEditor.deleteSelected();
        QCOMPARE(desk.shown(), QStringLiteral("A C"));
    }

    void afterADeletionTheNextShownRowIsSelected_data()
    {
        QTest::addColumn<QString>("filter");
        QTest::addColumn<QList<qsizetype>>("ticks");
        QTest::addColumn<int>("selected");
        QTest::addColumn<QString>("next");
        QTest::newRow("in the middle") << "" << QList<qsizetype>{} << 1 << QStringLiteral("a2");
        QTest::newRow("the last") << "" << QList<qsizetype>{} << 5 << QStringLiteral("a3");
        QTest::newRow("under a filter") << "a" << QList<qsizetype>{} << 2 << QStringLiteral("a3");
        QTest::newRow("the last under a filter") << "a" << QList<qsizetype>{} << 4 << QStringLiteral("a2");
        QTest::newRow("ticks, the row is left") << "" << QList<qsizetype>{0, 4} << 2 << QStringLiteral("a2");
        QTest::newRow("ticks, the row goes") << "" << QList<qsizetype>{2, 3} << 3 << QStringLiteral("a3");
        QTest::newRow("ticks up to the end") << "" << QList<qsizetype>{3, 4, 5} << 4 << QStringLiteral("a2");
        QTest::newRow("ticks, no row") << "" << QList<qsizetype>{1, 4} << -1 << QStringLiteral("a2");
        QTest::newRow("all that are shown") << "a" << QList<qsizetype>{0, 2, 4} << 2 << QString();
        QTest::newRow("all") << "" << QList<qsizetype>{0, 1, 2, 3, 4, 5} << 2 << QString();
    }

    void afterADeletionTheNextShownRowIsSelected()
    {
        QFETCH(const QString, filter);
        QFETCH(const QList<qsizetype>, ticks);
        QFETCH(const int, selected);
        Desk desk(six);
        desk.filterByName(filter);
        if (!ticks.isEmpty()) {
            desk.tick(ticks);
        }
        if (selected >= 0) {
            desk.library.setSelection(desk.idOf(selected));
        }
        desk.libraryEditor.deleteAndGoOn();
        QCOMPARE(desk.library.count(), 6 - std::max<qsizetype>(ticks.size(), 1));
        QTEST(desk.selected(), "next");
    }
};

VELGOR_TEST(TestLibraryEditorTicking)
#include "tst_LibraryEditorTicking.moc"
