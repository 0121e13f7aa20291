#include "LibraryCheckDialog.h"
#include "LibraryCheckList.h"
#include "LibraryContentMainView.h"
#include "LibraryFileNames.h"
#include "ShownWidgets.h"
#include "TestLibraries.h"
#include "TestProgram.h"
#include "ToggleButton.h"
#include "VelgorContentView.h"
#include "VelgorLibraryView.h"
#include "VelgorPatchDetailView.h"
#include "WindowFixture.h"

#include <QApplication>
#include <QLineEdit>
#include <QMenuBar>
#include <QScrollArea>
#include <QScrollBar>

using namespace ShownWidgets;

/// The whole window in the sizes and with the fonts that people have.
class TestWindowSizes : public QObject {
    Q_OBJECT

private:
    QFont m_usualFont;

    void setPoints(int points) const
    {
        QFont font = m_usualFont;
        font.setPointSize(points);
        QApplication::setFont(font);
    }

    /// With patches and a list, and the details of a patch that is used in every slot.
    static std::unique_ptr<WindowFixture> filled()
    {
        QStringList slotNames;
        for (int i = 0; i < 99; ++i) {
            slotNames.append(QStringLiteral("Lead"));
        }
        auto window = WindowFixture::shown(QStringLiteral("Lead Bells Choir"), slotNames.join(u' '));
        if (window) {
            WindowFixture::click(window->libraryList(), 0);
        }
        return window;
    }

    static void resize(const WindowFixture &window, const QSize &size)
    {
        window.window->resize(size);
        WindowFixture::settle();
        WindowFixture::settle();
    }

    static QAbstractButton *button(const WindowFixture &window, const QString &name)
    {
        return named<QAbstractButton>(*window.window, name);
    }

    /// The scroll area that a widget is moved by, if it is.
    static QWidget *viewportOf(const QWidget *widget)
    {
        for (QWidget *parent = widget->parentWidget(); parent; parent = parent->parentWidget()) {
            auto *area = qobject_cast<QScrollArea *>(parent->parentWidget());
            if (area && area->viewport() == parent) {
                return parent;
            }
        }
        return nullptr;
    }

    /// What does not stand wholly inside of the window, or of what scrolls it up and down, or is too narrow for what
    /// it says.
    static QStringList misfits(const WindowFixture &fixture)
    {
        QStringList found;
        const QWidget *window = fixture.window.get();
        const QList<QWidget *> all = window->findChildren<QWidget *>();
        for (const QWidget *widget : all) {
            if (!widget->isVisible() || widget->window() != window || widget->size().isEmpty()) {
                continue;
            }
            const QRect place(widget->mapTo(window, QPoint(0, 0)), widget->size());
            QRect allowed = window->rect();
            if (const QWidget *viewport = viewportOf(widget)) {
                const QRect seen(viewport->mapTo(window, QPoint(0, 0)), viewport->size());
                allowed.setLeft(seen.left());
                allowed.setRight(seen.right());
                allowed.setTop(std::min(place.top(), allowed.top()));
                allowed.setBottom(std::max(place.bottom(), allowed.bottom()));
            }
            const auto note = [&](const char *what) {
                const auto *pressable = qobject_cast<const QAbstractButton *>(widget);
                const QString text = pressable ? pressable->text() : widget->accessibleName();
                found.append(QStringLiteral("%1 %2 \"%3\" %4,%5 %6x%7")
                                 .arg(QLatin1String(what), QLatin1String(widget->metaObject()->className()), text)
                                 .arg(place.x())
                                 .arg(place.y())
                                 .arg(place.width())
                                 .arg(place.height()));
            };
            if (!allowed.contains(place)) {
                note("outside:");
            }
            if (qobject_cast<const QPushButton *>(widget)
                && (widget->width() < widget->minimumSizeHint().width()
                    || widget->height() < widget->minimumSizeHint().height())
                && widget->sizePolicy().horizontalPolicy() != QSizePolicy::Ignored) {
                note("too small:");
            }
            if (const auto *label = qobject_cast<const QLabel *>(widget); label && label->wordWrap()
                && !label->text().isEmpty() && label->height() < label->heightForWidth(label->width())) {
                note("cut:");
            }
            if (const auto *area = qobject_cast<const QAbstractScrollArea *>(widget);
                area && area->horizontalScrollBar()->maximum() > 0) {
                note("scrolls sideways:");
            }
        }
        return found;
    }

