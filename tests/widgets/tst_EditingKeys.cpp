#include "EditingKeys.h"
#include "TestProgram.h"

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

namespace {

/// A window with a command on one key, two text fields and a button.
struct Window {
    QWidget widget;
    QVBoxLayout layout{&widget};
    QLineEdit line;
    QPlainTextEdit text;
    QPushButton button;
    QAction command;
    QSignalSpy runs{&command, &QAction::triggered};

    explicit Window(const QKeySequence &shortcut)
    {
        for (QWidget *child :
            {static_cast<QWidget *>(&line), static_cast<QWidget *>(&text), static_cast<QWidget *>(&button)}) {
            layout.addWidget(child);
        }
        line.setText(QStringLiteral("two words"));
        text.setPlainText(QStringLiteral("two words"));
        command.setShortcut(shortcut);
        widget.addAction(&command);
        widget.show();
        widget.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&widget));
    }

    void press(QWidget &focus)
    {
        focus.setFocus();
        const QKeyCombination key = command.shortcut()[0];
        QTest::keyClick(&focus, key.key(), key.keyboardModifiers());
    }
};

} // namespace

class TestEditingKeys : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aFieldKeepsTheKeysThatEditText_data()
    {
        QTest::addColumn<QKeySequence>("key");
        QTest::newRow("delete a word") << QKeySequence(Qt::CTRL | Qt::Key_Delete);
        QTest::newRow("select all") << QKeySequence(Qt::CTRL | Qt::Key_A);
        QTest::newRow("paste") << QKeySequence(Qt::CTRL | Qt::Key_V);
        QTest::newRow("undo") << QKeySequence(Qt::CTRL | Qt::Key_Z);
        QTest::newRow("delete") << QKeySequence(Qt::Key_Delete);
    }

    void aFieldKeepsTheKeysThatEditText()
    {
        QFETCH(const QKeySequence, key);
        Window window(key);
        const EditingKeys keys(nullptr);
        window.press(window.line);
        window.press(window.text);
        QCOMPARE(window.runs.count(), 0);
        window.press(window.button);
        QCOMPARE(window.runs.count(), 1);
    }

    void deletingAWordEditsTheFieldAndNothingElse()
    {
        Window window(QKeySequence(Qt::CTRL | Qt::Key_Delete));
        const EditingKeys keys(nullptr);
        window.line.setCursorPosition(0);
        window.press(window.line);
        QCOMPARE(window.line.text(), QStringLiteral("words"));
        QCOMPARE(window.runs.count(), 0);
    }

    void duplicatingEditsNoField_data()
    {
        QTest::addColumn<bool>("isEnabled");
        QTest::newRow("something to duplicate") << true;
        QTest::newRow("nothing to duplicate") << false;
    }

    void duplicatingEditsNoField()
    {
        QFETCH(const bool, isEnabled);
        Window window(QKeySequence(Qt::CTRL | Qt::Key_D));
        const EditingKeys keys(nullptr);
        window.command.setEnabled(isEnabled);
        window.line.setCursorPosition(0);
        window.press(window.line);
        window.press(window.text);
        QCOMPARE(window.line.text(), QStringLiteral("two words"));
        QCOMPARE(window.text.toPlainText(), QStringLiteral("two words"));
        QCOMPARE(window.runs.count(), isEnabled ? 2 : 0);
    }

    void otherShortcutsWorkInAField_data()
    {
        QTest::addColumn<QKeySequence>("key");
        QTest::newRow("export") << QKeySequence(Qt::CTRL | Qt::Key_S);
        QTest::newRow("classify") << QKeySequence(Qt::CTRL | Qt::Key_1);
        QTest::newRow("select all patches") << QKeySequence(Qt::SHIFT | Qt::CTRL | Qt::Key_A);
        QTest::newRow("default patch") << QKeySequence(Qt::CTRL | Qt::Key_Return);
    }

    void otherShortcutsWorkInAField()
    {
        QFETCH(const QKeySequence, key);
        Window window(key);
        const EditingKeys keys(nullptr);
        window.press(window.line);
        QCOMPARE(window.runs.count(), 1);
    }
};

VELGOR_WIDGET_TEST(TestEditingKeys)
#include "tst_EditingKeys.moc"
