#include "Arguments.h"
#include "CommandHandlers.h"
#include "CommandTable.h"
#include "DiskFiles.h"
#include "LibrarySession.h"
#include "Output.h"
#include "PatchFileHandler.h"
#include "ShownText.h"

#include <QCoreApplication>

#include <nlohmann/json.hpp>

#include <algorithm>

namespace {

/// The context of this file's texts.
struct LibraryChangeCommands {
    Q_DECLARE_TR_FUNCTIONS(LibraryChangeCommands)
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
    DiskFiles files;
    PatchFileHandler handler(files);
    AddedFile file;
    file.path = path;
    file.presets = handler.read(path);
    if (!file.presets) {
        file.error = handler.problem();
        Output::fail(file.error);
    }
    return file;
}

void addPatches(AddedFile &file, VelgorLibrary &library)
{
    const SPresetFile &presets = *file.presets;
    for (qsizetype i = 0; i < presets.patches.size(); ++i) {
        const VelgorPatch patch(presets.patches.at(i), presets.userIRs.at(i), presets.headerDesc);
        const bool isKnown = library.getPatchFromId(patch.id()).has_value();
        (isKnown ? file.known : file.added).append(patch);
        library.append(patch, false, false);
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
        markFailed(files, LibraryChangeCommands::tr("the library cannot be used"));
        return Failed;
    }
    bool isChanged = false;
    for (AddedFile &file : files) {
        if (file.presets) {
            addPatches(file, session.library());
            isChanged = isChanged || !file.added.isEmpty();
        }
    }
    const int status = isChanged ? session.save() : Done;
    if (status != Done) {
        markFailed(files, LibraryChangeCommands::tr("the library could not be saved"));
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
        const QString path = ShownText::escaped(file.path);
        for (const VelgorPatch &patch : file.added) {
            Output::print(LibraryChangeCommands::tr("added          %1  %2")
                              .arg(patch.id(), -20)
                              .arg(ShownText::escaped(patch.name))
                + u'\n');
        }
        for (const VelgorPatch &patch : file.known) {
            Output::print(LibraryChangeCommands::tr("already there  %1  %2")
                              .arg(patch.id(), -20)
                              .arg(ShownText::escaped(patch.name))
                + u'\n');
        }
        const QString summary = LibraryChangeCommands::tr("%1: %2 added, %3 already there")
                                    .arg(path, QString::number(file.added.size()), QString::number(file.known.size()));
        Output::print(
            (file.error.isEmpty() ? summary : path + QStringLiteral(": ") + ShownText::escaped(file.error)) + u'\n');
    }
}

/// Puts what the options say into `patch`. An error text for a value that is none.
QString applyEdits(const Arguments &arguments, VelgorPatch &patch)
{
    patch.name = arguments.value(QStringLiteral("name")).value_or(patch.name);
    patch.comment = arguments.value(QStringLiteral("comment")).value_or(patch.comment);
    for (const FlagOption &option : CommandTable::flags()) {
        const std::optional<QString> value = arguments.value(option.name);
        if (!value) {
            continue;
        }
        if (*value != QStringLiteral("on") && *value != QStringLiteral("off")) {
            return LibraryChangeCommands::tr("--%1 takes on or off").arg(option.name);
        }
        patch.*option.flag = *value == QStringLiteral("on");
    }
    return {};
}

bool hasEdits(const Arguments &arguments)
{
    bool isGiven = arguments.has(QStringLiteral("name")) || arguments.has(QStringLiteral("comment"))
        || arguments.has(QStringLiteral("default"));
    for (const FlagOption &option : CommandTable::flags()) {
        isGiven = isGiven || arguments.has(option.name);
    }
    return isGiven;
}

} // namespace

int CommandHandlers::libraryAdd(const Arguments &arguments)
{
    QList<AddedFile> files;
    for (const QString &path : arguments.positional()) {
        files.append(readFile(path));
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

int CommandHandlers::librarySet(const Arguments &arguments)
{
    if (!hasEdits(arguments)) {
        return Output::fail(LibraryChangeCommands::tr("library set: nothing to set was given"));
    }
    LibrarySession session(arguments);
    if (!session.open(LibrarySession::Access::Change)) {
        return Failed;
    }
    std::optional<VelgorPatch> patch = session.patch(arguments.positional().first());
    if (!patch) {
        return Failed;
    }
    const QString error = applyEdits(arguments, *patch);
    if (!error.isEmpty()) {
        return Output::fail(error);
    }
    session.library().update(*patch);
    if (arguments.has(QStringLiteral("default"))) {
        session.library().setDefaultPatch(patch->id(), session.storage());
    }
    return session.save();
}

int CommandHandlers::libraryDuplicate(const Arguments &arguments)
{
    LibrarySession session(arguments);
    if (!session.open(LibrarySession::Access::Change)) {
        return Failed;
    }
    const std::optional<VelgorPatch> patch = session.patch(arguments.positional().first());
    if (!patch) {
        return Failed;
    }
    session.library().append(*patch, true, false);
    const int status = session.save();
    if (status == Done) {
        const VelgorPatch &copy = session.library().patches().last();
        Output::print(QStringLiteral("%1  %2\n").arg(copy.id()).arg(ShownText::escaped(copy.name)));
    }
    return status;
}

int CommandHandlers::libraryRemove(const Arguments &arguments)
{
    LibrarySession session(arguments);
    if (!session.open(LibrarySession::Access::Change)) {
        return Failed;
    }
    const std::optional<QList<VelgorPatch>> patches = session.patches(arguments.positional());
    if (!patches) {
        return Failed;
    }
    QList<quint64> ids;
    for (const VelgorPatch &patch : *patches) {
        ids.append(patch.id());
    }
    session.library().deletePatches(ids, session.storage());
    return session.report();
}
