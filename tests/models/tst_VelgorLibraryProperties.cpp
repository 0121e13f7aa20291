// A library and a plain model of it go through the same random operations and must agree after each.

#include "LibraryViewFilter.h"
#include "PlainLibrary.h"
#include "TestPatches.h"
#include "TestProgram.h"
#include "Utf8Text.h"
#include "VelgorLibrary.h"

#include <QCoreApplication>
#include <QTest>

#include <algorithm>

namespace {

/// Follows a library through its signals alone, as an item model does.
class Follower {
public:
    explicit Follower(VelgorLibrary &library)
        : m_library(library)
        , ids(TestPatches::ids(library.patches()))
    {
        QObject::connect(&library, &VelgorLibrary::rowsInserted, &m_context, [this](qsizetype first, qsizetype last) {
            for (qsizetype row = first; row <= last; ++row) {
                ids.insert(row, m_library.patches().at(row).id());
            }
        });
        QObject::connect(&library, &VelgorLibrary::rowsRemoved, &m_context,
            [this](qsizetype first, qsizetype last) { ids.remove(first, last - first + 1); });
        QObject::connect(&library, &VelgorLibrary::rowMoved, &m_context,
            [this](qsizetype from, qsizetype offset) { ids.move(from, offset > from ? offset - 1 : offset); });
        QObject::connect(&library, &VelgorLibrary::reordered, &m_context, [this](const QList<qsizetype> &formerRows) {
            QList<quint64> sorted;
            for (const qsizetype row : formerRows) {
                sorted.append(ids.at(row));
            }
            ids = sorted;
        });
        QObject::connect(
            &library, &VelgorLibrary::wasReset, &m_context, [this] { ids = TestPatches::ids(m_library.patches()); });
    }

private:
    VelgorLibrary &m_library;
    QObject m_context;

public:
    QList<quint64> ids;
};

/// Names that hash alike, differ in case only, are long, or run into each other's suffixes.
QString randomName(QRandomGenerator &random)
{
    static const QStringList names{QStringLiteral("Lead"), QStringLiteral("lead"), QStringLiteral("Lead-1"),
        QStringLiteral("Lead xx"), QStringLiteral("Lead xx-1"), QStringLiteral("Crunchy Rhythm 1"), QString(),
        QString::fromUtf8("\U0001F3B8"), QString::fromUtf8("\uFF5E")};
    return names.at(random.bounded(names.size()));
}

} // namespace

class TestVelgorLibraryProperties : public QObject {
    Q_OBJECT

private:
    static void compare(VelgorLibrary &library, const PlainLibrary &model, const Follower &follower, bool isOrderRead)
    {
        const QList<VelgorPatch> &patches = library.patches();
        if (model.patches.isEmpty()) {
            QCOMPARE(patches.size(), 1);
            QVERIFY(patches.first().empty);
            QCOMPARE(library.count(), 0);
        } else {
            QCOMPARE(TestPatches::ids(patches), TestPatches::ids(model.patches));
            QVERIFY(std::equal(patches.begin(), patches.end(), model.patches.begin(), TestPatches::isIdentical));
            QCOMPARE(library.count(), model.patches.size());
        }
        const QList<quint64> ids = TestPatches::ids(patches);
        QCOMPARE(follower.ids, ids);
        QCOMPARE(QSet<quint64>(ids.begin(), ids.end()).size(), ids.size());
        for (qsizetype row = 0; row < ids.size(); ++row) {
            const auto found = library.getPatchFromId(ids.at(row));
            QVERIFY(found);
            QCOMPARE(found->index, row);
            QCOMPARE(found->patch, &patches.at(row));
        }
        QCOMPARE(library.defaultPatch(), model.defaultPatch);
        QCOMPARE(static_cast<int>(library.inverseSort()), model.step);
        if (isOrderRead) {
            QCOMPARE(library.order(), model.order);
            compareKeys(library, model);
        }
    }

    /// What is kept ready beside the patches, with what they say themselves.
    static void compareKeys(const VelgorLibrary &library, const PlainLibrary &model)
    {
        for (const QString &wanted : {QStringLiteral("LEAD"), QStringLiteral("x-1"), QString::fromUtf8("\uFF5E")}) {
            for (const auto text : {&VelgorPatch::name, &VelgorPatch::comment}) {
                LibraryViewFilter filter;
                filter.filterPatch.*text = wanted;
                std::vector<qsizetype> expected;
                for (qsizetype row = 0; row < library.patches().size(); ++row) {
                    if (filter.show(library.patches().at(row))) {
                        expected.push_back(row);
                    }
                }
                QCOMPARE(filter.shownRows(library), expected);
            }
        }
        if (!model.patches.isEmpty()) {
            const quint64 id = model.patches.at(model.patches.size() / 2).id();
            QCOMPARE(library.findSimilarPatches(id), model.similarTo(id));
        }
    }

