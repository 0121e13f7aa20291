#include "DiagnosticRecorder.h"
#include "FailingCall.h"
#include "LibraryMoving.h"
#include "LoadedLibrary.h"
#include "TestLibraries.h"
#include "TestProgram.h"
#include "UnreadPatches.h"

#include <QCoreApplication>
#include <QTest>

#include <cerrno>

using namespace TestLibraries;
using Call = FailingCall::Call;

namespace {

/// The library file holds patches 1 to 9, of which the odd ones could not be read.
UnreadPatches oddOnes()
{
    UnreadPatches unread;
    for (quint64 id = 1; id <= 9; ++id) {
        unread.order.append(id);
        if (id % 2 == 1) {
            VelgorPatch entry = patch(QString::number(id), id);
            entry.records.reset();
            unread.patches.insert(id, entry);
        }
    }
    return unread;
}

LibraryState libraryOf(const QList<quint64> &ids)
{
    LibraryState content;
    for (const quint64 id : ids) {
        content.patches.append(patch(QString::number(id), id));
    }
    return content;
}

} // namespace

/// Patches whose files cannot be read for the moment stay in the library file.
class TestUnreadPatches : public QObject {
    Q_OBJECT

    const DiagnosticRecorder m_silence;

private Q_SLOTS:
    static void eachStandsBehindTheNearestFormerPredecessor_data()
    {
        QTest::addColumn<QList<quint64>>("library");
        QTest::addColumn<QList<quint64>>("joined");
        using Ids = QList<quint64>;
        QTest::newRow("nothing changed") << Ids{2, 4, 6, 8} << Ids{1, 2, 3, 4, 5, 6, 7, 8, 9};
        QTest::newRow("first removed") << Ids{4, 6, 8} << Ids{1, 3, 4, 5, 6, 7, 8, 9};
        QTest::newRow("two removed") << Ids{2, 8} << Ids{1, 2, 3, 5, 7, 8, 9};
        QTest::newRow("turned round") << Ids{8, 6, 4, 2} << Ids{1, 8, 9, 6, 7, 4, 5, 2, 3};
        QTest::newRow("some added") << Ids{20, 2, 4, 21, 6, 8, 22} << Ids{1, 20, 2, 3, 4, 5, 21, 6, 7, 8, 9, 22};
        QTest::newRow("all removed") << Ids{} << Ids{1, 3, 5, 7, 9};
    }
    static void eachStandsBehindTheNearestFormerPredecessor()
    {
        QFETCH(const QList<quint64>, library);
        QFETCH(const QList<quint64>, joined);
        QCOMPARE(TestPatches::ids(oddOnes().joinedWith(libraryOf(library)).patches), joined);
    }

    static void theDefaultPatchStaysUntilTheUserChoosesAnother()
    {
        UnreadPatches unread = oddOnes();
        unread.defaultPatch = 3;
        LibraryState library = libraryOf({2, 4});
        QCOMPARE(unread.joinedWith(library).defaultPatch, std::optional<quint64>(3));
        library.defaultPatch = 4;
        QCOMPARE(unread.joinedWith(library).defaultPatch, std::optional<quint64>(4));
        library.defaultPatch.reset();
        QCOMPARE(unread.joinedWith(library).defaultPatch, std::nullopt);
    }

    static void aLibraryOfWhichNothingCouldBeReadKeepsItsDefaultPatch()
    {
        const LibraryDirectory directory;
        const LibraryState content{one(QStringLiteral("Lead")).patches, 42};
        QVERIFY(!save(directory, content).hasError());
        LibraryLoadResult result;
        {
            // The first is that of the library file.
            const FailingCall failing(Call::Read, EIO, 1);
            result = load(directory);
        }
        QVERIFY(!result.library);
        QVERIFY(!save(directory, {{patch(QStringLiteral("New"), 50)}, std::nullopt}, stateAfter(result)).hasError());
        const LibraryLoadResult again = load(directory);
        QCOMPARE(TestPatches::ids(again.library->patches), (QList<quint64>{42, 50}));
        QCOMPARE(again.library->defaultPatch, std::optional<quint64>(42));
    }

    static void aPatchWhoseFileHasAnotherNameStaysToo()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, one(QStringLiteral("Lead"))).hasError());
        QVERIFY(QFile::rename(directory.filePath(QStringLiteral("lib-Lead.42.prst")),
            directory.filePath(QStringLiteral("lib-Former.42.prst"))));
        LibraryLoadResult result;
        {
            const FailingCall failing(Call::Read, EIO, 1);
            result = load(directory);
            QVERIFY(failing.wasMade());
        }
        QVERIFY(!result.library);
        QCOMPARE(result.writeState.unread.patches.keys(), QList<quint64>{42});
    }

    static void aPatchWhoseFileIsALinkStays()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        const QByteArray text = directory.read(LibraryFileNames::libraryFile());
        const QString file = directory.filePath(QStringLiteral("lib-A$B.43.prst"));
        const QString outside = directory.parentPath() + QStringLiteral("/outside.prst");
        QVERIFY(QFile::rename(file, outside));
        QVERIFY(QFile::link(outside, file));
        LibraryStorageManager storage(directory.path());
        const auto library = libraryOf(storage.decodeLibrary());
        QVERIFY(library);
        QCOMPARE(storage.droppedPatches(), QStringList{QStringLiteral("A/B")});
        QCOMPARE(storage.unreadPatches(), 1);
        storage.save(*library);
        QVERIFY(!storage.writeError());
        QCOMPARE(directory.read(LibraryFileNames::libraryFile()), text);
        QCOMPARE(QFileInfo(file).symLinkTarget(), outside);
        QCOMPARE(datedCopies(directory), QStringList());
        QVERIFY(QFile::remove(file));
        QVERIFY(QFile::rename(outside, file));
        QVERIFY(areIdentical(loaded(directory), three().patches));
    }

    static void aPatchWhoseFileIsALinkUnderAFormerNameStaysToo()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, one(QStringLiteral("Lead"))).hasError());
        const QString outside = directory.parentPath() + QStringLiteral("/outside.prst");
        QVERIFY(QFile::rename(directory.filePath(QStringLiteral("lib-Lead.42.prst")), outside));
        QVERIFY(QFile::link(outside, directory.filePath(QStringLiteral("lib-Former.42.prst"))));
        QCOMPARE(load(directory).writeState.unread.patches.keys(), QList<quint64>{42});
    }

    static void aLibraryIsNotMovedWithoutThem()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        LibraryStorageManager storage(directory.path());
        std::unique_ptr<VelgorLibrary> library;
        {
            const FailingCall failing(Call::Read, EIO, 1);
            library = libraryOf(storage.decodeLibrary());
        }
        QCOMPARE(library->count(), 2);
        QCOMPARE(storage.unreadPatches(), 1);
        const LibraryDirectory target;
        const Result<> moved = moveLibrary(storage, target.path(), *library);
        QVERIFY(!moved && moved.problem().text().contains(directory.path()));
        QCOMPARE(target.files(), QStringList());
        QCOMPARE(storage.libDirectory(), directory.path());
    }
};

VELGOR_TEST(TestUnreadPatches)
#include "tst_UnreadPatches.moc"
