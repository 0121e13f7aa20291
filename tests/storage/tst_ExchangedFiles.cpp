#include "PatchIdentity.h"
#include "PatchWriter.h"
#include "StoreFixture.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QTest>

using namespace TestLibraries;

namespace {

VelgorPatch lead()
{
    return imported(QStringLiteral("Lead"), 1);
}

VelgorPatch clean()
{
    return imported(QStringLiteral("Clean"), 2);
}

/// A library of these two, in which the file of the first holds what the second one's does.
struct Overwritten : StoreFixture {
    Overwritten()
        : StoreFixture({{lead(), clean()}, lead().id()})
    {
        write(fileOf(lead()), patchBytes(clean()));
    }
};

} // namespace

/// A patch file under the right name that holds a patch of another entry.
class TestExchangedFiles : public QObject {
    Q_OBJECT

private Q_SLOTS:
    static void anotherPatchOfTheLibraryIsNotTakenForTheFilesOwn()
    {
        Overwritten store;
        QVERIFY(store.start());
        QCOMPARE(TestPatches::names(store.library.patches()), QStringList{QStringLiteral("Clean")});
        QCOMPARE(store.storage.droppedPatches(), QStringList{QStringLiteral("Lead")});
        QCOMPARE(store.storage.droppedProblems().first(),
            QStringLiteral("Lead: it holds \"Clean\", another patch of the library (%1)").arg(fileOf(lead())));
    }

    static void whatWasSaidAboutThePatchWaitsForItsFile()
    {
        Overwritten store;
        QVERIFY(store.start());
        store.library.append(imported(QStringLiteral("New"), 3), true, false);
        store.storage.save(store.library);
        QVERIFY(!store.storage.writeError());

        store.write(fileOf(lead()), patchBytes(lead()));
        const LibraryLoadResult again = store.load();
        QCOMPARE(again.library->patches.size(), 3);
        QVERIFY(TestPatches::isIdentical(again.library->patches.first(), lead()));
        QCOMPARE(again.library->defaultPatch, std::optional(lead().id()));
    }

    static void importedAgainThePatchHasItsFileBack()
    {
        Overwritten store;
        QVERIFY(store.start());
        store.library.append(lead(), true, false);
        store.storage.save(store.library);
        QVERIFY(!store.storage.writeError());
        QCOMPARE(store.read(fileOf(lead())), patchBytes(lead()));
        QCOMPARE(store.read(LibraryFileNames::damagedFile(lead().id(), 0)), patchBytes(clean()));
        QCOMPARE(store.loaded().size(), 2);
    }

    static void fileOfAFormerNameIsNotTakenEitherWhenItHoldsAnother()
    {
        Overwritten store;
        QVERIFY(QFile::rename(store.filePath(fileOf(lead())),
            store.filePath(LibraryFileNames::patchFile(QStringLiteral("Former"), lead().id()))));
        QCOMPARE(store.loadedNames(), QStringList{QStringLiteral("Clean")});
    }

    /// Beside the patch stands one with the very record that its file holds.
    static void patchWhoseIdHasAReasonLoads_data()
    {
        QTest::addColumn<VelgorPatch>("entry");
        const VelgorPatch full = imported(QStringLiteral("Sixteen letters!"), 8);
        VelgorPatch renamed = lead();
        renamed.name = QStringLiteral("Solo");
        QTest::newRow("renamed") << renamed;
        QTest::newRow("with a fresh id") << clean().withId(PatchIdentity::freshId(clean(), 2));
        for (const QString &ending :
            {QStringLiteral("-1"), QStringLiteral("-12"), QStringLiteral("4"), QStringLiteral("40")}) {
            VelgorPatch copy =
                full.withId(VelgorPatch::staticSimpleHash(full, QString(full.records->patchData.name + ending)));
            copy.name = QStringLiteral("renamed since");
            QTest::addRow("a copy whose name was too long by %s", qUtf8Printable(ending)) << copy;
        }
    }
    static void patchWhoseIdHasAReasonLoads()
    {
        QFETCH(const VelgorPatch, entry);
        StoreFixture store;
        QList<VelgorPatch> patches{entry};
        const VelgorPatch twin(entry.records->patchData, entry.records->userIRData, entry.records->headerData);
        if (twin.id() != entry.id()) {
            patches.append(twin);
        }
        QVERIFY(!store.save({patches, std::nullopt}).hasError());
        const LibraryLoadResult result = store.load();
        QVERIFY(result.droppedPatches.isEmpty());
        QCOMPARE(TestPatches::ids(result.library->patches), TestPatches::ids(patches));
        QCOMPARE(result.doubtfulPatches, QStringList());
    }

