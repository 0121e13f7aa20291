#include "AlertTexts.h"
#include "Alerts.h"
#include "ShownAlerts.h"
#include "TestDesk.h"
#include "TestProgram.h"

#include <QApplication>
#include <QMessageBox>
#include <QSignalSpy>
#include <QTest>

#include <functional>

using namespace ShownAlerts;

namespace {

using Raise = std::function<void(TestDesk &)>;

using IsRaised = std::function<bool(TestDesk &)>;

struct Message {
    const char *name;
    const char *title;
    const char *buttons; ///< sorted; the safe one first, separated by "|"
    Raise raise;
    IsRaised isRaised;
};

const QList<Message> &messages()
{
    static const QList<Message> all{
        {"import failed", "Could not import file", "OK", [](TestDesk &desk) { desk.content.setOpenError(true); },
            [](TestDesk &desk) { return desk.content.openError(); }},
        {"export failed", "Could not export file", "OK", [](TestDesk &desk) { desk.content.setSaveError(true); },
            [](TestDesk &desk) { return desk.content.saveError(); }},
        {"no default patch", "You have to select a default patch in the library", "OK",
            [](TestDesk &desk) { desk.content.setSelectDefault(true); },
            [](TestDesk &desk) { return desk.content.selectDefault(); }},
        {"mixed versions", "You should not mix various versions of Velgor firmware in a preset file", "OK",
            [](TestDesk &desk) { desk.content.setMixVersions(true); },
            [](TestDesk &desk) { return desk.content.mixVersions(); }},
        {"library not read", "Could not access to library directory.", "Not Now|Check Library...",
            [](TestDesk &desk) { desk.storage.setReadError(true); },
            [](TestDesk &desk) { return desk.storage.readError(); }},
        {"library not written", "Could not save one or more library files", "OK",
            [](TestDesk &desk) { desk.storage.setWriteError(true); },
            [](TestDesk &desk) { return desk.storage.writeError(); }},
        {"delete one", "Do you really want to delete 1 patch?", "No|Yes",
            [](TestDesk &desk) {
                desk.select(1);
                desk.library.setDeleteConfirm(true);
            },
            [](TestDesk &desk) { return desk.library.deleteConfirm(); }},
        {"delete one ticked", "Do you really want to delete 1 patches?", "No|Yes",
            [](TestDesk &desk) {
                desk.tick({1});
                desk.library.setDeleteConfirm(true);
            },
            [](TestDesk &desk) { return desk.library.deleteConfirm(); }},
        {"delete two ticked", "Do you really want to delete 2 patches?", "No|Yes",
            [](TestDesk &desk) {
                desk.tick({0, 2});
                desk.library.setDeleteConfirm(true);
            },
            [](TestDesk &desk) { return desk.library.deleteConfirm(); }},
    };
    return all;
}

} // namespace

