#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <nlohmann/json.hpp>

/// Runs the program itself, with a home and preferences of its own that are gone with the object.
class VelgorProcess {
public:
    using Json = nlohmann::ordered_json;

    struct Result {
        int status = -1; ///< -1 also when the program crashed or was stopped at the time limit
        QByteArray output;
        QByteArray errors;

        /// Discarded, and so neither an object nor an array, when the output is no JSON document.
        [[nodiscard]] Json json() const;
        [[nodiscard]] QStringList errorLines() const;
    };

    VelgorProcess();

    /// For the runs that follow, on top of the environment of the test.
    void setVariable(const QString &name, const QString &value) { m_variables.insert(name, value); }
    void setOutputFile(const QString &path) { m_outputFile = path; }
    /// What the runs that follow find on standard input; nothing at first.
    void setInput(const QByteArray &input) { m_input = input; }
    void setTimeLimit(int milliseconds) { m_timeLimit = milliseconds; }

    [[nodiscard]] Result run(const QStringList &arguments) const;
    /// `velgor library`, with this directory.
    [[nodiscard]] Result library(const QString &directory, const QStringList &arguments) const;

    [[nodiscard]] static QString executable();
    [[nodiscard]] QString home() const { return m_home.path(); }
    /// A place for files of the test, outside of every library.
    [[nodiscard]] QString filePath(const QString &name) const { return m_home.filePath(name); }
    /// Writes the preferences that name `directory`.
    void preferLibrary(const QString &directory) const;
    [[nodiscard]] QString preferencesFile() const;

private:
    QTemporaryDir m_home;
    QMap<QString, QString> m_variables;
    QString m_outputFile;
    QByteArray m_input;
    int m_timeLimit = 60'000;
};
