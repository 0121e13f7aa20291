#include "RecentFilesMenu.h"
#include "ShownWidgets.h"
#include "TestProgram.h"
#include "WindowFixture.h"

#include <QAccessible>
#include <QApplication>
#include <QMenuBar>
#include <QSemaphore>

namespace {

const QString entryName = QStringLiteral("Open Recent");

QMenu *popup()
{
    return qobject_cast<QMenu *>(QApplication::activePopupWidget());
}

void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QWidget *const target = popup() ? popup() : QApplication::focusWidget();
    QTest::keyClick(target, key, modifiers);
    WindowFixture::settle();
}

/// The menu with keys alone, as somebody without a mouse does it.
void openWithKeys(const WindowFixture &window)
{
    window.contentList()->setFocus();
    press(Qt::Key_F, Qt::AltModifier);
    QVERIFY(popup());
    press(Qt::Key_R);
    QVERIFY(qobject_cast<RecentFilesMenu *>(popup()));
}

/// What assistive technology reads of a menu's entries, those that cannot be chosen in brackets.
QStringList spoken(QMenu *menu)
{
    QStringList texts;
    const QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(menu);
    for (int i = 0; i < interface->childCount(); ++i) {
        const QAccessibleInterface *entry = interface->child(i);
        const QString name = entry->text(QAccessible::Name);
        if (entry->role() == QAccessible::MenuItem) {
            texts.append(entry->state().disabled ? u'[' + name + u']' : name);
        }
    }
    return texts;
}

} // namespace

class TestRecentFilesMenu : public QObject {
    Q_OBJECT

    static RecentFilesMenu *menuOf(const WindowFixture &window)
    {
        return window.window->menuBar()->findChild<RecentFilesMenu *>();
    }

    /// A list of slots in a file of its own folder beside the library.
    static QString fileIn(const WindowFixture &window, const QString &folder, const QString &name, const QString &slots)
    {
        QDir(window.parentPath()).mkpath(folder);
        return window.presetFile(folder + u'/' + name, slots);
    }

    static void import(WindowFixture &window, const QString &file)
    {
        window.contentFiles.importFile(file);
        WindowFixture::settle();
    }

private Q_SLOTS:
    void init() { m_window = WindowFixture::shown(QStringLiteral("Lead")); }
    void cleanup() { m_window.reset(); }

    void withoutFilesThereIsNothingToOpen()
    {
        QMenu *const menu = menuOf(*m_window);
        QVERIFY(!menu->menuAction()->isEnabled());
        QCOMPARE(spoken(menu), QStringList{QStringLiteral("[Clear List]")});
    }

    void importedAndExportedFilesAreThereTheLatestFirst()
    {
        import(*m_window, fileIn(*m_window, QStringLiteral("a"), QStringLiteral("first.prst"), QStringLiteral("A")));
        import(*m_window, fileIn(*m_window, QStringLiteral("a"), QStringLiteral("second.prst"), QStringLiteral("B")));
        m_window->dialogs.answer = m_window->parentPath() + QStringLiteral("/third.prst");
        QVERIFY(m_window->press(QStringLiteral("Export")));
        QVERIFY(m_window->answer(QStringLiteral("OK")));
        QVERIFY(menuOf(*m_window)->menuAction()->isEnabled());
        const QString clear = QStringLiteral("Clear List");
        QCOMPARE(spoken(menuOf(*m_window)),
            (QStringList{
                QStringLiteral("third.prst"), QStringLiteral("second.prst"), QStringLiteral("first.prst"), clear}));
        // What fails is no file to go back to.
        import(*m_window, m_window->filePath(QStringLiteral("none.prst")));
        QVERIFY(m_window->answer(QStringLiteral("OK")));
        QCOMPARE(spoken(menuOf(*m_window)).size(), 4);
        import(*m_window, m_window->parentPath() + QStringLiteral("/a/first.prst"));
        QCOMPARE(spoken(menuOf(*m_window)).first(), QStringLiteral("first.prst"));
        QCOMPARE(spoken(menuOf(*m_window)).size(), 4);
    }