    /// No two of them cover each other.
    static bool areApart(const QList<QWidget *> &widgets)
    {
        QRegion taken;
        for (const QWidget *widget : widgets) {
            const QRect place(widget->mapTo(widget->window(), QPoint(0, 0)), widget->size());
            if (taken.intersects(place)) {
                return false;
            }
            taken += place;
        }
        return true;
    }

private Q_SLOTS:
    void initTestCase() { m_usualFont = QApplication::font(); }
    void cleanup() { QApplication::setFont(m_usualFont); }

    void theCheckOfTheLibraryFollowsTheFont()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells"));
        const VelgorPatch ghost = WindowFixture::patch(QStringLiteral("Ghost"));
        window->write(LibraryFileNames::patchFile(ghost.name, ghost.id()), TestLibraries::patchBytes(ghost));
        QVERIFY(window->choose(QStringLiteral("Check Library...")));
        auto *const dialog = window->window->findChild<LibraryCheckDialog *>();
        QVERIFY(dialog);
        const auto *const findings = named<LibraryCheckList>(*dialog, QStringLiteral("Findings"));
        QVERIFY(findings);
        QTRY_VERIFY(findings->model()->rowCount() > 0);
        const int former = findings->sizeHintForRow(0);
        const int points = 2 * m_usualFont.pointSize();
        setPoints(points);
        WindowFixture::settle();
        const QList<QLabel *> said = dialog->findChildren<QLabel *>();
        int strong = 0;
        for (const QLabel *label : said) {
            QVERIFY2(label->font().pointSize() == points, qPrintable(label->text()));
            strong += label->font().weight() > QFont::Normal ? 1 : 0;
        }
        // The summary and the titles of both columns.
        QCOMPARE(strong, 3);
        QVERIFY(findings->sizeHintForRow(0) > former);
        QCOMPARE(findings->visualRect(findings->model()->index(0, 0)).height(), findings->sizeHintForRow(0));
        dialog->close();
    }

    void nothingHangsOffTheScreen_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<int>("points");
        QTest::addColumn<bool>("areDetailsBeside");
        QTest::newRow("a small screen") << QSize(1024, 660) << 10 << true;
        QTest::newRow("half a screen") << QSize(960, 1000) << 10 << true;
        QTest::newRow("a small screen, larger text") << QSize(1024, 660) << 13 << true;
        QTest::newRow("twice the text") << QSize(1366, 728) << 20 << true;
        QTest::newRow("twice the text, a very small screen") << QSize(960, 500) << 20 << false;
        QTest::newRow("a wide screen") << QSize(1920, 1040) << 10 << true;
    }

    void nothingHangsOffTheScreen()
    {
        QFETCH(const QSize, size);
        QFETCH(const int, points);
        QFETCH(const bool, areDetailsBeside);
        setPoints(points);
        for (const bool isEmpty : {false, true}) {
            const auto window = isEmpty ? WindowFixture::shown({}) : filled();
            QVERIFY(window);
            resize(*window, size);
            QCOMPARE(window->window->size(), size);
            QCOMPARE(misfits(*window), QStringList());
            auto &columns = window->window->columns();
            QVERIFY(areApart({columns.content(), columns.library(), columns.details()}));
            const bool isBeside = columns.details()->mapTo(window->window.get(), QPoint(0, 0)).x()
                >= columns.library()->mapTo(window->window.get(), QPoint(0, 0)).x() + columns.library()->width();
            QCOMPARE(isBeside, areDetailsBeside);
            // There is something to work with.
            QVERIFY(window->libraryList()->viewport()->height() >= 2 * window->libraryList()->sizeHintForRow(0));
            QVERIFY(window->contentList()->viewport()->height() >= 4 * window->libraryList()->sizeHintForRow(0));
        }
    }

    void namesOfSlotsHaveRoomInAWideWindowWithLargeText()
    {
        setPoints(20);
        const auto window = filled();
        resize(*window, {1912, 1000});
        window->window->columns().setStartWidths(1912);
        WindowFixture::settle();
        const auto *const content = window->window->columns().content();
        const int others =
            content->width() - content->fontMetrics().horizontalAdvance(QStringLiteral("Sixteen letters!"));
        QVERIFY2(others >= 12 * content->fontMetrics().height() / 2, qPrintable(QString::number(others)));
        QCOMPARE(misfits(*window), QStringList());
    }

    void slotsGetTheirShareOfANarrowWindowWithLargeText()
    {
        setPoints(20);
        const QSize size(1358, 720);
        const auto window = filled();
        resize(*window, size);
        window->window->columns().setStartWidths(size.width());
        resize(*window, size);
        const int content = window->window->columns().content()->width();
        QVERIFY2(content >= 340, qPrintable(QString::number(content)));
        QCOMPARE(misfits(*window), QStringList());
    }

    void theWindowFollowsAFontThatChangesWhileItIsOpen_data()
    {
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("to");
        QTest::newRow("larger") << 10 << 13;
        QTest::newRow("twice") << 10 << 20;
        QTest::newRow("smaller again") << 20 << 10;
    }

    void theWindowFollowsAFontThatChangesWhileItIsOpen()
    {
        QFETCH(const int, from);
        QFETCH(const int, to);
        const QSize size(1366, 728);
        const auto picture = [&](int first) {
            setPoints(first);
            const auto window = filled();
            resize(*window, size);
            setPoints(to);
            WindowFixture::settle();
            resize(*window, size);
            window->window->columns().setStartWidths(size.width());
            resize(*window, size);
            const QStringList misfitting = misfits(*window);
            if (!misfitting.isEmpty()) {
                qWarning("%s", qPrintable(misfitting.join(u'\n')));
                return QImage();
            }
            return window->window->grab().toImage();
        };
        const QImage changed = picture(from);
        const QImage fresh = picture(to);
        QVERIFY(!changed.isNull());
        QCOMPARE(changed, fresh);
    }

    void theDetailsGoBelowTheLibraryAndBack()
    {
        setPoints(20);
        const auto window = filled();
        resize(*window, {1500, 700});
        auto &columns = window->window->columns();
        const QList<int> widths = columns.columnWidths();
        auto *name = named<QLineEdit>(*window->window, QStringLiteral("Name"));
        name->setFocus();
        resize(*window, {960, 500});
        QVERIFY(columns.details()->mapTo(window->window.get(), QPoint(0, 0)).y() > columns.library()->height());
        QCOMPARE(QApplication::focusWidget(), name);
        QCOMPARE(columns.columnWidths(), widths);
        resize(*window, {1500, 700});
        QCOMPARE(columns.columnWidths(), widths);
        QCOMPARE(QApplication::focusWidget(), name);
    }

    void aFilterWithoutRoomFoldsIntoAButtonThatCounts()
    {
        setPoints(20);
        const auto window = filled();
        resize(*window, {1366, 900});
        QVERIFY(!button(*window, QStringLiteral("Filter")));
        resize(*window, {960, 500});
        QVERIFY(!button(*window, QStringLiteral("Filter: Guitar")));
        auto *fold = button(*window, QStringLiteral("Filter"));
        QVERIFY(fold);
        QCOMPARE(fold->text(), QStringLiteral("Filter"));
        QTest::mouseClick(fold, Qt::LeftButton);
        WindowFixture::settle();
        QWidget *popup = QApplication::activePopupWidget();
        QVERIFY(popup);
        for (const char *flag : {"Filter: Guitar", "Filter: User IR", "Filter: Higain"}) {
            auto *toggle = named<QAbstractButton>(*popup, QLatin1String(flag));
            QVERIFY(toggle);
            QVERIFY(popup->rect().contains(QRect(toggle->mapTo(popup, QPoint(0, 0)), toggle->size())));
        }
        press(*popup, QStringLiteral("Filter: Guitar"));
        press(*popup, QStringLiteral("Filter: Solo"));
        WindowFixture::settle();
        QCOMPARE(window->libraryRows(), QString());
        QTest::keyClick(popup, Qt::Key_Escape);
        QVERIFY(!popup->isVisible());
        QCOMPARE(fold->text(), QStringLiteral("Filter (2)"));
        resize(*window, {1366, 900});
        QVERIFY(!button(*window, QStringLiteral("Filter")));
        QVERIFY(button(*window, QStringLiteral("Filter: Guitar"))->isChecked());
    }

    void aWideWindowIsTheLibrarys()
    {
        const auto window = filled();
        resize(*window, {1920, 1000});
        auto &columns = window->window->columns();
        QCOMPARE(columns.details()->width(), 640 + 2 * 24);
        QVERIFY(columns.library()->width() > columns.details()->width());
        int right = 0;
        for (const char *name : {"Sort", "Select", "Delete", "Duplicate"}) {
            const QAbstractButton *shown = button(*window, QLatin1String(name));
            const int left = shown->mapTo(columns.library(), QPoint(0, 0)).x();
            QCOMPARE(left, right == 0 ? 9 : right + 2);
            QCOMPARE(shown->width(), shown->sizeHint().width());
            right = left + shown->width();
        }
    }

    void theWindowCanBeHalfAScreenWide()
    {
        const auto window = filled();
        QVERIFY(window->window->minimumSizeHint().width() <= 960);
        QVERIFY(window->window->minimumSizeHint().height() <= 500);
    }
};

VELGOR_WIDGET_TEST(TestWindowSizes)
#include "tst_WindowSizes.moc"
