#include "DoctorReport.h"

#include "Output.h"
#include "ShownText.h"

#include <nlohmann/json.hpp>

namespace {

using Kind = LibraryFinding::Kind;

struct KindName {
    const char *code;
    const char *text;
};

KindName nameOf(Kind kind)
{
    switch (kind) {
    case Kind::DamagedLibraryFile:
        return {"damagedLibraryFile", QT_TRANSLATE_NOOP("DoctorReport", "library file not readable")};
    case Kind::UnlistedDirectory:
        return {"unlistedDirectory", QT_TRANSLATE_NOOP("DoctorReport", "directory not readable")};
    case Kind::PatchWithoutFile:
        return {"patchWithoutFile", QT_TRANSLATE_NOOP("DoctorReport", "patch without a file")};
    case Kind::FileWithoutEntry:
        return {"fileWithoutEntry", QT_TRANSLATE_NOOP("DoctorReport", "file without an entry")};
    case Kind::FileOfOtherContent:
        return {"fileOfOtherContent", QT_TRANSLATE_NOOP("DoctorReport", "file of another patch")};
    case Kind::UnreadableFile:
        return {"unreadableFile", QT_TRANSLATE_NOOP("DoctorReport", "file not readable")};
    case Kind::ForeignFile:
        return {"foreignFile", QT_TRANSLATE_NOOP("DoctorReport", "foreign file with a patch's id")};
    case Kind::Leftover:
        return {"leftover", QT_TRANSLATE_NOOP("DoctorReport", "left by an interruption")};
    case Kind::SpareFile:
        return {"spareFile", QT_TRANSLATE_NOOP("DoctorReport", "file that is not needed")};
    }
    return {"", ""};
}

/// A patch name may have any length, and a line is to be read.
QString shown(const QString &name)
{
    constexpr int columns = 80;
    return ShownText::shortened(name, columns);
}

void printLine(const QString &line)
{
    Output::print(ShownText::escaped(line) + u'\n');
}

nlohmann::ordered_json texts(const QStringList &list)
{
    nlohmann::ordered_json array = nlohmann::ordered_json::array();
    for (const QString &text : list) {
        array.push_back(Output::jsonText(text));
    }
    return array;
}

nlohmann::ordered_json entriesOf(const QList<LibraryFinding> &findings)
{
    nlohmann::ordered_json array = nlohmann::ordered_json::array();
    for (const LibraryFinding &finding : findings) {
        nlohmann::ordered_json entry;
        entry["code"] = nameOf(finding.kind).code;
        entry["file"] = nullptr;
        entry["id"] = nullptr;
        if (!finding.file.isEmpty()) {
            entry["file"] = Output::jsonText(finding.file);
        }
        if (finding.id != 0) {
            entry["id"] = std::to_string(finding.id);
        }
        entry["name"] = Output::jsonText(finding.name);
        entry["message"] = Output::jsonText(finding.reason);
        entry["repairable"] = finding.rescued.has_value();
        array.push_back(entry);
    }
    return array;
}

} // namespace

DoctorReport::DoctorReport(const QString &directory, const LibraryHealth &health)
    : m_directory(directory)
    , m_health(health)
{
}

void DoctorReport::print(bool isJson) const
{
    if (isJson) {
        printJson();
    } else {
        printLines();
    }
}

void DoctorReport::printLines() const
{
    for (const VelgorPatch &patch : m_added) {
        printLine(tr("added: %1 (%2)").arg(shown(patch.name), QString::number(patch.id())));
    }
    for (const LibraryFinding &finding : m_health.findings) {
        printLine(lineOf(finding));
    }
    for (const LibraryFinding &note : m_health.notes) {
        printLine(tr("note: %1").arg(lineOf(note)));
    }
    for (const KeptLibrary &kept : m_health.keptLibraries) {
        const QString date = kept.keptAt.toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm"));
        const QString count =
            kept.content ? tr("%1 patches").arg(kept.content->patches.size()) : tr("not a complete library file");
        printLine(tr("kept: %1: former library of %2, %3").arg(kept.file, date, count));
    }
    for (const QString &file : m_health.keptPatchFiles) {
        printLine(tr("kept: %1: a patch file that could not be read").arg(file));
    }
    printLine(tr("%1: %2 findings").arg(m_directory, QString::number(m_health.findings.size())));
}

