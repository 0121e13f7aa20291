#pragma once

#include "Command.h"

#include <QCoreApplication>
#include <QString>

/// The help, made from the table of commands.
class HelpText {
    Q_DECLARE_TR_FUNCTIONS(HelpText)

public:
    /// What "-" stands for.
    [[nodiscard]] static QString standardStreams();
    /// All commands, or those that begin with `group`.
    [[nodiscard]] static QString overview(const QString &group = {});
    [[nodiscard]] static QString ofCommand(const Command &command);
    /// For example "velgor list [OPTIONS] FILE".
    [[nodiscard]] static QString usage(const Command &command);
    /// For example "-o, --output FILE".
    [[nodiscard]] static QString optionUsage(const CommandOption &option);
    /// Numbers and meanings of the exit statuses.
    [[nodiscard]] static QList<std::pair<QString, QString>> exitStatuses();
};
