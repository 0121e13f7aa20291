#include "DiagnosticRecorder.h"
#include "LibraryStorageManager.h"
#include "LoadedLibrary.h"
#include "PatchIdentity.h"
#include "PatchWriter.h"
#include "TestLibraries.h"
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

QString fileOf(const VelgorPatch &patch)
{
    return LibraryFileNames::patchFile(patch.name, patch.id());
}

/// A library of these two, in which the file of the first holds what the second one's does.
void storeOverwritten(const LibraryDirectory &directory)
{
    if (save(directory, {{lead(), clean()}, lead().id()}).hasError()) {
        qFatal("cannot store the library");
    }
    directory.write(fileOf(lead()), patchBytes(clean()));
}

} // namespace

/// A patch file under the right name that holds a patch of another entry.
class TestExchangedFiles : public QObject {
    Q_OBJECT

    const DiagnosticRecorder m_silence;

private Q_SLOTS:
    static void anotherPatchOfTheLibraryIsNotTakenForTheFilesOwn()
    {
        const LibraryDirectory directory;
        storeOverwritten(directory);
        LibraryStorageManager storage(directory.path());
        const auto library = libraryOf(storage.decodeLibrary());
        QVERIFY(library);
        QCOMPARE(TestPatches::names(library->patches()), QStringList{QStringLiteral("Clean")});
        QCOMPARE(storage.droppedPatches(), QStringList{QStringLiteral("Lead")});
        QCOMPARE(storage.droppedProblems().first(),
            QStringLiteral("Lead: it holds \"Clean\", another patch of the library (%1)").arg(fileOf(lead())));
    }

    static void whatWasSaidAboutThePatchWaitsForItsFile()
    {
        const LibraryDirectory directory;
        storeOverwritten(directory);
        LibraryStorageManager storage(directory.path());
        const auto library = libraryOf(storage.decodeLibrary());
        library->append(imported(QStringLiteral("New"), 3), true, false);
        storage.save(*library);
        QVERIFY(!storage.writeError());

        directory.write(fileOf(lead()), patchBytes(lead()));
        const LibraryLoadResult again = load(directory);
        QCOMPARE(again.library->patches.size(), 3);
        QVERIFY(TestPatches::isIdentical(again.library->patches.first(), lead()));
        QCOMPARE(again.library->defaultPatch, std::optional(lead().id()));
    }

    static void importedAgainThePatchHasItsFileBack()
    {
        const LibraryDirectory directory;
        storeOverwritten(directory);
        LibraryStorageManager storage(directory.path());
        const auto library = libraryOf(storage.decodeLibrary());
        library->append(lead(), true, false);
        storage.save(*library);
        QVERIFY(!storage.writeError());
        QCOMPARE(directory.read(fileOf(lead())), patchBytes(lead()));
        QCOMPARE(directory.read(LibraryFileNames::damagedFile(lead().id(), 0)), patchBytes(clean()));
        QCOMPARE(loaded(directory).size(), 2);
    }

    static void fileOfAFormerNameIsNotTakenEitherWhenItHoldsAnother()
    {
        const LibraryDirectory directory;
        storeOverwritten(directory);
        QVERIFY(QFile::rename(directory.filePath(fileOf(lead())),
            directory.filePath(LibraryFileNames::patchFile(QStringLiteral("Former"), lead().id()))));
        QCOMPARE(loadedNames(directory), QStringList{QStringLiteral("Clean")});
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
        const LibraryDirectory directory;
        QList<VelgorPatch> patches{entry};
        const VelgorPatch twin(entry.records->patchData, entry.records->userIRData, entry.records->headerData);
        if (twin.id() != entry.id()) {
            patches.append(twin);
        }
        QVERIFY(!save(directory, {patches, std::nullopt}).hasError());
        const LibraryLoadResult result = load(directory);
        QVERIFY(result.droppedPatches.isEmpty());
        QCOMPARE(TestPatches::ids(result.library->patches), TestPatches::ids(patches));
        QCOMPARE(result.doubtfulPatches, QStringList());
    }

