#include "ImportedList.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTest>

using namespace ImportedList;
using TestPatches::imported;

class TestContentFiles : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void startsUnmodifiedWithoutAFile()
    {
        const Desk desk;
        QVERIFY(!desk.contentFiles.isModified());
        QCOMPARE(desk.contentFiles.fileName() + desk.contentFiles.problem(), QString());
    }

    void anImportedListIsItsFile()
    {
        Desk desk;
        const QSignalSpy changes(&desk.contentFiles, &ContentFiles::changed);
        desk.contentFiles.importFile();
        QCOMPARE(desk.slotNames(), QStringLiteral("A B C"));
        QCOMPARE(desk.contentFiles.fileName(), in);
        QVERIFY(!desk.contentFiles.isModified());
        QVERIFY(!changes.isEmpty());
    }

    void anExportProposesTheNameOfTheListsFile()
    {
        Desk desk;
        desk.contentFiles.importFile(in);
        desk.dialogs.answer = out;
        QVERIFY(desk.contentFiles.exportList());
        QVERIFY(desk.contentFiles.exportList());
        desk.content.createNew(desk.inSlot(0));
        QVERIFY(desk.contentFiles.exportList());
        QCOMPARE(desk.dialogs.asked,
            (QStringList{QStringLiteral("Save patches list: in.prst"), QStringLiteral("Save patches list: out.prst"),
                QStringLiteral("Save patches list: patches.prst")}));
    }

    void thePatchesOfAFileAreReadBesideTheList()
    {
        Desk desk;
        desk.contentFiles.importFile(in);
        const QString before = desk.slotNames();
        const QList<VelgorPatch> patches = desk.contentFiles.patchesIn(in);
        QCOMPARE(patches.size(), 3);
        QCOMPARE(patches.at(2).name, QStringLiteral("C"));
        QVERIFY(patches.at(2).hasUserIR);
        QVERIFY(desk.contentFiles.problem().isEmpty());
        QVERIFY(desk.contentFiles.patchesIn(QStringLiteral("/lists/none.prst")).isEmpty());
        QVERIFY(desk.contentFiles.problem().contains(QStringLiteral("none.prst")));
        QCOMPARE(desk.slotNames(), before);
        QVERIFY(!desk.content.openError());
        QCOMPARE(desk.contentFiles.fileName(), in);
    }

    void aNamedFileIsImportedUnasked()
    {
        Desk desk;
        desk.content.setOpenError(true);
        desk.contentFiles.importFile(in);
        QCOMPARE(desk.dialogs.asked, QStringList());
        QCOMPARE(desk.contentFiles.fileName(), in);
        QVERIFY(!desk.content.openError());
    }

    void aCancelledImportChangesNothing()
    {
        Desk desk;
        desk.contentFiles.importFile();
        desk.content.setPatch(imported(QStringLiteral("New")), 0);
        desk.dialogs.answer.reset();
        desk.contentFiles.importFile();
        QVERIFY(!desk.content.openError());
        QCOMPARE(desk.slotNames(), QStringLiteral("New B C"));
        QCOMPARE(desk.contentFiles.fileName(), in);
        QCOMPARE(desk.contentFiles.problem(), QString());
        QVERIFY(desk.contentFiles.isModified());
    }

    void anUnreadableFileChangesNothing_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("empty") << QByteArray("");
        QTest::newRow("no preset file") << QByteArray("hello");
        QTest::newRow("cut") << threePatches().chopped(300);
        QTest::newRow("missing") << QByteArray();
    }

    void anUnreadableFileChangesNothing()
    {
        QFETCH(const QByteArray, bytes);
        Desk desk;
        desk.contentFiles.importFile();
        desk.content.setPatch(imported(QStringLiteral("New")), 0);
        if (!bytes.isNull()) {
            desk.memory.files.insert(out, bytes);
        }
        desk.contentFiles.importFile(out);
        QVERIFY(desk.content.openError());
        QVERIFY2(desk.contentFiles.problem().contains(out), qPrintable(desk.contentFiles.problem()));
        QCOMPARE(desk.slotNames(), QStringLiteral("New B C"));
        QCOMPARE(desk.contentFiles.fileName(), in);
        QVERIFY(desk.contentFiles.isModified());
    }

    void anExportedListIsItsNewFile()
    {
        Desk desk;
        desk.contentFiles.importFile();
        desk.content.setPatch(imported(QStringLiteral("New"), 7), 1);
        QVERIFY(desk.contentFiles.isModified());
        desk.exportTo(out);
        QCOMPARE(desk.contentFiles.fileName(), out);
        QVERIFY(!desk.contentFiles.isModified());
        QVERIFY(!desk.content.saveError());
        QVERIFY(desk.memory.files.contains(out));
        QCOMPARE(desk.memory.files.value(in), threePatches());
    }

    void aCancelledExportIsNoError()
    {
        Desk desk;
        desk.contentFiles.importFile();
        desk.content.setPatch(imported(QStringLiteral("New")), 0);
        desk.dialogs.answer.reset();
        QVERIFY(!desk.contentFiles.exportList());
        QVERIFY(!desk.content.saveError());
        QVERIFY(!desk.contentFiles.exportPatch(desk.inSlot(0)));
        QVERIFY(!desk.content.saveError());
        QCOMPARE(desk.contentFiles.problem(), QString());
        QCOMPARE(desk.contentFiles.fileName(), in);
        QVERIFY(desk.contentFiles.isModified());
    }

    void aFailedExportKeepsTheState()
    {
        Desk desk;
        desk.contentFiles.importFile();
        desk.content.setPatch(imported(QStringLiteral("New")), 0);
        desk.memory.writeError = QStringLiteral("disk full");
        desk.dialogs.answer = out;
        QVERIFY(!desk.contentFiles.exportList());
        QVERIFY(desk.content.saveError());
        QCOMPARE(desk.contentFiles.problem(), out + QStringLiteral(": disk full"));
        QCOMPARE(desk.contentFiles.fileName(), in);
        QVERIFY(desk.contentFiles.isModified());
        QCOMPARE(desk.slotNames(), QStringLiteral("New B C"));
    }

    void theNextExportClearsTheError()
    {
        Desk desk;
        desk.contentFiles.importFile();
        desk.content.setSaveError(true);
        desk.exportTo(out);
        QVERIFY(!desk.content.saveError());
    }

    void anEmptyListCannotBeExported()
    {
        Desk desk;
        QVERIFY(!desk.contentFiles.exportList());
        QVERIFY(desk.content.saveError());
        QVERIFY(!desk.contentFiles.problem().isEmpty());
        QCOMPARE(desk.dialogs.asked, QStringList());
    }

    void exportingOnePatchLeavesTheListAlone()
    {
        Desk desk;
        desk.contentFiles.importFile();
        desk.content.setPatch(imported(QStringLiteral("New")), 0);
        desk.dialogs.answer = out;
        QVERIFY(desk.contentFiles.exportPatch(desk.inSlot(1)));
        QCOMPARE(desk.contentFiles.fileName(), in);
        QVERIFY(desk.contentFiles.isModified());
        QCOMPARE(SPresetFile::fromData(desk.memory.files.value(out))->patches.first().name, QStringLiteral("B"));
    }

    void aFailedExportOfOnePatchSetsTheError()
    {
        Desk desk;
        QVERIFY(!desk.contentFiles.exportPatch(TestPatches::stored(7, QStringLiteral("Without data"))));
        QVERIFY(desk.content.saveError());
        QVERIFY(desk.contentFiles.problem().contains(QStringLiteral("Without data")));
    }

    void aNewListHasNoFileAndIsModified()
    {
        Desk desk;
        desk.contentFiles.importFile();
        desk.content.createNew(desk.inSlot(0));
        QVERIFY(desk.contentFiles.isModified());
        QCOMPARE(desk.contentFiles.fileName(), QString());
    }

    void aListWithoutPresetDataCannotBeExported()
    {
        Desk desk;
        desk.content.createNew(VelgorPatch(QStringLiteral("nothing"), false));
        QVERIFY(desk.contentFiles.isModified());
        desk.dialogs.answer = out;
        QVERIFY(!desk.contentFiles.exportList());
        QVERIFY(desk.content.saveError());
        QVERIFY(!desk.memory.files.contains(out));
    }
};

VELGOR_TEST(TestContentFiles)
#include "tst_ContentFiles.moc"