    void theKeyboardImportsAsImportDoes()
    {
        import(*m_window, fileIn(*m_window, QStringLiteral("a"), QStringLiteral("first.prst"), QStringLiteral("A B")));
        import(*m_window, fileIn(*m_window, QStringLiteral("a"), QStringLiteral("second.prst"), QStringLiteral("C")));
        // A list that was not exported is replaced without a question, as the command for importing does.
        WindowFixture::click(m_window->contentList(), 0);
        WindowFixture::click(m_window->libraryList(), 0);
        WindowFixture::key(m_window->libraryList(), Qt::Key_Return);
        QVERIFY(m_window->window->isWindowModified());
        openWithKeys(*m_window);
        press(Qt::Key_Down);
        press(Qt::Key_Return);
        QVERIFY(!popup());
        QCOMPARE(m_window->message(), QString());
        QCOMPARE(m_window->slotNames(), QStringLiteral("A B"));
        QVERIFY(m_window->window->windowTitle().startsWith(QStringLiteral("first.prst")));
        QVERIFY(m_window->status().contains(QStringLiteral("first.prst")));
    }

    void aFileThatIsNoListAnyMoreIsToldOf()
    {
        const QString file = fileIn(*m_window, QStringLiteral("a"), QStringLiteral("first.prst"), QStringLiteral("A"));
        import(*m_window, file);
        QFile cut(file);
        QVERIFY(cut.resize(20));
        openWithKeys(*m_window);
        press(Qt::Key_Return);
        QCOMPARE(m_window->message(), QStringLiteral("Could not import file"));
        QVERIFY(m_window->messageText().contains(QStringLiteral("first.prst")));
        QCOMPARE(m_window->slotNames(), QStringLiteral("A"));
    }

    void missingFilesAreDisabledWhenTheMenuOpens()
    {
        const QString file = fileIn(*m_window, QStringLiteral("a"), QStringLiteral("first.prst"), QStringLiteral("A"));
        import(*m_window, file);
        import(*m_window, fileIn(*m_window, QStringLiteral("a"), QStringLiteral("second.prst"), QStringLiteral("C")));
        QVERIFY(QFile::rename(file, file + u'-'));
        const QString second = QStringLiteral("second.prst");
        const QString clear = QStringLiteral("Clear List");
        openWithKeys(*m_window);
        QTRY_COMPARE(spoken(popup()), (QStringList{second, QStringLiteral("[first.prst]"), clear}));
        QVERIFY(popup()->actions().at(1)->toolTip().endsWith(QStringLiteral("first.prst is not there")));
        // The keyboard passes over it.
        press(Qt::Key_Down);
        QCOMPARE(popup()->activeAction()->text().remove(u'&'), clear);
        press(Qt::Key_Escape);
        press(Qt::Key_Escape);
        QVERIFY(QFile::rename(file + u'-', file));
        openWithKeys(*m_window);
        QTRY_COMPARE(spoken(popup()), (QStringList{second, QStringLiteral("first.prst"), clear}));
        press(Qt::Key_Escape);
        press(Qt::Key_Escape);
    }

    void equalNamesAreToldApartByTheirFolders()
    {
        const QString name = QStringLiteral("Set, live.prst");
        const QString one = fileIn(*m_window, QStringLiteral("one"), name, QStringLiteral("A"));
        const QString two = fileIn(*m_window, QStringLiteral("two"), name, QStringLiteral("B"));
        import(*m_window, one);
        QCOMPARE(spoken(menuOf(*m_window)).first(), name);
        import(*m_window, two);
        const QStringList texts = spoken(menuOf(*m_window));
        QVERIFY2(texts.at(0).startsWith(name + QStringLiteral(" in ")) && texts.at(0).endsWith(QStringLiteral("/two")),
            qPrintable(texts.at(0)));
        QVERIFY(texts.at(1).endsWith(QStringLiteral("/one")));
        QCOMPARE(menuOf(*m_window)->actions().at(0)->toolTip(), two);
        QVERIFY(menuOf(*m_window)->toolTipsVisible());
    }

