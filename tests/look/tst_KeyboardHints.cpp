#include "LookMeasures.h"
#include "LookTokens.h"
#include "TestProgram.h"
#include "ToggleButton.h"
#include "VelgorStyle.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTest>

class TestKeyboardHints : public QObject {
    Q_OBJECT

private:
    /// Whether a ring is around a button.
    static bool hasRing(QWidget &button)
    {
        return button.grab().toImage().pixelColor(button.width() / 2, 0) == LookTokens::current().focusRing;
    }

private Q_SLOTS:
    void initTestCase()
    {
        QApplication::setStyle(new VelgorStyle);
        applyLook(false);
    }

    void ringFollowsTheTabulatorAndNotThePointer()
    {
        QWidget window;
        auto *layout = new QHBoxLayout(&window);
        auto *button = new QPushButton(QStringLiteral("Import"));
        auto *toggle = new ToggleButton(QStringLiteral("Guitar"), ToggleButton::Tone::Accent);
        layout->addWidget(button);
        layout->addWidget(toggle);
        window.show();
        QApplication::setActiveWindow(&window);
        QVERIFY(QTest::qWaitForWindowActive(&window));

        QTest::mouseClick(button, Qt::LeftButton);
        button->setFocus(Qt::MouseFocusReason);
        QVERIFY(!hasRing(*button));
        QTest::keyClick(button, Qt::Key_Tab);
        QVERIFY(toggle->hasFocus());
        QVERIFY(hasRing(*toggle));
        QVERIFY(!hasRing(*button));
        QTest::keyClick(toggle, Qt::Key_Tab, Qt::ShiftModifier);
        QVERIFY(hasRing(*button));
        QTest::mouseClick(button, Qt::LeftButton);
        QVERIFY(!hasRing(*button));
        QTest::keyClick(button, Qt::Key_Tab, Qt::ShiftModifier);
        QVERIFY(hasRing(*toggle));
    }

    void fieldsShowTheFocusHoweverItCame()
    {
        QWidget window;
        auto *layout = new QHBoxLayout(&window);
        auto *field = new QLineEdit;
        auto *edit = new QPlainTextEdit;
        layout->addWidget(field);
        layout->addWidget(edit);
        window.show();
        QApplication::setActiveWindow(&window);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        for (QWidget *widget : {static_cast<QWidget *>(field), static_cast<QWidget *>(edit)}) {
            QVERIFY(widget == field || !hasRing(*widget));
            widget->setFocus(Qt::MouseFocusReason);
            QVERIFY(hasRing(*widget));
        }
        QVERIFY(!hasRing(*field));
    }
};

VELGOR_WIDGET_TEST(TestKeyboardHints)
#include "tst_KeyboardHints.moc"
