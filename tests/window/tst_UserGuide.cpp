#include "LibraryContentMainView.h"
#include "LibraryViewFilterView.h"
#include "ShownWidgets.h"
#include "StatusText.h"
#include "TestProgram.h"
#include "UserGuide.h"
#include "VelgorContentView.h"
#include "VelgorLibraryView.h"
#include "VelgorPatchDetailView.h"
#include "WebPages.h"
#include "WindowFixture.h"

#include <QApplication>
#include <QDesktopServices>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using Page = UserGuide::Page;

namespace {

const auto noNetwork = [] { return false; };
const auto network = [] { return true; };

/// Stands for the browser.
class OpenedPages : public QObject {
    Q_OBJECT

public:
    OpenedPages() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "open"); }
    ~OpenedPages() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }
    Q_DISABLE_COPY_MOVE(OpenedPages)

    QStringList files;

public Q_SLOTS:
    void open(const QUrl &url)
    {
        QCOMPARE(QFileInfo(url.toLocalFile()).isFile(), true);
        QVERIFY(!url.hasFragment());
        files.append(url.fileName());
    }
};

std::unique_ptr<WindowFixture> windowWithGuide()
{
    auto window = WindowFixture::shown(QStringLiteral("Lead Bells"), QStringLiteral("A B"));
    window->window->setUserGuide(UserGuide({QStringLiteral(VELGOR_GUIDE)}, {}));
    return window;
}

/// The key goes to whatever has the focus.
void pressHelpKey()
{
    QVERIFY(QTest::qWaitFor([] { return QApplication::focusWidget() != nullptr; }));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F1);
    WindowFixture::settle();
}

QString makePage(const QTemporaryDir &directory, const QString &path)
{
    const QString file = directory.filePath(path);
    QDir().mkpath(QFileInfo(file).path());
    QFile page(file);
    const bool isMade = page.open(QIODevice::WriteOnly);
    return isMade ? QUrl::fromLocalFile(file).toString() : QString();
}

} // namespace

