#include "DetailFixture.h"
#include "PatchName.h"
#include "TestProgram.h"
#include "VelgorStyle.h"

#include <QApplication>
#include <QClipboard>
#include <QInputMethodEvent>
#include <QTest>

/// What the name field makes of names that are unusual: of several lines, blank, too long for the unit, composed.
class TestNameField : public QObject {
    Q_OBJECT

private:
    /// The cursor in the name of the first patch.
    static std::unique_ptr<DetailFixture> typing(const QString &name = QStringLiteral("Lead"))
    {
        auto details = std::make_unique<DetailFixture>();
        details->changeElsewhere(name, {});
        details->view.activateWindow();
        if (!QTest::qWaitForWindowActive(&details->view)) {
            return nullptr;
        }
        details->view.focusName();
        DetailFixture::settle();
        return details;
    }

    static void paste(const DetailFixture &details, const QString &text)
    {
        QGuiApplication::clipboard()->setText(text);
        QTest::keyClick(details.name(), Qt::Key_V, Qt::ControlModifier);
        DetailFixture::settle();
    }

    static QString note(const DetailFixture &details)
    {
        const QStringList labels = ShownWidgets::labels(details.view);
        const auto found = labels.filter(QStringLiteral("The unit will show"));
        return found.isEmpty() ? QString() : found.first();
    }

private Q_SLOTS:
    void initTestCase() { QApplication::setStyle(new VelgorStyle); }

