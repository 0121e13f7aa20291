#include "Arguments.h"
#include "CommandHandlers.h"
#include "LibrarySession.h"
#include "NameWarning.h"
#include "Output.h"
#include "PatchFileHandler.h"
#include "PipedFiles.h"
#include "PresetFileSearch.h"
#include "ShownText.h"
#include "StandardInput.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <nlohmann/json.hpp>

#include <algorithm>

namespace {

/// The context of this file's texts.
struct AddCommand {
    Q_DECLARE_TR_FUNCTIONS(AddCommand)
};

struct AddedFile {
    QString path;
    std::optional<SPresetFile> presets;
    QString error;
    QList<VelgorPatch> added;
    QList<VelgorPatch> known;
};

AddedFile readFile(const QString &path)
{
    PipedFiles files;
    PatchFileHandler handler(files);
    AddedFile file;
    file.path = path;
    const Result<SPresetFile> presets = handler.read(path);
    if (!presets) {
        file.error = presets.problem().text();
        Output::fail(file.error);
    } else {
        file.presets = *presets;
        NameWarning::print(path, *presets);
    }
    return file;
}

QList<AddedFile> readDirectory(const QString &directory)
{
    QList<AddedFile> files;
    for (const PresetFileSearch::Entry &entry : PresetFileSearch::below(directory)) {
        if (entry.error.isEmpty()) {
            files.append(readFile(entry.path));
            continue;
        }
        AddedFile file;
        file.path = entry.path;
        file.error = AddCommand::tr("%1: %2").arg(entry.path, entry.error);
        Output::fail(file.error);
        files.append(file);
    }
    if (files.isEmpty()) {
        Output::warn(AddCommand::tr("%1: there is no preset file in it").arg(directory));
    }
    return files;
}

void addPatches(AddedFile &file, VelgorLibrary &library)
{
    const SPresetFile &presets = *file.presets;
    for (qsizetype i = 0; i < presets.patches.size(); ++i) {
        const VelgorPatch patch(presets.patches.at(i), presets.userIRs.at(i), presets.headerDesc);
        const qsizetype before = library.count();
        const quint64 id = library.append(patch, false, false);
        (library.count() == before ? file.known : file.added).append(patch.withId(id));
    }
}

/// What was to be added did not reach the disk.
void markFailed(QList<AddedFile> &files, const QString &error)
{
    for (AddedFile &file : files) {
        if (file.error.isEmpty()) {
            file.error = error;
            file.added.clear();
        }
    }
}

/// Adds what the readable files hold, and saves if that is anything new.
int addToLibrary(const Arguments &arguments, QList<AddedFile> &files)
{
    LibrarySession session(arguments);
    if (!session.open(LibrarySession::Access::Create)) {
        markFailed(files, AddCommand::tr("the library cannot be used"));
        return Failed;
    }
    bool isChanged = false;
    // The original of a patch whose file was damaged takes its place.
    QObject::connect(&session.library(), &VelgorLibrary::rowsChanged, [&isChanged] { isChanged = true; });
    for (AddedFile &file : files) {
        if (file.presets) {
            addPatches(file, session.library());
            isChanged = isChanged || !file.added.isEmpty();
        }
    }
    const int status = isChanged ? session.save() : Done;
    if (status != Done) {
        markFailed(files, AddCommand::tr("the library could not be saved"));
    }
    return status;
}

nlohmann::ordered_json idsOf(const QList<VelgorPatch> &patches)
{
    nlohmann::ordered_json ids = nlohmann::ordered_json::array();
    for (const VelgorPatch &patch : patches) {
        ids.push_back(std::to_string(patch.id()));
    }
    return ids;
}

void printJson(const QList<AddedFile> &files)
{
    nlohmann::ordered_json document = nlohmann::ordered_json::array();
    for (const AddedFile &file : files) {
        nlohmann::ordered_json entry;
        entry["file"] = Output::jsonText(file.path);
        entry["added"] = idsOf(file.added);
        entry["known"] = idsOf(file.known);
        entry["error"] = nullptr;
        if (!file.error.isEmpty()) {
            entry["error"] = Output::jsonText(file.error);
        }
        document.push_back(entry);
    }
    Output::printJson(document);
}

void printLines(const QList<AddedFile> &files)
{
    for (const AddedFile &file : files) {
        const QString path = ShownText::escaped(file.path) + QStringLiteral(": ");
        const QString error = ShownText::escaped(file.error);
        for (const VelgorPatch &patch : file.added) {
            Output::print(
                AddCommand::tr("added          %1  %2").arg(patch.id(), -20).arg(ShownText::escaped(patch.name))
                + u'\n');
        }
        for (const VelgorPatch &patch : file.known) {
            Output::print(
                AddCommand::tr("already there  %1  %2").arg(patch.id(), -20).arg(ShownText::escaped(patch.name))
                + u'\n');
        }
        const QString summary = AddCommand::tr("%1%2 added, %3 already there")
                                    .arg(path, QString::number(file.added.size()), QString::number(file.known.size()));
        // Most errors name the file themselves.
        const QString problem = error.startsWith(path) ? error : path + error;
        Output::print((error.isEmpty() ? summary : problem) + u'\n');
    }
}

} // namespace

int CommandHandlers::libraryAdd(const Arguments &arguments)
{
    QList<AddedFile> files;
    for (const QString &path : arguments.positional()) {
        const bool isDirectory = path != StandardInput::mark() && QFileInfo(path).isDir();
        files += isDirectory ? readDirectory(path) : QList{readFile(path)};
    }
    const auto isReadable = [](const AddedFile &file) { return file.presets.has_value(); };
    int status = std::all_of(files.begin(), files.end(), isReadable) ? Done : Failed;
    // Without anything to add, no directory is made.
    if (std::any_of(files.begin(), files.end(), isReadable)) {
        status = std::max(status, addToLibrary(arguments, files));
    }
    if (arguments.has(QStringLiteral("json"))) {
        printJson(files);
    } else {
        printLines(files);
    }
    return status;
}
