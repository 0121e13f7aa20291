#include "DropMark.h"
#include "StatusText.h"
#include "TestDesk.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QDir>
#include <QTest>

class TestStatusText : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anEmptyLibraryIsSaidToBeInItsFolder()
    {
        TestDesk desk;
        QCOMPARE(StatusText::ofLibrary(desk.library, desk.storage), QStringLiteral("Library folder: ") + desk.path());
    }

    void aMovedLibraryIsSaidToBeInItsNewFolder_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("said");
        const QString rightToLeft = QString::fromUtf8("\u05d2\u05d9\u05d8\u05e8\u05d4");
        QTest::newRow("below home") << QString(QDir::homePath() + QStringLiteral("/Sounds"))
                                    << QStringLiteral("Library moved to ~/Sounds");
        QTest::newRow("elsewhere") << QStringLiteral("/srv/sounds") << QStringLiteral("Library moved to /srv/sounds");
        QTest::newRow("right to left") << QString(u'/' + rightToLeft)
                                       << QString(QStringLiteral("Library moved to \u2068/") + rightToLeft + u'\u2069');
        QTest::newRow("long") << QString(u'/' + QString(300, u'x') + QStringLiteral("/end"))
                              << QString(QStringLiteral("Library moved to /") + QString(59, u'x') + u'\u2026'
                                     + QString(56, u'x') + QStringLiteral("/end"));
    }

    void aMovedLibraryIsSaidToBeInItsNewFolder()
    {
        QFETCH(const QString, path);
        QTEST(StatusText::ofLibraryMove(path), "said");
    }

    void changesAreFollowedUntilTheyAreSaved()
    {
        TestDesk desk(QStringLiteral("A B"));
        QCOMPARE(StatusText::ofLibrary(desk.library, desk.storage), QStringLiteral("All changes saved"));
        desk.libraryEditor.changed();
        QCOMPARE(StatusText::ofLibrary(desk.library, desk.storage), QStringLiteral("Saving changes"));
        QVERIFY(desk.storage.saveUnsaved());
        QCOMPARE(StatusText::ofLibrary(desk.library, desk.storage), QStringLiteral("All changes saved"));
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
