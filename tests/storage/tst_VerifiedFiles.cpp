#include "OrdinaryUser.h"
#include "PatchFileHandler.h"
#include "StoreFixture.h"
#include "TemporaryFiles.h"
#include "TestProgram.h"
#include "UserFiles.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QTest>

#include <array>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace TestLibraries;

namespace {

VelgorPatch lead()
{
    return three().patches.first();
}

QByteArray withChangedByte(QByteArray bytes, qsizetype at)
{
    bytes[at] = static_cast<char>(bytes.at(at) ^ 1);
    return bytes;
}

/// What a file of the right name may hold that is not the patch.
void addOtherBytes()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray good = patchBytes(lead());
    const SPatch record = lead().records->patchData;
    const SPatch other = TestRecords::patch(QStringLiteral("Other"), 7);
    constexpr qsizetype inTheSound = 100;
    constexpr qsizetype inTheVersion = 9;
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("damaged") << QByteArray("damaged");
    QTest::newRow("cut") << good.chopped(10);
    QTest::newRow("one bit of the sound") << withChangedByte(good, inTheSound);
    QTest::newRow("one bit of the firmware version") << withChangedByte(good, inTheVersion);
    QTest::newRow("another patch") << TestRecords::fileBytes({other});
    QTest::newRow("the same sound under another name")
        << TestRecords::fileBytes({TestRecords::patch(QStringLiteral("Laad"), 1)});
    QTest::newRow("two patches, the right one first") << TestRecords::fileBytes({record, other});
    QTest::newRow("two patches, the right one last") << TestRecords::fileBytes({other, record});
    QTest::newRow("the patch twice") << TestRecords::fileBytes({record, record});
}

/// The patch's file holds the patch alone, and what stood there is beside it.
void verifySetAside(const LibraryDirectory &directory, const QByteArray &bytes, const QStringList &keptFiles)
{
    QCOMPARE(directory.read(leadFile), patchBytes(lead()));
    const QString aside = LibraryFileNames::damagedFile(42, 0);
    QVERIFY(directory.has(aside));
    QCOMPARE(directory.read(aside), bytes);
    QCOMPARE(keptFiles, QStringList{directory.filePath(aside)});
}

/// Exports every patch of a library that is loaded anew, as a user would after a restart.
QByteArray exportedAfterRestart(const LibraryDirectory &directory)
{
    const auto library = LibraryStorageManager(directory.path()).decodeLibrary();
    UserFiles files;
    const QString path = directory.parentPath() + QStringLiteral("/exported.prst");
    if (!library || !PatchFileHandler(files).exportTo(library->patches, path)) {
        return {};
    }
    const Result<QByteArray> bytes = files.read(path);
    return bytes ? *bytes : QByteArray();
}

void setModified(const QString &path, const QDateTime &time)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite) && file.setFileTime(time, QFileDevice::FileModificationTime));
}

/// To the last digit that the file system counts.
std::array<timespec, 2> timesOf(const QString &path)
{
    struct stat status { };
    if (::stat(QFile::encodeName(path).constData(), &status) != 0) {
        qFatal("the file is not there");
    }
    return {status.st_atim, status.st_mtim};
}

void setTimes(const QString &path, const std::array<timespec, 2> &times)
{
    QCOMPARE(::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times.data(), 0), 0);
}

} // namespace

/// A file under a patch's name counts as the patch's only when it was read or written as that.
class TestVerifiedFiles : public QObject {
    Q_OBJECT

private Q_SLOTS:
    static void fileThatIsThereBeforeThePatchIsImportedMakesRoom_data() { addOtherBytes(); }
    static void fileThatIsThereBeforeThePatchIsImportedMakesRoom()
    {
        QFETCH(const QByteArray, bytes);
        StoreFixture store;
        store.write(leadFile, bytes);
        const VelgorLibrary library({lead()}, std::nullopt);
        store.storage.save(library);
        QVERIFY(!store.storage.writeError());
        verifySetAside(store, bytes, store.storage.keptFiles());
        QCOMPARE(exportedAfterRestart(store), patchBytes(lead()));
        const auto before = store.stamps();
        store.storage.save(library);
        auto after = store.stamps();
        after.insert(libraryFile, before.value(libraryFile));
        QCOMPARE(after, before);
    }

