#include "CommandTable.h"

#include "CommandHandlers.h"

#include <algorithm>

namespace {

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

} // namespace

QList<CommandOption> CommandTable::filterOptions(PatchFields::Rows rows)
{
    QList<CommandOption> marks;
    QList<CommandOption> others;
    for (const PatchField &field : rows) {
        if (field.isFilter && field.filterHelp) {
            others.append({text(field.option), {}, tr(field.filterHelp), {}});
        } else if (field.isFilter) {
            marks.append({text(field.option), {}, tr("only patches marked \"%1\"").arg(text(field.option)), {}});
        }
    }
    return marks + others;
}

QList<CommandOption> CommandTable::markOptions(PatchFields::Rows rows)
{
    QList<CommandOption> options;
    for (const PatchField &field : rows) {
        if (field.isMark()) {
            options.append({text(field.option), text("on|off"),
                tr("marks the patch \"%1\", or takes the mark away").arg(text(field.option)), {}});
        }
    }
    return options;
}

const QList<Command> &CommandTable::commands()
{
    static const QList<Command> commands = [] {
        QList<Command> all = fileCommands() + libraryCommands() + helpCommands();
        for (Command &command : all) {
            if (command.usesLibrary()) {
                command.options.append({text("library"), text("DIR"),
                    tr("the library directory; the one of the preferences if not given"), {}});
            }
            command.options.append({text("help"), {}, tr("shows this help"), text("h")});
            command.options.append({text("version"), {}, tr("shows the version"), text("V")});
        }
        return all;
    }();
    return commands;
}

const Command *CommandTable::find(const QString &name)
{
    const QList<Command> &all = commands();
    const auto found =
        std::find_if(all.begin(), all.end(), [&name](const Command &entry) { return entry.name == name; });
    return found == all.end() ? nullptr : &*found;
}

QList<Command> CommandTable::fileCommands()
{
    const CommandOption json{text("json"), {}, tr("prints one JSON document for scripts"), {}};
    const CommandOption output{
        text("output"), text("FILE"), tr("the file to write, which is replaced; - is standard output"), text("o")};
    return {
        {text("list"), text("FILE"), 1, 1, {json}, tr("Lists the patches of a preset file. - is standard input."),
            text("velgor list patches.prst"), &CommandHandlers::listFile},
        {text("check"), text("FILE..."), 1, Command::anyNumber, {json},
            tr("Verifies preset files strictly: tags, sizes, offsets, positions, numbers of user impulse responses, "
               "names, checksum, trailing bytes, firmware versions that differ between the files, and whether reading "
               "and writing a file again gives the same bytes. Ends with 1 when it finds anything. - is standard "
               "input."),
            text("velgor check patches.prst"), &CommandHandlers::checkFiles},
        {text("copy"), text("FILE"), 1, 1, {output},
            tr("Reads a preset file and exports it anew, with fresh positions, numbers, offsets and checksum. - is "
               "standard input."),
            text("velgor copy patches.prst -o fresh.prst"), &CommandHandlers::copyFile},
    };
}

QList<Command> CommandTable::libraryCommands()
{
    const CommandOption json{text("json"), {}, tr("prints one JSON document for scripts"), {}};
    const CommandOption output{
        text("output"), text("FILE"), tr("the file to write, which is replaced; - is standard output"), text("o")};

    QList<CommandOption> filters{json,
        {text("ids"), {}, tr("prints one id a line and nothing else, for commands that take them from -"), {}},
        {text("name"), text("TEXT"), tr("only patches whose name contains this, whatever the case"), {}},
        {text("comment"), text("TEXT"), tr("only patches whose comment contains each of these words"), {}}};
    QList<CommandOption> edits{{text("name"), text("TEXT"), tr("the new name, of one patch"), {}},
        {text("comment"), text("TEXT"), tr("the new comment"), {}}};
    filters.append(filterOptions());
    filters.append({text("sort"), text("name|-name"), tr("sorts by name, upwards or downwards"), {}});
    edits.append(markOptions());
    edits.append({text("default"), {}, tr("makes the patch the one that new lists are filled with"), {}});

    return {
        {text("library list"), {}, 0, 0, filters, tr("Lists the library. Ends with 1 when a filter matches nothing."),
            text("velgor library list --guitar --comment \"fat amp\" --sort name"), &CommandHandlers::libraryList},
        {text("library add"), text("PATH..."), 1, Command::anyNumber, {json},
            tr("Keeps every patch of the files that the library does not hold yet. Of a directory, these are all "
               ".prst files below it, in order of path; links to directories are not followed. - is standard input. "
               "Makes the library directory if needed."),
            text("velgor library add patches.prst backups/"), &CommandHandlers::libraryAdd},
        {text("library set"), text("ID..."), 1, Command::anyNumber, edits,
            tr("Changes what the library says of patches. With one unknown id, nothing at all is changed. - takes ids "
               "from standard input, one a line."),
            text("velgor library set 8725204569585644227 --guitar on --comment \"fat amp\" --default"),
            &CommandHandlers::librarySet},
        {text("library duplicate"), text("ID"), 1, 1, {}, tr("Adds a copy of a patch under a new name."),
            text("velgor library duplicate 8725204569585644227"), &CommandHandlers::libraryDuplicate},
        {text("library remove"), text("ID..."), 1, Command::anyNumber, {},
            tr("Removes patches and their files. With one unknown id, nothing at all is removed. - takes ids from "
               "standard input, one a line."),
            text("velgor library remove 8725204569585644227"), &CommandHandlers::libraryRemove},
        {text("library similar"), text("ID"), 1, 1, {json},
            tr("Lists the patches that hold the same sound under any name, the patch itself among them."),
            text("velgor library similar 8725204569585644227"), &CommandHandlers::librarySimilar},
        {text("library export"), text("ID..."), 1, Command::anyNumber, {output},
            tr("Exports patches, in this order, as one preset file. - takes ids from standard input, one a line."),
            text("velgor library export 8725204569585644227 -o lead.prst"), &CommandHandlers::libraryExport},
        {text("library compose"), {}, 0, 0,
            {output, {text("slot"), text("BANK.NUMBER=ID"), tr("puts a patch at a place; may be given many times"), {}},
                {text("from"), text("FILE"),
                    tr("starts from this preset file and keeps its names; - is standard input"), {}}},
            tr("Composes a new list of 99 slots, filled with the default patch, and exports it."),
            text("velgor library compose --slot 1.1=8725204569585644227 -o gig.prst"),
            &CommandHandlers::libraryCompose},
        {text("library doctor"), {}, 0, 0,
            {json, {text("repair"), {}, tr("adds what can be rescued, and clears what interruptions left"), {}},
                {text("preview"), text("LIBRARYFILE"), tr("tells what restoring this former library file would change"),
                    {}},
                {text("restore"), text("LIBRARYFILE"),
                    tr("goes back to this former library file; the present one is kept, so that this can be taken "
                       "back"),
                    {}}},
            tr("Compares the library file with the files of the library directory: patches without a file, files "
               "without a patch, files that cannot be read or hold something else, files of others that are taken "
               "for a patch's, leftovers, and what was kept aside. Ends with 1 when it finds anything; a file under "
               "another name that holds just what the library has is only a note."),
            text("velgor library doctor --repair"), &CommandHandlers::libraryDoctor},
    };
}

QList<Command> CommandTable::helpCommands()
{
    return {{text("help"), text("[COMMAND]"), 0, Command::anyNumber, {}, tr("Shows the help of a command, or of all."),
        text("velgor help library add"), &CommandHandlers::help}};
}
