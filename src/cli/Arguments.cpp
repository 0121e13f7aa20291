#include "Arguments.h"

#include <QCommandLineParser>
#include <QCoreApplication>

Result<Arguments> Arguments::parse(const Command &command, const QStringList &words)
{
    QCommandLineParser parser;
    for (const CommandOption &option : command.options) {
        QStringList names{option.name};
        if (!option.shortName.isEmpty()) {
            names.prepend(option.shortName);
        }
        parser.addOption(QCommandLineOption(names, option.description, option.value));
    }
    if (!parser.parse(QStringList{command.name} + words)) {
        return Problem{.why = parser.errorText()};
    }
    Arguments arguments;
    arguments.m_positional = parser.positionalArguments();
    for (const CommandOption &option : command.options) {
        if (parser.isSet(option.name)) {
            arguments.m_values.insert(option.name, parser.values(option.name));
        }
    }
    const qsizetype count = arguments.m_positional.size();
    if (arguments.has(QStringLiteral("help")) || arguments.has(QStringLiteral("version"))) {
        return arguments;
    }
    if (count < command.fewestArguments) {
        return Problem{
            .why = QCoreApplication::translate("Arguments", "%1 needs %2").arg(command.name, command.arguments)};
    }
    if (command.mostArguments != Command::anyNumber && count > command.mostArguments) {
        return Problem{
            .why =
                QCoreApplication::translate("Arguments", "too many arguments: %1").arg(arguments.m_positional.last())};
    }
    return arguments;
}

std::optional<QString> Arguments::value(const QString &option) const
{
    const auto found = m_values.constFind(option);
    return found == m_values.cend() || found->isEmpty() ? std::nullopt : std::optional(found->last());
}
