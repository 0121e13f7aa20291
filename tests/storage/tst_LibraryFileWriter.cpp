#include "StoreFixture.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QTest>

#include <cstring>

using namespace TestLibraries;

namespace {

const LibraryWriteState mustKeep{.filesToKeep = {QStringLiteral("velgorlibrary.json")}};

} // namespace

/// Which former library files are kept under dated names, and for how long.
class TestLibraryFileWriter : public QObject {
    Q_OBJECT

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
        StoreFixture store(three());
        QVERIFY(text != store.read(libraryFile));
        store.write(libraryFile, text);
        QVERIFY(store.start() && areIdentical(store.library.patches(), three().patches));
        QCOMPARE(store.datedCopies(), QStringList());
        store.storage.save(store.library);
        QVERIFY(!store.storage.writeError());
        const QStringList kept = store.datedCopies();
        QCOMPARE(kept.size(), 1);
        QCOMPARE(store.read(kept.first()), text);
        QCOMPARE(store.storage.keptFiles(), QStringList{store.filePath(kept.first())});
        store.storage.save(store.library);
        QVERIFY(store.storage.decodeLibrary());
        store.storage.save(store.library);
        QCOMPARE(store.datedCopies(), kept);
    }

    static void whatIsNotUnderstoodIsKeptFromTheCopyThatServed()
    {
        StoreFixture store(three());
        const QByteArray text = store.read(libraryFile).replace("{\"patches\"", "{\"format\":2,\"patches\"");
        store.write(libraryFile, text.first(20));
        store.write(libraryCopy, text);
        QVERIFY(store.start());
        store.storage.sweepLeftovers();
        store.storage.save(store.library);
        QCOMPARE(store.datedCopies().size(), 1);
        QCOMPARE(store.read(store.datedCopies().first()), text);
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
        StoreFixture store(three());
        QByteArray text = store.read(libraryFile);
        text.truncate(text.indexOf("\"defaultPatch\""));
        text = end.size() == 1 ? text.chopped(1) + end : text + end;
        store.write(libraryFile, text);
        QVERIFY(store.start());
        store.storage.save(store.library);
        QCOMPARE(store.datedCopies(), QStringList());
    }

    static void noKeptFileGoesBeforeItIsThirtyDaysOld()
    {
        StoreFixture store;
        const QDateTime now = QDateTime::currentDateTimeUtc();
        const auto nameOf = [&now](qint64 days, int attempt) {
            return QStringLiteral("velgorlibrary-%1-%2.json")
                .arg(now.addDays(-days).toString(QStringLiteral("yyyyMMdd'T'HHmmss")))
                .arg(attempt, 2, 10, QChar(u'0'));
        };
        QStringList young;
        for (int i = 0; i < 40; ++i) {
            young.append(nameOf(29, i));
            store.write(young.last(), "young");
        }
        store.write(nameOf(31, 0), "old");
        store.write(libraryFile, "garbled");
        QVERIFY(!store.save(three(), mustKeep).hasError());
        const QStringList kept = store.datedCopies();
        QCOMPARE(kept.size(), 41);
        QCOMPARE(kept.first(40), young);
    }

    static void aDayOfWritingByTwoComputersLosesNoComment()
    {
        // Each writes what the other has not seen.
        StoreFixture store;
        LibraryState here = three();
        LibraryState elsewhere = three();
        LibraryWriteResult result = store.save(here);
        QByteArrayList theirs;
        for (int i = 0; i < 25; ++i) {
            elsewhere.patches.first().comment = QStringLiteral("said elsewhere, %1").arg(i);
            theirs.append(LibraryJson::encode(elsewhere));
            store.write(libraryFile, theirs.last());
            result = store.save(here, result.state);
            QVERIFY(result.wasChangedByOthers);
        }
        QByteArrayList kept;
        for (const QString &name : store.datedCopies()) {
            kept.append(store.read(name));
        }
        for (const QByteArray &text : std::as_const(theirs)) {
            QVERIFY(kept.contains(text));
        }
    }
};

VELGOR_TEST(TestLibraryFileWriter)
#include "tst_LibraryFileWriter.moc"
