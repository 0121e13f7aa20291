#include "PatchName.h"
#include "StoreFixture.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QRandomGenerator>
#include <QTest>

using namespace TestLibraries;

namespace {

constexpr int rounds = 60;
constexpr int stepsPerRound = 40;
constexpr int mostPatches = 60;

QString randomName(QRandomGenerator &random)
{
    switch (random.bounded(6)) {
    case 0:
        return QStringLiteral("Same name");
    case 1:
        return TestPatches::randomText(random, 400);
    case 2:
        return QStringLiteral("x.%1.y").arg(random.bounded(1000));
    default:
        return TestPatches::randomText(random, 16);
    }
}

VelgorPatch randomPatch(QRandomGenerator &random)
{
    const int seed = static_cast<int>(random.bounded(1 << 30));
    const SUserIR userIR = random.bounded(3) == 0
        ? TestRecords::userIR(random.generate(), seed, static_cast<int>(random.bounded(4, 200)))
        : SUserIR();
    const QString recordName = TestPatches::randomText(random, 4);
    VelgorPatch patch = random.bounded(2) == 0
        ? TestLibraries::patch(recordName, 0, seed, userIR).withId(random.generate64())
        : TestLibraries::patch(recordName, random.bounded(2000U), seed, userIR);
    patch.name = randomName(random);
    patch.comment = TestPatches::randomText(random, 60);
    patch.date = {random.bounded(1e9) + random.generateDouble()};
    for (bool VelgorPatch::*flag : {&VelgorPatch::guitar, &VelgorPatch::bass, &VelgorPatch::clean, &VelgorPatch::crunch,
             &VelgorPatch::drive, &VelgorPatch::higain, &VelgorPatch::rythm, &VelgorPatch::solo}) {
        patch.*flag = random.bounded(2) == 0;
    }
    return patch;
}

/// The records of a patch as its file gives them back: a copy's name may be longer than the field in its record.
bool isSameWhenStored(const VelgorPatch &stored, const VelgorPatch &loaded)
{
    VelgorPatch expected = stored;
    expected.records->patchData.name = PatchName::fitted(stored.records->patchData.name);
    return TestPatches::isIdentical(expected, loaded);
}

std::optional<quint64> anyId(const VelgorLibrary &library, QRandomGenerator &random)
{
    if (library.count() == 0) {
        return std::nullopt;
    }
    return library.patches().at(random.bounded(library.count())).id();
}

void changeSomething(StoreFixture &store, QRandomGenerator &random)
{
    VelgorLibrary &library = store.library;
    const std::optional<quint64> id = anyId(library, random);
    switch (random.bounded(id ? 9 : 1)) {
    case 0:
    case 1:
        if (library.count() < mostPatches) {
            library.append(
                randomPatch(random), false, false, random.bounded(2) == 0 ? -1 : random.bounded(mostPatches));
        }
        break;
    case 2:
    case 3: {
        VelgorPatch changed = *library.getPatchFromId(id)->patch;
        changed.name = randomName(random);
        changed.comment = TestPatches::randomText(random, 60);
        changed.solo = !changed.solo;
        std::ignore = library.update(changed);
        break;
    }
    case 4:
        store.deletePatches({*id});
        store.storage.finish();
        break;
    case 5:
        if (library.count() < mostPatches) {
            StoredEdits::duplicate(library, *id, store.storage);
        }
        break;
    case 6:
        library.sort();
        break;
    case 7:
        library.move(random.bounded(library.count()), random.bounded(library.count() + 1));
        break;
    default:
        StoredEdits::setDefault(library, *id, store.storage);
    }
}

} // namespace

class TestLibraryStorageProperties : public QObject {
    Q_OBJECT

private:
    static void checkStored(const StoreFixture &store)
    {
        const VelgorLibrary &library = store.library;
        const LibraryLoadResult result = store.load();
        QVERIFY(!result.readError && result.writeState.filesToKeep.isEmpty());
        QCOMPARE(result.library.has_value(), library.count() > 0);
        if (result.library) {
            const QList<VelgorPatch> &loaded = result.library->patches;
            const QList<VelgorPatch> stored = library.patchesInOwnOrder();
            QCOMPARE(TestPatches::ids(loaded), TestPatches::ids(stored));
            QVERIFY(std::equal(stored.begin(), stored.end(), loaded.begin(), loaded.end(), isSameWhenStored));
            QCOMPARE(result.library->defaultPatch, library.defaultPatch());
        }
        // One file a patch and the library file; no copies, nothing half written.
        QCOMPARE(store.files().size(), library.count() + 1);
    }

private Q_SLOTS:
    static void anyLibraryComesBackTheSameAndIsWrittenOnce()
    {
        for (quint32 seed = 1; seed <= rounds; ++seed) {
            QRandomGenerator random(seed);
            StoreFixture store;
            LibraryStorageManager &storage = store.storage;
            for (int count = random.bounded(mostPatches); count > 0; --count) {
                store.library.append(randomPatch(random), false, false);
            }
            for (int step = 0; step < stepsPerRound; ++step) {
                changeSomething(store, random);
                if (random.bounded(8) != 0 && step < stepsPerRound - 1) {
                    continue;
                }
                const QByteArray where = QByteArrayLiteral("seed ") + QByteArray::number(seed);
                storage.save(store.library);
                QVERIFY2(
                    !storage.writeError(), (where + ' ' + storage.writeProblems().join(u'\n').toUtf8()).constData());
                checkStored(store);
                auto before = store.stamps();
                storage.save(store.library);
                auto after = store.stamps();
                before.remove(libraryFile);
                after.remove(libraryFile);
                QCOMPARE(after, before);
                if (QTest::currentTestFailed()) {
                    qWarning("%s", where.constData());
                    return;
                }
                if (random.bounded(3) == 0 && store.library.count() > 0) {
                    QVERIFY(store.start());
                }
            }
        }
    }
};

VELGOR_TEST(TestLibraryStorageProperties)
#include "tst_LibraryStorageProperties.moc"
