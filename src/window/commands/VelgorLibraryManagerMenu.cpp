#include "VelgorLibraryManagerMenu.h"

#include "Commands.h"
#include "FilePresence.h"
#include "RecentFilesMenu.h"

#include <QActionGroup>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>

#include <algorithm>
#include <iterator>

namespace {

constexpr std::nullopt_t divider = std::nullopt;

struct MenuTitle {
    CommandMenu menu;
    CommandMenu parent; ///< None: the bar
    const char *title;
};

constexpr MenuTitle titles[] = {
    {CommandMenu::File, CommandMenu::None, QT_TRANSLATE_NOOP("VelgorLibraryManagerMenu", "&File")},
    {CommandMenu::RecentFiles, CommandMenu::File, nullptr}, // has its title from its class
    {CommandMenu::TailBit, CommandMenu::File, QT_TRANSLATE_NOOP("VelgorLibraryManagerMenu", "&Tail bit (beta)")},
    {CommandMenu::Edit, CommandMenu::None, QT_TRANSLATE_NOOP("VelgorLibraryManagerMenu", "&Edit")},
    {CommandMenu::Classify, CommandMenu::Edit,
        QT_TRANSLATE_NOOP("VelgorLibraryManagerMenu", "&Classify Library Patch")},
    {CommandMenu::View, CommandMenu::None, QT_TRANSLATE_NOOP("VelgorLibraryManagerMenu", "&View")},
    {CommandMenu::ColorScheme, CommandMenu::View, QT_TRANSLATE_NOOP("VelgorLibraryManagerMenu", "&Color scheme")},
    {CommandMenu::Library, CommandMenu::None, QT_TRANSLATE_NOOP("VelgorLibraryManagerMenu", "&Library")},
    {CommandMenu::Help, CommandMenu::None, QT_TRANSLATE_NOOP("VelgorLibraryManagerMenu", "&Help")},
};

} // namespace

VelgorLibraryManagerMenu::VelgorLibraryManagerMenu(
    Commands &commands, const WindowState &state, QMenuBar &bar, QObject *parent)
    : QObject(parent)
    , m_commands(commands)
    , m_bar(bar)
    , m_recentFiles(new RecentFilesMenu(state, *commands.action(CommandId::ClearRecentFiles), new FilePresence, &bar))
    , m_contentMenu(new QMenu(&bar))
    , m_libraryMenu(new QMenu(&bar))
{
    for (const Command &command : commands.table()) {
        if (command.menu != CommandMenu::None) {
            QMenu &place = menu(command.menu);
            if (command.isFirstOfGroup) {
                place.addSeparator();
            }
            place.addAction(commands.action(command.id));
        }
    }
    for (const CommandMenu choice : {CommandMenu::TailBit, CommandMenu::ColorScheme}) {
        auto *const choices = new QActionGroup(&menu(choice));
        const QList<QAction *> actions = menu(choice).actions();
        for (QAction *const action : actions) {
            choices->addAction(action);
        }
    }
    bar.installEventFilter(this);

    add(*m_contentMenu,
        {CommandId::PutIntoSlot, CommandId::ReplaceSlots, CommandId::KeepInLibrary, CommandId::ShowInLibrary, divider,
            CommandId::MoveSlotUp, CommandId::MoveSlotDown});
    add(*m_libraryMenu, {CommandId::PutIntoSlot, CommandId::ReplaceSlots, divider, CommandId::Tick});
    m_libraryMenu->addMenu(&menu(CommandMenu::Classify));
    add(*m_libraryMenu, {CommandId::Rename});
    add(*m_libraryMenu,
        {divider, CommandId::SetAsDefault, CommandId::Duplicate, CommandId::FindSimilar, CommandId::ExportOnePatch,
            divider, CommandId::MovePatchUp, CommandId::MovePatchDown, divider, CommandId::Delete});
}

bool VelgorLibraryManagerMenu::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::ShortcutOverride) {
        return QObject::eventFilter(watched, event);
    }
    // A bar with the focus counts as the place of every command in its menus: Return would put a patch, not open a
    // menu.
    const auto *const key = static_cast<QKeyEvent *>(event);
    const bool isForTheBar = key->key() >= Qt::Key_Escape && !key->modifiers().testFlag(Qt::ControlModifier);
    event->setAccepted(isForTheBar);
    return isForTheBar;
}

void VelgorLibraryManagerMenu::add(QMenu &menu, const QList<std::optional<CommandId>> &ids)
{
    for (const std::optional<CommandId> &id : ids) {
        if (id) {
            menu.addAction(m_commands.action(*id));
        } else {
            menu.addSeparator();
        }
    }
}

QMenu &VelgorLibraryManagerMenu::menu(CommandMenu id)
{
    if (!m_menus.contains(id)) {
        const MenuTitle &entry = *std::find_if(
            std::begin(titles), std::end(titles), [id](const MenuTitle &title) { return title.menu == id; });
        QMenu *const made = id == CommandMenu::RecentFiles ? m_recentFiles : new QMenu(tr(entry.title), &m_bar);
        QWidget &parent = entry.parent == CommandMenu::None ? static_cast<QWidget &>(m_bar) : menu(entry.parent);
        parent.addAction(made->menuAction());
        m_menus.insert(id, made);
    }
    return *m_menus.value(id);
}
