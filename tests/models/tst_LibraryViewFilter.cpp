#include "LibraryViewFilter.h"
#include "TestPatches.h"
#include "TestProgram.h"
#include "VelgorLibrary.h"

#include <QCoreApplication>
#include <QTest>

using Flag = bool VelgorPatch::*;
Q_DECLARE_METATYPE(Flag)

namespace {

VelgorPatch named(const QString &name, const QString &comment = {})
{
    VelgorPatch patch(name, false);
    patch.comment = comment;
    return patch;
}

} // namespace

class TestLibraryViewFilter : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void defaultShowsEveryPatch()
    {
        VelgorPatch dummy(QStringLiteral("Empty library"), false);
        dummy.empty = true;
        const QList<VelgorPatch> patches{
            dummy, named({}), VelgorPatch(QStringLiteral("x"), true), TestPatches::imported(QStringLiteral("Lead"))};
        QCOMPARE(LibraryViewFilter().filter(patches), patches);
    }

    void nameIsOneFragmentWhateverTheCase_data()
    {
        QTest::addColumn<QString>("filterName");
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("isShown");
        QTest::newRow("at the start") << "lead"
                                      << "Lead 1" << true;
        QTest::newRow("at the end") << "lead"
                                    << "Big LEAD" << true;
        QTest::newRow("interrupted") << "lead"
                                     << "Le ad" << false;
        QTest::newRow("upper case in the filter") << "LEAD"
                                                  << "lead" << true;
        QTest::newRow("space is part of the fragment") << "d 1"
                                                       << "Lead 1" << true;
        QTest::newRow("words apart") << "big lead"
                                     << "lead big" << false;
        QTest::newRow("space only") << " "
                                    << "Lead" << false;
        QTest::newRow("longer than the name") << "leads"
                                              << "lead" << false;
        QTest::newRow("name empty") << "lead"
                                    << "" << false;
        QTest::newRow("umlaut") << QString::fromUtf8("\u00dcBER") << QString::fromUtf8("\u00fcber") << true;
        QTest::newRow("beyond the basic plane")
            << QString::fromUtf8("\U00010400") << QString::fromUtf8("\U00010428") << true;
        QTest::newRow("sharp s has no other form") << QString::fromUtf8("\u00df") << "SS" << false;
        QTest::newRow("no pattern") << "."
                                    << "Lead" << false;
    }

    void nameIsOneFragmentWhateverTheCase()
    {
        QFETCH(const QString, filterName);
        QFETCH(const QString, name);
        LibraryViewFilter filter;
        filter.filterPatch.name = filterName;
        QTEST(filter.show(named(name)), "isShown");
    }

    void everyWordOfTheCommentIsRequired_data()
    {
        QTest::addColumn<QString>("words");
        QTest::addColumn<QString>("comment");
        QTest::addColumn<bool>("isShown");
        QTest::newRow("two words, two spaces") << "fat  amp"
                                               << "a FAT old Amp" << true;
        QTest::newRow("in any order") << "fat  amp"
                                      << "amp, fat" << true;
        QTest::newRow("inside of longer words") << "fat  amp"
                                                << "fatter amplifier" << true;
        QTest::newRow("one is missing") << "fat  amp"
                                        << "fatter" << false;
        QTest::newRow("overlapping") << "ab bc"
                                     << "abc" << true;
        QTest::newRow("the same word twice") << "fat fat"
                                             << "fat" << true;
        QTest::newRow("spaces only") << "   "
                                     << "" << true;
        QTest::newRow("empty") << ""
                               << "anything" << true;
        QTest::newRow("spaces around") << " fat "
                                       << "fat" << true;
        QTest::newRow("no comment") << "fat"
                                    << "" << false;
        QTest::newRow("a tabulator does not separate") << "fat\tamp"
                                                       << "amp fat" << false;
        QTest::newRow("a line feed does not separate") << "fat\namp"
                                                       << "fat\namp" << true;
    }

    void everyWordOfTheCommentIsRequired()
    {
        QFETCH(const QString, words);
        QFETCH(const QString, comment);
        LibraryViewFilter filter;
        filter.filterPatch.comment = words;
        QTEST(filter.show(named(QStringLiteral("Lead"), comment)), "isShown");
        QTEST(LibraryViewFilter::containsComment(comment, words), "isShown");
        QTEST(!filter.filter({named(QStringLiteral("Lead"), comment)}).isEmpty(), "isShown");
    }

    void aFlagAsksToBePresent_data()
    {
        QTest::addColumn<Flag>("flag");
        QTest::newRow("hasUserIR") << &VelgorPatch::hasUserIR;
        QTest::newRow("guitar") << &VelgorPatch::guitar;
        QTest::newRow("bass") << &VelgorPatch::bass;
        QTest::newRow("clean") << &VelgorPatch::clean;
        QTest::newRow("crunch") << &VelgorPatch::crunch;
        QTest::newRow("drive") << &VelgorPatch::drive;
        QTest::newRow("higain") << &VelgorPatch::higain;
        QTest::newRow("rythm") << &VelgorPatch::rythm;
        QTest::newRow("solo") << &VelgorPatch::solo;
    }

    void aFlagAsksToBePresent()
    {
        QFETCH(const Flag, flag);
        LibraryViewFilter filter;
        VelgorPatch with = named(QStringLiteral("with"));
        with.*flag = true;
        const VelgorPatch without = named(QStringLiteral("without"));
        QVERIFY(filter.show(with) && filter.show(without));
        filter.filterPatch.*flag = true;
        QVERIFY(filter.show(with));
        QVERIFY(!filter.show(without));
    }

    void flagsOfOneGroupAreAllRequired()
    {
        LibraryViewFilter filter;
        filter.filterPatch.guitar = filter.filterPatch.bass = true;
        VelgorPatch patch = named(QStringLiteral("Lead"));
        patch.guitar = true;
        QVERIFY(!filter.show(patch));
        patch.bass = true;
        QVERIFY(filter.show(patch));
        filter.filterPatch.clean = filter.filterPatch.drive = true;
        patch.clean = true;
        QVERIFY(!filter.show(patch));
        patch.drive = true;
        QVERIFY(filter.show(patch));
    }

    void otherFieldsOfTheTemplatePlayNoPart()
    {
        LibraryViewFilter filter;
        filter.filterPatch.empty = true;
        filter.filterPatch.version = QStringLiteral("V9");
        filter.filterPatch.date = {1};
        filter.filterPatch.records = {TestRecords::patch(QStringLiteral("Lead")), TestRecords::userIR(1), {}};
        QVERIFY(filter.show(named(QStringLiteral("x"))));
    }

    void shownPatchesKeepTheirOrder()
    {
        LibraryViewFilter filter;
        filter.filterPatch.name = QStringLiteral("l");
        const QList<VelgorPatch> patches{named(QStringLiteral("Solo")), named(QStringLiteral("Big")),
            named(QStringLiteral("Clean")), named(QStringLiteral("Amp")), named(QStringLiteral("Lead"))};
        QCOMPARE(TestPatches::names(filter.filter(patches)),
            (QStringList{QStringLiteral("Solo"), QStringLiteral("Clean"), QStringLiteral("Lead")}));
    }

    void filtersWithTheSameCriteriaAreEqual()
    {
        LibraryViewFilter filter;
        QTest::qWait(2);
        QVERIFY(filter == LibraryViewFilter());
        filter.filterPatch.bass = true;
        QVERIFY(!(filter == LibraryViewFilter()));
    }

    void shownRowsAreThoseOfTheShownPatches()
    {
        const VelgorLibrary library({named(QStringLiteral("Solo")), named(QStringLiteral("Big")),
                                        named(QStringLiteral("Clean")), named(QStringLiteral("Amp"))},
            std::nullopt);
        LibraryViewFilter filter;
        QCOMPARE(filter.shownRows(library), (std::vector<qsizetype>{0, 1, 2, 3}));
        filter.filterPatch.name = QStringLiteral("l");
        QCOMPARE(filter.shownRows(library), (std::vector<qsizetype>{0, 2}));
        QCOMPARE(filter.shownRows(VelgorLibrary(QList<VelgorPatch>(), std::nullopt)), std::vector<qsizetype>());
    }

    /// Half a surrogate pair comes in by no way that is known, and would be matched as what it is.
    void halvesOfSurrogatePairsAreMatchedAsTheyAre()
    {
        const QString high(QChar(0xD83C));
        const QString whole = QString::fromUtf8("\U0001F3B8");
        const VelgorLibrary library(
            {named(high), named(whole), named(QStringLiteral("?")), named(QStringLiteral("x"), high)}, std::nullopt);
        LibraryViewFilter filter;
        filter.filterPatch.name = high;
        QCOMPARE(filter.shownRows(library), (std::vector<qsizetype>{0, 1}));
        filter.filterPatch.name = whole;
        QCOMPARE(filter.shownRows(library), (std::vector<qsizetype>{1}));
        filter.filterPatch.name = QStringLiteral("?");
        QCOMPARE(filter.shownRows(library), (std::vector<qsizetype>{2}));
        filter.filterPatch.name.clear();
        filter.filterPatch.comment = QStringLiteral("?");
        QCOMPARE(filter.shownRows(library), std::vector<qsizetype>());
        const VelgorLibrary wholeOnly({named(whole)}, std::nullopt);
        filter.filterPatch = named(high);
        QCOMPARE(filter.shownRows(wholeOnly), (std::vector<qsizetype>{0}));
    }

    void shownRowsAgreeWithEachPatch_data()
    {
        QTest::addColumn<quint32>("seed");
        for (quint32 seed = 1; seed <= 30; ++seed) {
            QTest::addRow("seed %u", seed) << seed;
        }
    }

    void shownRowsAgreeWithEachPatch()
    {
        QFETCH(const quint32, seed);
        QRandomGenerator random(seed);
        QList<VelgorPatch> patches;
        for (int count = 0; count < 100; ++count) {
            VelgorPatch patch = named(TestPatches::randomText(random, 12), TestPatches::randomText(random, 30));
            patch.solo = random.bounded(2) == 0;
            patch.hasUserIR = random.bounded(2) == 0;
            patches.append(patch);
        }
        const VelgorLibrary library(patches, std::nullopt);
        // Pieces of the texts, in the other case, which may cut a surrogate pair.
        const auto pieceOf = [&random](const QString &text) {
            const QString piece = text.mid(random.bounded(text.size() + 1), random.bounded(4));
            return random.bounded(2) == 0 ? piece.toUpper() : piece.toLower();
        };
        for (int count = 0; count < 100; ++count) {
            const VelgorPatch &example = patches.at(random.bounded(patches.size()));
            LibraryViewFilter filter;
            filter.filterPatch.name = random.bounded(2) == 0 ? pieceOf(example.name) : QString();
            filter.filterPatch.comment = pieceOf(example.comment) + u' ' + pieceOf(example.comment);
            filter.filterPatch.solo = random.bounded(3) == 0;
            filter.filterPatch.hasUserIR = random.bounded(3) == 0;
            std::vector<qsizetype> expected;
            for (qsizetype row = 0; row < patches.size(); ++row) {
                if (filter.show(patches.at(row))) {
                    expected.push_back(row);
                }
            }
            QCOMPARE(filter.shownRows(library), expected);
        }
    }
};

VELGOR_TEST(TestLibraryViewFilter)
#include "tst_LibraryViewFilter.moc"