class TestUserGuide : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theFirstDirectoryWithThePageIsUsed()
    {
        const QTemporaryDir directory;
        const UserGuide guide({directory.filePath(QStringLiteral("a")), directory.filePath(QStringLiteral("b"))}, {});
        QCOMPARE(guide.address(Page::Library), WebPages::project());
        const QString second = makePage(directory, QStringLiteral("b/library.html"));
        QCOMPARE(guide.address(Page::Library).toString(), second);
        const QString first = makePage(directory, QStringLiteral("a/library.html"));
        QCOMPARE(guide.address(Page::Library).toString(), first);
        QCOMPARE(guide.address(Page::Contents), WebPages::project());
    }

    void aDirectoryInThePlaceOfAPageIsNone()
    {
        const QTemporaryDir directory;
        QVERIFY(QDir(directory.path()).mkdir(QStringLiteral("index.html")));
        QCOMPARE(UserGuide({directory.path()}, {}).address(Page::Contents), WebPages::project());
    }

    void aNameWithSpecialLettersStaysItself()
    {
        const QTemporaryDir directory;
        const QString page = QStringLiteral("Gr\u00f6\u00dfe #1 50%/index.html");
        QVERIFY(!makePage(directory, page).isEmpty());
        const QUrl address = UserGuide({QFileInfo(directory.filePath(page)).path()}, {}).address(Page::Contents);
        QCOMPARE(address.toLocalFile(), directory.filePath(page));
        QVERIFY(!address.hasFragment());
    }

    void theSiteNeedsTheNetwork()
    {
        const QTemporaryDir directory;
        const QString installed = makePage(directory, QStringLiteral("details.html"));
        const QUrl site(QStringLiteral("https://site.example/guide/"));
        const UserGuide offline({directory.path()}, {site, noNetwork});
        QCOMPARE(offline.address(Page::Details).toString(), installed);
        const UserGuide online({directory.path()}, {site, network});
        QCOMPARE(online.address(Page::Details).toString(), QStringLiteral("https://site.example/guide/details.html"));
        const UserGuide withoutSite({directory.path()}, {{}, network});
        QCOMPARE(withoutSite.address(Page::Details).toString(), installed);
    }

    void theGuideIsLookedForFromTheProgramsPlace()
    {
        const QStringList directories = UserGuide::usualDirectories();
        const QString above = QFileInfo(QCoreApplication::applicationDirPath()).path();
        QVERIFY2(directories.first().startsWith(above) && directories.first().endsWith(QStringLiteral("/guide")),
            qPrintable(directories.first()));
        QCOMPARE(directories.at(1), above + QStringLiteral("/Resources/guide"));
        QVERIFY(QDir::isAbsolutePath(directories.last()));
    }

    void onlineHelpOpensTheBeginning()
    {
        OpenedPages opened;
        const auto window = windowWithGuide();
        QVERIFY(window->choose(QStringLiteral("Online help")));
        QCOMPARE(opened.files, QStringList(QStringLiteral("index.html")));
        QCOMPARE(window->status(),
            StatusText::ofPage(QUrl::fromLocalFile(QStringLiteral(VELGOR_GUIDE "/index.html")).toString()));
    }

    void theHelpKeyOpensThePageOfTheColumn()
    {
        OpenedPages opened;
        const auto window = windowWithGuide();
        LibraryContentMainView &columns = window->window->columns();
        WindowFixture::click(window->contentList(), 0);
        pressHelpKey();
        WindowFixture::click(window->libraryList(), 0);
        pressHelpKey();
        // Fields and buttons belong to their column.
        columns.library()->filter()->focusName();
        pressHelpKey();
        columns.details()->focusName();
        pressHelpKey();
        ShownWidgets::named<QAbstractButton>(*window->window, QStringLiteral("Reset"))->setFocus();
        pressHelpKey();
        QCOMPARE(
            opened.files.join(u' '), QStringLiteral("slots.html library.html library.html details.html slots.html"));
        QCOMPARE(window->message(), QString());
    }

    void theMenuDoesTheSame()
    {
        OpenedPages opened;
        const auto window = windowWithGuide();
        WindowFixture::click(window->libraryList(), 0);
        window->window->columns().details()->focusName();
        QVERIFY(window->choose(QStringLiteral("Help for This Column")));
        QCOMPARE(opened.files, QStringList(QStringLiteral("details.html")));
    }

    void withoutFocusTheBeginningIsOpened()
    {
        OpenedPages opened;
        const auto window = windowWithGuide();
        window->window->focusWidget()->clearFocus();
        QVERIFY(window->choose(QStringLiteral("Help for This Column")));
        QCOMPARE(opened.files, QStringList(QStringLiteral("index.html")));
    }

    void theHelpKeyKnowsTheDialog_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("page");
        QTest::newRow("the check of the library") << QStringLiteral("Check Library...") << QStringLiteral("check.html");
        QTest::newRow("for a report") << QStringLiteral("About Velgor Library Manager")
                                      << QStringLiteral("trouble.html");
    }

    void theHelpKeyKnowsTheDialog()
    {
        QFETCH(const QString, entry);
        QFETCH(const QString, page);
        OpenedPages opened;
        const auto window = windowWithGuide();
        QVERIFY(window->choose(entry));
        QVERIFY(QTest::qWaitFor([] { return qobject_cast<QDialog *>(QApplication::activeWindow()) != nullptr; }));
        pressHelpKey();
        QCOMPARE(opened.files, QStringList(page));
    }

    void aMessageLeadsToThePageAboutMessages()
    {
        OpenedPages opened;
        const auto window = windowWithGuide();
        WindowFixture::click(window->libraryList(), 0);
        QVERIFY(window->press(QStringLiteral("Delete")));
        QVERIFY(!window->message().isEmpty());
        QVERIFY(QTest::qWaitFor([] { return qobject_cast<QDialog *>(QApplication::activeWindow()) != nullptr; }));
        pressHelpKey();
        QCOMPARE(opened.files, QStringList(QStringLiteral("trouble.html")));
        // It still waits for its answer.
        QVERIFY(window->answer(QStringLiteral("No")));
        QCOMPARE(window->libraryRows(), QStringLiteral("Lead Bells"));
    }
};

VELGOR_WIDGET_TEST(TestUserGuide)
#include "tst_UserGuide.moc"