QString DoctorReport::lineOf(const LibraryFinding &finding)
{
    QStringList parts{tr(nameOf(finding.kind).text)};
    if (!finding.file.isEmpty()) {
        parts.append(finding.file);
    }
    if (!finding.name.isEmpty()) {
        parts.append(QStringLiteral("\"%1\" (%2)").arg(shown(finding.name), QString::number(finding.id)));
    }
    if (!finding.reason.isEmpty()) {
        parts.append(finding.reason);
    }
    if (finding.rescued) {
        parts.append(tr("--repair adds it to the library"));
    }
    return parts.join(QStringLiteral(": "));
}

void DoctorReport::printJson() const
{
    nlohmann::ordered_json json;
    json["directory"] = Output::jsonText(m_directory);
    json["added"] = nlohmann::ordered_json::array();
    for (const VelgorPatch &patch : m_added) {
        json["added"].push_back(std::to_string(patch.id()));
    }
    json["findings"] = entriesOf(m_health.findings);
    json["notes"] = entriesOf(m_health.notes);
    json["keptLibraries"] = nlohmann::ordered_json::array();
    for (const KeptLibrary &kept : m_health.keptLibraries) {
        nlohmann::ordered_json entry;
        entry["file"] = Output::jsonText(kept.file);
        entry["keptAt"] = Output::jsonText(kept.keptAt.toString(Qt::ISODate));
        entry["count"] = nullptr;
        if (kept.content) {
            entry["count"] = kept.content->patches.size();
        }
        json["keptLibraries"].push_back(entry);
    }
    json["keptPatchFiles"] = texts(m_health.keptPatchFiles);
    Output::printJson(json);
}

void DoctorReport::printPreviewJson(const KeptLibraries::Preview &preview)
{
    nlohmann::ordered_json json;
    json["count"] = preview.patches.size();
    json["comingBack"] = texts(preview.comingBack);
    json["changing"] = texts(preview.changing);
    json["leaving"] = texts(preview.leaving);
    json["withoutFile"] = texts(preview.withoutFile);
    json["unreadable"] = nlohmann::ordered_json::array();
    for (const KeptLibraries::Unreadable &patch : preview.unreadable) {
        nlohmann::ordered_json entry;
        entry["name"] = Output::jsonText(patch.name);
        entry["message"] = Output::jsonText(patch.reason);
        json["unreadable"].push_back(entry);
    }
    json["defaultChanges"] = preview.isDefaultChanging;
    json["defaultName"] = nullptr;
    if (!preview.defaultName.isEmpty()) {
        json["defaultName"] = Output::jsonText(preview.defaultName);
    }
    json["orderChanges"] = preview.isOrderChanging;
    Output::printJson(json);
}

void DoctorReport::printPreview(const KeptLibraries::Preview &preview, bool isJson)
{
    if (isJson) {
        printPreviewJson(preview);
        return;
    }
    const auto printAll = [](const QString &what, const QStringList &names) {
        for (const QString &name : names) {
            printLine(what.arg(shown(name)));
        }
    };
    printAll(tr("comes back: %1"), preview.comingBack);
    printAll(tr("changes: %1"), preview.changing);
    printAll(tr("leaves the library, its file stays: %1"), preview.leaving);
    printAll(tr("cannot come back, its file is gone: %1"), preview.withoutFile);
    for (const KeptLibraries::Unreadable &patch : preview.unreadable) {
        printLine(tr("cannot come back, its file cannot be read: %1: %2").arg(shown(patch.name), patch.reason));
    }
    if (preview.isDefaultChanging && preview.defaultName.isEmpty()) {
        printLine(tr("the default patch: none any more"));
    } else if (preview.isDefaultChanging) {
        printLine(tr("becomes the default patch: %1").arg(shown(preview.defaultName)));
    }
    if (preview.isOrderChanging) {
        printLine(tr("the patches get their former order"));
    }
    printLine(tr("%1 patches").arg(preview.patches.size()));
}