    void anyNameIsReadAsItIs_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("said");
        QTest::newRow("ampersand") << QStringLiteral("Drum & Bass &c.prst") << QStringLiteral("Drum & Bass &c.prst");
        QTest::newRow("tabulator") << QStringLiteral("a\tb.prst") << QStringLiteral("a b.prst");
        QTest::newRow("line break") << QStringLiteral("a\nb.prst") << QStringLiteral("a b.prst");
        QTest::newRow("placeholder") << QStringLiteral("%1%2.prst") << QStringLiteral("%1%2.prst");
        QTest::newRow("right to left") << QStringLiteral("\u05d0\u05d1.prst")
                                       << QStringLiteral("\u2068\u05d0\u05d1.prst\u2069");
        QTest::newRow("turned round") << QStringLiteral("a\u202etsrp.prst") << QStringLiteral("atsrp.prst");
    }
    void anyNameIsReadAsItIs()
    {
        QFETCH(const QString, name);
        QFETCH(const QString, said);
        import(*m_window, fileIn(*m_window, QStringLiteral("a"), name, QStringLiteral("A")));
        import(*m_window, fileIn(*m_window, QStringLiteral("a"), QStringLiteral("second.prst"), QStringLiteral("C")));
        QCOMPARE(spoken(menuOf(*m_window)).at(1), said);
        // Drawn, it shows no mnemonic of its own.
        QVERIFY(QKeySequence::mnemonic(menuOf(*m_window)->actions().at(1)->text()).isEmpty());
        openWithKeys(*m_window);
        press(Qt::Key_Down);
        press(Qt::Key_Return);
        QCOMPARE(m_window->slotNames(), QStringLiteral("A"));
    }

    void aLongNameLacksItsMiddle()
    {
        const QString name = QString(200, u'x') + QStringLiteral(" end.prst");
        const QString file = fileIn(*m_window, QStringLiteral("a"), name, QStringLiteral("A"));
        import(*m_window, file);
        const QString said = spoken(menuOf(*m_window)).first();
        QVERIFY2(said.startsWith(QStringLiteral("xxx")) && said.contains(u'\u2026')
                && said.endsWith(QStringLiteral(" end.prst")),
            qPrintable(said));
        QVERIFY(menuOf(*m_window)->sizeHint().width() < 40 * menuOf(*m_window)->fontMetrics().height());
        QCOMPARE(menuOf(*m_window)->actions().first()->toolTip(), file);
    }

    void theListIsCleared()
    {
        const QString file = fileIn(*m_window, QStringLiteral("a"), QStringLiteral("first.prst"), QStringLiteral("A"));
        import(*m_window, file);
        openWithKeys(*m_window);
        press(Qt::Key_C);
        QVERIFY(!popup());
        QVERIFY(!menuOf(*m_window)->menuAction()->isEnabled());
        QVERIFY(m_window->state.recentFiles().isEmpty());
        QCOMPARE(m_window->slotNames(), QStringLiteral("A"));
        // The list that is shown comes back when it is imported or exported anew.
        import(*m_window, file);
        QVERIFY(menuOf(*m_window)->menuAction()->isEnabled());
    }

    void aDiskThatDoesNotAnswerHoldsNothingUp()
    {
        QSemaphore answers;
        QAction clear(QStringLiteral("Clear"));
        m_window->state.addRecentFile(QStringLiteral("/dead/list.prst"));
        auto *const presence = new FilePresence(nullptr, [&answers](const QString &) {
            answers.acquire();
            return false;
        });
        RecentFilesMenu menu(m_window->state, clear, presence);
        menu.popup({});
        QVERIFY(menu.isVisible());
        QVERIFY(menu.actions().first()->isEnabled());
        answers.release();
        QTRY_VERIFY(!menu.actions().first()->isEnabled());
        menu.close();
    }

private:
    std::unique_ptr<WindowFixture> m_window;
};

VELGOR_WIDGET_TEST(TestRecentFilesMenu)
#include "tst_RecentFilesMenu.moc"