class TestAlertTable : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCoreApplication::setApplicationName(QStringLiteral("Velgor Library Manager")); }
    void cleanup() { QTRY_VERIFY(shownBoxes().isEmpty()); }

    void aFlagShowsItsMessageUntilDismissed_data()
    {
        QTest::addColumn<int>("message");
        QTest::addColumn<int>("key");
        for (int i = 0; i < messages().size(); ++i) {
            QTest::addRow("%s, Escape", messages().at(i).name) << i << static_cast<int>(Qt::Key_Escape);
            QTest::addRow("%s, Return", messages().at(i).name) << i << static_cast<int>(Qt::Key_Return);
            QTest::addRow("%s, closed", messages().at(i).name) << i << 0;
        }
    }

    void aFlagShowsItsMessageUntilDismissed()
    {
        QFETCH(const int, message);
        QFETCH(const int, key);
        const Message &expected = messages().at(message);
        Window window(QStringLiteral("A B C"));
        expected.raise(window.desk);
        QVERIFY(shownBoxes().isEmpty());
        QPointer<QMessageBox> box = shownBox();
        QVERIFY(box);
        QVERIFY(window.alerts->isShowing());
        QCOMPARE(box->text(), QString::fromLatin1(expected.title));
        QVERIFY(!box->informativeText().isEmpty());
        QCOMPARE(box->windowTitle(), QStringLiteral("Velgor Library Manager"));
        QCOMPARE(box->parentWidget(), &window.widget);
        QVERIFY(box->isModal());
        const QStringList buttons = QString::fromLatin1(expected.buttons).split(u'|');
        QCOMPARE(box->buttons().size(), buttons.size());
        QAbstractButton *const safe = buttonOf(*box, buttons.first());
        QVERIFY(safe);
        QCOMPARE(box->defaultButton(), safe);
        QCOMPARE(box->escapeButton(), safe);
        QCOMPARE(box->buttonRole(safe), QMessageBox::RejectRole);
        if (buttons.size() > 1) {
            QAbstractButton *const accept = buttonOf(*box, buttons.last());
            QVERIFY(accept);
            QCOMPARE(box->buttonRole(accept),
                buttons.last() == QStringLiteral("Yes") ? QMessageBox::DestructiveRole : QMessageBox::AcceptRole);
        }

        if (key == 0) {
            box->close();
        } else {
            QTest::keyClick(box, static_cast<Qt::Key>(key));
        }
        QTest::qWait(1);
        QVERIFY(!expected.isRaised(window.desk));
        QVERIFY(shownBoxes().isEmpty());
        QVERIFY(!window.alerts->isShowing());
        QCOMPARE(window.desk.shown(), QStringLiteral("A B C"));
        QTRY_VERIFY(!box);

        expected.raise(window.desk);
        QCOMPARE(shownTitle(), QString::fromLatin1(expected.title));
        press(buttons.first());
        QCOMPARE(window.desk.shown(), QStringLiteral("A B C"));
    }

    void flagsRaisedTogetherAreShownOneAfterTheOther()
    {
        Window window(QStringLiteral("A B C"));
        for (const Message &message : messages().first(6)) {
            message.raise(window.desk);
        }
        for (const Message &message : messages().first(6)) {
            QCOMPARE(shownTitle(), QString::fromLatin1(message.title));
            QVERIFY(message.isRaised(window.desk));
            QTest::keyClick(shownBox(), Qt::Key_Escape);
            QVERIFY(!message.isRaised(window.desk));
        }
        QTest::qWait(1);
        QVERIFY(shownBoxes().isEmpty());
    }

    void aFlagRaisedDuringAMessageWaits()
    {
        Window window(QStringLiteral("A B C"));
        window.desk.storage.setWriteError(true);
        QVERIFY(shownBox());
        window.desk.content.setOpenError(true);
        QCOMPARE(shownTitle(), QStringLiteral("Could not save one or more library files"));
        QTest::keyClick(shownBox(), Qt::Key_Escape);
        QVERIFY(!window.desk.storage.writeError());
        QVERIFY(window.desk.content.openError());
        QCOMPARE(shownTitle(), QStringLiteral("Could not import file"));
        QTest::keyClick(shownBox(), Qt::Key_Escape);
    }

    void aFlagRaisedAndClearedAtOnceShowsNothing()
    {
        Window window;
        window.desk.content.setMixVersions(true);
        window.desk.content.setMixVersions(false);
        QTest::qWait(1);
        QVERIFY(shownBoxes().isEmpty());
    }

    void aFlagRaisedBeforeTheWindowIsShownIsShownThen()
    {
        TestDesk desk;
        desk.storage.setReadError(true);
        QWidget widget;
        new Alerts(desk.library, desk.content, desk.storage, desk.desk.editors, widget);
        QVERIFY(shownBoxes().isEmpty());
        widget.show();
        QCOMPARE(shownTitle(), QStringLiteral("Could not access to library directory."));
        QTest::keyClick(shownBox(), Qt::Key_Escape);
    }

    void aDirectoryThatCannotBeListedIsExplainedAndLeft()
    {
        TestDesk desk(QStringLiteral("A"), QStringLiteral("my library"));
        QWidget widget;
        const auto *const alerts = new Alerts(desk.library, desk.content, desk.storage, desk.desk.editors, widget);
        const QSignalSpy moves(alerts, &Alerts::libraryMoveWanted);
        widget.show();
        for (const QString &answer : {QStringLiteral("Not Now"), QStringLiteral("Move Library...")}) {
            desk.storage.setWriteError(true);
            QCOMPARE(shownTitle(), QStringLiteral("Could not save one or more library files"));
            QVERIFY(shownBox()->informativeText().contains(desk.storage.libDirectory()));
            press(answer);
            QTest::qWait(1);
            QVERIFY(!desk.storage.writeError());
        }
        QCOMPARE(moves.count(), 1);
    }

    void aLibraryThatCannotBeReadLeadsToItsCheck()
    {
        Window window;
        const QSignalSpy wanted(window.alerts, &Alerts::libraryCheckWanted);
        for (const QString &answer : {QStringLiteral("Not Now"), QStringLiteral("Check Library...")}) {
            QCOMPARE(wanted.count(), 0);
            window.desk.storage.setReadError(true);
            press(answer);
            QTest::qWait(1);
            QVERIFY(!window.desk.storage.readError());
        }
        QCOMPARE(wanted.count(), 1);
    }

    void aMessageStandsOverTheDialogInFront()
    {
        Window window;
        QWidget dialog;
        dialog.show();
        window.alerts->setFrontDialog(&dialog);
        window.desk.content.setOpenError(true);
        QVERIFY(shownBox());
        QCOMPARE(shownBox()->parentWidget(), &dialog);
        press(QStringLiteral("OK"));
        dialog.hide();
        window.desk.content.setOpenError(true);
        QVERIFY(shownBox());
        QCOMPARE(shownBox()->parentWidget(), &window.widget);
        press(QStringLiteral("OK"));
    }

    void namesFromFilesAreNoMarkup()
    {
        Window window(QStringLiteral("<b>x</b>"));
        window.desk.select(0);
        window.desk.library.setDeleteConfirm(true);
        const QMessageBox *box = shownBox();
        QVERIFY(box);
        QCOMPARE(box->textFormat(), Qt::PlainText);
        QVERIFY(box->informativeText().contains(QStringLiteral("<b>x</b>")));
        press(QStringLiteral("No"));
    }

    void mixedVersionsAreCounted()
    {
        Window window(QStringLiteral("A"));
        window.desk.fillContent(QStringLiteral("x y z"));
        window.desk.library.append(TestPatches::imported(QStringLiteral("Other"), 9, {}, "V1.21"), false, false);
        window.desk.contentEditor.dropDest(window.desk.idOf(1), 0);
        QVERIFY(shownBox());
        QVERIFY2(shownBox()->informativeText().contains(QStringLiteral("V1.20: 2, V1.21: 1")),
            qPrintable(shownBox()->informativeText()));
        press(QStringLiteral("OK"));
    }
};

VELGOR_WIDGET_TEST(TestAlertTable)
#include "tst_AlertTable.moc"
