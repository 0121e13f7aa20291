#include "FailingCall.h"
#include "StoreFixture.h"
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
        StoreFixture store;
        const LibraryState content{one(QStringLiteral("Lead")).patches, 42};
        QVERIFY(!store.save(content).hasError());
        LibraryLoadResult result;
        {
            // The first is that of the library file.
            const FailingCall failing(Call::Read, EIO, 1);
            result = store.load();
        }
        QVERIFY(!result.library);
        QVERIFY(!store.save({{patch(QStringLiteral("New"), 50)}, std::nullopt}, result.writeState).hasError());
        const LibraryLoadResult again = store.load();
        QCOMPARE(TestPatches::ids(again.library->patches), (QList<quint64>{42, 50}));
        QCOMPARE(again.library->defaultPatch, std::optional<quint64>(42));
    }

    static void aPatchWhoseFileHasAnotherNameStaysToo()
    {
        StoreFixture store(one(QStringLiteral("Lead")));
        QVERIFY(QFile::rename(
            store.filePath(QStringLiteral("lib-Lead.42.prst")), store.filePath(QStringLiteral("lib-Former.42.prst"))));
        LibraryLoadResult result;
        {
            const FailingCall failing(Call::Read, EIO, 1);
            result = store.load();
            QVERIFY(failing.wasMade());
        }
        QVERIFY(!result.library);
        QCOMPARE(result.writeState.unread.patches.keys(), QList<quint64>{42});
    }

    static void aPatchWhoseFileIsALinkStays()
    {
        StoreFixture store(three());
        const QByteArray text = store.read(libraryFile);
        const QString file = store.filePath(QStringLiteral("lib-A$B.43.prst"));
        const QString outside = store.parentPath() + QStringLiteral("/outside.prst");
        QVERIFY(QFile::rename(file, outside));
        QVERIFY(QFile::link(outside, file));
        QVERIFY(store.start());
        QCOMPARE(store.storage.droppedPatches(), QStringList{QStringLiteral("A/B")});
        QCOMPARE(store.storage.unreadPatches(), 1);
        store.storage.save(store.library);
        QVERIFY(!store.storage.writeError());
        QCOMPARE(store.read(libraryFile), text);
        QCOMPARE(QFileInfo(file).symLinkTarget(), outside);
        QCOMPARE(store.datedCopies(), QStringList());
        QVERIFY(QFile::remove(file));
        QVERIFY(QFile::rename(outside, file));
        QVERIFY(store.holds(three().patches));
    }

    static void aPatchWhoseFileIsALinkUnderAFormerNameStaysToo()
    {
        StoreFixture store(one(QStringLiteral("Lead")));
        const QString outside = store.parentPath() + QStringLiteral("/outside.prst");
        QVERIFY(QFile::rename(store.filePath(QStringLiteral("lib-Lead.42.prst")), outside));
        QVERIFY(QFile::link(outside, store.filePath(QStringLiteral("lib-Former.42.prst"))));
        QCOMPARE(store.load().writeState.unread.patches.keys(), QList<quint64>{42});
    }

    static void aLibraryIsNotMovedWithoutThem()
    {
        StoreFixture store(three());
        {
            const FailingCall failing(Call::Read, EIO, 1);
            QVERIFY(store.start());
        }
        QCOMPARE(store.library.count(), 2);
        QCOMPARE(store.storage.unreadPatches(), 1);
        const LibraryDirectory target;
        const Result<> moved = store.move(target.path());
        QVERIFY(!moved && moved.problem().text().contains(store.path()));
        QCOMPARE(target.files(), QStringList());
        QCOMPARE(store.storage.libDirectory(), store.path());
    }
};

VELGOR_TEST(TestUnreadPatches)
#include "tst_UnreadPatches.moc"
