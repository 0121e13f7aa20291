#include "CompletionWords.h"

#include "CommandTable.h"

#include <QRegularExpression>

#include <algorithm>

CompletionWords::Kind CompletionWords::kindOf(const QString &placeholder)
{
    QString word = placeholder;
    word.remove(QStringLiteral("..."));
    if (word == QStringLiteral("FILE") || word == QStringLiteral("PATH")) {
        return Kind::PresetFile;
    }
    if (word == QStringLiteral("LIBRARYFILE")) {
        return Kind::AnyFile;
    }
    if (word == QStringLiteral("DIR")) {
        return Kind::Directory;
    }
    if (word == QStringLiteral("[COMMAND]")) {
        return Kind::CommandName;
    }
    return word.contains(u'|') ? Kind::Choice : Kind::Nothing;
}

QStringList CompletionWords::choices(const QString &placeholder)
{
    return placeholder.split(u'|');
}

QList<std::pair<QString, QString>> CompletionWords::commandsOf(const QString &group)
{
    QList<std::pair<QString, QString>> words;
    for (const Command &command : CommandTable::commands()) {
        const qsizetype space = command.name.indexOf(u' ');
        if (group == command.name.first(std::max<qsizetype>(space, 0))) {
            words.append({command.name.sliced(space + 1), summary(command)});
        }
    }
    if (group.isEmpty()) {
        words.append({QStringLiteral("library"), tr("Works on the library")});
    }
    return words;
}

QString CompletionWords::summary(const Command &command)
{
    static const QRegularExpression end(QStringLiteral("[.:]( |$)"));
    return command.description.section(end, 0, 0);
}

QList<CommandOption> CompletionWords::leadingOptions()
{
    const Command *const any = CommandTable::find(QStringLiteral("library list"));
    QList<CommandOption> options = any->options;
    options.removeIf([](const CommandOption &option) {
        return option.name != QStringLiteral("library") && option.name != QStringLiteral("help")
            && option.name != QStringLiteral("version");
    });
    return options;
}

QStringList CompletionWords::spellings(const CommandOption &option)
{
    QStringList words{QStringLiteral("--") + option.name};
    if (!option.shortName.isEmpty()) {
        words.append(u'-' + option.shortName);
    }
    return words;
}
