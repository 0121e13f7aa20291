#include "LibraryAnnouncements.h"
#include "RescuedPatches.h"
#include "StoreFixture.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QTest>

using namespace TestLibraries;

namespace {

/// One patch for each letter.
QList<VelgorPatch> patches(const QString &letters)
{
    QList<VelgorPatch> result;
    for (const QChar letter : letters) {
        result.append(patch(QString(letter), letter.unicode()));
    }
    return result;
}

QString lettersOf(const VelgorLibrary &library)
{
    return TestPatches::names(library.patches()).join(QString());
}

} // namespace

class TestRescuedPatches : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void patchesGetTheirPlacesBack_data()
    {
        QTest::addColumn<QString>("present");
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("former");
        QTest::addColumn<QString>("rescued");
        QTest::addColumn<QString>("result");
        const auto row = [](const char *name, const char *present, const char *file, const char *former,
                             const char *rescued, const char *result) {
            const auto text = [](const char *latin1) { return QString::fromLatin1(latin1); };
            QTest::newRow(name) << text(present) << text(file) << text(former) << text(rescued) << text(result);
        };
        row("between", "ac", "abc", "", "b", "abc");
        row("at the beginning", "bc", "abc", "", "a", "abc");
        row("at the end", "ab", "abc", "", "c", "abc");
        row("several in their order", "ae", "abcde", "", "dcb", "abcde");
        row("in several places", "bd", "abcdef", "", "fecaf", "abcdef");
        row("behind the nearest that is left", "a", "xaybz", "", "zb", "abz");
        row("in an order that changed", "cab", "abxc", "", "x", "cabx");
        row("into nothing", "", "abc", "", "ca", "ac");
        row("where nothing of the file is left", "xy", "abc", "", "ba", "xyab");
        row("known to a former file", "ac", "ac", "abc", "b", "abc");
        row("the file as it is before a former one", "ac", "acb", "bac", "b", "acb");
        row("known to nobody", "ac", "abc", "", "zb", "abcz");
        row("known to both, and to nobody", "ac", "abc", "axc", "zxb", "abxcz");
        row("there already", "abc", "abc", "", "b", "abc");
    }
    void patchesGetTheirPlacesBack()
    {
        QFETCH(const QString, present);
        QFETCH(const QString, file);
        QFETCH(const QString, former);
        QFETCH(const QString, rescued);
        StoreFixture store;
        store.write(libraryFile, LibraryJson::encode({patches(file), std::nullopt}));
        store.write(QStringLiteral("velgorlibrary-20260101T000000-00.json"),
            LibraryJson::encode({patches(former), std::nullopt}));
        VelgorLibrary library;
        library.appendNew(patches(present));
        RescuedPatches::addTo(library, patches(rescued), RescuedPatches::libraryFiles(store.path()));
        QTEST(lettersOf(library), "result");
        QCOMPARE(library.count(), library.order().size());
    }

    void selectionTicksAndDefaultStay()
    {
        StoreFixture store;
        store.write(libraryFile, LibraryJson::encode({patches(QStringLiteral("abc")), 'c'}));
        VelgorLibrary library(patches(QStringLiteral("ac")), 'c');
        library.setSelection('a');
        library.setIsMultiSel(true);
        const MultiSelections ticks = library.findSimilarPatches('c');
        library.setMultiSelections(ticks);
        RescuedPatches::addTo(library, patches(QStringLiteral("b")), RescuedPatches::libraryFiles(store.path()));
        QCOMPARE(lettersOf(library), QStringLiteral("abc"));
        QCOMPARE(library.selection(), std::optional<quint64>('a'));
        QCOMPARE(library.defaultPatch(), std::optional<quint64>('c'));
        QVERIFY(library.isMultiSel());
        QVERIFY(library.multiSelections() == ticks);
    }

    void patchesAtTheEndAreAnnouncedAsAnInsertion()
    {
        StoreFixture store;
        VelgorLibrary library(patches(QStringLiteral("ac")), std::nullopt);
        LibraryAnnouncements announcements(library);
        RescuedPatches::addTo(library, patches(QStringLiteral("xy")), RescuedPatches::libraryFiles(store.path()));
        QCOMPARE(announcements.take(), QStringLiteral("+insert 2 3; insert 2 3"));
    }
};

VELGOR_TEST(TestRescuedPatches)
#include "tst_RescuedPatches.moc"
