#pragma once

#include <QList>
#include <QString>

class Arguments;

/// The exit statuses that scripts can rely on.
enum ExitStatus { Done = 0, Found = 1, Failed = 2 };

/// One option of a command.
struct CommandOption {
    QString name; ///< without dashes
    QString value; ///< what stands for the value in the help; empty for an option without one
    QString description;
    QString shortName; ///< one letter, or empty
};

/// One command: all that parsing, the help and the man page need to know.
struct Command {
    static constexpr int anyNumber = -1;

    QString name; ///< the words that call it, for example "library add"
    QString arguments; ///< as shown in the help
    int fewestArguments = 0;
    int mostArguments = anyNumber;
    QList<CommandOption> options;
    QString description;
    QString example;
    int (*run)(const Arguments &arguments) = nullptr;

    [[nodiscard]] bool usesLibrary() const { return name.startsWith(QStringLiteral("library ")); }
};
