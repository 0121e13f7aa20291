#include "AboutDialog.h"
#include "ProgramVersion.h"
#include "ShownWidgets.h"
#include "TestProgram.h"
#include "WindowFixture.h"

#include <QApplication>
#include <QClipboard>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QScreen>
#include <QScrollBar>

using namespace ShownWidgets;

namespace {

const QString entry = QStringLiteral("About Velgor Library Manager");
const QString copyLabel = QStringLiteral("Copy for a Bug Report");
const QString messagesName = QStringLiteral("Messages of this run");

} // namespace

class TestAboutDialog : public QObject {
    Q_OBJECT

    [[nodiscard]] AboutDialog *dialog() const { return m_window->window->findChild<AboutDialog *>(); }

    void open() const
    {
        QVERIFY(m_window->choose(entry));
        QVERIFY(dialog() && QTest::qWaitForWindowActive(dialog()));
    }

    [[nodiscard]] QString messages() const { return named<QPlainTextEdit>(*dialog(), messagesName)->toPlainText(); }

private Q_SLOTS:
    void init() { m_window = WindowFixture::shown(QStringLiteral("Lead Bells")); }
    void cleanup() { m_window.reset(); }

    void itSaysWhichProgramThisIs()
    {
        open();
        QCOMPARE(dialog()->windowTitle(), entry);
        const QStringList said = labels(*dialog());
        QVERIFY(said.contains(QStringLiteral("Version ") + ProgramVersion::text()));
        QVERIFY(said.contains(QString::fromLatin1(qVersion())));
        QVERIFY(said.contains(m_window->path()));
        QVERIFY(said.contains(QStringLiteral("2 patches")));
    }

    void itShowsWhatThisRunSaidTheLastInSight()
    {
        for (int i = 0; i < 300; ++i) {
            Diagnostics::printLine(QStringLiteral("Line %1 <b>&amp;</b>").arg(i));
        }
        open();
        const QStringList lines = messages().split(u'\n');
        QCOMPARE(lines.size(), 200);
        QCOMPARE(lines.last(), QStringLiteral("Line 299 <b>&amp;</b>"));
        const auto *const text = named<QPlainTextEdit>(*dialog(), messagesName);
        QVERIFY(text->viewport()->rect().contains(text->cursorRect().center()));
    }

    void whatIsCopiedSaysItAll()
    {
        const QString inHome = QDir::homePath() + QStringLiteral("/lists/a.prst");
        Diagnostics::printLine(QStringLiteral("%1: two\nlines \u202eturned").arg(inHome));
        open();
        QTest::mouseClick(named<QAbstractButton>(*dialog(), copyLabel), Qt::LeftButton);
        QVERIFY(labels(*dialog()).contains(QStringLiteral("Copied")));
        const QString copied = QApplication::clipboard()->text();
        QStringList lines = copied.split(u'\n');
        QVERIFY(lines.takeLast().isEmpty());
        const QStringList begins{QStringLiteral("Program: velgor ") + ProgramVersion::text(),
            QStringLiteral("Qt: ") + QString::fromLatin1(qVersion()), QStringLiteral("System: "),
            QStringLiteral("Desktop: offscreen"), QStringLiteral("Style: "), QStringLiteral("Screen: 800 x 800, "),
            QStringLiteral("Library: ") + m_window->path(), QStringLiteral("Patches in it: 2"),
            QStringLiteral("Last messages of this run: %1").arg(lines.size() - 9)};
        for (qsizetype i = 0; i < begins.size(); ++i) {
            QVERIFY2(lines.at(i).startsWith(begins.at(i)), qPrintable(lines.at(i)));
        }
        QVERIFY(lines.at(4).endsWith(QStringLiteral(" pt")));
        QVERIFY(lines.at(5).endsWith(QStringLiteral(", scale 1")));
        QCOMPARE(lines.last(), QStringLiteral("~/lists/a.prst: two\ufffdlines \ufffdturned"));
    }

    void withoutMessagesThatIsSaid()
    {
        ProblemReport report = ProblemReport::of(m_window->library, m_window->storage, *m_window->window);
        report.messages.clear();
        report.patches = 1;
        QVERIFY(report.text().endsWith(QStringLiteral("\nPatches in it: 1\nMessages of this run: none\n")));
        AboutDialog about(report, m_window->window.get());
        about.show();
        const auto *const text = named<QPlainTextEdit>(about, messagesName);
        QCOMPARE(text->toPlainText(), QString());
        QCOMPARE(text->placeholderText(), QStringLiteral("None"));
        QVERIFY(labels(about).contains(QStringLiteral("1 patch")));
    }

    void theKeyboardDoesItAll()
    {
        m_window->libraryList()->setFocus();
        open();
        QCOMPARE(dialog()->focusWidget(), named<QAbstractButton>(*dialog(), QStringLiteral("Close")));
        QApplication::clipboard()->clear();
        QTest::keyClick(dialog(), Qt::Key_C, Qt::AltModifier);
        QTRY_VERIFY(QApplication::clipboard()->text().startsWith(QStringLiteral("Program: ")));
        QTest::keyClick(dialog(), Qt::Key_M, Qt::AltModifier);
        QCOMPARE(dialog()->focusWidget(), named<QPlainTextEdit>(*dialog(), messagesName));
        QTest::keyClick(dialog()->focusWidget(), Qt::Key_Tab);
        QCOMPARE(dialog()->focusWidget(), named<QAbstractButton>(*dialog(), copyLabel));
        QTest::keyClick(dialog(), Qt::Key_Escape);
        QTRY_VERIFY(!dialog());
        QCOMPARE(m_window->window->focusWidget(), m_window->libraryList());
        open();
        QTest::keyClick(dialog(), Qt::Key_Return);
        QTRY_VERIFY(!dialog());
    }

    void aMessageStandsOverIt()
    {
        open();
        m_window->content.setOpenError(true);
        QCOMPARE(m_window->message(), QStringLiteral("Could not import file"));
        QVERIFY(dialog()->findChild<QMessageBox *>());
        QVERIFY(m_window->answer(QStringLiteral("OK")));
        QVERIFY(dialog()->isVisible());
    }

    void aLongPathMakesItNoWider()
    {
        ProblemReport report = ProblemReport::of(m_window->library, m_window->storage, *m_window->window);
        report.library = u'/' + QString(4'000, u'x');
        report.messages = QStringList{QString(2'000, u'y')};
        AboutDialog about(report, m_window->window.get());
        about.show();
        QVERIFY(about.width() <= QApplication::primaryScreen()->availableSize().width());
        QVERIFY(about.minimumSizeHint().width() < 600);
        const auto *const text = named<QPlainTextEdit>(about, messagesName);
        QVERIFY(QTest::qWaitForWindowExposed(&about));
        QTRY_COMPARE(text->horizontalScrollBar()->maximum(), 0);
        QVERIFY(text->verticalScrollBar()->maximum() > 0);
    }

    void versionIsTheProjectsWithTheCommitInParentheses()
    {
        QCOMPARE(ProgramVersion::number(), QStringLiteral(VELGOR_VERSION));
        const QString commit = ProgramVersion::commit();
        QCOMPARE(ProgramVersion::text(),
            commit.isEmpty() ? ProgramVersion::number()
                             : ProgramVersion::number() + QStringLiteral(" (") + commit + u')');
    }

private:
    std::unique_ptr<WindowFixture> m_window;
};

VELGOR_WIDGET_TEST(TestAboutDialog)
#include "tst_AboutDialog.moc"
