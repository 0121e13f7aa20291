#include "DetailFixture.h"
#include "TestProgram.h"
#include "VelgorStyle.h"

#include <QApplication>
#include <QClipboard>
#include <QDragEnterEvent>
#include <QGuiApplication>
#include <QMimeData>
#include <QShortcut>
#include <QSignalSpy>
#include <QTest>

using namespace ShownWidgets;

/// How typing into the name and the comment goes on while every keystroke comes back from the library.
class TestPatchDetailFields : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theDefaultPatchStaysMarked()
    {
        DetailFixture details;
        const auto *button = named<QAbstractButton>(details.view, QStringLiteral("Default"));
        const auto spoken = [button] {
            return QAccessible::queryAccessibleInterface(const_cast<QAbstractButton *>(button))
                ->text(QAccessible::Description);
        };
        QVERIFY(button->isCheckable() && !button->isChecked());
        QCOMPARE(spoken(), QString());
        for (int i = 0; i < 2; ++i) {
            press(details.view, QStringLiteral("Default"));
            catchUp();
            QCOMPARE(details.callbacks.defaultId, details.patch().id());
            QVERIFY(button->isChecked());
            QCOMPARE(spoken(), QStringLiteral("This is the default patch"));
        }
        details.select(1);
        catchUp();
        QVERIFY(!button->isChecked());
        details.callbacks.defaultId = details.patch(1).id();
        Q_EMIT details.library.defaultPatchChanged();
        catchUp();
        QVERIFY(button->isChecked());
    }

    void initTestCase() { QApplication::setStyle(new VelgorStyle); }

    void everyKeystrokeOfTheNameIsStored()
    {
        DetailFixture details;
        QTest::keyClick(details.name(), Qt::Key_End);
        QTest::keyClicks(details.name(), QStringLiteral(" 2"));
        QCOMPARE(details.patch().name, QStringLiteral("Lead 2"));
        QCOMPARE(details.callbacks.changedIds, QList<quint64>(2, details.patch().id()));
        QCOMPARE(details.patch(1).name, QStringLiteral("Solo"));
    }

    void pastedLineBreaksBecomeBlanksInTheName()
    {
        DetailFixture details;
        QGuiApplication::clipboard()->setText(QStringLiteral("one\ntwo"));
        details.name()->selectAll();
        details.name()->paste();
        QCOMPARE(details.patch().name, QStringLiteral("one two"));
        QCOMPARE(details.name()->text(), QStringLiteral("one two"));
    }

    void filesDroppedOnTheFieldsAreForTheWindow()
    {
        DetailFixture details;
        for (QWidget *field : {static_cast<QWidget *>(details.name()), details.comment()->viewport()}) {
            QMimeData file;
            file.setUrls({QUrl::fromLocalFile(QStringLiteral("/list.prst"))});
            file.setText(QStringLiteral("/list.prst"));
            QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &file, Qt::LeftButton, Qt::NoModifier);
            enter.ignore();
            QCoreApplication::sendEvent(field, &enter);
            QVERIFY(!enter.isAccepted());
        }
    }

    void anUnchangedNameIsNoRename()
    {
        DetailFixture details;
        details.name()->setFocus();
        QTest::keyClick(details.name(), Qt::Key_End);
        QTest::keyClick(details.name(), Qt::Key_Return);
        QTest::keyClick(details.name(), Qt::Key_Escape);
        details.comment()->setFocus();
        QCOMPARE(details.callbacks.changedIds, QList<quint64>());
    }

    void typingInTheMiddleKeepsTheCursor()
    {
        DetailFixture details;
        details.name()->setCursorPosition(2);
        QTest::keyClicks(details.name(), QStringLiteral("xyz"));
        DetailFixture::settle();
        QCOMPARE(details.patch().name, QStringLiteral("Lexyzad"));
        QCOMPARE(details.name()->cursorPosition(), 5);

        details.changeElsewhere(details.patch().name, QStringLiteral("one two"));
        QTextCursor cursor = details.comment()->textCursor();
        cursor.setPosition(3);
        details.comment()->setTextCursor(cursor);
        QTest::keyClicks(details.comment(), QStringLiteral("ly"));
        DetailFixture::settle();
        QCOMPARE(details.patch().comment, QStringLiteral("onely two"));
        QCOMPARE(details.comment()->textCursor().position(), 5);
    }

    void everyKeystrokeOfTheCommentIsStored()
    {
        DetailFixture details;
        QTest::keyClicks(details.comment(), QStringLiteral("ab"));
        QTest::keyClick(details.comment(), Qt::Key_Return);
        QTest::keyClick(details.comment(), Qt::Key_Return, Qt::ShiftModifier);
        QTest::keyClicks(details.comment(), QStringLiteral("c"));
        QCOMPARE(details.patch().comment, QStringLiteral("ab\n\nc"));
        QCOMPARE(details.callbacks.changedIds.size(), 5);
    }

    void undoAndRedoOfACommentAreEdits()
    {
        DetailFixture details;
        QTest::keyClicks(details.comment(), QStringLiteral("word"));
        DetailFixture::settle();
        QTest::keySequence(details.comment(), QKeySequence(QKeySequence::Undo));
        QCOMPARE(details.patch().comment, QString());
        QTest::keySequence(details.comment(), QKeySequence(QKeySequence::Redo));
        QCOMPARE(details.patch().comment, QStringLiteral("word"));
    }

    void undoOfANameIsAnEdit()
    {
        DetailFixture details;
        QTest::keyClick(details.name(), Qt::Key_End);
        QTest::keyClicks(details.name(), QStringLiteral("er"));
        QTest::keySequence(details.name(), QKeySequence(QKeySequence::Undo));
        QCOMPARE(details.patch().name, QStringLiteral("Lead"));
    }

    void undoDoesNotReachIntoAnotherPatch()
    {
        // The same texts, so that the fields have nothing to change.
        DetailFixture details(
            {TestPatches::imported(QStringLiteral("Lead"), 1), TestPatches::imported(QStringLiteral("Lead"), 2)});
        QTest::keyClicks(details.comment(), QStringLiteral("a"));
        QTest::keyClick(details.comment(), Qt::Key_Backspace);
        QTest::keyClick(details.name(), Qt::Key_End);
        QTest::keyClicks(details.name(), QStringLiteral("x"));
        QTest::keyClick(details.name(), Qt::Key_Backspace);
        details.select(1);
        QTest::keySequence(details.name(), QKeySequence(QKeySequence::Undo));
        QTest::keySequence(details.comment(), QKeySequence(QKeySequence::Undo));
        QCOMPARE(details.patch(1).name, QStringLiteral("Lead"));
        QCOMPARE(details.patch(1).comment, QString());
    }

    void escapeGoesBackToTheNameBeforeTheEdit()
    {
        DetailFixture details;
        details.view.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&details.view));
        details.view.focusName();
        QTest::keyClicks(details.name(), QStringLiteral("Other"));
        QCOMPARE(details.patch().name, QStringLiteral("Other"));
        QTest::keyClick(details.name(), Qt::Key_Escape);
        QCOMPARE(details.patch().name, QStringLiteral("Lead"));
        QCOMPARE(details.name()->text(), QStringLiteral("Lead"));
    }

    void escapeBelongsToAChangedNameBeforeTheWindow()
    {
        DetailFixture details;
        details.view.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&details.view));
        const QShortcut shortcut(QKeySequence(Qt::Key_Escape), &details.view);
        QSignalSpy window(&shortcut, &QShortcut::activated);
        details.view.focusName();
        QTest::keyClicks(details.name(), QStringLiteral("Other"));
        QTest::keyClick(details.name(), Qt::Key_Escape);
        QCOMPARE(window.count(), 0);
        QTest::keyClick(details.name(), Qt::Key_Escape);
        QCOMPARE(window.count(), 1);
    }

    void returnEndsAnEditOfTheName()
    {
        DetailFixture details;
        QTest::keyClick(details.name(), Qt::Key_End);
        QTest::keyClicks(details.name(), QStringLiteral("er"));
        QTest::keyClick(details.name(), Qt::Key_Return);
        QTest::keyClicks(details.name(), QStringLiteral("s"));
        QTest::keyClick(details.name(), Qt::Key_Escape);
        QCOMPARE(details.patch().name, QStringLiteral("Leader"));
    }

    void escapeNeverBringsAnotherPatchsName()
    {
        DetailFixture details;
        QTest::keyClick(details.name(), Qt::Key_End);
        QTest::keyClicks(details.name(), QStringLiteral("er"));
        details.select(1);
        QTest::keyClick(details.name(), Qt::Key_Escape);
        QCOMPARE(details.patch(1).name, QStringLiteral("Solo"));
        QCOMPARE(details.patch(0).name, QStringLiteral("Leader"));
    }

    void changesFromElsewhereAreShown()
    {
        DetailFixture details;
        details.changeElsewhere(QStringLiteral("New"), QStringLiteral("text"));
        QCOMPARE(details.name()->text(), QStringLiteral("New"));
        QCOMPARE(details.comment()->toPlainText(), QStringLiteral("text"));
        QCOMPARE(details.callbacks.changedIds, QList<quint64>());
    }

    void textsThatAFieldCannotHoldSurviveOtherEdits()
    {
        DetailFixture details;
        const QString comment = QStringLiteral("one\r\ntwo\u00a0three\u2028four");
        details.changeElsewhere(QStringLiteral("a\nb"), comment);
        ShownWidgets::press(details.view, QStringLiteral("Bass"));
        QVERIFY(details.patch().bass);
        QCOMPARE(details.patch().comment, comment);
        QCOMPARE(details.patch().name, QStringLiteral("a\nb"));
        details.comment()->moveCursor(QTextCursor::End);
        QTest::keyClicks(details.comment(), QStringLiteral("!"));
        QCOMPARE(details.patch().comment, QStringLiteral("one\ntwo\u00a0three\nfour!"));
    }

    void namesOfAnyLengthAreShownWhole_data()
    {
        QTest::addColumn<int>("length");
        for (const int length : {0, 16, 17, 80, 40'000}) {
            QTest::addRow("%d", length) << length;
        }
    }

    void namesOfAnyLengthAreShownWhole()
    {
        QFETCH(const int, length);
        DetailFixture details;
        details.changeElsewhere(QString(length, u'n'), {});
        QCOMPARE(details.name()->text(), QString(length, u'n'));
        QTest::keyClick(details.name(), Qt::Key_End);
        QTest::keyClicks(details.name(), QStringLiteral("x"));
        QCOMPARE(details.patch().name, QString(length, u'n') + u'x');
    }

    void assistiveTechnologyCanSetTheTexts()
    {
        DetailFixture details;
        QAccessible::queryAccessibleInterface(details.name())->setText(QAccessible::Value, QStringLiteral("Set"));
        QCOMPARE(details.patch().name, QStringLiteral("Set"));
        QAccessible::queryAccessibleInterface(details.comment())->setText(QAccessible::Value, QStringLiteral("text"));
        QCOMPARE(details.patch().comment, QStringLiteral("text"));
    }

    void tabLeavesTheComment()
    {
        DetailFixture details;
        details.view.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&details.view));
        details.comment()->setFocus();
        QTest::keyClick(details.comment(), Qt::Key_Tab);
        QCOMPARE(
            QApplication::focusWidget(), ShownWidgets::named<QAbstractButton>(details.view, QStringLiteral("Default")));
        QCOMPARE(details.patch().comment, QString());
    }
};

VELGOR_WIDGET_TEST(TestPatchDetailFields)
#include "tst_PatchDetailFields.moc"
