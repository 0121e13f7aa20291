#include "DiagnosticRecorder.h"
#include "LibraryMoving.h"
#include "LoadedLibrary.h"
#include "OrdinaryUser.h"
#include "PatchFileHandler.h"
#include "TemporaryFiles.h"
#include "TestLibraries.h"
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

const QString leadFile = QStringLiteral("lib-Lead.42.prst");

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
    LibraryStorageManager storage(directory.path());
    const auto library = libraryOf(storage.decodeLibrary());
    UserFiles files;
    const QString path = directory.parentPath() + QStringLiteral("/exported.prst");
    if (!library || !PatchFileHandler(files).exportTo(library->patches(), path)) {
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

    const DiagnosticRecorder m_silence;

private Q_SLOTS:
    static void fileThatIsThereBeforeThePatchIsImportedMakesRoom_data() { addOtherBytes(); }
    static void fileThatIsThereBeforeThePatchIsImportedMakesRoom()
    {
        QFETCH(const QByteArray, bytes);
        const LibraryDirectory directory;
        directory.write(leadFile, bytes);
        LibraryStorageManager storage(directory.path());
        const VelgorLibrary library({lead()}, std::nullopt);
        storage.save(library);
        QVERIFY(!storage.writeError());
        verifySetAside(directory, bytes, storage.keptFiles());
        QCOMPARE(exportedAfterRestart(directory), patchBytes(lead()));
        const auto before = directory.stamps();
        storage.save(library);
        auto after = directory.stamps();
        after.insert(LibraryFileNames::libraryFile(), before.value(LibraryFileNames::libraryFile()));
        QCOMPARE(after, before);
    }

    static void fileThatChangesWhileTheProgramRunsIsPutRight_data() { addOtherBytes(); }
    static void fileThatChangesWhileTheProgramRunsIsPutRight()
    {
        QFETCH(const QByteArray, bytes);
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        LibraryStorageManager storage(directory.path());
        const auto library = libraryOf(storage.decodeLibrary());
        QVERIFY(library);
        directory.write(leadFile, bytes);
        setModified(directory.filePath(leadFile), QDateTime::currentDateTimeUtc().addSecs(5));
        storage.save(*library);
        QVERIFY(!storage.writeError());
        verifySetAside(directory, bytes, storage.keptFiles());
    }

    static void fileOfAnotherSizeIsPutRightWhateverItsTime()
    {
        const LibraryDirectory directory;
        const LibraryWriteResult first = save(directory, three());
        const QString path = directory.filePath(leadFile);
        const std::array<timespec, 2> times = timesOf(path);
        // Written into the very file, as a program does that brings the time back afterwards.
        QFile file(path);
        QVERIFY(file.resize(file.size() - 10));
        setTimes(path, times);
        const QByteArray bytes = directory.read(leadFile);
        verifySetAside(directory, bytes, save(directory, three(), first.state).keptFiles);
    }

    static void fileThatAnotherOneTookThePlaceOfIsLookedInto()
    {
        const LibraryDirectory directory;
        const LibraryWriteResult first = save(directory, three());
        // Of the same size and with the same time, but another file.
        const QByteArray other = patchBytes(TestLibraries::patch(QStringLiteral("Deal"), 77, 5));
        directory.write(QStringLiteral("other"), other);
        setTimes(directory.filePath(QStringLiteral("other")), timesOf(directory.filePath(leadFile)));
        QCOMPARE(other.size(), directory.read(leadFile).size());
        QVERIFY(QFile::remove(directory.filePath(leadFile)));
        QVERIFY(QFile::rename(directory.filePath(QStringLiteral("other")), directory.filePath(leadFile)));
        const LibraryWriteResult second = save(directory, three(), first.state);
        verifySetAside(directory, other, second.keptFiles);
    }

    static void fileThatIsTouchedStays()
    {
        const LibraryDirectory directory;
        const LibraryWriteResult first = save(directory, three());
        setModified(directory.filePath(leadFile), QDateTime::currentDateTimeUtc().addSecs(5));
        const auto before = directory.stamps();
        const LibraryWriteResult second = save(directory, three(), first.state);
        QVERIFY(!second.hasError() && second.keptFiles.isEmpty());
        QCOMPARE(second.written, 0);
        QCOMPARE(directory.stamps().value(leadFile), before.value(leadFile));
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
        const LibraryDirectory directory;
        directory.write(leadFile, bytes);
        const LibraryWriteResult result = save(directory, {{lead()}, std::nullopt});
        QVERIFY(!result.hasError() && result.keptFiles.isEmpty());
        QCOMPARE(result.written, 0);
        QCOMPARE(directory.read(leadFile), bytes);
    }

    static void fileThatMayNotBeReadMakesRoom()
    {
        const LibraryDirectory directory;
        directory.write(leadFile, patchBytes(lead()));
        std::ignore = ::chown(QFile::encodeName(directory.filePath(leadFile)).constData(), 65534, gid_t(-1));
        const OrdinaryUser user(directory, 0755);
        QVERIFY(QFile::setPermissions(directory.filePath(leadFile), {}));
        const LibraryWriteResult result = save(directory, {{lead()}, std::nullopt});
        QVERIFY(!result.hasError());
        // The new file can be read, and the other one is there still.
        QCOMPARE(directory.read(leadFile), patchBytes(lead()));
        QVERIFY(directory.has(LibraryFileNames::damagedFile(42, 0)));
    }

    static void linkInThePlaceOfTheFileIsSetAside()
    {
        const LibraryDirectory directory;
        const QString outside = directory.parentPath() + QStringLiteral("/outside.prst");
        QVERIFY(QFile(outside).open(QIODevice::WriteOnly));
        QVERIFY(QFile::link(outside, directory.filePath(leadFile)));
        const LibraryWriteResult result = save(directory, {{lead()}, std::nullopt});
        QVERIFY(!result.hasError());
        QCOMPARE(directory.read(leadFile), patchBytes(lead()));
        QVERIFY(!QFileInfo(directory.filePath(leadFile)).isSymLink());
        QCOMPARE(QFileInfo(directory.filePath(LibraryFileNames::damagedFile(42, 0))).symLinkTarget(), outside);
        QCOMPARE(QFileInfo(outside).size(), 0);
    }

    static void listUnderThePatchsNameIsDamagedAndItsEntryIsKept()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        const QByteArray text = directory.read(LibraryFileNames::libraryFile());
        const QByteArray list =
            TestRecords::fileBytes({lead().records->patchData, TestRecords::patch(QStringLiteral("x"), 7)});
        directory.write(leadFile, list);
        LibraryStorageManager storage(directory.path());
        const auto library = libraryOf(storage.decodeLibrary());
        QVERIFY(library);
        QCOMPARE(storage.droppedPatches(), QStringList{QStringLiteral("Lead")});
        QVERIFY(storage.droppedProblems().first().contains(QStringLiteral("a list of 2 patches")));
        storage.save(*library);
        QCOMPARE(datedCopies(directory).size(), 1);
        QCOMPARE(directory.read(datedCopies(directory).first()), text);
        QCOMPARE(directory.read(leadFile), list);

        // The patch is imported again.
        library->append(lead(), false, false);
        storage.save(*library);
        verifySetAside(directory, list, storage.keptFiles());
        QVERIFY(!storage.writeError());
    }

    static void movingTheLibraryLooksIntoFilesThatAreThere_data() { addOtherBytes(); }
    static void movingTheLibraryLooksIntoFilesThatAreThere()
    {
        QFETCH(const QByteArray, bytes);
        const LibraryDirectory former;
        const LibraryDirectory directory;
        directory.write(leadFile, bytes);
        LibraryStorageManager storage(former.path());
        const VelgorLibrary library(three().patches, three().defaultPatch);
        storage.save(library);
        QVERIFY(moveLibrary(storage, directory.path(), library));
        QVERIFY(!storage.writeError());
        verifySetAside(directory, bytes, storage.keptFiles());
        QVERIFY(areIdentical(loaded(directory), three().patches));
    }

    static void directoryThatCannotBeListedIsNoExcuse()
    {
        const LibraryDirectory directory(QStringLiteral("my library"));
        directory.write(leadFile, "damaged");
        const LibraryWriteResult result = save(directory, {{lead()}, std::nullopt});
        verifySetAside(directory, "damaged", result.keptFiles);
    }

    static void preparedFileGoesBeforeTheOneInItsPlace()
    {
        // A save was killed when the library file was written and the foreign file still stood in the patch's place.
        const LibraryDirectory directory;
        const QString prepared = TemporaryFiles::prefix() + QStringLiteral("1");
        const QByteArray foreign = patchBytes(TestLibraries::patch(QStringLiteral("Other"), 77, 5));
        directory.write(LibraryFileNames::libraryFile(), LibraryJson::encode({{lead()}, std::nullopt}));
        directory.write(leadFile, foreign);
        directory.write(prepared, patchBytes(lead()));
        directory.write(
            LibraryFileNames::journalFile(), LibraryJournal{.staged = {{42, prepared}}, .removed = {}}.encode());
        LibraryStorageManager storage(directory.path());
        const auto library = libraryOf(storage.decodeLibrary());
        QVERIFY(library);
        QVERIFY(areIdentical(library->patches(), {lead()}));
        storage.sweepLeftovers();
        QCOMPARE(directory.read(leadFile), patchBytes(lead()));
        QCOMPARE(directory.read(LibraryFileNames::damagedFile(42, 0)), foreign);
        QVERIFY(!directory.has(prepared) && !directory.has(LibraryFileNames::journalFile()));
    }

    static void patchWithoutPresetDataTakesTheFileThatIsThere()
    {
        const LibraryDirectory directory;
        directory.write(leadFile, "whatever");
        const LibraryWriteResult result =
            save(directory, {{TestPatches::stored(42, QStringLiteral("Lead"))}, std::nullopt});
        QVERIFY(!result.hasError() && result.keptFiles.isEmpty());
        QCOMPARE(directory.read(leadFile), QByteArray("whatever"));
    }
};

VELGOR_TEST(TestVerifiedFiles)
#include "tst_VerifiedFiles.moc"
