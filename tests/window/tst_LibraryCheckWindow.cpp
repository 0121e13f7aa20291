#include "CheckedLibrary.h"
#include "LibraryCheckDialog.h"
#include "LibraryCheckList.h"
#include "ShownWidgets.h"
#include "TemporaryFiles.h"
#include "TestLibraries.h"
#include "TestProgram.h"
#include "ThreadGate.h"
#include "WindowFixture.h"

#include <QApplication>
#include <QMessageBox>

using namespace CheckedLibrary;
using namespace std::chrono_literals;

class TestLibraryCheckWindow : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theCheckOfTheLibraryStartsWithinTheScreenFrameIncluded()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells"));
        QVERIFY(window->choose(QStringLiteral("Check Library...")));
        const auto *const dialog = window->window->findChild<LibraryCheckDialog *>();
        QVERIFY(dialog);
        const QSize room = dialog->screen()->availableSize();
        QVERIFY(dialog->minimumSizeHint().width() <= room.width() - 8);
        QVERIFY2(dialog->width() <= room.width() - 8, qPrintable(QString::number(dialog->width())));
        QVERIFY(dialog->height() <= room.height() - 40);
    }

    void everyKindIsSaidInWords()
    {
        StoreFixture store(contentOf(QStringLiteral("A B C D")));
        const quint64 id = patchOf(QStringLiteral("A")).id();
        QVERIFY(QFile::remove(store.filePath(fileOf(QStringLiteral("B")))));
        writePatch(store, QStringLiteral("Stray"), fileOf(QStringLiteral("Stray")));
        writePatch(store, QStringLiteral("A"), fileOf(QStringLiteral("C")));
        store.write(fileOf(QStringLiteral("D")), "damaged");
        store.write(QStringLiteral("copy.%1.bak").arg(id), "mine");
        store.write(TemporaryFiles::prefix() + QStringLiteral("x"), "x");
        store.write(former, LibraryJson::encode(contentOf(QStringLiteral("A"))));
        store.write(LibraryFileNames::damagedFile(id, 0), "damaged");
        Checked check(store);
        QVERIFY(check.open());
        QStringList titles = check.rows(check.findings());
        const int last = static_cast<int>(titles.size()) - 1;
        titles.removeIf([](const QString &text) { return !text.contains(QStringLiteral(" (1")); });
        QCOMPARE(titles.size(), 6);
        QSet<QString> said;
        QTest::keyClick(check.findings(), Qt::Key_Home);
        for (int row = 1; row <= last; row += 2) {
            QCOMPARE(check.findings()->currentIndex().row(), row);
            said.insert(check.aboutFinding());
            QTest::keyClick(check.findings(), Qt::Key_Down);
        }
        QCOMPARE(said.size(), 6);
        QTest::keyClick(check.kept(), Qt::Key_End);
        QVERIFY(check.aboutKept().contains(store.filePath(LibraryFileNames::damagedFile(id, 0))));
        QVERIFY(!check.button(QStringLiteral("Restore"))->isEnabled());
    }

    void namesAreNoMarkupAndThousandsOfFindingsAreShown()
    {
        StoreFixture store(contentOf(QStringLiteral("A")));
        constexpr int count = 1000;
        for (int i = 0; i < count; ++i) {
            store.write(QStringLiteral("lib-<b>x & y.%1.prst").arg(i + 1), "damaged");
        }
        Checked check(store);
        QVERIFY(check.open());
        QVERIFY(check.findings()->uniformItemSizes());
        QCOMPARE(check.findings()->model()->rowCount(), count + 1);
        const QModelIndex row = check.findings()->model()->index(1, 0);
        QVERIFY(row.data().toString().startsWith(QStringLiteral("lib-<b>x & y.")));
        QVERIFY(row.data(Qt::ToolTipRole).toString().contains(QStringLiteral("&lt;b&gt;x &amp; y.")));
        QVERIFY(check.aboutFinding().contains(QStringLiteral("File: lib-<b>x & y.")));
        QTest::keyClick(check.findings(), Qt::Key_End);
        QCOMPARE(check.findings()->currentIndex().row(), count);
    }

    void everythingHasANameAndAMnemonicOfItsOwn()
    {
        StoreFixture store(contentOf(QStringLiteral("A")));
        Checked check(store);
        QVERIFY(check.open());
        QStringList mnemonics;
        for (const QPushButton *button : check.dialog()->findChildren<QPushButton *>()) {
            mnemonics.append(button->shortcut().toString());
        }
        QCOMPARE(mnemonics.removeDuplicates(), 0);
        QCOMPARE(mnemonics.size(), 4);
        QVERIFY(!mnemonics.contains(QString()));
    }

    void aCheckThatTakesItsTimeSaysSo()
    {
        StoreFixture store(contentOf(QStringLiteral("A B")));
        store.write(fileOf(QStringLiteral("B")), "damaged");
        Checked check(store);
        QVERIFY(check.open());
        check.press(QStringLiteral("Close"));
        ThreadGate gate(longest, damagedLine);
        QVERIFY(check.window.choose(entry));
        QTRY_VERIFY(gate.isHolding());
        QTRY_VERIFY(check.isSaid(QStringLiteral("Checking the library folder: 1 of 2 patches")));
        QVERIFY(check.isSaid(store.path()));
        QVERIFY(!check.button(QStringLiteral("Add Patches"))->isEnabled());
        QVERIFY(!check.button(QStringLiteral("Restore"))->isEnabled());
        QVERIFY(check.button(QStringLiteral("Close"))->hasFocus());
        gate.open();
        QVERIFY(check.isExamined());
        QVERIFY(check.isSaid(QStringLiteral("1 finding in the library folder")));
        QVERIFY(check.findings()->hasFocus());
    }

    void aCheckThatIsClosedEndsWithThePatchThatItLooksAt()
    {
        StoreFixture store(contentOf(QStringLiteral("A B")));
        store.write(fileOf(QStringLiteral("A")), "damaged");
        store.write(fileOf(QStringLiteral("B")), "damaged");
        Checked check(store);
        QVERIFY(check.open());
        check.press(QStringLiteral("Close"));
        {
            ThreadGate gate(200ms, damagedLine);
            QVERIFY(check.window.choose(entry));
            QTRY_VERIFY(gate.isHolding());
            QTest::mouseClick(check.button(QStringLiteral("Close")), Qt::LeftButton);
            QTRY_VERIFY(check.window.window->findChildren<LibraryCheckDialog *>().isEmpty());
            check.window.storage.finish();
            QCOMPARE(gate.lines().count(damagedLine), 1);
        }
        QVERIFY(check.check());
        QVERIFY(check.isSaid(QStringLiteral("2 findings in the library folder")));
    }

    void theFocusIsWhereItWasAfterACheckThatTookItsTime()
    {
        StoreFixture store(contentOf(QStringLiteral("A B")));
        store.write(former, LibraryJson::encode(contentOf(QStringLiteral("A"))));
        store.write(QStringLiteral("lib-X.1.prst"), "damaged");
        Checked check(store);
        QVERIFY(check.open());
        QPushButton *const restore = check.button(QStringLiteral("Restore"));
        restore->setFocus();
        ThreadGate gate(longest, damagedLine);
        QTest::keyClick(restore, Qt::Key_Space);
        QTRY_VERIFY(gate.isHolding());
        QTRY_VERIFY(check.button(QStringLiteral("Close"))->hasFocus());
        gate.open();
        QVERIFY(check.isExamined());
        QVERIFY(restore->isEnabled() && restore->hasFocus());
    }

    void restoringHoldsNothingUp()
    {
        StoreFixture store(contentOf(QStringLiteral("A B")));
        store.write(former, LibraryJson::encode(contentOf(QStringLiteral("A"))));
        Checked check(store);
        QVERIFY(check.open());
        ThreadGate gate(longest, QStringLiteral("Saving in progress..."));
        QTest::mouseClick(check.button(QStringLiteral("Restore")), Qt::LeftButton);
        QTRY_VERIFY(gate.isHolding());
        QCOMPARE(check.window.libraryRows(), QStringLiteral("A"));
        QVERIFY(check.isSaid(QStringLiteral("Checking the library folder...")));
        QVERIFY(!check.button(QStringLiteral("Restore"))->isEnabled());
        QVERIFY(check.button(QStringLiteral("Close"))->isEnabled());
        gate.open();
        QVERIFY(check.isExamined());
        QVERIFY(check.isSaid(
            QStringLiteral("The former library is back. The one that it replaced is the first in the list.")));
        QCOMPARE(store.loadedNames(), QStringList{QStringLiteral("A")});
        QCOMPARE(check.window.message(), QString());
    }

    void theFolderIsShownFromHere()
    {
        StoreFixture store(contentOf(QStringLiteral("A")));
        Checked check(store);
        QList<QUrl> shown;
        check.window.storage.setShowDirectory([&shown](const QUrl &url) { shown.append(url); });
        QVERIFY(check.open());
        check.press(QStringLiteral("Show Library Folder"));
        QCOMPARE(shown, QList{QUrl::fromLocalFile(store.path())});
        QVERIFY(check.dialog());
    }

    void longNamesAreCut()
    {
        StoreFixture store;
        LibraryState content = contentOf(QStringLiteral("A B"));
        content.patches[1].name = QString(500, u'x');
        QVERIFY(!store.save(content).hasError());
        const QString file = LibraryFileNames::patchFile(content.patches.at(1).name, content.patches.at(1).id());
        QVERIFY(QFile::remove(store.filePath(file)));
        Checked check(store);
        QVERIFY(check.open());
        QCOMPARE(check.rows(check.findings()).last(), QString(80, u'x') + u'\u2026');
        QVERIFY(!check.aboutFinding().contains(QString(100, u'x')));
    }

    void namesFromRightToLeftTurnNothingRound()
    {
        const QString name = QStringLiteral("\u05e9\u05dc\u05d5\u05dd");
        const QString isolated = u'\u2068' + name + u'\u2069';
        StoreFixture store;
        LibraryState content = contentOf(QStringLiteral("A B"));
        content.patches[1].name = name;
        QVERIFY(!store.save(content).hasError());
        const QString file = LibraryFileNames::patchFile(name, content.patches.at(1).id());
        QVERIFY(QFile::rename(store.filePath(file), store.parentPath() + u'/' + file));
        store.write(QStringLiteral("lib-%1.7.prst").arg(name), "not a preset file");
        Checked check(store);
        QVERIFY(check.open());
        QVERIFY2(check.rows(check.findings()).join(u'\n').contains(isolated), "rows");
        QSet<QString> said;
        for (int row = 0; row < check.findings()->model()->rowCount(); ++row) {
            check.findings()->setCurrentIndex(check.findings()->model()->index(row, 0));
            WindowFixture::settle();
            const QString about = check.aboutFinding();
            for (const QString &line : about.split(u'\n')) {
                if (line.contains(name)) {
                    QVERIFY2(
                        line.contains(u'\u2068') && line.indexOf(u'\u2068') < line.indexOf(name), qPrintable(line));
                    QVERIFY2(line.lastIndexOf(u'\u2069') > line.lastIndexOf(name), qPrintable(line));
                    said.insert(line.section(u' ', 0, 0));
                }
            }
        }
        QVERIFY2(said.contains(QStringLiteral("Patch:")), "patch");
        QVERIFY2(said.contains(QStringLiteral("File:")), "file");
    }

    void theKeyboardAloneRestoresAndCloses()
    {
        StoreFixture store(contentOf(QStringLiteral("A")));
        writePatch(store, QStringLiteral("B"), fileOf(QStringLiteral("B")));
        store.write(former, LibraryJson::encode(contentOf(QStringLiteral("B"))));
        store.write(latest, "garbled");
        Checked check(store);
        QVERIFY(check.open());
        QWidget *const focused = check.kept();
        for (int presses = 0; QApplication::focusWidget() != focused && presses < 10; ++presses) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        QVERIFY(focused->hasFocus());
        QVERIFY(!check.button(QStringLiteral("Restore"))->isEnabled());
        QTest::keyClick(focused, Qt::Key_Up);
        QVERIFY(check.aboutKept().contains(latest));
        QTest::keyClick(focused, Qt::Key_Down);
        QVERIFY(check.aboutKept().contains(former));
        QTest::keyClick(focused, Qt::Key_R, Qt::AltModifier);
        QTRY_COMPARE(check.window.libraryRows(), QStringLiteral("B"));
        QTest::keyClick(check.dialog(), Qt::Key_Return);
        QTRY_VERIFY(!check.dialog());
    }

    void aSaveThatFailsIsToldAndNothingIsRestored()
    {
        StoreFixture store(contentOf(QStringLiteral("A B")));
        store.write(former, LibraryJson::encode(contentOf(QStringLiteral("A"))));
        Checked check(store);
        QVERIFY(check.open());
        const QString file = store.filePath(LibraryFileNames::libraryFile());
        check.window.library.append(patchOf(QStringLiteral("Unsaved")), false, false);
        check.window.storage.delayedSave(check.window.library);
        QVERIFY(QFile::remove(file));
        QVERIFY(QDir().mkpath(file));
        QVERIFY(check.button(QStringLiteral("Restore"))->isEnabled());
        check.press(QStringLiteral("Restore"));
        QCOMPARE(check.window.libraryRows(), QStringLiteral("A B Unsaved"));
        QVERIFY(check.window.storage.hasUnsavedChanges());
        auto *const message = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        QVERIFY(message);
        QCOMPARE(message->text(), QStringLiteral("Could not save one or more library files"));
        QCOMPARE(message->parentWidget(), check.dialog());
        QTest::keyClick(message, Qt::Key_Escape);
        WindowFixture::settle();
        QVERIFY(check.dialog());
        QVERIFY(QDir().rmdir(file));
        check.press(QStringLiteral("Restore"));
        QCOMPARE(check.window.libraryRows(), QStringLiteral("A"));
        QVERIFY(store.has(fileOf(QStringLiteral("Unsaved"))));
    }
};

VELGOR_WIDGET_TEST(TestLibraryCheckWindow)
#include "tst_LibraryCheckWindow.moc"
