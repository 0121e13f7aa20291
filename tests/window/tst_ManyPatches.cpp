#include "ShownWidgets.h"
#include "TestLibraries.h"
#include "TestProgram.h"
#include "WindowFixture.h"

#include <QAction>
#include <QApplication>
#include <QLineEdit>

using namespace ShownWidgets;
using namespace ShownWidgets;

class TestManyPatches : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anyNumberOfPatchesIsHandled_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("deleted");
        QTest::newRow("1") << 1 << 1;
        QTest::newRow("99") << 99 << 50;
        QTest::newRow("10,000") << 10'000 << 1000;
    }

    void anyNumberOfPatchesIsHandled()
    {
        QFETCH(const int, count);
        QFETCH(const int, deleted);
        StoreFixture store;
        LibraryState stored;
        for (int i = 0; i < count; ++i) {
            const QString name = QStringLiteral("Sound %1").arg((i * 7919) % count, 5, 10, QChar(u'0'));
            stored.patches.append(TestLibraries::patch(name, 1000 + static_cast<quint64>(i), i));
        }
        store.save(stored);
        WindowFixture window(store);
        QVERIFY(window.open());
        const QAbstractItemModel *rows = window.libraryList()->model();
        QCOMPARE(rows->rowCount(), count);
        QTest::keyClicks(window.field("Filter by name"), QStringLiteral("0000"));
        QCOMPARE(rows->rowCount(), std::min(count, 10));
        QVERIFY(window.press(QStringLiteral("Clear")));
        QCOMPARE(rows->rowCount(), count);
        if (window.press(QStringLiteral("Sort"))) {
            QCOMPARE(rows->index(count - 1, 0).data().toString(),
                QStringLiteral("Sound %1").arg(count - 1, 5, 10, QChar(u'0')));
        }
        QVERIFY(window.choose(QStringLiteral("Select All")));
        QCOMPARE(window.labelOf(QStringLiteral("Select")), QStringLiteral("Select (%1)").arg(count));
        QVERIFY(window.press(QStringLiteral("Select")));
        QVERIFY(window.press(QStringLiteral("Select")));
        MultiSelections ticked;
        for (int i = 0; i < deleted; ++i) {
            ticked.multiSelections.insert(window.library.patches().at(i * count / deleted).id(), true);
        }
        window.library.setMultiSelections(ticked);
        window.calls.calls.clear();
        QVERIFY(window.press(QStringLiteral("Delete")));
        QCOMPARE(window.message(), QStringLiteral("Do you really want to delete %1 patches?").arg(deleted));
        QVERIFY(window.answer(QStringLiteral("Yes")));
        QCOMPARE(window.library.count(), count - deleted);
        QCOMPARE(window.calls.calls, (QStringList{QStringLiteral("remove %1").arg(deleted), QStringLiteral("save")}));
        window.storage.finish();
        QCOMPARE(store.files().size(), count - deleted + 1);
    }
};

VELGOR_WIDGET_TEST(TestManyPatches)
#include "tst_ManyPatches.moc"
