#include "DragOver.h"
#include "LibraryContentMainView.h"
#include "TestProgram.h"
#include "TestRecords.h"
#include "VelgorLibraryView.h"
#include "VelgorPatchDetailView.h"
#include "WindowFixture.h"

#include <QApplication>
#include <QFileInfo>
#include <QTest>
#include <QUrl>

namespace {

QPoint pointIn(const PatchListView *list, int row)
{
    return list->visualRect(list->model()->index(row, 0)).center();
}

QMimeData *data(const QString &type, const QByteArray &bytes)
{
    auto *result = new QMimeData;
    result->setData(type, bytes);
    return result;
}

QMimeData *filesData(const QStringList &paths)
{
    QList<QUrl> urls;
    for (const QString &path : paths) {
        urls.append(QUrl::fromLocalFile(path));
    }
    auto *result = new QMimeData;
    result->setUrls(urls);
    return result;
}

} // namespace

class TestForeignDrops : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void foreignAndBrokenDataIsRefused_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QByteArray>("bytes");
        const QString type = TransferablePatch::typeIdentifier();
        QTest::newRow("text") << "text/plain" << QByteArray("Lead");
        QTest::newRow("rows of another program") << "application/x-qabstractitemmodeldatalist" << QByteArray(40, '\1');
        QTest::newRow("nothing") << type << QByteArray();
        QTest::newRow("no object") << type << QByteArray("[1, 2]");
        TransferablePatch unknown;
        unknown.id = 1;
        QTest::newRow("cut short") << type << unknown.encode().chopped(3);
        QTest::newRow("without a name") << type << unknown.encode().replace("name", "nom");
        QTest::newRow("no slot") << type << unknown.encode();
        unknown.cid = QUuid::createUuid();
        QTest::newRow("unknown slot") << type << unknown.encode();
        unknown.cid.reset();
        unknown.origin = TransferablePatch::fromLibrary;
        QTest::newRow("unknown patch") << type << unknown.encode();
    }

    void foreignAndBrokenDataIsRefused()
    {
        QFETCH(const QString, type);
        QFETCH(const QByteArray, bytes);
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells"), QStringLiteral("A B"));
        for (const PatchListView *list : {static_cast<PatchListView *>(window->contentList()),
                 static_cast<PatchListView *>(window->libraryList())}) {
            DragOver drag(list->viewport(), data(type, bytes));
            QVERIFY(!drag.dropAt(pointIn(list, 1)));
            QCOMPARE(list->dropMark(), DropMark());
        }
        QCOMPARE(window->slotNames(), QStringLiteral("A B"));
        QCOMPARE(window->libraryRows(), QStringLiteral("Lead Bells"));
        QVERIFY(window->calls.calls.isEmpty());
        QCOMPARE(window->message(), QString());
    }

    void aPresetFileDroppedBesideTheLibraryIsImported()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead"), QStringLiteral("A B"));
        int number = 0;
        for (QWidget *target : {static_cast<QWidget *>(window->window.get()), window->contentList()->viewport(),
                 static_cast<QWidget *>(window->window->columns().details())}) {
            const QString name = QStringLiteral("New%1").arg(++number);
            DragOver drag(target, filesData({window->presetFile(QStringLiteral("new.prst"), name)}));
            QVERIFY(drag.moveTo(QPoint(30, 30)));
            QCOMPARE(window->status(), QStringLiteral("Imports new.prst into the list"));
            QVERIFY(drag.dropAt(QPoint(30, 30)));
            WindowFixture::settle();
            QCOMPARE(window->slotNames(), name);
            QCOMPARE(window->status(), QStringLiteral("1 slot read from new.prst"));
        }
        QCOMPARE(window->libraryRows(), QStringLiteral("Lead"));
    }

    void filesDroppedOnTheLibraryKeepTheirPatches()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead"), QStringLiteral("A B"));
        const QString first = window->presetFile(QStringLiteral("first.prst"), QStringLiteral("Bells Lead"));
        const QString second = window->presetFile(QStringLiteral("second.prst"), QStringLiteral("Choir Drum"));
        DragOver one(window->libraryList()->viewport(), filesData({first}));
        QVERIFY(one.moveTo(QPoint(30, 30)));
        QCOMPARE(window->status(), QStringLiteral("Keeps the patches of first.prst in the library"));
        QVERIFY(one.dropAt(QPoint(30, 30)));
        WindowFixture::settle();
        QCOMPARE(window->libraryRows(), QStringLiteral("Lead Bells"));
        QCOMPARE(window->status(), QStringLiteral("1 kept, 1 already there"));
        QCOMPARE(window->selectedName(), QStringLiteral("Bells"));
        QVERIFY(window->storage.hasUnsavedChanges());

        // The filter and the buttons belong to the library too.
        DragOver both(window->window->columns().library(), filesData({first, second}));
        QVERIFY(both.moveTo(QPoint(30, 5)));
        QCOMPARE(window->status(), QStringLiteral("Keeps the patches of 2 files in the library"));
        QVERIFY(both.dropAt(QPoint(30, 5)));
        WindowFixture::settle();
        QCOMPARE(window->libraryRows(), QStringLiteral("Lead Bells Choir Drum"));
        QCOMPARE(window->status(), QStringLiteral("2 kept, 2 already there"));
        QCOMPARE(window->slotNames(), QStringLiteral("A B"));
        QCOMPARE(window->message(), QString());
    }

    void aFileThatCannotBeKeptIsNamedAndTheOthersAreKept()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead"), QStringLiteral("A B"));
        const QString good = window->presetFile(QStringLiteral("good.prst"), QStringLiteral("Bells"));
        const QString missing = window->parentPath() + QStringLiteral("/missing.prst");
        for (const bool isGoodThere : {true, false}) {
            const QStringList files = isGoodThere ? QStringList{missing, good} : QStringList{missing};
            QVERIFY(DragOver(window->libraryList()->viewport(), filesData(files)).dropAt(QPoint(30, 30)));
            WindowFixture::settle();
            QCOMPARE(window->libraryRows(), QStringLiteral("Lead Bells"));
            QCOMPARE(window->message(), QStringLiteral("Could not import file"));
            QVERIFY(window->messageText().contains(QStringLiteral("missing.prst: ")));
            QVERIFY(!window->messageText().contains(QStringLiteral("good.prst")));
            QVERIFY(window->answer(QStringLiteral("OK")));
        }
    }

    void namesThatAreNoTextAreToldOncePerDrop()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead"), QStringLiteral("A B"));
        const auto bad = [](int seed) {
            SPatch patch = TestRecords::patch(QStringLiteral("_error_"), seed);
            patch.unreadableName = QByteArray("Caf\xE9").leftJustified(16, '\0');
            return patch;
        };
        const LibraryDirectory files;
        files.write(
            QStringLiteral("one.prst"), TestRecords::fileBytes({TestRecords::patch(QStringLiteral("x"), 3), bad(4)}));
        files.write(QStringLiteral("two.prst"), TestRecords::fileBytes({bad(5), bad(6)}));
        const QString good = window->presetFile(QStringLiteral("good.prst"), QStringLiteral("Bells"));
        const QStringList paths{
            files.filePath(QStringLiteral("one.prst")), good, files.filePath(QStringLiteral("two.prst"))};
        QVERIFY(DragOver(window->libraryList()->viewport(), filesData(paths)).dropAt(QPoint(30, 30)));
        WindowFixture::settle();
        QCOMPARE(window->libraryRows(), QStringLiteral("Lead x _error_ Bells _error_ _error_"));
        QCOMPARE(window->message(), QStringLiteral("Some names cannot be read"));
        QVERIFY2(window->messageText().startsWith(
                     QStringLiteral("one.prst: slot 1.2\ntwo.prst: slots 1.1, 1.2\n\nThese names are not valid text")),
            qPrintable(window->messageText()));
        QVERIFY(window->answer(QStringLiteral("OK")));
        QCOMPARE(window->message(), QString());
    }

    void ofSeveralFilesForTheListTheFirstIsTakenAndTheOthersAreNamed()
    {
        for (const bool isModified : {false, true}) {
            for (const bool isAccepted : {false, true}) {
                const auto window = WindowFixture::shown(QStringLiteral("Lead"), QStringLiteral("A B"));
                if (isModified) {
                    window->contentEditor.moveSlots({0}, 2);
                }
                const QString former = window->slotNames();
                const QStringList files{window->presetFile(QStringLiteral("first.prst"), QStringLiteral("C D")),
                    window->presetFile(QStringLiteral("second.prst"), QStringLiteral("E")),
                    window->presetFile(QStringLiteral("third.prst"), QStringLiteral("F"))};
                DragOver drag(window->contentList()->viewport(), filesData(files));
                QVERIFY(drag.moveTo(QPoint(30, 30)));
                QCOMPARE(window->status(), QStringLiteral("Only one of 3 files can be imported into the list"));
                QVERIFY(drag.dropAt(QPoint(30, 30)));
                WindowFixture::settle();
                QCOMPARE(window->slotNames(), former);
                QCOMPARE(window->message(), QStringLiteral("Only one of 3 files can be imported into the list"));
                const QString text = window->messageText();
                for (const QString &file : files) {
                    QVERIFY2(text.contains(QFileInfo(file).fileName()), qPrintable(text));
                }
                QCOMPARE(text.contains(QStringLiteral("not exported")), isModified);
                QVERIFY(window->answer(isAccepted ? QStringLiteral("Import the First") : QStringLiteral("Cancel")));
                QCOMPARE(window->slotNames(), isAccepted ? QStringLiteral("C D") : former);
                QCOMPARE(window->libraryRows(), QStringLiteral("Lead"));
                QCOMPARE(window->message(), QString());
            }
        }
    }

    void aDragOfFilesThatGoesAwayIsForgotten()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead"), QStringLiteral("A B"));
        const QString before = window->status();
        DragOver drag(window->contentList()->viewport(), filesData({QStringLiteral("/lists/x.prst")}));
        QVERIFY(drag.moveTo(QPoint(30, 30)));
        QVERIFY(window->status() != before);
        drag.leave();
        QCOMPARE(window->status(), before);
    }

    void aFileDroppedOnAListWithUnexportedChangesAsksFirst()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead"), QStringLiteral("A B"));
        window->contentEditor.moveSlots({0}, 2);
        const QString path = window->presetFile(QStringLiteral("new.prst"), QStringLiteral("New"));
        for (const bool isAccepted : {false, true}) {
            auto *file = new QMimeData;
            file->setUrls({QUrl::fromLocalFile(path)});
            QVERIFY(DragOver(window->window.get(), file).dropAt(QPoint(30, 30)));
            WindowFixture::settle();
            QCOMPARE(window->message(), QStringLiteral("The list has changes that were not exported"));
            QCOMPARE(window->slotNames(), QStringLiteral("B A"));
            QVERIFY(window->answer(isAccepted ? QStringLiteral("Import") : QStringLiteral("Cancel")));
            WindowFixture::settle();
            QCOMPARE(window->slotNames(), isAccepted ? QStringLiteral("New") : QStringLiteral("B A"));
        }
    }

    void aFileOfAnotherMachineBesideALocalOneIsSaid()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead"), QStringLiteral("A B"));
        auto *files = new QMimeData;
        files->setUrls({QUrl(QStringLiteral("sftp://stage.example/far.prst")),
            QUrl::fromLocalFile(window->presetFile(QStringLiteral("near.prst"), QStringLiteral("C D")))});
        QVERIFY(DragOver(window->contentList()->viewport(), files).dropAt(QPoint(30, 30)));
        WindowFixture::settle();
        QCOMPARE(window->message(), QStringLiteral("Only one of 2 files can be imported into the list"));
        QVERIFY2(window->messageText().contains(QStringLiteral("far.prst")), qPrintable(window->messageText()));
        QVERIFY(window->answer(QStringLiteral("Import the First")));
        QCOMPARE(window->slotNames(), QStringLiteral("C D"));
    }

    void whatIsNoLocalPresetFileIsNotImported()
    {
        const auto window = WindowFixture::shown({}, QStringLiteral("A B"));
        auto *page = new QMimeData;
        page->setUrls({QUrl(QStringLiteral("https://velgorlibrary.example/list.prst"))});
        QVERIFY(!DragOver(window->contentList()->viewport(), page).dropAt(QPoint(30, 30)));
        auto *text = new QMimeData;
        text->setText(QStringLiteral("list.prst"));
        QVERIFY(!DragOver(window->window.get(), text).dropAt(QPoint(30, 30)));
        QCOMPARE(window->message(), QString());
        auto *directory = new QMimeData;
        directory->setUrls({QUrl::fromLocalFile(window->path())});
        QVERIFY(DragOver(window->window.get(), directory).dropAt(QPoint(30, 30)));
        QCOMPARE(window->message(), QStringLiteral("Could not import file"));
        QCOMPARE(window->slotNames(), QStringLiteral("A B"));
    }
};

VELGOR_WIDGET_TEST(TestForeignDrops)
#include "tst_ForeignDrops.moc"
