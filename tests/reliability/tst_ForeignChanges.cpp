#include "DiagnosticRecorder.h"
#include "LibraryStorageManager.h"
#include "LoadedLibrary.h"
#include "TestLibraries.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QTest>

#include <chrono>

using namespace std::chrono_literals;
using namespace TestLibraries;

namespace {

constexpr auto shortPeriod = 20ms;

const QString libraryFile = LibraryFileNames::libraryFile();

void edit(VelgorLibrary &library, const QString &comment)
{
    VelgorPatch changed = library.patches().first();
    changed.comment = comment;
    library.update(changed);
}

QByteArray bytesAt(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
}

bool saveInBackground(LibraryStorageManager &manager, const VelgorLibrary &library)
{
    manager.delayedSave(library);
    return QTest::qWaitFor([&manager] { return !manager.waitingToSave(); }, 10'000);
}

} // namespace

/// A library file that another program writes while this one has the library open: a synchronising folder, an editor.
class TestForeignChanges : public QObject {
    Q_OBJECT

private Q_SLOTS:
    static void libraryFileOfAnotherProgramIsKept_data()
    {
        QTest::addColumn<QByteArray>("written");
        QTest::newRow("another library") << LibraryJson::encode(one(QStringLiteral("Other")));
        QTest::newRow("an empty library") << LibraryJson::encode({});
        QTest::newRow("no library") << QByteArray("{");
        QTest::newRow("one byte") << QByteArray(" ");
        QTest::newRow("as many bytes") << LibraryJson::encode(three()).replace("Clean", "Dirty");
    }
    static void libraryFileOfAnotherProgramIsKept()
    {
        QFETCH(const QByteArray, written);
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        LibraryStorageManager manager(directory.path(), shortPeriod);
        const auto library = libraryOf(manager.decodeLibrary());
        QVERIFY(library);
        edit(*library, QStringLiteral("first"));
        QVERIFY(saveInBackground(manager, *library));
        QVERIFY(!manager.wasChangedByOthers() && manager.keptFiles().isEmpty());

        directory.write(libraryFile, written);
        edit(*library, QStringLiteral("second"));
        QVERIFY(saveInBackground(manager, *library));
        QVERIFY(manager.wasLastSaveWritten() && manager.wasChangedByOthers());
        QVERIFY(areIdentical(loaded(directory), library->patches()));
        QCOMPARE(manager.keptFiles().size(), 1);
        QCOMPARE(bytesAt(manager.keptFiles().constFirst()), written);

        // What this program wrote itself is nobody else's.
        edit(*library, QStringLiteral("third"));
        QVERIFY(saveInBackground(manager, *library));
        QCOMPARE(datedCopies(directory).size(), 1);
    }

    static void changeBetweenLoadAndFirstSaveIsSeen()
    {
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        LibraryStorageManager manager(directory.path());
        const auto library = libraryOf(manager.decodeLibrary());
        QVERIFY(library);
        const QByteArray other = LibraryJson::encode(one(QStringLiteral("Other")));
        directory.write(libraryFile, other);
        manager.save(*library);
        QVERIFY(manager.wasChangedByOthers());
        QCOMPARE(bytesAt(manager.keptFiles().value(0)), other);
    }

    static void theCauseIsToldAlsoWhenKeepingWorksOnlyLater()
    {
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        LibraryStorageManager manager(directory.path());
        const auto library = libraryOf(manager.decodeLibrary());
        QVERIFY(QFile::remove(directory.filePath(libraryFile)));
        const QString elsewhere = directory.parentPath() + QStringLiteral("/other.json");
        QFile other(elsewhere);
        QVERIFY(other.open(QIODevice::WriteOnly) && other.write(LibraryJson::encode(one(QStringLiteral("Other")))) > 0);
        other.close();
        // A link is not read, so that it cannot be kept.
        QVERIFY(QFile::link(elsewhere, directory.filePath(libraryFile)));
        edit(*library, QStringLiteral("edited"));
        manager.save(*library);
        QVERIFY(manager.writeError() && manager.keptFiles().isEmpty());
        QVERIFY(QFile::remove(directory.filePath(libraryFile)));
        QVERIFY(QFile::copy(elsewhere, directory.filePath(libraryFile)));
        manager.save(*library);
        QCOMPARE(manager.keptFiles().size(), 1);
        QVERIFY(manager.wasChangedByOthers());
    }

    static void replacedFileOfTheSameTimeIsSeen()
    {
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        LibraryStorageManager manager(directory.path());
        const auto library = libraryOf(manager.decodeLibrary());
        QVERIFY(library);
        const QByteArray other = LibraryJson::encode(three()).replace("Clean", "Dirty");
        const QDateTime time = QFileInfo(directory.filePath(libraryFile)).lastModified();
        const QString beside = QStringLiteral("beside");
        directory.write(beside, other);
        QVERIFY(QFile::remove(directory.filePath(libraryFile)));
        QVERIFY(QFile::rename(directory.filePath(beside), directory.filePath(libraryFile)));
        QFile file(directory.filePath(libraryFile));
        QVERIFY(file.open(QIODevice::ReadWrite) && file.setFileTime(time, QFileDevice::FileModificationTime));
        file.close();
        manager.save(*library);
        QVERIFY(manager.wasChangedByOthers());
        QCOMPARE(bytesAt(manager.keptFiles().value(0)), other);
    }

    static void removedFileIsWrittenAnew()
    {
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        LibraryStorageManager manager(directory.path());
        const auto library = libraryOf(manager.decodeLibrary());
        QVERIFY(library && QFile::remove(directory.filePath(libraryFile)));
        manager.save(*library);
        QVERIFY(!manager.writeError());
        QVERIFY(datedCopies(directory).isEmpty());
        QVERIFY(areIdentical(loaded(directory), three().patches));
    }

    static void emptiedFileIsWrittenAnew()
    {
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        LibraryStorageManager manager(directory.path());
        const auto library = libraryOf(manager.decodeLibrary());
        QVERIFY(library);
        directory.write(libraryFile, QByteArray());
        manager.save(*library);
        QVERIFY(!manager.writeError());
        QVERIFY(areIdentical(loaded(directory), three().patches));
    }

    static void sameBytesWrittenAgainAreNoLoss()
    {
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        LibraryStorageManager manager(directory.path());
        const auto library = libraryOf(manager.decodeLibrary());
        QVERIFY(library);
        directory.write(libraryFile, directory.read(libraryFile));
        manager.save(*library);
        QVERIFY(manager.wasLastSaveWritten());
        QVERIFY(areIdentical(loaded(directory), three().patches));
    }

    static void manyForeignChangesInADayAreAllKept()
    {
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        LibraryStorageManager manager(directory.path());
        const auto library = libraryOf(manager.decodeLibrary());
        QVERIFY(library);
        constexpr int changes = 25;
        for (int i = 0; i < changes; ++i) {
            const QByteArray other = LibraryJson::encode(one(QString::number(i)));
            directory.write(libraryFile, other);
            manager.save(*library);
            QCOMPARE(bytesAt(manager.keptFiles().value(0)), other);
        }
        QCOMPARE(datedCopies(directory).size(), changes);
    }
};

VELGOR_TEST(TestForeignChanges)
#include "tst_ForeignChanges.moc"