    void typingInANameOfSeveralLinesKeepsItsPlace_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::newRow("line feed") << QStringLiteral("Night\nBus");
        QTest::newRow("carriage return and line feed") << QStringLiteral("Night\r\nBus");
        QTest::newRow("line separator") << QStringLiteral("Night\u2028Bus");
        QTest::newRow("at the ends too") << QStringLiteral("\nNight\nBus\n");
    }

    void typingInANameOfSeveralLinesKeepsItsPlace()
    {
        QFETCH(const QString, stored);
        const auto details = typing(stored);
        QVERIFY(details);
        QCOMPARE(details->name()->text(), QStringLiteral("Night Bus"));
        QTest::keyClick(details->name(), Qt::Key_Home);
        for (const char letter : {'x', 'y', 'z'}) {
            QTest::keyClick(details->name(), letter);
            DetailFixture::settle();
        }
        QCOMPARE(details->name()->text(), QStringLiteral("xyzNight Bus"));
        QCOMPARE(details->patch().name, QStringLiteral("xyzNight Bus"));
        QCOMPARE(details->name()->cursorPosition(), 3);
        QTest::keyClick(details->name(), Qt::Key_Escape);
        QCOMPARE(details->patch().name, stored);
    }

    void goingBackByUndoBringsTheStoredNameToTheByte()
    {
        const auto details = typing(QStringLiteral("Night\nBus"));
        QVERIFY(details);
        QTest::keyClick(details->name(), Qt::Key_End);
        QTest::keyClick(details->name(), 'x');
        QTest::keyClick(details->name(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(details->patch().name, QStringLiteral("Night\nBus"));
    }

    void severalPastedLinesBecomeOneWhereTheyArePasted()
    {
        const auto details = typing();
        QVERIFY(details);
        details->name()->setCursorPosition(2);
        paste(*details, QStringLiteral("one\r\ntwo\nthree"));
        QCOMPARE(details->name()->text(), QStringLiteral("Leone two threead"));
        QCOMPARE(details->name()->cursorPosition(), 15);
        QCOMPARE(details->patch().name, QStringLiteral("Leone two threead"));
        QTest::keyClicks(details->name(), QStringLiteral("xy"));
        QCOMPARE(details->patch().name, QStringLiteral("Leone two threexyad"));
        QTest::keyClick(details->name(), Qt::Key_Z, Qt::ControlModifier);
        QTest::keyClick(details->name(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(details->name()->text(), QStringLiteral("Lead"));
        QCOMPARE(details->patch().name, QStringLiteral("Lead"));
        QTest::keyClick(details->name(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(details->name()->text(), QStringLiteral("Leone two threead"));
        QCOMPARE(details->patch().name, QStringLiteral("Leone two threead"));
    }

    void aLineBreakAtTheEndIsNotPasted()
    {
        const auto details = typing();
        QVERIFY(details);
        paste(*details, QStringLiteral("Choir\n"));
        QCOMPARE(details->patch().name, QStringLiteral("Choir"));
        QTest::keyClick(details->name(), Qt::Key_End);
        paste(*details, QStringLiteral("\n"));
        QCOMPARE(details->name()->text(), QStringLiteral("Choir"));
        QCOMPARE(details->name()->cursorPosition(), 5);
    }

    void aBlankNameIsNotTaken_data()
    {
        QTest::addColumn<QString>("blank");
        QTest::addColumn<int>("endingKey");
        QTest::newRow("nothing, Return") << QString() << int(Qt::Key_Return);
        QTest::newRow("nothing, Tab") << QString() << int(Qt::Key_Tab);
        QTest::newRow("spaces, Tab") << QStringLiteral("   ") << int(Qt::Key_Tab);
        QTest::newRow("spaces, Escape") << QStringLiteral("   ") << int(Qt::Key_Escape);
    }

    void aBlankNameIsNotTaken()
    {
        QFETCH(const QString, blank);
        QFETCH(const int, endingKey);
        const auto details = typing();
        QVERIFY(details);
        QTest::keyClick(details->name(), Qt::Key_End);
        for (int i = 0; i < 4; ++i) {
            QTest::keyClick(details->name(), Qt::Key_Backspace);
        }
        QTest::keyClicks(details->name(), blank);
        DetailFixture::settle();
        QCOMPARE(details->name()->text(), blank);
        QCOMPARE(details->patch().name, QStringLiteral("Lead"));
        QTest::keyClick(details->name(), static_cast<Qt::Key>(endingKey));
        DetailFixture::settle();
        QCOMPARE(details->name()->text(), QStringLiteral("Lead"));
        QCOMPARE(details->patch().name, QStringLiteral("Lead"));
    }

    void aNewNameAfterABlankOneIsTaken()
    {
        const auto details = typing();
        QVERIFY(details);
        QTest::keyClick(details->name(), Qt::Key_Delete);
        QCOMPARE(details->patch().name, QStringLiteral("Lead"));
        QTest::keyClicks(details->name(), QStringLiteral("Pad"));
        QCOMPARE(details->patch().name, QStringLiteral("Pad"));
    }

    void aBlankNameIsNotTakenToAnotherPatch()
    {
        const auto details = typing();
        QVERIFY(details);
        QTest::keyClick(details->name(), Qt::Key_Delete);
        details->select(1);
        DetailFixture::settle();
        QCOMPARE(details->patch(0).name, QStringLiteral("Lead"));
        QCOMPARE(details->patch(1).name, QStringLiteral("Solo"));
        QCOMPARE(details->name()->text(), QStringLiteral("Solo"));
    }

    void aComposedTextBelongsToThePatchThatItWasComposedFor()
    {
        const auto details = typing();
        QVERIFY(details);
        QTest::keyClick(details->name(), Qt::Key_End);
        QInputMethodEvent composing(QStringLiteral("か"), {});
        QApplication::sendEvent(details->name(), &composing);
        QCOMPARE(details->patch(0).name, QStringLiteral("Lead"));
        details->select(1);
        DetailFixture::settle();
        QCOMPARE(details->patch(0).name, QStringLiteral("Leadか"));
        QCOMPARE(details->patch(1).name, QStringLiteral("Solo"));
        QCOMPARE(details->name()->text(), QStringLiteral("Solo"));
        QCOMPARE(details->name()->displayText(), QStringLiteral("Solo"));
    }

    void whatTheUnitWillShowIsSaidWhileALongNameIsTyped_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("unitName");
        QTest::newRow("fits") << QStringLiteral("Sixteen letters!") << QString();
        QTest::newRow("one too many") << QStringLiteral("Sixteen letters!!") << QStringLiteral("Sixteen letters!");
        QTest::newRow("eight of two bytes") << QStringLiteral("Ритмгита") << QString();
        QTest::newRow("ten of two bytes") << QStringLiteral("Ритмгитара") << QStringLiteral("Ритмгита");
        QTest::newRow("four bytes do not fit")
            << QStringLiteral("Thirteen byte\U0001F3B8") << QStringLiteral("Thirteen byte");
    }

    void whatTheUnitWillShowKeepsItsDirectionToItself()
    {
        const auto details = typing();
        QVERIFY(details);
        paste(*details, QString::fromUtf8("\u05d2\u05d9\u05d8\u05e8\u05d4 \u05d2\u05d9\u05d8\u05e8\u05d4 (2)"));
        const QString said = note(*details);
        QVERIFY2(said.startsWith(QStringLiteral("The unit will show: \u2068\u05d2")), qPrintable(said));
        QVERIFY(said.endsWith(u'\u2069') && !said.isRightToLeft());
    }

    void whatTheUnitWillShowIsSaidWhileALongNameIsTyped()
    {
        QFETCH(const QString, name);
        QFETCH(const QString, unitName);
        const auto details = typing();
        QVERIFY(details);
        const int below = ShownWidgets::named<QWidget>(details->view, QStringLiteral("Guitar"))->y();
        QCOMPARE(note(*details), QString());
        paste(*details, name);
        QCOMPARE(details->patch().name, name);
        const QString expected = unitName.isEmpty() ? QString() : QStringLiteral("The unit will show: ") + unitName;
        QCOMPARE(note(*details), expected);
        QCOMPARE(QAccessible::queryAccessibleInterface(details->name())->text(QAccessible::Description), expected);
        QCOMPARE(ShownWidgets::named<QWidget>(details->view, QStringLiteral("Guitar"))->y(), below);
        QTest::keyClick(details->name(), Qt::Key_Tab);
        QCOMPARE(note(*details), QString());
    }
};

VELGOR_WIDGET_TEST(TestNameField)
#include "tst_NameField.moc"