    static void patchFromElsewhereIsLoadedAndTold()
    {
        StoreFixture store({{lead(), clean()}, std::nullopt});
        store.write(fileOf(lead()), patchBytes(imported(QStringLiteral("Other"), 3)));
        const LibraryLoadResult result = store.load();
        QCOMPARE(result.library->patches.size(), 2);
        QCOMPARE(result.doubtfulPatches,
            QStringList{
                QStringLiteral("Lead: its file holds \"Other\", which may be another patch (%1)").arg(fileOf(lead()))});
    }

    static void exchangedFilesOfPatchesThatHashAlikeAreTold_data()
    {
        QTest::addColumn<VelgorPatch>("first");
        QTest::addColumn<VelgorPatch>("second");
        QTest::newRow("names that hash alike")
            << imported(QStringLiteral("Glacier-1"), 5) << imported(QStringLiteral("Glacier-2"), 5);
        SPatch other = lead().records->patchData;
        // The hash folds eight bytes onto eight.
        other.data[0] = static_cast<char>(other.data.at(0) ^ 1);
        other.data[8] = static_cast<char>(other.data.at(8) ^ 1);
        QTest::newRow("sounds that hash alike")
            << lead() << VelgorPatch(other, lead().records->userIRData, lead().records->headerData);
    }
    static void exchangedFilesOfPatchesThatHashAlikeAreTold()
    {
        QFETCH(const VelgorPatch, first);
        QFETCH(const VelgorPatch, second);
        QCOMPARE(second.id(), first.id());
        VelgorLibrary library;
        library.appendNew({first, second, clean(), imported(QStringLiteral("Bells"), 3)});
        QCOMPARE(library.count(), 4);
        StoreFixture store({library.patches(), std::nullopt});
        QCOMPARE(store.load().doubtfulPatches, QStringList());

        const VelgorPatch held = library.patches().at(1);
        store.write(fileOf(first), patchBytes(second));
        store.write(fileOf(held), patchBytes(first));
        const LibraryLoadResult result = store.load();
        QCOMPARE(result.doubtfulPatches.value(0),
            QStringLiteral("%1: its file holds the patch of the same id that is called \"%2\" in the library (%3)")
                .arg(first.name, second.name, fileOf(first)));
        const QStringList ofSecond = result.doubtfulPatches.mid(1) + result.droppedProblems;
        QCOMPARE(ofSecond.size(), 1);
        QVERIFY2(ofSecond.first().endsWith(QStringLiteral("(%1)").arg(fileOf(held))), qUtf8Printable(ofSecond.first()));
    }

    static void soundThatChangedOnTheDiskIsTold()
    {
        StoreFixture store({{lead(), clean(), imported(QStringLiteral("Bells"), 3)}, std::nullopt});
        QByteArray bytes = patchBytes(lead());
        const qsizetype sound = bytes.indexOf(lead().records->patchData.data);
        bytes[sound] = static_cast<char>(bytes.at(sound) ^ 1);
        const auto read = SPresetFile::fromData(bytes);
        QVERIFY(read);
        store.write(fileOf(lead()), *PatchWriter::encodePatches(*read));
        const LibraryLoadResult result = store.load();
        QCOMPARE(result.library->patches.size(), 3);
        QCOMPARE(result.doubtfulPatches.size(), 1);
        QCOMPARE(result.doubtfulPatches.first(),
            QStringLiteral("Lead: its file may have been changed after it was stored (%1)").arg(fileOf(lead())));
        const LibraryLoadResult listed = LibraryLoader(store.path(), {}, LibraryLoader::Sounds::Drop).load();
        QCOMPARE(listed.doubtfulPatches, result.doubtfulPatches);
    }

