#include "DropMark.h"
#include "StatusText.h"
#include "TestDesk.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QTest>

class TestStatusText : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anEmptyLibraryIsSaidToBeInItsFolder()
    {
        TestDesk desk;
        QCOMPARE(StatusText::ofLibrary(desk.desk), QStringLiteral("Library folder: ") + desk.directory.path());
    }

    void changesAreFollowedUntilTheyAreSaved()
    {
        TestDesk desk(QStringLiteral("A B"));
        QCOMPARE(StatusText::ofLibrary(desk.desk), QStringLiteral("All changes saved"));
        desk.libraryEditor.changed();
        QCOMPARE(StatusText::ofLibrary(desk.desk), QStringLiteral("Saving changes"));
        QVERIFY(desk.storage.saveUnsaved());
        QCOMPARE(StatusText::ofLibrary(desk.desk), QStringLiteral("All changes saved"));
    }

    void aDropSaysWhichSlotsItReplaces_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("said");
        QTest::newRow("one") << 7 << 1 << QStringLiteral("Replaces slot 3.2");
        QTest::newRow("several") << 1 << 4 << QStringLiteral("Replaces 4 slots, 1.2 to 2.2");
    }

    void aDropSaysWhichSlotsItReplaces()
    {
        QFETCH(const int, row);
        QFETCH(const int, count);
        QFETCH(const QString, said);
        DropMark mark;
        mark.kind = DropMark::Replace;
        mark.row = row;
        mark.count = count;
        QCOMPARE(StatusText::ofDrop(mark), said);
        QCOMPARE(StatusText::ofDrop(DropMark()), QString());
    }
};

VELGOR_TEST(TestStatusText)
#include "tst_StatusText.moc"
