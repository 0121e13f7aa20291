#include "LibraryAnnouncements.h"
#include "TestPatches.h"
#include "TestProgram.h"
#include "VelgorLibrary.h"

#include <QCoreApplication>
#include <QTest>

using TestPatches::imported;
using TestPatches::names;

namespace {

QList<VelgorPatch> patchesNamed(const QStringList &patchNames)
{
    QList<VelgorPatch> patches;
    for (const QString &name : patchNames) {
        patches.append(imported(name, static_cast<int>(patches.size())));
    }
    return patches;
}

const QStringList three{QStringLiteral("b"), QStringLiteral("c"), QStringLiteral("a")};

} // namespace

class TestVelgorLibraryTakeOver : public QObject {
    Q_OBJECT

private Q_SLOTS:
    static void loadedPatchesReplaceThePlaceholderInOneReset()
    {
        VelgorLibrary library;
        LibraryAnnouncements announcements(library);
        const LibraryState loaded{.patches = patchesNamed(three)};
        library.adopt(loaded);
        QCOMPARE(announcements.take(), QStringLiteral("+reset; reset"));
        QVERIFY(std::equal(library.patches().begin(), library.patches().end(), loaded.patches.begin(),
            loaded.patches.end(), TestPatches::isIdentical));
        QCOMPARE(library.count(), 3);
    }

    static void whatChangedIsAnnouncedOnceAllIsInPlace()
    {
        const QList<VelgorPatch> former = patchesNamed({QStringLiteral("x"), QStringLiteral("y")});
        VelgorLibrary library(former, former.first().id());
        library.setSelection(former.first().id());
        library.setIsMultiSel(true);
        library.setMultiSelections({{{former.last().id(), true}}});
        library.setDeleteConfirm(true);
        library.sort();
        const QList<VelgorPatch> patches = patchesNamed(three);
        const LibraryState loaded{.patches = patches, .defaultPatch = patches.last().id()};
        LibraryAnnouncements announcements(library);
        bool wasComplete = false;
        connect(&library, &VelgorLibrary::wasReset, &library, [&] {
            wasComplete = names(library.patches()) == three && !library.selection() && !library.isMultiSel()
                && library.multiSelections() == MultiSelections() && !library.deleteConfirm()
                && library.inverseSort() == TripleBool::tripleFalse && library.defaultPatch() == patches.last().id();
        });
        library.adopt(loaded);
        QVERIFY(wasComplete);
        QCOMPARE(announcements.take(), QStringLiteral("+reset; reset; selection; mode; ticks; step; default; confirm"));
    }

    static void listenersMaySelectDuringTheReset()
    {
        VelgorLibrary library;
        library.setSelection(library.patches().first().id());
        const QList<VelgorPatch> patches = patchesNamed(three);
        connect(&library, &VelgorLibrary::wasReset, &library, [&] { library.setSelection(patches.first().id()); });
        library.adopt({.patches = patches});
        QCOMPARE(library.selection(), patches.first().id());
    }

    static void orderOfTheListIsTheRememberedOne()
    {
        VelgorLibrary library;
        library.adopt({.patches = patchesNamed(three)});
        QCOMPARE(library.order(), TestPatches::ids(patchesNamed(three)));
        library.sort();
        QCOMPARE(
            names(library.patches()), (QStringList{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}));
        library.sort();
        QCOMPARE(names(library.patches()), three);
    }

    static void formerPatchesAreForgotten()
    {
        const VelgorPatch former = imported(QStringLiteral("former"), 9);
        VelgorLibrary library({former}, std::nullopt);
        QVERIFY(library.getPatchFromId(former.id()));
        const QList<VelgorPatch> patches = patchesNamed(three);
        library.adopt({.patches = patches});
        QVERIFY(!library.getPatchFromId(former.id()));
        QCOMPARE(library.getPatchFromId(patches.at(1).id())->index, 1);
    }

    static void nothingLoadedLeavesThePlaceholder_data()
    {
        VelgorPatch empty(QStringLiteral("Empty library"), false);
        empty.empty = true;
        QTest::addColumn<QList<VelgorPatch>>("loaded");
        QTest::newRow("no patch") << QList<VelgorPatch>();
        QTest::newRow("the placeholder") << QList<VelgorPatch>{empty};
        QTest::newRow("several placeholders") << QList<VelgorPatch>{empty, empty.withId(1)};
    }
    static void nothingLoadedLeavesThePlaceholder()
    {
        QFETCH(const QList<VelgorPatch>, loaded);
        VelgorLibrary library(patchesNamed(three), std::nullopt);
        library.saveOrder();
        LibraryAnnouncements announcements(library);
        library.adopt({.patches = loaded});
        QCOMPARE(announcements.take(), QStringLiteral("+reset; reset"));
        QCOMPARE(library.count(), 0);
        QCOMPARE(names(library.patches()), QStringList{QStringLiteral("Empty library")});
        library.append(imported(QStringLiteral("first")), false, false);
        QCOMPARE(names(library.patches()), QStringList{QStringLiteral("first")});
    }

    static void placeholderAmongLoadedPatchesIsLeftOut()
    {
        QList<VelgorPatch> loaded = patchesNamed(three);
        loaded.insert(1, *VelgorLibrary().patches().begin());
        VelgorLibrary library;
        library.adopt({.patches = loaded});
        QCOMPARE(names(library.patches()), three);
    }

    void patchesThatAreHandedOverAreNotCopied()
    {
        LibraryState loaded{.patches = {TestPatches::stored(1, QStringLiteral("a")), TestPatches::stored(2, {})}};
        const VelgorPatch *const first = loaded.patches.constData();
        VelgorLibrary library;
        library.adopt(std::move(loaded));
        QCOMPARE(library.patches().constData(), first);
    }
};

VELGOR_TEST(TestVelgorLibraryTakeOver)
#include "tst_VelgorLibraryTakeOver.moc"
