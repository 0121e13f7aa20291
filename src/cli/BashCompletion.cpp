#include "BashCompletion.h"

#include "CommandTable.h"
#include "CompletionWords.h"

namespace BashCompletion {

namespace {

QString head()
{
    return QStringLiteral(R"(# Completes velgor in bash. Made from the table of commands.

_velgor()
{
    local cur prev words cword split
    _init_completion -s || return

    local command='' options='' i
    for ((i = 1; i < cword; i++)); do
        case ${words[i]} in
            --library)
                ((i++))
                ;;
            -*) ;;
            library)
                [[ -z $command ]] || break
                command=library
                ;;
            *)
                command+=${command:+ }${words[i]}
                break
                ;;
        esac
    done

    case $command in
)");
}

QString tail()
{
    return QStringLiteral(R"(    esac
    if [[ $cur == -* && $split == false ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$cur")
    fi
} &&
    complete -F _velgor velgor
)");
}

QString choice(const QStringList &words)
{
    return QStringLiteral("mapfile -t COMPREPLY < <(compgen -W '%1' -- \"$cur\")").arg(words.join(u' '));
}

QString commandNames(const QString &group)
{
    QStringList words;
    for (const auto &[word, summary] : CompletionWords::commandsOf(group)) {
        words.append(word);
    }
    return choice(words);
}

QString action(const QString &placeholder)
{
    switch (CompletionWords::kindOf(placeholder)) {
    case CompletionWords::Kind::PresetFile:
        return QStringLiteral("_filedir prst");
    case CompletionWords::Kind::AnyFile:
        return QStringLiteral("_filedir");
    case CompletionWords::Kind::Directory:
        return QStringLiteral("_filedir -d");
    case CompletionWords::Kind::Choice:
        return choice(CompletionWords::choices(placeholder));
    case CompletionWords::Kind::CommandName:
        return commandNames({});
    case CompletionWords::Kind::Nothing:
        break;
    }
    return QStringLiteral(":");
}

QString branch(const QString &command, const QList<CommandOption> &options, const QString &arguments)
{
    QString values;
    QStringList words;
    for (const CommandOption &option : options) {
        const QStringList spellings = CompletionWords::spellings(option);
        words += spellings;
        if (!option.value.isEmpty()) {
            values += QStringLiteral("                %1)\n                    %2\n                    return\n"
                                     "                    ;;\n")
                          .arg(spellings.join(QStringLiteral(" | ")), action(option.value));
        }
    }
    QString text = QStringLiteral("        '%1')\n").arg(command);
    if (!values.isEmpty()) {
        text += QStringLiteral("            case $prev in\n%1            esac\n").arg(values);
    }
    text += QStringLiteral("            options='%1'\n").arg(words.join(u' '));
    return text
        + QStringLiteral("            [[ $cur == -* || $split == true ]] || %1\n            ;;\n").arg(arguments);
}

} // namespace

QString text()
{
    const QList<CommandOption> leading = CompletionWords::leadingOptions();
    QString script = head();
    for (const QString &group : {QString(), QStringLiteral("library")}) {
        script += branch(group, leading, commandNames(group));
    }
    for (const Command &command : CommandTable::commands()) {
        script += branch(command.name, command.options, action(command.arguments));
    }
    return script + tail();
}

} // namespace BashCompletion
