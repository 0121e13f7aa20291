#include "AlertTexts.h"
#include "Commands.h"
#include "GuidePages.h"
#include "TestProgram.h"
#include "UserGuide.h"
#include "WindowFixture.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QDir>
#include <QImageReader>
#include <QMenu>
#include <QMenuBar>
#include <QRegularExpression>
#include <QUrl>

namespace {

QString guide()
{
    return QStringLiteral(VELGOR_GUIDE);
}

QString plain(QString text)
{
    return text.remove(u'&');
}

void collectEntries(const QList<QAction *> &actions, const QString &path, QHash<QString, QAction *> &entries)
{
    for (QAction *action : actions) {
        const QString name = path + plain(action->text());
        if (action->menu()) {
            entries.insert(name, action);
            collectEntries(action->menu()->actions(), name + QStringLiteral(" > "), entries);
        } else if (!action->isSeparator()) {
            entries.insert(name, action);
        }
    }
}

QStringList buttonsIn(const QWidget &window)
{
    static const QRegularExpression count(QStringLiteral(" \\(\\d+\\)$"));
    QStringList texts;
    const QList<QAbstractButton *> buttons = window.findChildren<QAbstractButton *>();
    for (const QAbstractButton *button : buttons) {
        texts.append(plain(button->text()).remove(count));
    }
    return texts;
}

/// What a list or a field does with keys is the toolkit's, or no command.
const QStringList &keysWithoutCommand()
{
    static const QStringList keys{QStringLiteral("Up"), QStringLiteral("Down"), QStringLiteral("Home"),
        QStringLiteral("End"), QStringLiteral("Space"), QStringLiteral("Tab"), QStringLiteral("Shift+Tab"),
        QStringLiteral("Escape"), QStringLiteral("Shift+F10"), QStringLiteral("Shift"), QStringLiteral("Ctrl")};
    return keys;
}

} // namespace

