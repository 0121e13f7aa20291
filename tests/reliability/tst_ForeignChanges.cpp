#include "StoreFixture.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QTest>

#include <chrono>

using namespace std::chrono_literals;
using namespace TestLibraries;

namespace {

constexpr auto shortPeriod = 20ms;

void edit(StoreFixture &store, const QString &comment)
{
    store.edit(42, [&comment](VelgorPatch &patch) { patch.comment = comment; });
}

QByteArray bytesAt(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
}

bool saveInBackground(StoreFixture &store)
{
    store.requestSave();
    return store.waitForSave();
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
        StoreFixture store(three(), shortPeriod);
        QVERIFY(store.start());
        edit(store, QStringLiteral("first"));
        QVERIFY(saveInBackground(store));
        QVERIFY(!store.storage.wasChangedByOthers() && store.storage.keptFiles().isEmpty());

        store.write(libraryFile, written);
        edit(store, QStringLiteral("second"));
        QVERIFY(saveInBackground(store));
        QVERIFY(store.storage.wasLastSaveWritten() && store.storage.wasChangedByOthers());
        QVERIFY(store.holds(store.library.patches()));
        QCOMPARE(store.storage.keptFiles().size(), 1);
        QCOMPARE(bytesAt(store.storage.keptFiles().constFirst()), written);

        // What this program wrote itself is nobody else's.
        edit(store, QStringLiteral("third"));
        QVERIFY(saveInBackground(store));
        QCOMPARE(store.datedCopies().size(), 1);
    }

    static void changeBetweenLoadAndFirstSaveIsSeen()
    {
        StoreFixture store(three());
        QVERIFY(store.start());
        const QByteArray other = LibraryJson::encode(one(QStringLiteral("Other")));
        store.write(libraryFile, other);
        store.storage.save(store.library);
        QVERIFY(store.storage.wasChangedByOthers());
        QCOMPARE(bytesAt(store.storage.keptFiles().value(0)), other);
    }

    static void theCauseIsToldAlsoWhenKeepingWorksOnlyLater()
    {
        StoreFixture store(three());
        QVERIFY(store.start());
        QVERIFY(QFile::remove(store.filePath(libraryFile)));
        const QString elsewhere = store.parentPath() + QStringLiteral("/other.json");
        QFile other(elsewhere);
        QVERIFY(other.open(QIODevice::WriteOnly) && other.write(LibraryJson::encode(one(QStringLiteral("Other")))) > 0);
        other.close();
        // A link is not read, so that it cannot be kept.
        QVERIFY(QFile::link(elsewhere, store.filePath(libraryFile)));
        edit(store, QStringLiteral("edited"));
        store.storage.save(store.library);
        QVERIFY(store.storage.writeError() && store.storage.keptFiles().isEmpty());
        QVERIFY(QFile::remove(store.filePath(libraryFile)));
        QVERIFY(QFile::copy(elsewhere, store.filePath(libraryFile)));
        store.storage.save(store.library);
        QCOMPARE(store.storage.keptFiles().size(), 1);
        QVERIFY(store.storage.wasChangedByOthers());
    }

    static void replacedFileOfTheSameTimeIsSeen()
    {
        StoreFixture store(three());
        QVERIFY(store.start());
        const QByteArray other = LibraryJson::encode(three()).replace("Clean", "Dirty");
        const QDateTime time = QFileInfo(store.filePath(libraryFile)).lastModified();
        const QString beside = QStringLiteral("beside");
        store.write(beside, other);
        QVERIFY(QFile::remove(store.filePath(libraryFile)));
        QVERIFY(QFile::rename(store.filePath(beside), store.filePath(libraryFile)));
        QFile file(store.filePath(libraryFile));
        QVERIFY(file.open(QIODevice::ReadWrite) && file.setFileTime(time, QFileDevice::FileModificationTime));
        file.close();
        store.storage.save(store.library);
        QVERIFY(store.storage.wasChangedByOthers());
        QCOMPARE(bytesAt(store.storage.keptFiles().value(0)), other);
    }

    static void removedFileIsWrittenAnew()
    {
        StoreFixture store(three());
        QVERIFY(store.start() && QFile::remove(store.filePath(libraryFile)));
        store.storage.save(store.library);
        QVERIFY(!store.storage.writeError());
        QVERIFY(store.datedCopies().isEmpty());
        QVERIFY(store.holds(three().patches));
    }

    static void emptiedFileIsWrittenAnew()
    {
        StoreFixture store(three());
        QVERIFY(store.start());
        store.write(libraryFile, QByteArray());
        store.storage.save(store.library);
        QVERIFY(!store.storage.writeError());
        QVERIFY(store.holds(three().patches));
    }

    static void sameBytesWrittenAgainAreNoLoss()
    {
        StoreFixture store(three());
        QVERIFY(store.start());
        store.write(libraryFile, store.read(libraryFile));
        store.storage.save(store.library);
        QVERIFY(store.storage.wasLastSaveWritten());
        QVERIFY(store.holds(three().patches));
    }

    static void manyForeignChangesInADayAreAllKept()
    {
        StoreFixture store(three());
        QVERIFY(store.start());
        constexpr int changes = 25;
        for (int i = 0; i < changes; ++i) {
            const QByteArray other = LibraryJson::encode(one(QString::number(i)));
            store.write(libraryFile, other);
            store.storage.save(store.library);
            QCOMPARE(bytesAt(store.storage.keptFiles().value(0)), other);
        }
        QCOMPARE(store.datedCopies().size(), changes);
    }
};

VELGOR_TEST(TestForeignChanges)
#include "tst_ForeignChanges.moc"
