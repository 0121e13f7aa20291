#include "CommandTable.h"
#include "LibraryEditor.h"
#include "LibraryManagerPreferences.h"
#include "VelgorLibrary.h"
#include "WindowTasks.h"

#include <QCoreApplication>

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(ViewCommands)
};

template <PrefColors Scheme>
Command schemeCommand(CommandId id, QString (*label)(const Desk &))
{
    return {.id = id,
        .menu = CommandMenu::ColorScheme,
        .label = label,
        .isChecked = [](const Desk &desk) { return desk.preferences.colorScheme() == Scheme; },
        .run = [](Desk &desk, WindowTasks &) { desk.preferences.setColorScheme(Scheme); }};
}

/// The word for what the next sort does.
QString nextOrder(const Desk &desk)
{
    switch (desk.library.inverseSort()) {
    case TripleBool::tripleFalse:
        return Texts::tr("ascend");
    case TripleBool::tripleNeutral:
        return Texts::tr("previous");
    case TripleBool::tripleTrue:
        return Texts::tr("descend");
    }
    return {};
}

} // namespace

QList<Command> viewCommands()
{
    return {
        schemeCommand<PrefColors::prefsystem>(
            CommandId::SystemScheme, [](const Desk &) { return Texts::tr("&System"); }),
        schemeCommand<PrefColors::prefdark>(CommandId::DarkScheme, [](const Desk &) { return Texts::tr("&Dark"); }),
        schemeCommand<PrefColors::preflight>(CommandId::LightScheme, [](const Desk &) { return Texts::tr("&Light"); }),
        {.id = CommandId::Sort,
            .menu = CommandMenu::View,
            .needsLibrary = true,
            .label = [](const Desk &desk) { return Texts::tr("Sort ") + nextOrder(desk); },
            .buttonLabel = [](const Desk &) { return Texts::tr("Sort"); },
            .symbol =
                [](const Desk &desk) {
                    switch (desk.library.inverseSort()) {
                    case TripleBool::tripleFalse:
                        return QStringLiteral("arrow.up");
                    case TripleBool::tripleNeutral:
                        return QStringLiteral("arrow.right");
                    case TripleBool::tripleTrue:
                        return QStringLiteral("arrow.down");
                    }
                    return QString();
                },
            .toolTip =
                [](const Desk &desk) {
                    if (desk.library.count() < 2) {
                        return Texts::tr("Keep two patches in the library first");
                    }
                    switch (desk.library.inverseSort()) {
                    case TripleBool::tripleFalse:
                        return Texts::tr("Sort by name, ascending");
                    case TripleBool::tripleNeutral:
                        return Texts::tr("Go back to the previous order");
                    case TripleBool::tripleTrue:
                        return Texts::tr("Sort by name, descending");
                    }
                    return QString();
                },
            .isEnabled = [](const Desk &desk, const WindowTasks &) { return desk.library.count() >= 2; },
            .run = [](Desk &desk, WindowTasks &) { desk.libraryEditor.sort(); }},
        {.id = CommandId::NextColumn,
            .menu = CommandMenu::View,
            .isFirstOfGroup = true,
            .shortcuts = {QKeySequence(Qt::Key_F6)},
            .label = [](const Desk &) { return Texts::tr("&Next Column"); },
            .run = [](Desk &, WindowTasks &window) { window.goToColumn(1); }},
        {.id = CommandId::PreviousColumn,
            .menu = CommandMenu::View,
            .shortcuts = {QKeySequence(Qt::SHIFT | Qt::Key_F6)},
            .label = [](const Desk &) { return Texts::tr("&Previous Column"); },
            .run = [](Desk &, WindowTasks &window) { window.goToColumn(-1); }},
    };
}
