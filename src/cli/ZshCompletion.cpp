#include "ZshCompletion.h"

#include "CommandTable.h"
#include "CompletionWords.h"

namespace ZshCompletion {

namespace {

QString quoted(QString text)
{
    text.replace(u'\'', QStringLiteral("'\\''"));
    return u'\'' + text + u'\'';
}

/// Within the brackets and between the colons of what "_arguments" takes.
QString escaped(QString text)
{
    for (const QChar character : {u'\\', u'[', u']', u':'}) {
        text.replace(character, QString(u'\\') + character);
    }
    return text;
}

QString action(const QString &placeholder)
{
    switch (CompletionWords::kindOf(placeholder)) {
    case CompletionWords::Kind::PresetFile:
        return QStringLiteral("_files -g \"*.prst(-.)\"");
    case CompletionWords::Kind::AnyFile:
        return QStringLiteral("_files");
    case CompletionWords::Kind::Directory:
        return QStringLiteral("_files -/");
    case CompletionWords::Kind::Choice:
        return u'(' + CompletionWords::choices(placeholder).join(u' ') + u')';
    case CompletionWords::Kind::CommandName:
        return QStringLiteral("_velgor_commands");
    case CompletionWords::Kind::Nothing:
        break;
    }
    return QStringLiteral(" ");
}

QString optionText(const CommandOption &option)
{
    const QString description = u'[' + escaped(option.description) + u']';
    if (!option.value.isEmpty()) {
        const QString value = description + u':' + escaped(option.value) + u':' + action(option.value);
        const QString last = quoted(QStringLiteral("*--") + option.name + u'=' + value);
        return option.shortName.isEmpty()
            ? last
            : last + u' ' + quoted(QStringLiteral("*-") + option.shortName + u'+' + value);
    }
    if (option.shortName.isEmpty()) {
        return quoted(QStringLiteral("--") + option.name + description);
    }
    // Help and version: nothing else is looked at beside them.
    return QStringLiteral("'(- *)'{-%1,--%2}").arg(option.shortName, option.name) + quoted(description);
}

QString arguments(const Command &command)
{
    if (command.mostArguments == 0) {
        return {};
    }
    const QString place = command.mostArguments == 1 ? QStringLiteral("1") : QStringLiteral("*");
    return quoted(place + u':' + escaped(command.arguments) + u':' + action(command.arguments));
}

QString callOf(const QString &arguments, const QList<CommandOption> &options, const QStringList &rest)
{
    QStringList lines{arguments};
    for (const CommandOption &option : options) {
        lines.append(optionText(option));
    }
    lines += rest;
    lines.removeAll(QString());
    return QStringLiteral("  ") + lines.join(QStringLiteral(" \\\n    "));
}

QString nameList(const QString &function, const QString &group)
{
    QString text = function + QStringLiteral("() {\n  local -a commands=(\n");
    for (const auto &[word, summary] : CompletionWords::commandsOf(group)) {
        text += QStringLiteral("    ") + quoted(word + u':' + summary) + u'\n';
    }
    return text + QStringLiteral("  )\n  _describe -t commands command commands\n}\n\n");
}

/// `velgor` or `velgor library`, which hand the words from the command on to its function.
QString groupFunction(const QString &function, const QString &group)
{
    QString text = function + QStringLiteral("() {\n  local curcontext=$curcontext state line\n  local -A opt_args\n");
    // Options behind the command are the command's.
    text += callOf(QStringLiteral("_arguments -C -A '-*'"), CompletionWords::leadingOptions(),
        {QStringLiteral("'1: :%1_commands'").arg(function), QStringLiteral("'*:: :->command'")});
    text += QStringLiteral(" && return\n");
    text += QStringLiteral("  case $state:$words[1] in\n");
    for (const auto &[word, summary] : CompletionWords::commandsOf(group)) {
        text += QStringLiteral("    command:%1) %2_%1 ;;\n").arg(word, function);
    }
    return text + QStringLiteral("  esac\n}\n\n");
}

} // namespace

QString text()
{
    const QString all = QStringLiteral("_velgor");
    const QString library = QStringLiteral("_velgor_library");
    QString script = QStringLiteral("#compdef velgor\n# Made from the table of commands.\n\n");
    script += nameList(all + QStringLiteral("_commands"), {});
    script += nameList(library + QStringLiteral("_commands"), QStringLiteral("library"));
    for (const Command &command : CommandTable::commands()) {
        const QString function = all + u'_' + QString(command.name).replace(u' ', u'_');
        script += function + QStringLiteral("() {\n")
            + callOf(QStringLiteral("_arguments"), command.options, {arguments(command)}) + QStringLiteral("\n}\n\n");
    }
    script += groupFunction(library, QStringLiteral("library"));
    script += groupFunction(all, {});
    return script + QStringLiteral("_velgor \"$@\"\n");
}

} // namespace ZshCompletion
