#include "AlertTexts.h"
#include "Alerts.h"
#include "ShownAlerts.h"
#include "TestDesk.h"
#include "TestProgram.h"

#include <QApplication>
#include <QMessageBox>
#include <QTest>

#include <functional>

using namespace ShownAlerts;

namespace {

const QString disclaimer =
    QStringLiteral("I know that this file has not been created by a genuine Ostrel product and I "
                   "assume taking the risk of using it.");

} // namespace

class TestAlertAnswers : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aButtonWithTheFocusIsPressedByReturn_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("Return") << static_cast<int>(Qt::Key_Return);
        QTest::newRow("Enter") << static_cast<int>(Qt::Key_Enter);
    }

    void aButtonWithTheFocusIsPressedByReturn()
    {
        QFETCH(const int, key);
        for (const bool isYes : {false, true}) {
            Window window(QStringLiteral("A B C"));
            window.desk.select(1);
            window.desk.library.setDeleteConfirm(true);
            QMessageBox *box = shownBox();
            QVERIFY(box);
            QVERIFY(QTest::qWaitForWindowActive(box));
            QCOMPARE(box->focusWidget(), buttonOf(*box, QStringLiteral("No")));
            if (isYes) {
                QTest::keyClick(box->focusWidget(), Qt::Key_Tab);
                QCOMPARE(box->focusWidget(), buttonOf(*box, QStringLiteral("Yes")));
            }
            QTest::keyClick(box->focusWidget(), static_cast<Qt::Key>(key));
            QTRY_COMPARE(window.desk.shown(), isYes ? QStringLiteral("A C") : QStringLiteral("A B C"));
            QTRY_VERIFY(shownBoxes().isEmpty());
        }
    }

    void returnOnTheFocusedOkTakesTheRisk()
    {
        Window window;
        window.desk.fillContent(QStringLiteral("x y"));
        window.desk.dialogs.answer = QStringLiteral("out");
        window.alerts->confirmExport();
        QMessageBox *box = shownBox();
        QVERIFY(box && QTest::qWaitForWindowActive(box));
        buttonOf(*box, QStringLiteral("OK"))->setFocus(Qt::TabFocusReason);
        QTest::keyClick(box->focusWidget(), Qt::Key_Return);
        QTRY_VERIFY(window.desk.memory.files.contains(QStringLiteral("out")));
    }

    void aLetterPressesAButtonOnlyWithAlt()
    {
        Window window(QStringLiteral("A B C"));
        window.desk.select(1);
        window.desk.library.setDeleteConfirm(true);
        QMessageBox *box = shownBox();
        QVERIFY(box && QTest::qWaitForWindowActive(box));
        QTest::keyClicks(box->focusWidget(), QStringLiteral("yn"));
        QTest::qWait(1);
        QCOMPARE(shownBox(), box);
        QTest::keyClick(box->focusWidget(), Qt::Key_Y, Qt::AltModifier);
        QTRY_COMPARE(window.desk.shown(), QStringLiteral("A C"));
    }

    void yesDeletes_data()
    {
        QTest::addColumn<QList<qsizetype>>("ticked");
        QTest::addColumn<QString>("left");
        QTest::newRow("selected") << QList<qsizetype>() << QStringLiteral("A C");
        QTest::newRow("ticked") << QList<qsizetype>{0, 2} << QStringLiteral("B");
    }

    void yesDeletes()
    {
        QFETCH(const QList<qsizetype>, ticked);
        QFETCH(const QString, left);
        Window window(QStringLiteral("A B C"));
        window.desk.select(1);
        if (!ticked.isEmpty()) {
            window.desk.tick(ticked);
        }
        window.desk.library.setDeleteConfirm(true);
        press(QStringLiteral("Yes"));
        QTRY_COMPARE(window.desk.shown(), left);
        QVERIFY(!window.desk.library.deleteConfirm());
    }

    void theRefusedDisclaimerExportsNothing_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("button") << 0;
        QTest::newRow("Return") << static_cast<int>(Qt::Key_Return);
        QTest::newRow("Escape") << static_cast<int>(Qt::Key_Escape);
    }

    void theRefusedDisclaimerExportsNothing()
    {
        QFETCH(const int, key);
        Window window;
        window.desk.fillContent(QStringLiteral("x y"));
        window.desk.dialogs.answer = QStringLiteral("out");
        window.alerts->confirmExport();
        QCOMPARE(shownTitle(), disclaimer);
        if (key == 0) {
            press(QStringLiteral("I don't accept"));
        } else {
            QTest::keyClick(shownBox(), static_cast<Qt::Key>(key));
        }
        QTest::qWait(1);
        QCOMPARE(window.desk.dialogs.asked, QStringList());
        QVERIFY(window.desk.memory.files.isEmpty());
        QVERIFY(!window.desk.content.saveError());
        QVERIFY(shownBoxes().isEmpty());
    }

    void theAcceptedDisclaimerExports()
    {
        Window window;
        window.desk.fillContent(QStringLiteral("x y"));
        window.desk.dialogs.answer = QStringLiteral("out");
        window.alerts->confirmExport();
        press(QStringLiteral("OK"));
        QTRY_VERIFY(window.desk.memory.files.contains(QStringLiteral("out")));
        QCOMPARE(SPresetFile::fromData(window.desk.memory.files.value(QStringLiteral("out")))->patches.size(), 2);
        QTest::qWait(1);
        QVERIFY(shownBoxes().isEmpty());
    }

    void theDisclaimerTakesTheRiskNeitherByDefaultNorOnEscape()
    {
        Window window;
        window.alerts->confirmExport();
        const QMessageBox *box = shownBox();
        QVERIFY(box);
        QCOMPARE(box->buttons().size(), 2);
        QAbstractButton *const safe = buttonOf(*box, QStringLiteral("I don't accept"));
        QVERIFY(safe);
        QCOMPARE(box->defaultButton(), safe);
        QCOMPARE(box->escapeButton(), safe);
        QCOMPARE(box->buttonRole(buttonOf(*box, QStringLiteral("OK"))), QMessageBox::DestructiveRole);
        press(QStringLiteral("I don't accept"));
    }

    void anExportThatFailsIsToldOfAfterTheDisclaimer()
    {
        Window window;
        window.desk.fillContent(QStringLiteral("x"));
        window.desk.dialogs.answer = QStringLiteral("out");
        window.desk.memory.writeError = QStringLiteral("disk full");
        window.alerts->confirmExport();
        press(QStringLiteral("OK"));
        QTRY_COMPARE(shownTitle(), QStringLiteral("Could not export file"));
        QVERIFY(shownBox()->informativeText().contains(QStringLiteral("out: disk full")));
        press(QStringLiteral("OK"));
    }

    void anAcceptedMessageIsDoneBeforeTheNextOneIsShown()
    {
        Window window(QStringLiteral("A B C"));
        window.desk.select(1);
        window.desk.library.setDeleteConfirm(true);
        QVERIFY(shownBox());
        window.desk.content.setOpenError(true);
        press(QStringLiteral("Yes"));
        QCOMPARE(shownTitle(), QStringLiteral("Could not import file"));
        QCOMPARE(window.desk.shown(), QStringLiteral("A C"));
        press(QStringLiteral("OK"));
    }

    void deletingSaysWhatBecomesOfTheSlots_data()
    {
        QTest::addColumn<QString>("slotNames");
        QTest::addColumn<QString>("said");
        QTest::newRow("unused") << QStringLiteral("x y") << QString();
        QTest::newRow("one") << QStringLiteral("A x") << QStringLiteral("The slot that uses it keeps its copy.");
        QTest::newRow("two") << QStringLiteral("A x A") << QStringLiteral("The 2 slots that use it keep their copies.");
    }

    void deletingSaysWhatBecomesOfTheSlots()
    {
        QFETCH(const QString, slotNames);
        QFETCH(const QString, said);
        TestDesk desk(QStringLiteral("A B"));
        desk.select(0);
        desk.fillContent(slotNames);
        const Alert alert = AlertTexts::deleteConfirm(desk.library, desk.libraryEditor);
        QVERIFY(alert.text.startsWith(QStringLiteral("\"A\" ")));
        QCOMPARE(alert.text.contains(QStringLiteral("slot")), !said.isEmpty());
        QVERIFY2(alert.text.endsWith(said), qPrintable(alert.text));
    }
};

VELGOR_WIDGET_TEST(TestAlertAnswers)
#include "tst_AlertAnswers.moc"