    static void fileThatChangesWhileTheProgramRunsIsPutRight_data() { addOtherBytes(); }
    static void fileThatChangesWhileTheProgramRunsIsPutRight()
    {
        QFETCH(const QByteArray, bytes);
        StoreFixture store(three());
        QVERIFY(store.start());
        store.write(leadFile, bytes);
        setModified(store.filePath(leadFile), QDateTime::currentDateTimeUtc().addSecs(5));
        store.storage.save(store.library);
        QVERIFY(!store.storage.writeError());
        verifySetAside(store, bytes, store.storage.keptFiles());
    }

    static void fileOfAnotherSizeIsPutRightWhateverItsTime()
    {
        StoreFixture store;
        const LibraryWriteResult first = store.save(three());
        const QString path = store.filePath(leadFile);
        const std::array<timespec, 2> times = timesOf(path);
        // Written into the very file, as a program does that brings the time back afterwards.
        QFile file(path);
        QVERIFY(file.resize(file.size() - 10));
        setTimes(path, times);
        const QByteArray bytes = store.read(leadFile);
        verifySetAside(store, bytes, store.save(three(), first.state).keptFiles);
    }

    static void fileThatAnotherOneTookThePlaceOfIsLookedInto()
    {
        StoreFixture store;
        const LibraryWriteResult first = store.save(three());
        // Of the same size and with the same time, but another file.
        const QByteArray other = patchBytes(TestLibraries::patch(QStringLiteral("Deal"), 77, 5));
        store.write(QStringLiteral("other"), other);
        setTimes(store.filePath(QStringLiteral("other")), timesOf(store.filePath(leadFile)));
        QCOMPARE(other.size(), store.read(leadFile).size());
        QVERIFY(QFile::remove(store.filePath(leadFile)));
        QVERIFY(QFile::rename(store.filePath(QStringLiteral("other")), store.filePath(leadFile)));
        const LibraryWriteResult second = store.save(three(), first.state);
        verifySetAside(store, other, second.keptFiles);
    }

    static void fileThatIsTouchedStays()
    {
        StoreFixture store;
        const LibraryWriteResult first = store.save(three());
        setModified(store.filePath(leadFile), QDateTime::currentDateTimeUtc().addSecs(5));
        const auto before = store.stamps();
        const LibraryWriteResult second = store.save(three(), first.state);
        QVERIFY(!second.hasError() && second.keptFiles.isEmpty());
        QCOMPARE(second.written, 0);
        QCOMPARE(store.stamps().value(leadFile), before.value(leadFile));
    }

