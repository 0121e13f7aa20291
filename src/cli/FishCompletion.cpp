#include "FishCompletion.h"

#include "CommandTable.h"
#include "CompletionWords.h"

namespace FishCompletion {

namespace {

QString head()
{
    return QStringLiteral(R"(# Completes velgor in fish. Made from the table of commands.

# Whether the words before the cursor call this command, or begin to.
function __velgor_is
    set -l command
    set -l is_value no
    for word in (commandline -opc)[2..-1]
        if test $is_value = yes
            set is_value no
            continue
        end
        switch $word
            case --library
                set is_value yes
            case '-*'
            case '*'
                set -a command $word
                if test "$command" != library
                    break
                end
        end
    end
    test "$command" = "$argv[1]"
end

function __velgor_presets
    __fish_complete_path (commandline -ct) | string match -ri '^[^\t]*(?:/|\.prst)(?:\t.*)?$'
end

complete -c velgor -f
)");
}

QString quoted(QString text)
{
    text.replace(u'\\', QStringLiteral("\\\\"));
    text.replace(u'\'', QStringLiteral("\\'"));
    return u'\'' + text + u'\'';
}

QString begin(const QString &command)
{
    return QStringLiteral("complete -c velgor -n ") + quoted(QStringLiteral("__velgor_is \"%1\"").arg(command));
}

QString names(const QString &command, const QString &group)
{
    QString text;
    for (const auto &[word, summary] : CompletionWords::commandsOf(group)) {
        text += begin(command) + QStringLiteral(" -a ") + word + QStringLiteral(" -d ") + quoted(summary) + u'\n';
    }
    return text;
}

QString proposals(const QString &placeholder)
{
    switch (CompletionWords::kindOf(placeholder)) {
    case CompletionWords::Kind::PresetFile:
        return QStringLiteral(" -ka '(__velgor_presets)'");
    case CompletionWords::Kind::AnyFile:
        return QStringLiteral(" -F");
    case CompletionWords::Kind::Directory:
        return QStringLiteral(" -a '(__fish_complete_directories)'");
    case CompletionWords::Kind::Choice:
        return QStringLiteral(" -a ") + quoted(CompletionWords::choices(placeholder).join(u' '));
    case CompletionWords::Kind::CommandName:
    case CompletionWords::Kind::Nothing:
        break;
    }
    return {};
}

QString optionLines(const QString &command, const QList<CommandOption> &options)
{
    QString text;
    for (const CommandOption &option : options) {
        text += begin(command) + QStringLiteral(" -l ") + option.name;
        if (!option.shortName.isEmpty()) {
            text += QStringLiteral(" -s ") + option.shortName;
        }
        if (!option.value.isEmpty()) {
            const bool isAnyFile = CompletionWords::kindOf(option.value) == CompletionWords::Kind::AnyFile;
            text += QStringLiteral("%1%2").arg(
                isAnyFile ? QStringLiteral(" -r") : QStringLiteral(" -x"), proposals(option.value));
        }
        text += QStringLiteral(" -d ") + quoted(option.description) + u'\n';
    }
    return text;
}

} // namespace

QString text()
{
    QString script = head();
    for (const QString &group : {QString(), QStringLiteral("library")}) {
        script += u'\n' + names(group, group) + optionLines(group, CompletionWords::leadingOptions());
    }
    for (const Command &command : CommandTable::commands()) {
        script += u'\n';
        if (CompletionWords::kindOf(command.arguments) == CompletionWords::Kind::CommandName) {
            script += names(command.name, {});
        } else if (const QString proposed = proposals(command.arguments); !proposed.isEmpty()) {
            script += begin(command.name) + proposed + u'\n';
        }
        script += optionLines(command.name, command.options);
    }
    return script;
}

} // namespace FishCompletion
