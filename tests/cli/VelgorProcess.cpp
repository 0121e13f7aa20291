#include "VelgorProcess.h"

#include "ProgramFiles.h"

#include <QProcess>

VelgorProcess::Json VelgorProcess::Result::json() const
{
    return Json::parse(output.begin(), output.end(), nullptr, false);
}

QStringList VelgorProcess::Result::errorLines() const
{
    QStringList lines = QString::fromUtf8(errors).split(u'\n');
    if (lines.last().isEmpty()) {
        lines.removeLast();
    }
    return lines;
}

VelgorProcess::VelgorProcess()
{
    setVariable(QStringLiteral("HOME"), home());
    setVariable(QStringLiteral("XDG_CONFIG_HOME"), filePath(QStringLiteral("config")));
    setVariable(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
}

QString VelgorProcess::executable()
{
    return QStringLiteral(VELGOR_EXECUTABLE);
}

VelgorProcess::Result VelgorProcess::run(const QStringList &arguments) const
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (auto variable = m_variables.cbegin(); variable != m_variables.cend(); ++variable) {
        environment.insert(variable.key(), variable.value());
    }
    process.setProcessEnvironment(environment);
    if (!m_outputFile.isEmpty()) {
        process.setStandardOutputFile(m_outputFile);
    }
    process.setWorkingDirectory(home());
    process.start(executable(), arguments);
    process.write(m_input);
    process.closeWriteChannel();
    if (!process.waitForFinished(m_timeLimit) || process.exitStatus() != QProcess::NormalExit) {
        process.kill();
        process.waitForFinished();
        return {};
    }
    return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
}

VelgorProcess::Result VelgorProcess::library(const QString &directory, const QStringList &arguments) const
{
    return run(QStringList{QStringLiteral("library")} + arguments.first(1)
        + QStringList{QStringLiteral("--library"), directory} + arguments.sliced(1));
}

void VelgorProcess::preferLibrary(const QString &directory) const
{
    ProgramFiles::write(preferencesFile(), "[General]\ncolorScheme=1\nlibraryDirectory=" + directory.toUtf8() + '\n');
}

QString VelgorProcess::preferencesFile() const
{
    return filePath(QStringLiteral("config/velgor/velgor-library-manager.conf"));
}
