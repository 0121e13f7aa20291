#include "Arguments.h"
#include "CommandHandlers.h"
#include "Output.h"
#include "PipedFiles.h"
#include "PresetFileChecker.h"
#include "ShownText.h"
#include "VelgorPatch.h"

#include <QCoreApplication>

#include <nlohmann/json.hpp>

#include <algorithm>

namespace {

/// The context of this file's texts.
struct CheckCommand {
    Q_DECLARE_TR_FUNCTIONS(CheckCommand)
};

struct CheckedFile {
    QString path;
    PresetFileReport report;
};

constexpr qint64 versionOffset = 8;

QString versionOf(const SPresetFile &file)
{
    return VelgorPatch(file.patches.first(), file.userIRs.first(), file.headerDesc).version;
}

CheckedFile checkFile(const QString &path)
{
    CheckedFile checked{.path = path, .report = {}};
    const Result<QByteArray> bytes = PipedFiles().read(path);
    if (!bytes) {
        Output::fail(bytes.problem().in(path).text());
        return checked;
    }
    checked.report = PresetFileChecker::check(*bytes);
    if (checked.report.problem) {
        Output::fail(CheckCommand::tr("%1: not a complete preset file (%2)").arg(path, checked.report.problem->why));
    }
    return checked;
}

/// The unit takes one firmware's patches; files that are to go together should agree.
void compareVersions(QList<CheckedFile> &files)
{
    std::optional<QString> first;
    for (CheckedFile &checked : files) {
        if (!checked.report.file) {
            continue;
        }
        const QString version = versionOf(*checked.report.file);
        if (!first) {
            first = version;
        } else if (version != *first) {
            checked.report.findings.append({.code = QStringLiteral("version"),
                .message = CheckCommand::tr("the firmware version is %1, the first file's is %2").arg(version, *first),
                .offset = versionOffset});
        }
    }
}

nlohmann::ordered_json json(const QList<CheckedFile> &files)
{
    nlohmann::ordered_json document = nlohmann::ordered_json::array();
    for (const CheckedFile &checked : files) {
        nlohmann::ordered_json findings = nlohmann::ordered_json::array();
        for (const PresetFileFinding &finding : checked.report.findings) {
            nlohmann::ordered_json entry;
            entry["code"] = Output::jsonText(finding.code);
            entry["message"] = Output::jsonText(finding.message);
            entry["offset"] = nullptr;
            if (finding.offset) {
                entry["offset"] = *finding.offset;
            }
            findings.push_back(entry);
        }
        nlohmann::ordered_json entry;
        entry["file"] = Output::jsonText(checked.path);
        entry["readable"] = checked.report.file.has_value();
        entry["findings"] = findings;
        entry["roundTrip"] = checked.report.roundTrip;
        document.push_back(entry);
    }
    return document;
}

/// Without findings a file can still differ from its copy only by an error of this program.
bool isClean(const CheckedFile &checked)
{
    return checked.report.findings.isEmpty() && checked.report.roundTrip;
}

void printLines(const CheckedFile &checked)
{
    if (!checked.report.file) {
        return;
    }
    const QString path = ShownText::escaped(checked.path);
    if (isClean(checked)) {
        Output::print(CheckCommand::tr("%1: ok").arg(path) + u'\n');
    }
    for (const PresetFileFinding &finding : checked.report.findings) {
        const QString place = finding.offset ? CheckCommand::tr("byte %1: ").arg(*finding.offset) : QString();
        Output::print(
            QStringLiteral("%1: %2%3 (%4)\n").arg(path, place, ShownText::escaped(finding.message), finding.code));
    }
    if (!checked.report.roundTrip) {
        Output::print(CheckCommand::tr("%1: reading and writing it again gives other bytes").arg(path) + u'\n');
    }
}

} // namespace

int CommandHandlers::checkFiles(const Arguments &arguments)
{
    QList<CheckedFile> files;
    for (const QString &path : arguments.positional()) {
        files.append(checkFile(path));
    }
    compareVersions(files);
    if (arguments.has(QStringLiteral("json"))) {
        Output::printJson(json(files));
    } else {
        for (const CheckedFile &checked : std::as_const(files)) {
            printLines(checked);
        }
    }
    if (std::any_of(files.begin(), files.end(), [](const CheckedFile &checked) { return !checked.report.file; })) {
        return Failed;
    }
    return std::all_of(files.begin(), files.end(), isClean) ? Done : Found;
}
