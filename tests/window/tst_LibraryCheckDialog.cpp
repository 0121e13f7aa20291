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
#include <QPlainTextEdit>

using namespace std::chrono_literals;

namespace {

const QString former = QStringLiteral("velgorlibrary-20260101T000000-00.json");
const QString latest = QStringLiteral("velgorlibrary-20260102T000000-00.json");
const QString entry = QStringLiteral("Check Library...");
/// What a thread prints that reads a file that is no preset file.
const QString damagedLine = QStringLiteral("Could not decode HeaderDesc");
constexpr std::chrono::milliseconds longest = 10s;

/// The same patch, date included, whenever it is asked for.
const VelgorPatch &patchOf(const QString &name)
{
    static QHash<QString, VelgorPatch> patches;
    const auto known = patches.constFind(name);
    return known != patches.cend() ? *known : *patches.insert(name, WindowFixture::patch(name));
}

LibraryState contentOf(const QString &names)
{
    LibraryState content;
    for (const QString &name : names.split(u' ')) {
        content.patches.append(patchOf(name));
    }
    return content;
}

QString fileOf(const QString &name)
{
    return LibraryFileNames::patchFile(name, patchOf(name).id());
}

void writePatch(const LibraryDirectory &directory, const QString &name, const QString &file)
{
    directory.write(file, TestLibraries::patchBytes(patchOf(name)));
}

/// A window over a directory, and the check over the window.
struct Checked {
    explicit Checked(const LibraryDirectory &directory)
        : window(directory)
    {
    }

    [[nodiscard]] bool open() { return window.open() && check(); }
    /// Dismisses what loading had to say.
    [[nodiscard]] bool check() const
    {
        while (!window.message().isEmpty()) {
            if (!window.answer(QStringLiteral("Not Now"))) {
                return false;
            }
        }
        return window.choose(entry) && dialog() != nullptr && isExamined();
    }
    [[nodiscard]] bool isExamined() const
    {
        return QTest::qWaitFor([this] {
            return dialog() == nullptr
                || ShownWidgets::labels(*dialog()).filter(QStringLiteral("Checking the library folder")).isEmpty();
        });
    }

    [[nodiscard]] LibraryCheckDialog *dialog() const
    {
        const QList<LibraryCheckDialog *> all = window.window->findChildren<LibraryCheckDialog *>();
        return all.size() == 1 && all.first()->isVisible() ? all.first() : nullptr;
    }
    [[nodiscard]] LibraryCheckList *findings() const { return list(QStringLiteral("Findings")); }
    [[nodiscard]] LibraryCheckList *kept() const { return list(QStringLiteral("Former libraries")); }
    [[nodiscard]] LibraryCheckList *list(const QString &name) const
    {
        return ShownWidgets::named<LibraryCheckList>(*dialog(), name);
    }
    [[nodiscard]] QString aboutFinding() const { return details(QStringLiteral("About the finding")); }
    [[nodiscard]] QString aboutKept() const { return details(QStringLiteral("About the former library")); }
    [[nodiscard]] QString details(const QString &name) const
    {
        const auto *field = ShownWidgets::named<QPlainTextEdit>(*dialog(), name);
        return field != nullptr ? field->toPlainText() : QString();
    }
    [[nodiscard]] QPushButton *button(const QString &name) const
    {
        return ShownWidgets::named<QPushButton>(*dialog(), name);
    }
    void press(const QString &name) const
    {
        QVERIFY2(button(name) != nullptr && button(name)->isEnabled(), qPrintable(name));
        QTest::mouseClick(button(name), Qt::LeftButton);
        WindowFixture::settle();
        QVERIFY(isExamined());
    }
    [[nodiscard]] bool isSaid(const QString &text) const { return ShownWidgets::labels(*dialog()).contains(text); }
    [[nodiscard]] QStringList rows(const LibraryCheckList *of) const
    {
        QStringList texts;
        for (int row = 0; row < of->model()->rowCount(); ++row) {
            texts.append(of->model()->index(row, 0).data().toString());
        }
        return texts;
    }