/// The pages of the user guide hold together, and speak of what is there.
class TestGuidePages : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_pages = GuidePage::readAll(guide());
        QVERIFY(m_pages.size() > 5);
        m_window = WindowFixture::shown(QStringLiteral("A B"), QStringLiteral("A"));
        QVERIFY(m_window);
        collectEntries(m_window->window->menuBar()->actions(), {}, m_entries);
    }

    void everyPageIsWellFormed()
    {
        for (const GuidePage &page : m_pages) {
            QVERIFY2(page.problem.isEmpty(), qPrintable(page.file + u' ' + page.problem));
            QCOMPARE(page.language, QStringLiteral("en"));
            QCOMPARE(page.headings.size(), 1);
            QCOMPARE(page.title, page.headings.first() + QStringLiteral(" - Velgor Library Manager"));
            QCOMPARE(page.picturesWithoutText, QStringList());
            QCOMPARE(QSet<QString>(page.anchors.begin(), page.anchors.end()).size(), page.anchors.size());
        }
    }

    void everyPageLeadsToEveryOther()
    {
        for (const GuidePage &page : m_pages) {
            QCOMPARE(page.navigation, m_pages.front().navigation);
            QVERIFY2(m_pages.front().navigation.join(u'\n').contains(page.file), qPrintable(page.file));
        }
        QCOMPARE(m_pages.front().navigation.size(), static_cast<qsizetype>(m_pages.size()));
    }

    void everyLinkLeadsSomewhere()
    {
        for (const GuidePage &page : m_pages) {
            for (const QString &link : page.links) {
                const QUrl url(link);
                QVERIFY2(url.isRelative(), qPrintable(page.file + u' ' + link));
                const QString target = url.path().isEmpty() ? page.file : url.path();
                QVERIFY2(QFileInfo(guide(), target).isFile(), qPrintable(page.file + u' ' + link));
                if (url.hasFragment()) {
                    const QStringList anchors = GuidePage::read(guide(), target).anchors;
                    QVERIFY2(anchors.contains(url.fragment()), qPrintable(page.file + u' ' + link));
                }
            }
        }
    }

    void everyPictureIsThereAndUsed()
    {
        QSet<QString> used;
        for (const GuidePage &page : m_pages) {
            for (const QString &picture : page.pictures) {
                const QImageReader image(guide() + u'/' + picture);
                QVERIFY2(image.canRead(), qPrintable(picture));
                // A page that knows them does not jump while they come.
                QCOMPARE(page.sizes.value(picture, image.size()), image.size());
                used.insert(picture);
            }
        }
        const QStringList files = QDir(guide() + QStringLiteral("/pictures")).entryList(QDir::Files);
        for (const QString &file : files) {
            QVERIFY2(used.contains(QStringLiteral("pictures/") + file), qPrintable(file));
        }
    }

    void whatTheHelpKeyOpensIsThere()
    {
        for (const UserGuide::Page page : {UserGuide::Page::Contents, UserGuide::Page::Slots, UserGuide::Page::Library,
                 UserGuide::Page::Details, UserGuide::Page::LibraryCheck, UserGuide::Page::Trouble}) {
            QCOMPARE(GuidePage::read(guide(), UserGuide::fileName(page)).problem, QString());
        }
    }

    void everyMenuEntryIsThere()
    {
        int count = 0;
        for (const GuidePage &page : m_pages) {
            for (const QString &menu : page.menus) {
                QVERIFY2(m_entries.contains(menu), qPrintable(page.file + u' ' + menu));
                ++count;
            }
        }
        QVERIFY(count > 40);
    }

    void everyButtonIsThere()
    {
        QStringList buttons = buttonsIn(*m_window->window);
        QVERIFY(m_window->choose(QStringLiteral("Check Library...")));
        QVERIFY(m_window->choose(QStringLiteral("About Velgor Library Manager")));
        buttons += buttonsIn(*m_window->window);
        buttons.append(plain(AlertTexts::readError(m_window->storage).acceptLabel));
        for (const GuidePage &page : m_pages) {
            for (const QString &button : page.buttons) {
                QVERIFY2(buttons.contains(button), qPrintable(page.file + u' ' + button));
            }
        }
    }

    void everyKeyDoesSomething()
    {
        QSet<QKeySequence> keys;
        for (const Command &command : m_window->window->commands().table()) {
            keys.unite(QSet<QKeySequence>(command.shortcuts.begin(), command.shortcuts.end()));
            keys.insert(command.libraryListKey);
        }
        for (const GuidePage &page : m_pages) {
            for (const QString &key : page.keys) {
                const bool isKnown = keys.contains(QKeySequence(key)) || keysWithoutCommand().contains(key);
                QVERIFY2(isKnown, qPrintable(page.file + u' ' + key));
            }
        }
    }

    void everyKeyOfACommandIsTold()
    {
        const GuidePage page = GuidePage::read(guide(), QStringLiteral("keyboard.html"));
        int told = 0;
        for (const QString &row : page.rows) {
            const QStringList cells = row.split(u'|');
            if (QAction *const action = m_entries.value(cells.value(1))) {
                QCOMPARE(action->shortcut(), QKeySequence(cells.first()));
                ++told;
            }
        }
        int count = 0;
        for (const Command &command : m_window->window->commands().table()) {
            count += command.shortcuts.isEmpty() ? 0 : 1;
        }
        QCOMPARE(told, count);
    }

    void everyMessageIsThere()
    {
        const WindowFixture &window = *m_window;
        QStringList titles;
        for (const Alert &alert :
            {AlertTexts::openError({}), AlertTexts::saveError({}),
                AlertTexts::mixVersions(window.content, window.desk.editors), AlertTexts::selectDefault(window.library),
                AlertTexts::unreadableNames(window.content), AlertTexts::readError(window.storage),
                AlertTexts::writeError(window.storage), AlertTexts::incompleteLibrary(window.storage),
                AlertTexts::keptFiles(window.storage), AlertTexts::cannotOpenPage({})}) {
            titles.append(alert.title);
        }
        const GuidePage page = GuidePage::read(guide(), UserGuide::fileName(UserGuide::Page::Trouble));
        for (const QString &title : titles) {
            QVERIFY2(page.messages.contains(title), qPrintable(title));
        }
        QCOMPARE(page.messages.size(), titles.size());
    }

private:
    std::vector<GuidePage> m_pages;
    std::unique_ptr<WindowFixture> m_window;
    QHash<QString, QAction *> m_entries;
};

VELGOR_WIDGET_TEST(TestGuidePages)
#include "tst_GuidePages.moc"
