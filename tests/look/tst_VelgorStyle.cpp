#include "LookMeasures.h"
#include "LookTokens.h"
#include "Painted.h"
#include "Symbols.h"
#include "TestProgram.h"
#include "ToggleButton.h"
#include "VelgorStyle.h"

#include <QApplication>
#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QScrollBar>
#include <QSplitter>
#include <QStatusBar>
#include <QTest>

using namespace LookMeasures;

namespace {

/// One of everything that the window is made of.
class Panel : public QWidget {
public:
    Panel()
    {
        auto *layout = new QFormLayout(this);
        for (const char *variant : {"none", "lead", "strong", "plain", "destructive", "roomy"}) {
            auto *button = new QPushButton(symbolIcon(QStringLiteral("star")), QStringLiteral("Default"));
            button->setProperty(variant, true);
            auto *disabled = new QPushButton(symbolIcon(QStringLiteral("trash")), QStringLiteral("Delete"));
            disabled->setProperty(variant, true);
            disabled->setEnabled(false);
            layout->addRow(button, disabled);
        }
        auto *checked = new QPushButton(symbolIcon(QStringLiteral("circle")), QStringLiteral("Select"));
        checked->setCheckable(true);
        checked->setChecked(true);
        layout->addRow(checked);
        for (const bool set : {false, true}) {
            auto *toggle = new ToggleButton(QStringLiteral("Guitar"), ToggleButton::Tone::Instrument);
            toggle->setChecked(set);
            layout->addRow(toggle);
        }
        auto *label = new QLabel(QStringLiteral("Secondary"));
        label->setForegroundRole(QPalette::PlaceholderText);
        layout->addRow(label, new QLabel(QStringLiteral("Text")));
        auto *field = new QLineEdit;
        field->setPlaceholderText(QStringLiteral("Name"));
        field->setText(QStringLiteral("chorus"));
        auto *disabledField = new QLineEdit(QStringLiteral("disabled"));
        disabledField->setEnabled(false);
        layout->addRow(field, disabledField);
        layout->addRow(new QPlainTextEdit(QStringLiteral("Comment")));
        auto *list = new QListWidget;
        for (int i = 0; i < 40; ++i) {
            list->addItem(QString::number(i));
        }
        list->setCurrentRow(2);
        layout->addRow(list);
        auto *combo = new QComboBox;
        combo->addItem(QStringLiteral("One"));
        auto *progress = new QProgressBar;
        progress->setValue(40);
        layout->addRow(combo, progress);
        auto *menuBar = new QMenuBar;
        menuBar->addMenu(QStringLiteral("File"));
        layout->addRow(menuBar);
        layout->addRow(new QStatusBar);
        auto *splitter = new QSplitter;
        splitter->addWidget(new QLabel(QStringLiteral("left")));
        splitter->addWidget(new QLabel(QStringLiteral("right")));
        layout->addRow(splitter);
        resize(500, 900);
    }
};

} // namespace

