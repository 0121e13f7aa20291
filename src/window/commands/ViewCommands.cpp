#include "CommandTable.h"
#include "LibraryEditor.h"
#include "LibraryManagerPreferences.h"
#include "VelgorLibrary.h"

namespace {

Command schemeCommand(CommandId id, const char *label, PrefColors scheme, LibraryManagerPreferences &preferences)
{
    return {.id = id,
        .menu = CommandMenu::ColorScheme,
        .label = [label] { return CommandTexts::tr(label); },
        .isChecked = [&preferences, scheme] { return preferences.colorScheme() == scheme; },
        .run = [&preferences, scheme] { preferences.setColorScheme(scheme); }};
}

/// The word for what the next sort does.
QString nextOrder(const VelgorLibrary &library)
{
    switch (library.inverseSort()) {
    case TripleBool::tripleFalse:
        return CommandTexts::tr("ascend");
    case TripleBool::tripleNeutral:
        return CommandTexts::tr("previous");
    case TripleBool::tripleTrue:
        return CommandTexts::tr("descend");
    }
    return {};
}

CommandFace sortFace(const VelgorLibrary &library)
{
    CommandFace face{CommandTexts::tr("Sort"), {}};
    switch (library.inverseSort()) {
    case TripleBool::tripleFalse:
        face.symbol = QStringLiteral("arrow.up");
        face.toolTip = CommandTexts::tr("Sort by name, ascending");
        break;
    case TripleBool::tripleNeutral:
        face.symbol = QStringLiteral("arrow.right");
        face.toolTip = CommandTexts::tr("Go back to the previous order");
        break;
    case TripleBool::tripleTrue:
        face.symbol = QStringLiteral("arrow.down");
        face.toolTip = CommandTexts::tr("Sort by name, descending");
        break;
    }
    if (library.count() < 2) {
        face.toolTip = CommandTexts::tr("Keep two patches in the library first");
    }
    return face;
}

} // namespace

QList<Command> viewCommands(const VelgorLibrary &library, LibraryEditor &editor, LibraryManagerPreferences &preferences,
    const WindowTasks &window)
{
    return {
        schemeCommand(
            CommandId::SystemScheme, QT_TRANSLATE_NOOP("Commands", "&System"), PrefColors::prefsystem, preferences),
        schemeCommand(CommandId::DarkScheme, QT_TRANSLATE_NOOP("Commands", "&Dark"), PrefColors::prefdark, preferences),
        schemeCommand(
            CommandId::LightScheme, QT_TRANSLATE_NOOP("Commands", "&Light"), PrefColors::preflight, preferences),
        {.id = CommandId::Sort,
            .menu = CommandMenu::View,
            .needsLibrary = true,
            .label = [&library] { return CommandTexts::tr("Sort ") + nextOrder(library); },
            .button = [&library] { return sortFace(library); },
            .isEnabled = [&library] { return library.count() >= 2; },
            .run = [&editor] { editor.sort(); }},
        {.id = CommandId::NextColumn,
            .menu = CommandMenu::View,
            .isFirstOfGroup = true,
            .shortcuts = {QKeySequence(Qt::Key_F6)},
            .label = [] { return CommandTexts::tr("&Next Column"); },
            .run = [go = window.goToColumn] { go(1); }},
        {.id = CommandId::PreviousColumn,
            .menu = CommandMenu::View,
            .shortcuts = {QKeySequence(Qt::SHIFT | Qt::Key_F6)},
            .label = [] { return CommandTexts::tr("&Previous Column"); },
            .run = [go = window.goToColumn] { go(-1); }},
    };
}
