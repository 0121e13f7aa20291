#include "CommandTargets.h"
#include "TestPatches.h"
#include "TestProgram.h"
#include "VelgorLibrary.h"

#include <QCoreApplication>
#include <QTest>

using TestPatches::imported;

namespace {

struct Library : VelgorLibrary {
    explicit Library(const QString &names)
    {
        for (const QString &name : names.split(u' ', Qt::SkipEmptyParts)) {
            append(imported(name, name.at(0).unicode()), false, false);
        }
    }

    [[nodiscard]] quint64 idOf(qsizetype row) const { return patches().at(row).id(); }
    void tick(const QList<int> &rows)
    {
        MultiSelections ticks;
        for (const int row : rows) {
            ticks.multiSelections.insert(idOf(row), true);
        }
        setMultiSelections(ticks);
    }
    [[nodiscard]] QString several() const { return TestPatches::names(CommandTargets::several(*this)).join(u' '); }
};

} // namespace

class TestCommandTargets : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void severalMeansTheTicksOrElseTheSelectedRow_data()
    {
        QTest::addColumn<bool>("isTicking");
        QTest::addColumn<QList<int>>("ticks");
        QTest::addColumn<int>("selected");
        QTest::addColumn<QString>("several");
        QTest::newRow("nothing") << false << QList<int>{} << -1 << QString();
        QTest::newRow("a row") << false << QList<int>{} << 1 << QStringLiteral("B");
        QTest::newRow("ticks left from before") << false << QList<int>{0, 2} << 1 << QStringLiteral("B");
        QTest::newRow("ticks left from before, no row") << false << QList<int>{0, 2} << -1 << QString();
        QTest::newRow("ticking, nothing") << true << QList<int>{} << -1 << QString();
        QTest::newRow("ticking, a row") << true << QList<int>{} << 1 << QStringLiteral("B");
        QTest::newRow("ticks") << true << QList<int>{2, 0} << -1 << QStringLiteral("A C");
        QTest::newRow("ticks and another row") << true << QList<int>{2, 0} << 1 << QStringLiteral("A C");
    }

    void severalMeansTheTicksOrElseTheSelectedRow()
    {
        QFETCH(const bool, isTicking);
        QFETCH(const QList<int>, ticks);
        QFETCH(const int, selected);
        QFETCH(const QString, several);
        Library library(QStringLiteral("A B C"));
        library.setIsMultiSel(isTicking);
        library.tick(ticks);
        if (selected >= 0) {
            library.setSelection(library.idOf(selected));
        }
        QCOMPARE(library.several(), several);
        QCOMPARE(CommandTargets::count(library), several.split(u' ', Qt::SkipEmptyParts).size());
        QCOMPARE(CommandTargets::areTicked(library), isTicking && !ticks.isEmpty());
        const VelgorPatch *one = CommandTargets::one(library);
        QCOMPARE(one ? one->name : QString(), selected >= 0 ? QStringLiteral("B") : QString());
    }

    void aDragMeansTheTicksOrElseItsOwnRow()
    {
        Library library(QStringLiteral("A B C"));
        library.setSelection(library.idOf(0));
        library.setIsMultiSel(true);
        const auto dragged = [&library](qsizetype row) {
            return TestPatches::names(CommandTargets::several(library, library.idOf(row), 2)).join(u' ');
        };
        QCOMPARE(dragged(1), QStringLiteral("B"));
        QCOMPARE(CommandTargets::count(library, 12), 0);
        library.tick({0, 1, 2});
        QCOMPARE(dragged(1), QStringLiteral("A B"));
        QCOMPARE(CommandTargets::count(library, library.idOf(1)), 3);
    }

    void thePlaceholderIsNeverMeant()
    {
        Library library{QString()};
        library.setSelection(library.idOf(0));
        QVERIFY(!CommandTargets::one(library));
        QCOMPARE(CommandTargets::count(library), 0);
        QVERIFY(CommandTargets::several(library, library.idOf(0)).isEmpty());
    }

    void aClassificationIsSetWhenEachOfThemHasIt()
    {
        Library library(QStringLiteral("A B C"));
        VelgorPatch patch = library.patches().at(1);
        patch.solo = true;
        library.update(patch);
        QVERIFY(!CommandTargets::allHave(library, &VelgorPatch::solo));
        library.setSelection(patch.id());
        QVERIFY(CommandTargets::allHave(library, &VelgorPatch::solo));
        library.setIsMultiSel(true);
        library.tick({1, 2});
        QVERIFY(!CommandTargets::allHave(library, &VelgorPatch::solo));
        library.tick({1});
        library.setSelection(library.idOf(0));
        QVERIFY(CommandTargets::allHave(library, &VelgorPatch::solo));
    }
};

VELGOR_TEST(TestCommandTargets)
#include "tst_CommandTargets.moc"