class TestVelgorStyle : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setStyle(new VelgorStyle); }
    void init() { applyLook(false); }

    void switchedSchemeEqualsAFreshStart()
    {
        for (const bool dark : {true, false}) {
            applyLook(!dark);
            Panel switched;
            switched.show();
            QVERIFY(QTest::qWaitForWindowExposed(&switched));
            QCoreApplication::processEvents();
            const QImage before = switched.grab().toImage();
            applyLook(dark);
            QCoreApplication::processEvents();
            const QImage after = switched.grab().toImage();
            switched.hide();

            Panel fresh;
            fresh.show();
            QVERIFY(QTest::qWaitForWindowExposed(&fresh));
            QVERIFY(fresh.grab().toImage() == after);
            QVERIFY(before != after);
        }
    }

    void sizesFollowTheFont()
    {
        for (const int points : {8, 10, 13, 24}) {
            QFont font;
            font.setPointSize(points);
            const QFontMetrics metrics(font);
            QPushButton button(QStringLiteral("Import"));
            button.setFont(font);
            QCOMPARE(button.sizeHint().height(), buttonHeight(metrics) + 2 * focusGutter);
            const int textOnly = button.sizeHint().width();
            QVERIFY(textOnly >= metrics.horizontalAdvance(button.text()) + 2 * (buttonPadding + focusGutter));
            button.setIcon(symbolIcon(QStringLiteral("trash")));
            QCOMPARE(button.sizeHint().width(), textOnly + button.iconSize().width() + symbolGap);
            QLineEdit field;
            field.setFont(font);
            QCOMPARE(field.sizeHint().height(), fieldHeight(metrics));
        }
    }

    void symbolsFollowTheApplicationFont()
    {
        const QFont before = QApplication::font();
        QFont large = before;
        large.setPointSize(30);
        QApplication::setFont(large);
        QCOMPARE(QPushButton().iconSize().width(), symbolSize(QFontMetrics(large)));
        QApplication::setFont(before);
        QCOMPARE(QPushButton().iconSize().width(), symbolSize(QFontMetrics(before)));
    }

    void quietFieldHasNoFrameAtRest()
    {
        QLineEdit field;
        field.resize(field.sizeHint());
        const QPoint edge(field.width() / 2, 0);
        QCOMPARE(field.grab().toImage().pixelColor(edge), LookTokens::light().fieldBorder);
        field.setProperty("quiet", true);
        QCOMPARE(field.grab().toImage().pixelColor(edge), LookTokens::light().window);
        field.setAttribute(Qt::WA_UnderMouse);
        QCOMPARE(field.grab().toImage().pixelColor(edge), LookTokens::light().fieldBorder);
    }

    void textStartsAtTheInset()
    {
        QLineEdit field(QStringLiteral("|"));
        field.resize(field.sizeHint());
        const QImage image = field.grab().toImage();
        int first = 0;
        for (int x = 2; x < image.width() && first == 0; ++x) {
            if (image.pixelColor(x, image.height() / 2) != LookTokens::light().base) {
                first = x;
            }
        }
        QVERIFY2(first >= fieldInset + 2 && first <= fieldInset + 8, qPrintable(QString::number(first)));
    }

    void scrollBarHandleNeverGetsTooShort()
    {
        QScrollBar bar(Qt::Vertical);
        bar.resize(bar.sizeHint().width(), 200);
        QCOMPARE(bar.width(), scrollBarExtent);
        bar.setRange(0, 1000000);
        bar.setPageStep(1);
        for (const int value : {0, 500000, 1000000}) {
            bar.setValue(value);
            QStyleOptionSlider option;
            option.initFrom(&bar);
            option.orientation = Qt::Vertical;
            option.minimum = bar.minimum();
            option.maximum = bar.maximum();
            option.pageStep = bar.pageStep();
            option.sliderPosition = option.sliderValue = value;
            option.upsideDown = false;
            const QRect handle =
                bar.style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, &bar);
            QCOMPARE(handle.height(), scrollBarHandleMinimum);
            QVERIFY(bar.rect().contains(handle));
            QVERIFY(value != 0 || handle.top() == 0);
            QVERIFY(value != 1000000 || handle.bottom() == 199);
        }
    }

    void scrollBarPagesByItsFreePart()
    {
        QScrollBar bar(Qt::Vertical);
        bar.resize(bar.sizeHint().width(), 200);
        bar.setRange(0, 100);
        bar.setPageStep(10);
        bar.show();
        QTest::mouseClick(&bar, Qt::LeftButton, {}, QPoint(5, 190));
        QCOMPARE(bar.value(), 10);
        QTest::mouseClick(&bar, Qt::LeftButton, {}, QPoint(5, 1));
        QCOMPARE(bar.value(), 0);
    }

    void progressIsAsLongAsItIsFar()
    {
        QProgressBar bar;
        bar.setTextVisible(false);
        bar.setRange(0, 1248);
        bar.resize(260, 6);
        const auto colourAt = [&bar](int x) { return bar.grab().toImage().pixelColor(x, 3); };
        bar.setValue(0);
        QCOMPARE(colourAt(10), LookTokens::light().unsetFlag);
        bar.setValue(624);
        QCOMPARE(colourAt(10), LookTokens::light().accentText);
        QCOMPARE(colourAt(126), LookTokens::light().accentText);
        QCOMPARE(colourAt(134), LookTokens::light().unsetFlag);
        bar.setValue(1248);
        QCOMPARE(colourAt(255), LookTokens::light().accentText);
    }

    void splitterIsAHairline()
    {
        QSplitter splitter;
        splitter.addWidget(new QWidget);
        splitter.addWidget(new QWidget);
        splitter.resize(200, 50);
        splitter.show();
        QCOMPARE(splitter.handleWidth(), hairline);
        const QImage image = splitter.grab().toImage();
        int lines = 0;
        for (int x = 0; x < image.width(); ++x) {
            lines += image.pixelColor(x, 25) == LookTokens::light().separator ? 1 : 0;
        }
        QCOMPARE(lines, 1);
    }

    void menuEntriesShowTheirState()
    {
        QMenu menu;
        QAction *entry = menu.addAction(QStringLiteral("Duplicate"));
        entry->setCheckable(true);
        QList<QImage> images{painted(menu)};
        entry->setChecked(true);
        images += painted(menu);
        entry->setEnabled(false);
        images += painted(menu);
        entry->setEnabled(true);
        menu.setActiveAction(entry);
        images += painted(menu);
        for (qsizetype i = 0; i < images.size(); ++i) {
            QCOMPARE(images.indexOf(images[i]), i);
        }
        const QImage active = images.last();
        QCOMPARE(active.pixelColor(active.width() / 2, active.height() / 2 + 12 - 2), LookTokens::light().selection);
    }

    void menuHasRoomForTheShortcut()
    {
        QMenu menu;
        QAction *entry = menu.addAction(QStringLiteral("Duplicate"));
        const int without = menu.sizeHint().width();
        entry->setShortcut(QKeySequence(QStringLiteral("Ctrl+D")));
        QVERIFY(menu.sizeHint().width() >= without + menu.fontMetrics().horizontalAdvance(QStringLiteral("Ctrl+D")));
    }

    void lettersAreUnderlinedWhileAltIsHeld()
    {
        QWidget window;
        auto *button = new QPushButton(QStringLiteral("&Import"), &window);
        window.show();
        const QImage plain = button->grab().toImage();
        QTest::keyPress(button, Qt::Key_Alt);
        QVERIFY(button->grab().toImage() != plain);
        QTest::keyRelease(button, Qt::Key_Alt);
        QVERIFY(button->grab().toImage() == plain);
    }

    void menuBarEndsWithAHairline()
    {
        QMenuBar bar;
        bar.setNativeMenuBar(false);
        bar.addMenu(QStringLiteral("File"));
        bar.resize(300, bar.sizeHint().height());
        const QImage image = bar.grab().toImage();
        for (const int x : {0, 10, 200}) {
            QCOMPARE(image.pixelColor(x, image.height() - 1), LookTokens::light().separator);
            QCOMPARE(image.pixelColor(x, image.height() - 2), LookTokens::light().window);
        }
    }
};

VELGOR_WIDGET_TEST(TestVelgorStyle)
#include "tst_VelgorStyle.moc"
