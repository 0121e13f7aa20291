#include "Commands.h"

#include "CommandTable.h"
#include "Editors.h"
#include "LibraryManagerPreferences.h"
#include "OneRefresh.h"
#include "VelgorContent.h"
#include "VelgorLibrary.h"

#include <QAction>
#include <QShortcut>
#include <QWidget>

#include <algorithm>

Commands::Commands(const VelgorLibrary &library, const VelgorContent &content, LibraryStorageManager &storage,
    LibraryManagerPreferences &preferences, const Editors &editors, const WindowTasks &window, QObject *parent)
    : QObject(parent)
    , m_table(fileCommands(content, editors.content, editors.files, window)
          + editCommands(library, editors.library, editors.content, window)
          + viewCommands(library, editors.library, preferences, window)
          + libraryCommands(library, editors.library, editors.files, storage, window) + helpCommands(window))
    , m_refresh(new OneRefresh([this] { refreshActions(); }, this))
{
    addActions();
    follow(library, content);
    connect(&preferences, &LibraryManagerPreferences::colorSchemeChanged, this, &Commands::refresh);
    connect(m_refresh, &OneRefresh::done, this, &Commands::refreshed);
    refresh();
}

void Commands::addActions()
{
    for (const Command &command : m_table) {
        auto *action = new QAction(this);
        action->setShortcuts(command.shortcuts);
        action->setCheckable(command.isChecked != nullptr);
        action->setIconVisibleInMenu(false);
        if (command.id == CommandId::Quit) {
            action->setMenuRole(QAction::QuitRole);
        } else if (command.id == CommandId::About) {
            action->setMenuRole(QAction::AboutRole);
        } else {
            action->setMenuRole(QAction::NoRole);
        }
        connect(action, &QAction::triggered, this, [this, run = command.run] {
            run();
            refresh();
        });
        m_actions.insert(command.id, action);
    }
}

void Commands::follow(const VelgorLibrary &library, const VelgorContent &content) const
{
    for (const auto signal :
        {&VelgorLibrary::selectionChanged, &VelgorLibrary::isMultiSelChanged, &VelgorLibrary::multiSelectionsChanged,
            &VelgorLibrary::inverseSortChanged, &VelgorLibrary::defaultPatchChanged}) {
        connect(&library, signal, this, &Commands::refresh);
    }
    for (const auto signal : {&VelgorLibrary::rowsInserted, &VelgorLibrary::rowsRemoved, &VelgorLibrary::rowMoved,
             &VelgorLibrary::rowsChanged}) {
        connect(&library, signal, this, &Commands::refresh);
    }
    connect(&library, &VelgorLibrary::wasReset, this, &Commands::refresh);
    connect(&library, &VelgorLibrary::reordered, this, &Commands::refresh);
    for (const auto signal : {&VelgorContent::selectionsChanged, &VelgorContent::inverseTailBitChanged}) {
        connect(&content, signal, this, &Commands::refresh);
    }
    for (const auto signal : {&VelgorContent::rowsInserted, &VelgorContent::rowsRemoved, &VelgorContent::rowMoved,
             &VelgorContent::rowsChanged}) {
        connect(&content, signal, this, &Commands::refresh);
    }
    connect(&content, &VelgorContent::wasReset, this, &Commands::refresh);
}

const Command &Commands::command(CommandId id) const
{
    return *std::find_if(m_table.begin(), m_table.end(), [id](const Command &command) { return command.id == id; });
}

void Commands::addShortcuts(QWidget &window, QWidget &contentList, QWidget &libraryList)
{
    for (const Command &command : m_table) {
        QAction *const action = m_actions.value(command.id);
        if (!command.libraryListKey.isEmpty()) {
            // Of an action's own shortcuts all count in the same place.
            auto *const key = new QShortcut(command.libraryListKey, &libraryList);
            key->setContext(Qt::WidgetShortcut);
            connect(key, &QShortcut::activated, action, &QAction::trigger);
        }
        if (command.scope == CommandScope::Window) {
            window.addAction(action);
            continue;
        }
        action->setShortcutContext(Qt::WidgetShortcut);
        if (command.scope != CommandScope::LibraryList) {
            contentList.addAction(action);
        }
        if (command.scope != CommandScope::ContentList) {
            libraryList.addAction(action);
        }
    }
}

void Commands::setLibraryUsable(bool isUsable)
{
    m_isLibraryUsable = isUsable;
    refresh();
}

void Commands::refresh()
{
    m_refresh->ask();
}

void Commands::refreshActions()
{
    for (const Command &command : m_table) {
        QAction *const action = m_actions.value(command.id);
        const bool isBlocked = !m_isLibraryUsable && command.needsLibrary;
        action->setText(command.label());
        action->setEnabled(!isBlocked && (!command.isEnabled || command.isEnabled()));
        if (command.isChecked) {
            action->setChecked(command.isChecked());
        }
    }
}
