#include "LookMeasures.h"
#include "LookTokens.h"
#include "Painted.h"
#include "Symbols.h"
#include "TestProgram.h"
#include "VelgorStyle.h"

#include <QApplication>
#include <QMessageBox>
#include <QTest>

using namespace LookMeasures;

class TestButtonLook : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setStyle(new VelgorStyle); }
    void init() { applyLook(false); }

    void statesArePaintedDifferently_data()
    {
        QTest::addColumn<QByteArray>("variant");
        for (const char *variant : {"none", "lead", "strong", "plain", "destructive"}) {
            QTest::newRow(variant) << QByteArray(variant);
        }
    }

    void statesArePaintedDifferently()
    {
        QFETCH(const QByteArray, variant);
        for (const bool dark : {false, true}) {
            applyLook(dark);
            QList<QImage> images;
            for (const QStyle::State state : {QStyle::State_None, QStyle::State_MouseOver, QStyle::State_Sunken}) {
                InState<QPushButton> button(QStringLiteral("Export"));
                button.setProperty(variant.constData(), true);
                button.extra = state;
                images += painted(button);
            }
            QPushButton disabled(QStringLiteral("Export"));
            disabled.setProperty(variant.constData(), true);
            disabled.setEnabled(false);
            images += painted(disabled);
            for (qsizetype i = 0; i < images.size(); ++i) {
                QCOMPARE(images.indexOf(images[i]), i);
            }
        }
    }

    void fillFollowsTheVariant_data()
    {
        const LookTokens tokens = LookTokens::light();
        QTest::addColumn<QByteArray>("variant");
        QTest::addColumn<bool>("checked");
        QTest::addColumn<QColor>("fill");
        QTest::newRow("action") << QByteArray("none") << false << tokens.button;
        QTest::newRow("checked action") << QByteArray("none") << true << tokens.selection;
        QTest::newRow("lead") << QByteArray("lead") << false << tokens.accent;
        QTest::newRow("strong") << QByteArray("strong") << false << tokens.strong;
        QTest::newRow("checked strong") << QByteArray("strong") << true << tokens.accent;
        QTest::newRow("plain") << QByteArray("plain") << false << tokens.window;
        QTest::newRow("destructive") << QByteArray("destructive") << false << tokens.button;
    }

    void fillFollowsTheVariant()
    {
        QFETCH(const QByteArray, variant);
        QFETCH(const bool, checked);
        QFETCH(const QColor, fill);
        QPushButton button(QStringLiteral("Default"));
        button.setProperty(variant.constData(), true);
        button.setCheckable(true);
        button.setChecked(checked);
        const QImage image = painted(button);
        QCOMPARE(image.pixelColor(focusGutter + 2, image.height() / 2), fill);
        QCOMPARE(image.pixelColor(focusGutter - 1, image.height() / 2), LookTokens::light().window);
        QCOMPARE(image.pixelColor(image.width() / 2, focusGutter - 1), LookTokens::light().window);
    }

    void onlyTheSafeButtonOfAMessageIsFilled()
    {
        QMessageBox box(QMessageBox::Warning, QString(), QStringLiteral("Delete?"), QMessageBox::Yes | QMessageBox::No);
        box.button(QMessageBox::Yes)->setProperty("destructive", true);
        box.setDefaultButton(QMessageBox::No);
        box.show();
        QApplication::setActiveWindow(&box);
        QVERIFY(QTest::qWaitForWindowActive(&box));
        const auto fillOf = [](QAbstractButton *button) {
            return button->grab().toImage().pixelColor(focusGutter + 3, button->height() / 2);
        };
        QCOMPARE(fillOf(box.button(QMessageBox::No)), LookTokens::light().accent);
        QCOMPARE(fillOf(box.button(QMessageBox::Yes)), LookTokens::light().button);
        box.button(QMessageBox::Yes)->setFocus();
        QVERIFY(qobject_cast<QPushButton *>(box.button(QMessageBox::Yes))->isDefault());
        QCOMPARE(fillOf(box.button(QMessageBox::Yes)), LookTokens::light().button);
        QVERIFY(box.button(QMessageBox::No)->width() >= dialogButtonMinimumWidth + 2 * focusGutter);
        QCOMPARE(box.iconPixmap().deviceIndependentSize(), QSizeF(messageSymbolSize, messageSymbolSize));
        QCOMPARE(QApplication::style()->standardPixmap(QStyle::SP_MessageBoxWarning).deviceIndependentSize(),
            QSizeF(messageSymbolSize, messageSymbolSize));
        QVERIFY(box.iconPixmap().toImage()
            == symbolPixmap(QStringLiteral("warning"), LookTokens::light().warning, messageSymbolSize, 1).toImage());
    }
};

VELGOR_WIDGET_TEST(TestButtonLook)
#include "tst_ButtonLook.moc"