    WindowFixture window;
};

} // namespace

class TestLibraryCheckDialog : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aSoundLibraryHasNothingToMend()
    {
        const LibraryDirectory directory;
        QVERIFY(!TestLibraries::save(directory, contentOf(QStringLiteral("A B"))).hasError());
        const auto before = directory.stamps();
        Checked check(directory);
        QVERIFY(check.open());
        QVERIFY(check.isSaid(QStringLiteral("Everything in the library folder is as it should be")));
        QVERIFY(check.isSaid(QStringLiteral("2 patches in ") + directory.path()));
        QVERIFY(check.findings()->accessibleDescription().startsWith(QStringLiteral("Nothing to mend. ")));
        QVERIFY(check.kept()->accessibleDescription().startsWith(QStringLiteral("No former library. ")));
        QVERIFY(!check.button(QStringLiteral("Add Patches"))->isEnabled());
        QVERIFY(!check.button(QStringLiteral("Restore"))->isEnabled());
        QVERIFY(check.button(QStringLiteral("Close"))->hasFocus());
        QCOMPARE(directory.stamps(), before);
    }

    void changesAreWrittenBeforeTheDirectoryIsLookedAt()
    {
        const LibraryDirectory directory;
        QVERIFY(!TestLibraries::save(directory, contentOf(QStringLiteral("A B"))).hasError());
        Checked check(directory);
        QVERIFY(check.window.open());
        WindowFixture::click(check.window.libraryList(), 0);
        QVERIFY(check.window.choose(QStringLiteral("Duplicate Patch")));
        QVERIFY(check.window.storage.hasUnsavedChanges());
        QVERIFY(check.check());
        QVERIFY(!check.window.storage.hasUnsavedChanges());
        QVERIFY(check.isSaid(QStringLiteral("Everything in the library folder is as it should be")));
        QCOMPARE(TestLibraries::loaded(directory).size(), 3);
    }

    void whatCanBeRescuedIsAdded()
    {
        const LibraryDirectory directory;
        QVERIFY(!TestLibraries::save(directory, contentOf(QStringLiteral("A B"))).hasError());
        writePatch(directory, QStringLiteral("Stray"), fileOf(QStringLiteral("Stray")));
        writePatch(directory, QStringLiteral("Other"), fileOf(QStringLiteral("Other")));
        Checked check(directory);
        QVERIFY(check.open());
        QVERIFY(check.isSaid(QStringLiteral("2 findings in the library folder")));
        QCOMPARE(check.rows(check.findings()).first(), QStringLiteral("Unknown files (2, 2 can be added)"));
        QVERIFY(check.findings()->hasFocus());
        QVERIFY2(check.aboutFinding().contains(fileOf(QStringLiteral("Other"))), qPrintable(check.aboutFinding()));
        QTest::keyClick(check.findings(), Qt::Key_Down);
        QVERIFY2(check.aboutFinding().contains(fileOf(QStringLiteral("Stray"))), qPrintable(check.aboutFinding()));

        check.press(QStringLiteral("Add 2 Patches"));
        QVERIFY(check.isSaid(QStringLiteral("Everything in the library folder is as it should be")));
        QVERIFY(check.isSaid(QStringLiteral("2 patches were added to the library.")));
        QVERIFY(!check.button(QStringLiteral("Add Patches"))->isEnabled());
        QVERIFY(check.button(QStringLiteral("Close"))->hasFocus());
        QCOMPARE(check.window.libraryRows(), QStringLiteral("A B Other Stray"));
        QCOMPARE(TestLibraries::loaded(directory).size(), 4);
    }

    void aPatchWhoseFileWasPutBackIsAdded()
    {
        const LibraryDirectory directory;
        LibraryState content = contentOf(QStringLiteral("A B C"));
        content.patches[1].comment = QStringLiteral("my words");
        content.defaultPatch = content.patches.at(1).id();
        QVERIFY(!TestLibraries::save(directory, content).hasError());
        QVERIFY(QFile::remove(directory.filePath(fileOf(QStringLiteral("B")))));
        Checked check(directory);
        QVERIFY(check.window.open());
        QCOMPARE(check.window.libraryRows(), QStringLiteral("A C"));
        writePatch(directory, QStringLiteral("B"), fileOf(QStringLiteral("B")));
        QVERIFY(check.check());
        check.press(QStringLiteral("Add 1 Patch"));
        QCOMPARE(check.window.libraryRows(), QStringLiteral("A B C"));
        QVERIFY(TestLibraries::areIdentical(TestLibraries::loaded(directory), content.patches));
        QCOMPARE(TestLibraries::load(directory).library->defaultPatch, content.defaultPatch);
    }

    void aFileThatIsNotNeededIsShownAndNoFinding()
    {
        const LibraryDirectory directory;
        QVERIFY(!TestLibraries::save(directory, contentOf(QStringLiteral("A B"))).hasError());
        writePatch(directory, QStringLiteral("A"), QStringLiteral("lib-x.7.prst"));
        Checked check(directory);
        QVERIFY(check.open());
        QVERIFY(check.isSaid(QStringLiteral("Everything in the library folder is as it should be")));
        QCOMPARE(check.rows(check.findings()).first(), QStringLiteral("Files that are not needed (1)"));
        QVERIFY(check.aboutFinding().contains(QStringLiteral("lib-x.7.prst")));
        QVERIFY(!check.button(QStringLiteral("Add Patches"))->isEnabled());
    }

    void defaultOrderAndUnreadableFilesArePreviewed()
    {
        const LibraryDirectory directory;
        QVERIFY(!TestLibraries::save(directory, contentOf(QStringLiteral("A B C"))).hasError());
        LibraryState then = contentOf(QStringLiteral("B A Broken"));
        then.defaultPatch = patchOf(QStringLiteral("A")).id();
        directory.write(former, LibraryJson::encode(then));
        directory.write(fileOf(QStringLiteral("Broken")), "damaged");
        Checked check(directory);
        QVERIFY(check.open());
        for (const char *expected :
            {"default patch will be \"A\".", "get their former order.", "files cannot be read (1):\nBroken: "}) {
            QVERIFY2(check.aboutKept().contains(QString::fromLatin1(expected)), qPrintable(check.aboutKept()));
        }
    }

    void longNamesAreCut()
    {
        const LibraryDirectory directory;
        LibraryState content = contentOf(QStringLiteral("A B"));
        content.patches[1].name = QString(500, u'x');
        QVERIFY(!TestLibraries::save(directory, content).hasError());
        const QString file = LibraryFileNames::patchFile(content.patches.at(1).name, content.patches.at(1).id());
        QVERIFY(QFile::remove(directory.filePath(file)));
        Checked check(directory);
        QVERIFY(check.open());
        QCOMPARE(check.rows(check.findings()).last(), QString(80, u'x') + u'\u2026');
        QVERIFY(!check.aboutFinding().contains(QString(100, u'x')));
    }

    void aMixedUpFileThatIsRightIsSettledByDuplicating()
    {
        const LibraryDirectory directory;
        LibraryState content = contentOf(QStringLiteral("A"));
        content.patches[0].comment = QStringLiteral("my words");
        QVERIFY(!TestLibraries::save(directory, content).hasError());
        writePatch(directory, QStringLiteral("Other"), fileOf(QStringLiteral("A")));
        Checked check(directory);
        QVERIFY(check.open());
        QCOMPARE(check.rows(check.findings()).first(), QStringLiteral("Mixed-up files (1)"));
        QVERIFY2(check.aboutFinding().contains(QStringLiteral("duplicate it and delete the original")),
            qPrintable(check.aboutFinding()));
        check.press(QStringLiteral("Close"));
        WindowFixture::click(check.window.libraryList(), 0);
        QVERIFY(check.window.choose(QStringLiteral("Duplicate Patch")));
        WindowFixture::click(check.window.libraryList(), 0);
        QVERIFY(check.window.choose(QStringLiteral("Delete patch")));
        QVERIFY2(check.window.answer(QStringLiteral("Yes")), qPrintable(check.window.messageText()));
        QVERIFY(check.check());
        QVERIFY(check.isSaid(QStringLiteral("Everything in the library folder is as it should be")));
        const QList<VelgorPatch> patches = TestLibraries::loaded(directory);
        QCOMPARE(patches.size(), 1);
        QCOMPARE(patches.first().comment, QStringLiteral("my words"));
        QCOMPARE(patches.first().soundHash(), patchOf(QStringLiteral("Other")).soundHash());
    }

    void namesFromRightToLeftTurnNothingRound()
    {
        const QString name = QStringLiteral("\u05e9\u05dc\u05d5\u05dd");
        const QString isolated = u'\u2068' + name + u'\u2069';
        const LibraryDirectory directory;
        LibraryState content = contentOf(QStringLiteral("A B"));
        content.patches[1].name = name;
        QVERIFY(!TestLibraries::save(directory, content).hasError());
        const QString file = LibraryFileNames::patchFile(name, content.patches.at(1).id());
        QVERIFY(QFile::rename(directory.filePath(file), directory.parentPath() + u'/' + file));
        directory.write(QStringLiteral("lib-%1.7.prst").arg(name), "not a preset file");
        Checked check(directory);
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

    void aDamagedLibraryIsPutTogetherFromItsFiles()
    {
        const LibraryDirectory directory;
        QVERIFY(!TestLibraries::save(directory, contentOf(QStringLiteral("A B"))).hasError());
        directory.write(LibraryFileNames::libraryFile(), "garbled");
        Checked check(directory);
        QVERIFY(check.window.open());
        QCOMPARE(check.window.message(), QStringLiteral("Could not access to library directory."));
        QVERIFY(check.window.answer(entry));
        QTRY_VERIFY(check.dialog());
        QVERIFY(check.isExamined());
        QVERIFY(check.rows(check.findings()).contains(QStringLiteral("Library file not readable (1)")));
        check.press(QStringLiteral("Add 2 Patches"));
        QCOMPARE(TestLibraries::loaded(directory).size(), 2);
        QCOMPARE(check.window.library.count(), 2);
        const QStringList copies = TestLibraries::datedCopies(directory);
        QCOMPARE(copies.size(), 1);
        QCOMPARE(directory.read(copies.first()), QByteArray("garbled"));
        QVERIFY(check.rows(check.kept()).last().endsWith(QStringLiteral("cannot be read")));
        QVERIFY(!check.button(QStringLiteral("Restore"))->isEnabled());
        // The dialog shows the file that was kept.
        QCOMPARE(check.window.message(), QString());
    }

    void anIncompleteLibraryLeadsToTheCheck()
    {
        const LibraryDirectory directory;
        QVERIFY(!TestLibraries::save(directory, contentOf(QStringLiteral("A B"))).hasError());
        QVERIFY(QFile::remove(directory.filePath(fileOf(QStringLiteral("B")))));
        Checked check(directory);
        QVERIFY(check.window.open());
        QCOMPARE(check.window.message(), QStringLiteral("Some patches of the library could not be loaded"));
        QVERIFY(check.window.answer(entry));
        QTRY_VERIFY(check.dialog());
        QVERIFY(check.isExamined());
        QCOMPARE(check.rows(check.findings()),
            (QStringList{QStringLiteral("Patches without a file (1)"), QStringLiteral("B")}));
        QTest::keyClick(check.dialog(), Qt::Key_Escape);
        QTRY_VERIFY(!check.dialog());
        QCOMPARE(check.window.message(), QString());
    }

    void aFormerLibraryIsPreviewedRestoredAndTakenBack()
    {
        const LibraryDirectory directory;
        QVERIFY(!TestLibraries::save(directory, contentOf(QStringLiteral("A B C"))).hasError());
        LibraryState then = contentOf(QStringLiteral("A B Gone"));
        then.patches.first().comment = QStringLiteral("former words");
        directory.write(former, LibraryJson::encode(then));
        Checked check(directory);
        QVERIFY(check.open());
        QCOMPARE(check.rows(check.kept()).first(), QStringLiteral("Library files (1)"));
        for (const char *expected : {"will hold 2 patches", "comment and marks (1):\nA\n", "files stay (1):\nC\n",
                 "files are gone (1):\nGone\n", "takes everything back"}) {
            QVERIFY2(check.aboutKept().contains(QString::fromLatin1(expected)), qPrintable(check.aboutKept()));
        }
        const QString stray = fileOf(QStringLiteral("C"));

        check.press(QStringLiteral("Restore"));
        QCOMPARE(check.window.libraryRows(), QStringLiteral("A B"));
        QCOMPARE(TestLibraries::loadedNames(directory), (QStringList{QStringLiteral("A"), QStringLiteral("B")}));
        QCOMPARE(TestLibraries::loaded(directory).first().comment, QStringLiteral("former words"));
        QVERIFY(directory.has(stray));
        QCOMPARE(check.rows(check.kept()).first(), QStringLiteral("Library files (2)"));
        QVERIFY(!check.aboutKept().contains(former));
        QVERIFY2(check.aboutKept().contains(QStringLiteral("Come back (1):\nC\n")), qPrintable(check.aboutKept()));
        // The dialog shows the file that was kept.
        QCOMPARE(check.window.message(), QString());

        check.press(QStringLiteral("Restore"));
        QVERIFY(
            TestLibraries::areIdentical(TestLibraries::loaded(directory), contentOf(QStringLiteral("A B C")).patches));
        QCOMPARE(check.window.libraryRows(), QStringLiteral("A B C"));

        check.press(QStringLiteral("Close"));
        check.window.storage.delayedSave(check.window.library);
        QCOMPARE(check.window.message(), QString());
    }

    void theKeyboardAloneRestoresAndCloses()
    {
        const LibraryDirectory directory;
        QVERIFY(!TestLibraries::save(directory, contentOf(QStringLiteral("A"))).hasError());
        writePatch(directory, QStringLiteral("B"), fileOf(QStringLiteral("B")));
        directory.write(former, LibraryJson::encode(contentOf(QStringLiteral("B"))));
        directory.write(latest, "garbled");
        Checked check(directory);
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

    void everyKindIsSaidInWords()
    {
        const LibraryDirectory directory;
        QVERIFY(!TestLibraries::save(directory, contentOf(QStringLiteral("A B C D"))).hasError());
        const quint64 id = patchOf(QStringLiteral("A")).id();
        QVERIFY(QFile::remove(directory.filePath(fileOf(QStringLiteral("B")))));
        writePatch(directory, QStringLiteral("Stray"), fileOf(QStringLiteral("Stray")));
        writePatch(directory, QStringLiteral("A"), fileOf(QStringLiteral("C")));
        directory.write(fileOf(QStringLiteral("D")), "damaged");
        directory.write(QStringLiteral("copy.%1.bak").arg(id), "mine");
        directory.write(TemporaryFiles::prefix() + QStringLiteral("x"), "x");
        directory.write(former, LibraryJson::encode(contentOf(QStringLiteral("A"))));
        directory.write(LibraryFileNames::damagedFile(id, 0), "damaged");
        Checked check(directory);
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
        QVERIFY(check.aboutKept().contains(directory.filePath(LibraryFileNames::damagedFile(id, 0))));
        QVERIFY(!check.button(QStringLiteral("Restore"))->isEnabled());
    }

    void aSaveThatFailsIsToldAndNothingIsRestored()
    {
        const LibraryDirectory directory;
        QVERIFY(!TestLibraries::save(directory, contentOf(QStringLiteral("A B"))).hasError());
        directory.write(former, LibraryJson::encode(contentOf(QStringLiteral("A"))));
        Checked check(directory);
        QVERIFY(check.open());
        const QString file = directory.filePath(LibraryFileNames::libraryFile());
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
        QVERIFY(directory.has(fileOf(QStringLiteral("Unsaved"))));
    }

    void namesAreNoMarkupAndThousandsOfFindingsAreShown()
    {
        const LibraryDirectory directory;
        QVERIFY(!TestLibraries::save(directory, contentOf(QStringLiteral("A"))).hasError());
        constexpr int count = 1000;
        for (int i = 0; i < count; ++i) {
            directory.write(QStringLiteral("lib-<b>x & y.%1.prst").arg(i + 1), "damaged");
        }
        Checked check(directory);
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
        const LibraryDirectory directory;
        QVERIFY(!TestLibraries::save(directory, contentOf(QStringLiteral("A"))).hasError());
        Checked check(directory);
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
        const LibraryDirectory directory;
        QVERIFY(!TestLibraries::save(directory, contentOf(QStringLiteral("A B"))).hasError());
        directory.write(fileOf(QStringLiteral("B")), "damaged");
        Checked check(directory);
        QVERIFY(check.open());
        check.press(QStringLiteral("Close"));
        ThreadGate gate(longest, damagedLine);
        QVERIFY(check.window.choose(entry));
        QTRY_VERIFY(gate.isHolding());
        QTRY_VERIFY(check.isSaid(QStringLiteral("Checking the library folder: 1 of 2 patches")));
        QVERIFY(check.isSaid(directory.path()));
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
        const LibraryDirectory directory;
        QVERIFY(!TestLibraries::save(directory, contentOf(QStringLiteral("A B"))).hasError());
        directory.write(fileOf(QStringLiteral("A")), "damaged");
        directory.write(fileOf(QStringLiteral("B")), "damaged");
        Checked check(directory);
        QVERIFY(check.open());
        check.press(QStringLiteral("Close"));
        {
            ThreadGate gate(200ms, damagedLine);
            QVERIFY(check.window.choose(entry));
            QTRY_VERIFY(gate.isHolding());
            QTest::mouseClick(check.button(QStringLiteral("Close")), Qt::LeftButton);
            QTRY_VERIFY(check.window.window->findChildren<LibraryCheckDialog *>().isEmpty());
            QVERIFY(!gate.isHolding());
            QCOMPARE(gate.lines().count(damagedLine), 1);
        }
        QVERIFY(check.check());
        QVERIFY(check.isSaid(QStringLiteral("2 findings in the library folder")));
    }

    void theFocusIsWhereItWasAfterACheckThatTookItsTime()
    {
        const LibraryDirectory directory;
        QVERIFY(!TestLibraries::save(directory, contentOf(QStringLiteral("A B"))).hasError());
        directory.write(former, LibraryJson::encode(contentOf(QStringLiteral("A"))));
        directory.write(QStringLiteral("lib-X.1.prst"), "damaged");
        Checked check(directory);
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

    void theFolderIsShownFromHere()
    {
        const LibraryDirectory directory;
        QVERIFY(!TestLibraries::save(directory, contentOf(QStringLiteral("A"))).hasError());
        Checked check(directory);
        QList<QUrl> shown;
        check.window.storage.setShowDirectory([&shown](const QUrl &url) { shown.append(url); });
        QVERIFY(check.open());
        check.press(QStringLiteral("Show Library Folder"));
        QCOMPARE(shown, QList{QUrl::fromLocalFile(directory.path())});
        QVERIFY(check.dialog());
    }
};

VELGOR_WIDGET_TEST(TestLibraryCheckDialog)
#include "tst_LibraryCheckDialog.moc"
