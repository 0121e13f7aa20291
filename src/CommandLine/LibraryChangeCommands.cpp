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

namespace {

/// The context of this file's texts.
struct LibraryChangeCommands {
    Q_DECLARE_TR_FUNCTIONS(LibraryChangeCommands)
};

struct AddedFile {
    QString path;
    QList<VelgorPatch> added;
    QList<VelgorPatch> known;
    QString error;
};

AddedFile addFile(const QString &path, VelgorLibrary &library)
{
    AddedFile result{.path = path, .added = {}, .known = {}, .error = {}};
    DiskFiles files;
    PatchFileHandler handler(files);
    const std::optional<SPresetFile> file = handler.read(path);
    if (!file) {
        result.error = handler.problem();
        Output::fail(result.error);
        return result;
    }
    for (qsizetype i = 0; i < file->patches.size(); ++i) {
        const VelgorPatch patch(file->patches.at(i), file->userIRs.at(i), file->headerDesc);
        const bool isKnown = library.getPatchFromId(patch.id()).has_value();
        (isKnown ? result.known : result.added).append(patch);
        library.append(patch, false, false);
    }
    return result;
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
        Output::print((file.error.isEmpty() ? LibraryChangeCommands::tr("%1: %2 added, %3 already there")
                                                  .arg(path)
                                                  .arg(file.added.size())
                                                  .arg(file.known.size())
                                            : LibraryChangeCommands::tr("%1: unreadable").arg(path))
            + u'\n');
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
    LibrarySession session(arguments);
    if (!session.open(LibrarySession::Access::Create)) {
        return Failed;
    }
    QList<AddedFile> files;
    bool isComplete = true;
    bool isChanged = false;
    for (const QString &path : arguments.positional()) {
        files.append(addFile(path, session.library()));
        isComplete = isComplete && files.last().error.isEmpty();
        isChanged = isChanged || !files.last().added.isEmpty();
    }
    const int status = isChanged ? session.save() : Done;
    if (arguments.has(QStringLiteral("json"))) {
        printJson(files);
    } else {
        printLines(files);
    }
    return isComplete ? status : Failed;
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
    const VelgorPatch &copy = session.library().patches().last();
    Output::print(QStringLiteral("%1  %2\n").arg(copy.id()).arg(ShownText::escaped(copy.name)));
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
