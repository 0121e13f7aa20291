#pragma once

#include "StartRequest.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <optional>

/// What the words that the application is started with ask for.
class StartOptions {
    Q_DECLARE_TR_FUNCTIONS(StartOptions)

public:
    StartOptions();

    /// True when the words, which may hold options of the window system, ask for what needs no window and no display.
    [[nodiscard]] static bool needNoWindow(const QStringList &words);

    /// Takes the words that are left when the window system, if there is one, has taken its options. Shows help or
    /// version, and ends the program then. Gives what is asked for; nothing, after a sentence on standard error, for
    /// words that are refused.
    [[nodiscard]] std::optional<StartRequest> requestOf(const QStringList &words);

    /// Says on standard error, in the program's name, why it does not start.
    static void refuse(const QString &sentence);

private:
    QCommandLineParser m_parser;
};
