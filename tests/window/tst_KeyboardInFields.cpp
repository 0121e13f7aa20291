#include "KeysInWindow.h"
#include "ShownWidgets.h"
#include "TestPatches.h"
#include "TestProgram.h"
#include "WindowFixture.h"

#include <QApplication>
#include <QLineEdit>
#include <QPlainTextEdit>

using namespace KeysInWindow;
using namespace ShownWidgets;
using Flag = bool VelgorPatch::*;

class TestKeyboardInFields : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void keysOfATextFieldAreTheFields_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name : {"Name", "Filter by name", "Filter by comment"}) {
            QTest::newRow(name) << QString(QLatin1String(name));
        }
    }

    void keysOfATextFieldAreTheFields()
    {
        QFETCH(const QString, name);
        const auto window = chosen();
        QLineEdit *edit = named<QLineEdit>(*window->window, name);
        edit->setFocus();
        edit->selectAll();
        QTest::keyClicks(edit, QStringLiteral("two words"));
        WindowFixture::click(window->libraryList(), 0);
        edit->setFocus();
        edit->setText(QStringLiteral("two words"));
        edit->home(false);
        type(Qt::Key_Delete, Qt::ControlModifier);
        QCOMPARE(edit->text(), QStringLiteral("words"));
        QCOMPARE(window->message(), QString());
        type(Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(edit->selectedText(), QStringLiteral("words"));
        QVERIFY(!window->library.isMultiSel());
        QVERIFY(window->contentEditor.selectedRows().size() == 1);
        type(Qt::Key_Return);
        QCOMPARE(window->slotNames(), QStringLiteral("A B C D"));
    }

    void keysOfTheCommentAreTheComments()
    {
        const auto window = chosen();
        auto *comment = named<QPlainTextEdit>(*window->window, QStringLiteral("Comment"));
        comment->setFocus();
        QTest::keyClicks(comment, QStringLiteral("two words"));
        QCOMPARE(window->library.patches().at(1).comment, QStringLiteral("two words"));
        comment->moveCursor(QTextCursor::Start);
        type(Qt::Key_Delete, Qt::ControlModifier);
        QCOMPARE(window->library.patches().at(1).comment, QStringLiteral("words"));
        QCOMPARE(window->message(), QString());
        type(Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(comment->textCursor().selectedText(), QStringLiteral("words"));
        type(Qt::Key_Return);
        QCOMPARE(window->slotNames(), QStringLiteral("A B C D"));
        QCOMPARE(window->library.patches().at(1).comment, QStringLiteral("\n"));
    }
};

VELGOR_WIDGET_TEST(TestKeyboardInFields)
#include "tst_KeyboardInFields.moc"
