#include "HelpText.h"

#include "CommandTable.h"
#include "ShownText.h"

#include <algorithm>

namespace {

constexpr int lineWidth = 100;

/// `text` broken at spaces, each line after the first indented.
QString wrapped(const QString &text, int indent)
{
    QString result;
    int used = indent;
    for (const QString &word : text.split(u' ')) {
        if (!result.isEmpty() && used + 1 + word.size() > lineWidth) {
            result += u'\n' + QString(indent, u' ');
            used = indent;
        } else if (!result.isEmpty()) {
            result += u' ';
            ++used;
        }
        result += word;
        used += static_cast<int>(word.size());
    }
    return result;
}

QString twoColumns(const QList<std::pair<QString, QString>> &rows)
{
    int width = 0;
    for (const auto &row : rows) {
        width = std::max(width, ShownText::width(row.first));
    }
    QString result;
    for (const auto &[left, right] : rows) {
        result += QStringLiteral("  ") + ShownText::padded(left, width + 2) + wrapped(right, width + 4) + u'\n';
    }
    return result;
}

} // namespace

QString HelpText::usage(const Command &command)
{
    QString line = QStringLiteral("velgor ") + command.name + QStringLiteral(" [OPTIONS]");
    return command.arguments.isEmpty() ? line : line + u' ' + command.arguments;
}

QString HelpText::optionUsage(const CommandOption &option)
{
    QString text = option.shortName.isEmpty() ? QString() : u'-' + option.shortName + QStringLiteral(", ");
    text += QStringLiteral("--") + option.name;
    return option.value.isEmpty() ? text : text + u' ' + option.value;
}

QList<std::pair<QString, QString>> HelpText::exitStatuses()
{
    return {
        {QStringLiteral("0"), tr("done, perhaps with warnings on standard error")},
        {QStringLiteral("1"), tr("a check found something, or a filter matched nothing")},
        {QStringLiteral("2"),
            tr("wrong usage, an unknown id, input that cannot be read or is malformed, or a write that failed")},
    };
}

QString HelpText::standardStreams()
{
    return tr("standard input in the place of a FILE, standard output after -o, and ids from standard input, one a "
              "line, in the place of an ID...; a file of this name is ./-");
}

QString HelpText::overview(const QString &group)
{
    QString text = tr("The command line of Velgor Library Manager.") + QStringLiteral("\n\n")
        + tr("Usage: velgor [--library DIR] COMMAND [OPTIONS] [ARGUMENTS]") + QStringLiteral("\n\n") + tr("Commands:")
        + u'\n';
    QList<std::pair<QString, QString>> rows;
    QString examples;
    for (const Command &command : CommandTable::commands()) {
        if (command.name.startsWith(group)) {
            rows.append({command.name + (command.arguments.isEmpty() ? QString() : u' ' + command.arguments),
                command.description});
            examples += QStringLiteral("  ") + command.example + u'\n';
        }
    }
    text += twoColumns(rows) + u'\n' + tr("Examples:") + u'\n' + examples + u'\n' + tr("Options:") + u'\n';
    text += twoColumns(
        {{QStringLiteral("--library DIR"), tr("the library directory; the one of the preferences if not given")},
            {QStringLiteral("-h, --help"), tr("shows this help, or that of the command before it")},
            {QStringLiteral("-V, --version"), tr("shows the version")}, {QStringLiteral("-"), standardStreams()}});
    return text + u'\n' + tr("Exit status:") + u'\n' + twoColumns(exitStatuses());
}

QString HelpText::ofCommand(const Command &command)
{
    QList<std::pair<QString, QString>> rows;
    for (const CommandOption &option : command.options) {
        rows.append({optionUsage(option), option.description});
    }
    return tr("Usage: %1").arg(usage(command)) + QStringLiteral("\n\n") + wrapped(command.description, 0)
        + QStringLiteral("\n\n") + tr("Example:") + QStringLiteral("\n  ") + command.example + QStringLiteral("\n\n")
        + tr("Options:") + u'\n' + twoColumns(rows);
}
