#include "DiagnosticRecorder.h"
#include "LibraryStorageManager.h"
#include "LoadedLibrary.h"
#include "TestLibraries.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QTest>

#include <cstring>

using namespace TestLibraries;

namespace {

const QString libraryFile = LibraryFileNames::libraryFile();
const LibraryWriteState mustKeep{.filesToKeep = {QStringLiteral("velgorlibrary.json")}};

} // namespace

/// Which former library files are kept under dated names, and for how long.
class TestLibraryFileWriter : public QObject {
    Q_OBJECT

    const DiagnosticRecorder m_silence;

private Q_SLOTS:
    static void whatIsNotUnderstoodIsKeptBeforeTheFirstSave_data()
    {
        QTest::addColumn<QByteArray>("text");
        const QByteArray text = LibraryJson::encode(three());
        const auto with = [&text](const char *part, const char *other) {
            return QByteArray(text).replace(text.indexOf(part), qsizetype(strlen(part)), other);
        };
        QTest::newRow("key of the library") << with("{\"patches\"", "{\"format\":2,\"patches\"");
        QTest::newRow("key of a patch") << with("\"guitar\"", "\"rating\":[5,{\"by\":\"me\"}],\"guitar\"");
        QTest::newRow("key of a patch that is null") << with("\"guitar\"", "\"rating\":null,\"guitar\"");
        QTest::newRow("key of a patch twice") << with("\"comment\"", "\"comment\":\"lost\",\"comment\"");
        QTest::newRow("default patch is a text") << with("\"defaultPatch\":43", "\"defaultPatch\":\"43\"");
        QTest::newRow("default patch is negative") << with("\"defaultPatch\":43", "\"defaultPatch\":-43");
        QTest::newRow("default patch is no integer") << with("\"defaultPatch\":43", "\"defaultPatch\":43.5");
        QTest::newRow("default patch is a list") << with("\"defaultPatch\":43", "\"defaultPatch\":[43]");
        QTest::newRow("default patch twice") << with("\"defaultPatch\"", "\"defaultPatch\":42,\"defaultPatch\"");
    }
    static void whatIsNotUnderstoodIsKeptBeforeTheFirstSave()
    {
        QFETCH(const QByteArray, text);
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        QVERIFY(text != directory.read(libraryFile));
        directory.write(libraryFile, text);
        LibraryStorageManager storage(directory.path());
        const auto library = libraryOf(storage.decodeLibrary());
        QVERIFY(library && areIdentical(library->patches(), three().patches));
        QCOMPARE(datedCopies(directory), QStringList());
        storage.save(*library);
        QVERIFY(!storage.writeError());
        const QStringList kept = datedCopies(directory);
        QCOMPARE(kept.size(), 1);
        QCOMPARE(directory.read(kept.first()), text);
        QCOMPARE(storage.keptFiles(), QStringList{directory.filePath(kept.first())});
        storage.save(*library);
        QVERIFY(storage.decodeLibrary());
        storage.save(*library);
        QCOMPARE(datedCopies(directory), kept);
    }

    static void whatIsNotUnderstoodIsKeptFromTheCopyThatServed()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        const QByteArray text = directory.read(libraryFile).replace("{\"patches\"", "{\"format\":2,\"patches\"");
        directory.write(libraryFile, text.first(20));
        directory.write(LibraryFileNames::libraryCopy(), text);
        LibraryStorageManager storage(directory.path());
        const auto library = libraryOf(storage.decodeLibrary());
        QVERIFY(library);
        storage.sweepLeftovers();
        storage.save(*library);
        QCOMPARE(datedCopies(directory).size(), 1);
        QCOMPARE(directory.read(datedCopies(directory).first()), text);
    }

    static void whatIsUnderstoodIsNotKept_data()
    {
        QTest::addColumn<QByteArray>("end");
        QTest::newRow("no default patch") << QByteArray("\"defaultPatch\":null}");
        QTest::newRow("default patch") << QByteArray("\"defaultPatch\":43}");
        QTest::newRow("key missing") << QByteArray("}");
    }
    static void whatIsUnderstoodIsNotKept()
    {
        QFETCH(const QByteArray, end);
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        QByteArray text = directory.read(libraryFile);
        text.truncate(text.indexOf("\"defaultPatch\""));
        text = end.size() == 1 ? text.chopped(1) + end : text + end;
        directory.write(libraryFile, text);
        LibraryStorageManager storage(directory.path());
        const auto library = libraryOf(storage.decodeLibrary());
        QVERIFY(library);
        storage.save(*library);
        QCOMPARE(datedCopies(directory), QStringList());
    }

    static void noKeptFileGoesBeforeItIsThirtyDaysOld()
    {
        const LibraryDirectory directory;
        const QDateTime now = QDateTime::currentDateTimeUtc();
        const auto nameOf = [&now](qint64 days, int attempt) {
            return QStringLiteral("velgorlibrary-%1-%2.json")
                .arg(now.addDays(-days).toString(QStringLiteral("yyyyMMdd'T'HHmmss")))
                .arg(attempt, 2, 10, QChar(u'0'));
        };
        QStringList young;
        for (int i = 0; i < 40; ++i) {
            young.append(nameOf(29, i));
            directory.write(young.last(), "young");
        }
        directory.write(nameOf(31, 0), "old");
        directory.write(libraryFile, "garbled");
        QVERIFY(!save(directory, three(), mustKeep).hasError());
        const QStringList kept = datedCopies(directory);
        QCOMPARE(kept.size(), 41);
        QCOMPARE(kept.first(40), young);
    }

    static void aDayOfWritingByTwoComputersLosesNoComment()
    {
        // Each writes what the other has not seen.
        const LibraryDirectory directory;
        LibraryState here = three();
        LibraryState elsewhere = three();
        LibraryWriteResult result = save(directory, here);
        QByteArrayList theirs;
        for (int i = 0; i < 25; ++i) {
            elsewhere.patches.first().comment = QStringLiteral("said elsewhere, %1").arg(i);
            theirs.append(LibraryJson::encode(elsewhere));
            directory.write(libraryFile, theirs.last());
            result = save(directory, here, result.state);
            QVERIFY(result.wasChangedByOthers);
        }
        QByteArrayList kept;
        for (const QString &name : datedCopies(directory)) {
            kept.append(directory.read(name));
        }
        for (const QByteArray &text : std::as_const(theirs)) {
            QVERIFY(kept.contains(text));
        }
    }
};

VELGOR_TEST(TestLibraryFileWriter)
#include "tst_LibraryFileWriter.moc"
