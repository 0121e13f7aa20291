#pragma once

#include "Command.h"

#include <QCoreApplication>
#include <QStringList>

#include <optional>

/// Finds the command that the user means, parses its arguments and runs it.
class Dispatcher {
    Q_DECLARE_TR_FUNCTIONS(Dispatcher)

public:
    /// `words` are the program's arguments without its name. Returns the exit status.
    [[nodiscard]] int run(const QStringList &words);

private:
    /// Takes what may stand before and between the words of a command. An exit status ends the program.
    [[nodiscard]] std::optional<int> takeLeadingOptions(const QString &group);
    [[nodiscard]] int runCommand(const QString &name);
    [[nodiscard]] static int showVersion();
    [[nodiscard]] static int wrongUsage(const QString &error, const QString &command = {});

    QStringList m_words;
    std::optional<QString> m_library;
};
