#include "DeskFixture.h"
#include "LibraryCheck.h"
#include "TestProgram.h"
#include "WorkerGate.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTest>

using namespace TestLibraries;

class TestLibraryCheck : public QObject {
    Q_OBJECT

private Q_SLOTS:
    static void addingEndsWithItsOwnSaveAndNotWithOneBefore()
    {
        DeskFixture desk({}, {}, DeskFixture::Saves::Made);
        QVERIFY(!desk.save(importedThree()).hasError());
        const VelgorPatch other = imported(QStringLiteral("Other"), 9);
        desk.write(fileOf(other), patchBytes(other));
        QVERIFY(desk.start());
        LibraryCheck check(desk.library, desk.storage, desk.history);
        check.examine();
        desk.storage.finish();
        QCOMPARE(check.rescued().size(), 1);

        QList<bool> ends;
        connect(&check, &LibraryCheck::ended, &check, [&](bool isDone) {
            ends.append(isDone);
            QCOMPARE(desk.loadedNames().size(), 4);
            QVERIFY(!desk.storage.isSaving());
        });
        WorkerGate gate(desk.storage.worker());
        check.addRescued();
        desk.storage.startSave(desk.library);
        gate.open();
        QTRY_COMPARE(ends, QList{true});
        QTRY_VERIFY(!desk.storage.isSaving());
        QCOMPARE(ends.size(), 1);
    }
};

VELGOR_TEST(TestLibraryCheck)
#include "tst_LibraryCheck.moc"