    static void patchFromElsewhereIsLoadedAndTold()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, {{lead(), clean()}, std::nullopt}).hasError());
        directory.write(fileOf(lead()), patchBytes(imported(QStringLiteral("Other"), 3)));
        const LibraryLoadResult result = load(directory);
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
        const LibraryDirectory directory;
        QVERIFY(!save(directory, {library.patches(), std::nullopt}).hasError());
        QCOMPARE(load(directory).doubtfulPatches, QStringList());

        const VelgorPatch held = library.patches().at(1);
        directory.write(fileOf(first), patchBytes(second));
        directory.write(fileOf(held), patchBytes(first));
        const LibraryLoadResult result = load(directory);
        QCOMPARE(result.doubtfulPatches.value(0),
            QStringLiteral("%1: its file holds the patch of the same id that is called \"%2\" in the library (%3)")
                .arg(first.name, second.name, fileOf(first)));
        const QStringList ofSecond = result.doubtfulPatches.mid(1) + result.droppedProblems;
        QCOMPARE(ofSecond.size(), 1);
        QVERIFY2(ofSecond.first().endsWith(QStringLiteral("(%1)").arg(fileOf(held))), qUtf8Printable(ofSecond.first()));
    }

    static void soundThatChangedOnTheDiskIsTold()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, {{lead(), clean(), imported(QStringLiteral("Bells"), 3)}, std::nullopt}).hasError());
        QByteArray bytes = patchBytes(lead());
        const qsizetype sound = bytes.indexOf(lead().records->patchData.data);
        bytes[sound] = static_cast<char>(bytes.at(sound) ^ 1);
        const auto read = SPresetFile::fromData(bytes);
        QVERIFY(read);
        directory.write(fileOf(lead()), *PatchWriter::encodePatches(*read));
        const LibraryLoadResult result = load(directory);
        QCOMPARE(result.library->patches.size(), 3);
        QCOMPARE(result.doubtfulPatches.size(), 1);
        QCOMPARE(result.doubtfulPatches.first(),
            QStringLiteral("Lead: its file may have been changed after it was stored (%1)").arg(fileOf(lead())));
        const LibraryLoadResult listed = LibraryLoader(directory.path(), {}, LibraryLoader::Sounds::Drop).load();
        QCOMPARE(listed.doubtfulPatches, result.doubtfulPatches);
    }

    static void aLoadWithoutSoundsGivesTheSameButThem()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, {{lead(), clean()}, clean().id()}).hasError());
        const auto listed = LibraryLoader(directory.path(), {}, LibraryLoader::Sounds::Drop).load().library;
        const auto loaded = load(directory).library;
        QVERIFY(listed && loaded);
        QCOMPARE(LibraryJson::encode(*listed), LibraryJson::encode(*loaded));
        for (const VelgorPatch &patch : listed->patches) {
            QVERIFY(patch.records && patch.records->patchData.data.isEmpty());
        }
    }

    static void numbersOfAnotherProgramRaiseNoDoubt()
    {
        const LibraryDirectory directory;
        const QList<VelgorPatch> patches{lead().withId(1), clean().withId(2), imported(QStringLiteral("Bells"), 3)};
        QVERIFY(!save(directory, {patches, std::nullopt}).hasError());
        QCOMPARE(load(directory).doubtfulPatches, QStringList());
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
        const LibraryDirectory directory;
        QVERIFY(!save(directory, {library.patches(), std::nullopt}).hasError());
        const LibraryLoadResult result = load(directory);
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
            const LibraryDirectory directory;
            QVERIFY(!save(directory, {{first, copy, lead()}, std::nullopt}).hasError());
            QCOMPARE(loadedNames(directory), (QStringList{first.name, name, lead().name}));
        }
    }

    static void idThatTheLibraryFileHeldTwiceIsExplainedFromThenOn()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, {{lead(), clean()}, std::nullopt}).hasError());
        QByteArray text = directory.read(LibraryFileNames::libraryFile());
        const qsizetype begin = text.indexOf("[{") + 1;
        const QByteArray entry = text.mid(begin, text.indexOf("},{") + 1 - begin);
        text.insert(begin, entry + ',');
        directory.write(LibraryFileNames::libraryFile(), text);
        LibraryStorageManager storage(directory.path());
        const auto library = libraryOf(storage.decodeLibrary());
        QVERIFY(library);
        QCOMPARE(library->count(), 3);
        storage.save(*library);
        const LibraryLoadResult again = load(directory);
        QCOMPARE(again.droppedPatches, QStringList());
        QCOMPARE(again.doubtfulPatches, QStringList());
        QCOMPARE(TestPatches::ids(again.library->patches), TestPatches::ids(library->patches()));
    }

    static void idThatNothingExplainsProvesNothing()
    {
        const LibraryDirectory directory;
        VelgorPatch renamed = imported(QStringLiteral("Former"), 6).withId(7);
        renamed.name = QStringLiteral("Renamed");
        const QList<VelgorPatch> patches{lead().withId(~0ULL), clean(), renamed};
        QVERIFY(!save(directory, {patches, std::nullopt}).hasError());
        QCOMPARE(TestPatches::ids(loaded(directory)), TestPatches::ids(patches));
    }
};

VELGOR_TEST(TestExchangedFiles)
#include "tst_ExchangedFiles.moc"