    static void step(QRandomGenerator &random, VelgorLibrary &library, PlainLibrary &model)
    {
        const auto anyId = [&]() -> quint64 {
            const auto &patches = library.patches();
            const bool isKnown = !model.patches.isEmpty() && random.bounded(8) != 0;
            return isKnown ? patches.at(random.bounded(patches.size())).id() : random.bounded(3U);
        };
        const int operation = random.bounded(model.patches.size() > 40 ? 12 : 10);
        switch (operation) {
        case 0:
        case 1:
        case 2: {
            VelgorPatch patch = random.bounded(4) == 0 ? VelgorPatch(randomName(random), false)
                                                       : TestPatches::imported(randomName(random), random.bounded(3));
            if (random.bounded(3) == 0 && !model.patches.isEmpty()) {
                patch = library.patches().at(random.bounded(library.patches().size()));
            }
            const bool duplicate = random.bounded(3) == 0;
            const bool replace = random.bounded(2) == 0;
            const qsizetype location = random.bounded(3) == 0 ? -1 : random.bounded(50);
            const std::optional<quint64> synonym = random.bounded(4) == 0 ? std::optional(anyId()) : std::nullopt;
            const qsizetype before = model.patches.size();
            const qsizetype known = model.rowFor(patch, synonym);
            const QString foundName = known < 0 ? QString() : model.patches.at(known).name;
            library.append(patch, duplicate, replace, location, synonym);
            model.append(patch, duplicate, replace, location, synonym);
            if (duplicate && known >= 0) {
                takeOverCopy(library, model, before, patch, foundName);
            }
            break;
        }
        case 3: {
            const quint64 id = anyId();
            const qsizetype before = model.patches.size();
            const qsizetype at = model.positionOf(id);
            library.duplicateSelection(id);
            if (at >= 0) {
                const VelgorPatch source = model.patches.at(at);
                takeOverCopy(library, model, before, source, source.name);
            }
            break;
        }
        case 4:
        case 10: {
            const quint64 id = anyId();
            library.deletePatch(id);
            model.remove({id});
            break;
        }
        case 5:
            library.sort();
            model.sort();
            break;
        case 6: {
            if (model.patches.isEmpty()) {
                break;
            }
            const qsizetype from = random.bounded(model.patches.size());
            const qsizetype offset = random.bounded(model.patches.size() + 1);
            library.move(from, offset);
            const VelgorPatch moved = model.patches.takeAt(from);
            model.patches.insert(offset > from ? offset - 1 : offset, moved);
            break;
        }
        case 7: {
            const quint64 id = anyId();
            const qsizetype at = model.positionOf(id);
            if (at >= 0) {
                model.patches[at].name = randomName(random);
                model.patches[at].comment = randomName(random);
                model.patches[at].solo = random.bounded(2) == 0;
                QVERIFY(library.update(VelgorPatch(model.patches.at(at))));
            }
            break;
        }
        case 8: {
            const quint64 id = anyId();
            library.setDefaultPatch(id);
            if (model.positionOf(id) >= 0) {
                model.defaultPatch = id;
            }
            break;
        }
        case 9: {
            QList<VelgorPatch> fresh;
            for (int count = random.bounded(4); count > 0; --count) {
                fresh.append(TestPatches::imported(randomName(random), random.bounded(5)));
            }
            library.appendNew(fresh);
            for (const VelgorPatch &patch : fresh) {
                model.append(patch, false, false, -1, std::nullopt);
            }
            model.saveOrder();
            break;
        }
        default: {
            QList<quint64> ids;
            for (int count = random.bounded(60); count >= 0; --count) {
                ids.append(anyId());
            }
            library.deletePatches(ids);
            model.remove(ids);
        }
        }
    }

    /// The last patch of the library must be a copy of `source` under a name of its own.
    static void takeOverCopy(VelgorLibrary &library, PlainLibrary &model, qsizetype before, const VelgorPatch &source,
        const QString &foundName)
    {
        QCOMPARE(library.patches().size(), before + 1);
        const VelgorPatch &copy = library.patches().last();
        const QString &name = copy.name;
        if (source.records) {
            QCOMPARE(name, model.newNameFor(foundName));
            const quint64 hash = VelgorPatch::staticSimpleHash(source, name);
            QVERIFY(copy.id() == hash || model.positionOf(hash) >= 0);
            QCOMPARE(copy.records->patchData.name, name);
        } else {
            QCOMPARE(name, source.name);
        }
        model.patches.append(copy);
        model.saveOrder();
    }

private Q_SLOTS:
    void aLibraryAgreesWithAPlainModel_data()
    {
        QTest::addColumn<quint32>("seed");
        for (quint32 seed = 1; seed <= 20; ++seed) {
            QTest::addRow("seed %u", seed) << seed;
        }
    }

    void aLibraryAgreesWithAPlainModel()
    {
        QFETCH(const quint32, seed);
        QRandomGenerator random(seed);
        VelgorLibrary library;
        PlainLibrary model;
        Follower follower(library);
        for (int count = 0; count < 500; ++count) {
            step(random, library, model);
            // Asking for the order writes it out, so that it is asked for only now and then.
            compare(library, model, follower, random.bounded(4) == 0);
            if (QTest::currentTestFailed()) {
                QFAIL(qPrintable(QStringLiteral("after operation %1").arg(count)));
            }
        }
        compare(library, model, follower, true);
    }
};

VELGOR_TEST(TestVelgorLibraryProperties)
#include "tst_VelgorLibraryProperties.moc"