    static void fileThatHoldsThePatchIsTakenAsItIs_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("as this program writes it") << patchBytes(lead());
        QTest::newRow("with bytes behind its end") << patchBytes(lead()) + "more";
    }
    static void fileThatHoldsThePatchIsTakenAsItIs()
    {
        QFETCH(const QByteArray, bytes);
        StoreFixture store;
        store.write(leadFile, bytes);
        const LibraryWriteResult result = store.save({{lead()}, std::nullopt});
        QVERIFY(!result.hasError() && result.keptFiles.isEmpty());
        QCOMPARE(result.written, 0);
        QCOMPARE(store.read(leadFile), bytes);
    }

    static void fileThatMayNotBeReadMakesRoom()
    {
        StoreFixture store;
        store.write(leadFile, patchBytes(lead()));
        std::ignore = ::chown(QFile::encodeName(store.filePath(leadFile)).constData(), 65534, gid_t(-1));
        const OrdinaryUser user(store, 0755);
        QVERIFY(QFile::setPermissions(store.filePath(leadFile), {}));
        const LibraryWriteResult result = store.save({{lead()}, std::nullopt});
        QVERIFY(!result.hasError());
        // The new file can be read, and the other one is there still.
        QCOMPARE(store.read(leadFile), patchBytes(lead()));
        QVERIFY(store.has(LibraryFileNames::damagedFile(42, 0)));
    }

    static void linkInThePlaceOfTheFileIsSetAside()
    {
        StoreFixture store;
        const QString outside = store.parentPath() + QStringLiteral("/outside.prst");
        QVERIFY(QFile(outside).open(QIODevice::WriteOnly));
        QVERIFY(QFile::link(outside, store.filePath(leadFile)));
        const LibraryWriteResult result = store.save({{lead()}, std::nullopt});
        QVERIFY(!result.hasError());
        QCOMPARE(store.read(leadFile), patchBytes(lead()));
        QVERIFY(!QFileInfo(store.filePath(leadFile)).isSymLink());
        QCOMPARE(QFileInfo(store.filePath(LibraryFileNames::damagedFile(42, 0))).symLinkTarget(), outside);
        QCOMPARE(QFileInfo(outside).size(), 0);
    }

    static void listUnderThePatchsNameIsDamagedAndItsEntryIsKept()
    {
        StoreFixture store(three());
        const QByteArray text = store.read(libraryFile);
        const QByteArray list =
            TestRecords::fileBytes({lead().records->patchData, TestRecords::patch(QStringLiteral("x"), 7)});
        store.write(leadFile, list);
        QVERIFY(store.start());
        QCOMPARE(store.storage.droppedPatches(), QStringList{QStringLiteral("Lead")});
        QVERIFY(store.storage.droppedProblems().first().contains(QStringLiteral("a list of 2 patches")));
        store.storage.save(store.library);
        QCOMPARE(store.datedCopies().size(), 1);
        QCOMPARE(store.read(store.datedCopies().first()), text);
        QCOMPARE(store.read(leadFile), list);

        // The patch is imported again.
        store.library.append(lead(), false, false);
        store.storage.save(store.library);
        verifySetAside(store, list, store.storage.keptFiles());
        QVERIFY(!store.storage.writeError());
    }

    static void movingTheLibraryLooksIntoFilesThatAreThere_data() { addOtherBytes(); }
    static void movingTheLibraryLooksIntoFilesThatAreThere()
    {
        QFETCH(const QByteArray, bytes);
        StoreFixture former(StoreFixture::never, three());
        const StoreFixture store;
        store.write(leadFile, bytes);
        former.storage.save(former.library);
        QVERIFY(former.move(store.path()));
        QVERIFY(!former.storage.writeError());
        verifySetAside(store, bytes, former.storage.keptFiles());
        QVERIFY(store.holds(three().patches));
    }

    static void directoryThatCannotBeListedIsNoExcuse()
    {
        StoreFixture store(LibraryDirectory(QStringLiteral("my library")));
        store.write(leadFile, "damaged");
        const LibraryWriteResult result = store.save({{lead()}, std::nullopt});
        verifySetAside(store, "damaged", result.keptFiles);
    }

    static void preparedFileGoesBeforeTheOneInItsPlace()
    {
        // A save was killed when the library file was written and the foreign file still stood in the patch's place.
        StoreFixture store;
        const QString prepared = TemporaryFiles::prefix() + QStringLiteral("1");
        const QByteArray foreign = patchBytes(TestLibraries::patch(QStringLiteral("Other"), 77, 5));
        store.write(libraryFile, LibraryJson::encode({{lead()}, std::nullopt}));
        store.write(leadFile, foreign);
        store.write(prepared, patchBytes(lead()));
        store.write(journalFile, LibraryJournal{.staged = {{42, prepared}}, .removed = {}}.encode());
        QVERIFY(store.start());
        QVERIFY(areIdentical(store.library.patches(), {lead()}));
        store.storage.sweepLeftovers();
        QCOMPARE(store.read(leadFile), patchBytes(lead()));
        QCOMPARE(store.read(LibraryFileNames::damagedFile(42, 0)), foreign);
        QVERIFY(!store.has(prepared) && !store.has(journalFile));
    }

    static void patchWithoutPresetDataTakesTheFileThatIsThere()
    {
        StoreFixture store;
        store.write(leadFile, "whatever");
        const LibraryWriteResult result = store.save({{TestPatches::stored(42, QStringLiteral("Lead"))}, std::nullopt});
        QVERIFY(!result.hasError() && result.keptFiles.isEmpty());
        QCOMPARE(store.read(leadFile), QByteArray("whatever"));
    }
};

VELGOR_TEST(TestVerifiedFiles)
#include "tst_VerifiedFiles.moc"
