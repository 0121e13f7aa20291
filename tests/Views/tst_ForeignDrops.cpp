#include "DragOver.h"
#include "LibraryContentMainView.h"
#include "TestProgram.h"
#include "VelgorPatchDetailView.h"
#include "WindowFixture.h"

#include <QApplication>
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

    void aPresetFileDroppedAnywhereIsImported()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead"), QStringLiteral("A B"));
        int number = 0;
        for (QWidget *target : {static_cast<QWidget *>(window->window.get()), window->contentList()->viewport(),
                 window->libraryList()->viewport(), static_cast<QWidget *>(window->window->columns().details())}) {
            const QString name = QStringLiteral("New%1").arg(++number);
            auto *file = new QMimeData;
            file->setUrls({QUrl::fromLocalFile(window->presetFile(QStringLiteral("new.prst"), name))});
            DragOver drag(target, file);
            QVERIFY(drag.dropAt(QPoint(30, 30)));
            WindowFixture::settle();
            QCOMPARE(window->slotNames(), name);
        }
        QCOMPARE(window->libraryRows(), QStringLiteral("Lead"));
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
        directory->setUrls({QUrl::fromLocalFile(window->ownDirectory->path())});
        QVERIFY(DragOver(window->window.get(), directory).dropAt(QPoint(30, 30)));
        QCOMPARE(window->message(), QStringLiteral("Could not import file"));
        QCOMPARE(window->slotNames(), QStringLiteral("A B"));
    }
};

VELGOR_WIDGET_TEST(TestForeignDrops)
#include "tst_ForeignDrops.moc"
