#pragma once

#include "Command.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>

/// What shells complete after `velgor`, as the table of commands has it.
class CompletionWords {
    Q_DECLARE_TR_FUNCTIONS(CompletionWords)

public:
    /// What can be proposed in the place of an argument or of an option's value.
    enum class Kind { Nothing, PresetFile, AnyFile, Directory, Choice, CommandName };

    /// Of what stands for the value in the help, for example "FILE..." or "on|off".
    [[nodiscard]] static Kind kindOf(const QString &placeholder);
    /// The words of a choice.
    [[nodiscard]] static QStringList choices(const QString &placeholder);

    /// The words that can follow `velgor`, or `velgor library`, each with what it does.
    [[nodiscard]] static QList<std::pair<QString, QString>> commandsOf(const QString &group);
    /// What a command does, up to the first full stop or colon.
    [[nodiscard]] static QString summary(const Command &command);
    /// The options that may stand before the words of a command.
    [[nodiscard]] static QList<CommandOption> leadingOptions();
    /// The options as one types them, for example "-o" and "--output".
    [[nodiscard]] static QStringList spellings(const CommandOption &option);
};