    static void aLoadWithoutSoundsGivesTheSameButThem()
    {
        const StoreFixture store({{lead(), clean()}, clean().id()});
        const auto listed = LibraryLoader(store.path(), {}, LibraryLoader::Sounds::Drop).load().library;
        const auto loaded = store.load().library;
        QVERIFY(listed && loaded);
        QCOMPARE(LibraryJson::encode(*listed), LibraryJson::encode(*loaded));
        for (const VelgorPatch &patch : listed->patches) {
            QVERIFY(patch.records && patch.records->patchData.data.isEmpty());
        }
    }

    static void numbersOfAnotherProgramRaiseNoDoubt()
    {
        StoreFixture store;
        const QList<VelgorPatch> patches{lead().withId(1), clean().withId(2), imported(QStringLiteral("Bells"), 3)};
        QVERIFY(!store.save({patches, std::nullopt}).hasError());
        QCOMPARE(store.load().doubtfulPatches, QStringList());
    }

    static void copiesThatAreRenamedOneAfterTheOtherAllLoadAgain()
    {
        VelgorLibrary library;
        library.append(imported(QStringLiteral("Pearl Clean"), 4), true, false);
        constexpr int copies = 14;
        for (int number = 0; number < copies; ++number) {
            library.append(library.patches().first(), true, false);
            VelgorPatch copy = library.patches().last();
            copy.name = QStringLiteral("Variant %1").arg(number);
            library.append(copy, false, true);
        }
        QCOMPARE(library.count(), 1 + copies);
        StoreFixture store({library.patches(), std::nullopt});
        const LibraryLoadResult result = store.load();
        QCOMPARE(result.droppedPatches, QStringList());
        QCOMPARE(result.doubtfulPatches, QStringList());
        QCOMPARE(TestPatches::ids(result.library->patches), TestPatches::ids(library.patches()));
    }

    /// As an earlier version numbered a copy whose hash was taken.
    static void copyWithARandomIdLoadsBesideTheOneThatHashesAlike()
    {
        const VelgorPatch first = imported(QStringLiteral("Glacier-1"), 5);
        const VelgorPatch second = imported(QStringLiteral("Glacier-2"), 5);
        QCOMPARE(second.id(), first.id());
        for (const QString &name : {second.name, QStringLiteral("Renamed")}) {
            VelgorPatch copy = second.withId(1234567890123);
            copy.name = name;
            const StoreFixture store({{first, copy, lead()}, std::nullopt});
            QCOMPARE(store.loadedNames(), (QStringList{first.name, name, lead().name}));
        }
    }

    static void idThatTheLibraryFileHeldTwiceIsExplainedFromThenOn()
    {
        StoreFixture store({{lead(), clean()}, std::nullopt});
        QByteArray text = store.read(libraryFile);
        const qsizetype begin = text.indexOf("[{") + 1;
        const QByteArray entry = text.mid(begin, text.indexOf("},{") + 1 - begin);
        text.insert(begin, entry + ',');
        store.write(libraryFile, text);
        QVERIFY(store.start());
        QCOMPARE(store.library.count(), 3);
        store.storage.save(store.library);
        const LibraryLoadResult again = store.load();
        QCOMPARE(again.droppedPatches, QStringList());
        QCOMPARE(again.doubtfulPatches, QStringList());
        QCOMPARE(TestPatches::ids(again.library->patches), TestPatches::ids(store.library.patches()));
    }

    static void idThatNothingExplainsProvesNothing()
    {
        StoreFixture store;
        VelgorPatch renamed = imported(QStringLiteral("Former"), 6).withId(7);
        renamed.name = QStringLiteral("Renamed");
        const QList<VelgorPatch> patches{lead().withId(~0ULL), clean(), renamed};
        QVERIFY(!store.save({patches, std::nullopt}).hasError());
        QCOMPARE(TestPatches::ids(store.loaded()), TestPatches::ids(patches));
    }
};

VELGOR_TEST(TestExchangedFiles)
#include "tst_ExchangedFiles.moc"
