#include "Dispatcher.h"

#include "Arguments.h"
#include "CommandTable.h"
#include "Diagnostics.h"
#include "HelpText.h"
#include "Output.h"

int Dispatcher::run(const QStringList &words)
{
    m_words = words;
    if (const auto status = takeLeadingOptions({})) {
        return *status;
    }
    if (m_words.isEmpty()) {
        return wrongUsage(tr("a command is missing"));
    }
    QString name = m_words.takeFirst();
    if (name == QStringLiteral("library")) {
        if (const auto status = takeLeadingOptions(name)) {
            return *status;
        }
        if (m_words.isEmpty()) {
            return wrongUsage(tr("a library command is missing"), name);
        }
        const QString second = m_words.takeFirst();
        if (second == QStringLiteral("help")) {
            // The words of the command that help is wanted for.
            m_words.prepend(name);
            name = second;
        } else {
            name += u' ' + second;
        }
    }
    return runCommand(name);
}

std::optional<int> Dispatcher::takeLeadingOptions(const QString &group)
{
    const QString assignment = QStringLiteral("--library=");
    while (!m_words.isEmpty() && m_words.first().startsWith(u'-')) {
        const QString option = m_words.takeFirst();
        if (option == QStringLiteral("--help") || option == QStringLiteral("-h")) {
            Output::print(HelpText::overview(group));
            return Done;
        }
        if (option == QStringLiteral("--version") || option == QStringLiteral("-V")) {
            return showVersion();
        }
        if (option.startsWith(assignment)) {
            m_library = option.sliced(assignment.size());
        } else if (option == QStringLiteral("--library") && !m_words.isEmpty()) {
            m_library = m_words.takeFirst();
        } else if (option == QStringLiteral("--library")) {
            return wrongUsage(tr("--library needs a directory"));
        } else {
            return wrongUsage(tr("unknown option %1").arg(option), group);
        }
    }
    return std::nullopt;
}

int Dispatcher::runCommand(const QString &name)
{
    const Command *command = CommandTable::find(name);
    if (!command) {
        return wrongUsage(tr("unknown command \"%1\"").arg(name));
    }
    // Help is about any library.
    if (m_library && !command->usesLibrary() && name != QStringLiteral("help")) {
        return wrongUsage(tr("%1 uses no library").arg(name), name);
    }
    // What comes later wins, so a directory before the command gives way to one after it.
    if (m_library && command->usesLibrary()) {
        m_words.prepend(QStringLiteral("--library=") + *m_library);
    }
    const Result<Arguments> arguments = Arguments::parse(*command, m_words);
    if (!arguments) {
        return wrongUsage(arguments.problem().text(), name);
    }
    if (arguments->has(QStringLiteral("help"))) {
        Output::print(HelpText::ofCommand(*command));
        return Done;
    }
    if (arguments->has(QStringLiteral("version"))) {
        return showVersion();
    }
    return command->run(*arguments);
}

int Dispatcher::showVersion()
{
    Output::print(QStringLiteral("velgor " VELGOR_VERSION "\n"));
    return Done;
}

int Dispatcher::wrongUsage(const QString &error, const QString &command)
{
    const int status = Output::fail(error);
    const QString words = command.isEmpty() ? QStringLiteral("velgor") : QStringLiteral("velgor ") + command;
    Diagnostics::printLine(tr("Try '%1 --help'.").arg(words));
    return status;
}
