#include "Commands.h"
#include "TestProgram.h"
#include "WindowFixture.h"

#include <QApplication>
#include <QMenu>
#include <QMenuBar>

namespace {

QString plain(const QAction &action)
{
    return QString(action.text()).remove(u'&');
}

/// Every entry of a menu and of the menus in it, each with its place, as "File/Tail bit (beta)".
void addEntries(const QList<QAction *> &actions, const QString &place, QList<std::pair<QAction *, QString>> &entries)
{
    for (QAction *const action : actions) {
        if (action->menu()) {
            const QString below = place.isEmpty() ? plain(*action) : place + u'/' + plain(*action);
            addEntries(action->menu()->actions(), below, entries);
        } else if (!action->isSeparator()) {
            entries.append({action, place});
        }
    }
}

} // namespace

class TestCommandMenus : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyCommandIsInAMenuOfTheBar()
    {
        const auto window = WindowFixture::shown(QStringLiteral("A"));
        QList<std::pair<QAction *, QString>> entries;
        addEntries(window->window->menuBar()->actions(), {}, entries);
        qsizetype found = 0;
        for (const Command &command : window->window->commands().table()) {
            const QAction *const action = window->window->commands().action(command.id);
            const auto count = std::count_if(
                entries.begin(), entries.end(), [action](const auto &entry) { return entry.first == action; });
            // The entry for a new file does what this button does.
            QVERIFY2(count == (command.id == CommandId::Reset ? 0 : 1), qPrintable(plain(*action)));
            found += count;
        }
        QCOMPARE(found, entries.size());
    }

    void theMenusAreInTheirOrder()
    {
        const auto window = WindowFixture::shown(QStringLiteral("A"));
        QStringList lines;
        const QList<QAction *> menus = window->window->menuBar()->actions();
        for (const QAction *const menu : menus) {
            QStringList entries;
            const QList<QAction *> actions = menu->menu()->actions();
            for (const QAction *const action : actions) {
                entries.append(action->isSeparator() ? QStringLiteral("|")
                        : action->menu()             ? plain(*action) + QStringLiteral(" >")
                                                     : plain(*action));
            }
            lines.append(plain(*menu) + QStringLiteral(": ") + entries.join(QStringLiteral(", ")));
        }
        QCOMPARE(lines.join(u'\n'),
            QStringLiteral(
                "File: New Velgor file, Import..., Open Recent >, |, Export..., Tail bit (beta) >, |, Quit\n"
                "Edit: Put Library Patch into Slot, Replace Every Selected Slot with Library Patch, Keep Selected "
                "Slots in Library, Show in Library, |, Move Selected Slots Up, Move Selected Slots Down, Move Library "
                "Patch Up, Move Library Patch Down, |, Tick Several Library Patches, Tick Library Patch, Classify "
                "Library Patch >, Rename Library Patch, |, Go to Filter\n"
                "View: Color scheme >, Sort ascend, |, Next Column, Previous Column\n"
                "Library: Show library folder, Check Library..., |, Export One Patch, |, Set as Default Patch, "
                "Duplicate Patch, Find Similar Patches, Select All, |, Delete patch\n"
                "Help: Send Mon\u20ACy to $upport Development, Online help, Help for This Column, |, About Velgor "
                "Library Manager"));
    }
};

VELGOR_WIDGET_TEST(TestCommandMenus)
#include "tst_CommandMenus.moc"
