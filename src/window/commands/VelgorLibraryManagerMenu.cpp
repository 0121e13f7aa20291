#include "VelgorLibraryManagerMenu.h"

#include "CommandTable.h"
#include "Commands.h"
#include "FilePresence.h"
#include "RecentFilesMenu.h"

#include <QActionGroup>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>

namespace {

constexpr std::nullopt_t divider = std::nullopt;

} // namespace

VelgorLibraryManagerMenu::VelgorLibraryManagerMenu(
    Commands &commands, const WindowState &state, QMenuBar &bar, QObject *parent)
    : QObject(parent)
    , m_commands(commands)
    , m_recentFiles(new RecentFilesMenu(state, *commands.action(CommandId::ClearRecentFiles), new FilePresence, &bar))
    , m_flagsMenu(new QMenu(tr("&Classify Library Patch"), &bar))
    , m_contentMenu(new QMenu(&bar))
    , m_libraryMenu(new QMenu(&bar))
{
    addMarks(PatchFlags::usage());
    m_flagsMenu->addSeparator();
    addMarks(PatchFlags::style());
    addFileMenu(bar);
    addEditMenu(bar);
    addViewMenu(bar);
    addLibraryMenu(bar);
    addHelpMenu(bar);
    bar.installEventFilter(this);

    add(*m_contentMenu,
        {CommandId::PutIntoSlot, CommandId::ReplaceSlots, CommandId::KeepInLibrary, CommandId::ShowInLibrary, divider,
            CommandId::MoveSlotUp, CommandId::MoveSlotDown});
    add(*m_libraryMenu, {CommandId::PutIntoSlot, CommandId::ReplaceSlots, divider, CommandId::Tick});
    m_libraryMenu->addMenu(m_flagsMenu);
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

void VelgorLibraryManagerMenu::addMarks(const ShownFlags &marks)
{
    for (const PatchField *mark : marks) {
        m_flagsMenu->addAction(m_commands.action(markId(mark->flag)));
    }
}

void VelgorLibraryManagerMenu::addFileMenu(QMenuBar &bar)
{
    QMenu *const menu = bar.addMenu(tr("&File"));
    add(*menu, {CommandId::NewVelgorFile, CommandId::Import});
    menu->addMenu(m_recentFiles);
    add(*menu, {divider, CommandId::Export});
    QMenu *const tailBit = menu->addMenu(tr("&Tail bit (beta)"));
    add(*tailBit, {CommandId::NormalTailBit, CommandId::InvertedTailBit});
    auto *const choices = new QActionGroup(tailBit);
    choices->addAction(m_commands.action(CommandId::NormalTailBit));
    choices->addAction(m_commands.action(CommandId::InvertedTailBit));
    add(*menu, {divider, CommandId::Quit});
}

void VelgorLibraryManagerMenu::addEditMenu(QMenuBar &bar)
{
    QMenu *const menu = bar.addMenu(tr("&Edit"));
    add(*menu,
        {CommandId::PutIntoSlot, CommandId::ReplaceSlots, CommandId::KeepInLibrary, CommandId::ShowInLibrary, divider,
            CommandId::MoveSlotUp, CommandId::MoveSlotDown, CommandId::MovePatchUp, CommandId::MovePatchDown, divider,
            CommandId::Select, CommandId::Tick});
    menu->addMenu(m_flagsMenu);
    add(*menu, {CommandId::Rename});
    add(*menu, {divider, CommandId::FocusFilter});
}

void VelgorLibraryManagerMenu::addViewMenu(QMenuBar &bar)
{
    QMenu *const menu = bar.addMenu(tr("&View"));
    QMenu *const schemes = menu->addMenu(tr("&Color scheme"));
    add(*schemes, {CommandId::SystemScheme, CommandId::DarkScheme, CommandId::LightScheme});
    auto *const choices = new QActionGroup(schemes);
    for (const CommandId id : {CommandId::SystemScheme, CommandId::DarkScheme, CommandId::LightScheme}) {
        choices->addAction(m_commands.action(id));
    }
    add(*menu, {CommandId::Sort, divider, CommandId::NextColumn, CommandId::PreviousColumn});
}

void VelgorLibraryManagerMenu::addLibraryMenu(QMenuBar &bar)
{
    QMenu *const menu = bar.addMenu(tr("&Library"));
    add(*menu,
        {CommandId::ShowLibraryFolder, CommandId::CheckLibrary, divider, CommandId::ExportOnePatch, divider,
            CommandId::SetAsDefault, CommandId::Duplicate, CommandId::FindSimilar, CommandId::SelectAll, divider,
            CommandId::Delete});
}

void VelgorLibraryManagerMenu::addHelpMenu(QMenuBar &bar)
{
    add(*bar.addMenu(tr("&Help")),
        {CommandId::Donate, CommandId::OnlineHelp, CommandId::ColumnHelp, divider, CommandId::About});
}
