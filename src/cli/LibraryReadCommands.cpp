#include "Arguments.h"
#include "CommandHandlers.h"
#include "LibrarySession.h"
#include "LongNames.h"
#include "Output.h"
#include "PatchFileHandler.h"
#include "PipedFiles.h"
#include "StandardInput.h"
#include "TextTable.h"

#include <QCoreApplication>

#include <nlohmann/json.hpp>

namespace {

/// The context of this file's texts.
struct LibraryReadCommands {
    Q_DECLARE_TR_FUNCTIONS(LibraryReadCommands)
};

} // namespace

int CommandHandlers::librarySimilar(const Arguments &arguments)
{
    LibrarySession session(arguments);
    if (!session.open(LibrarySession::Access::Read)) {
        return Failed;
    }
    const std::optional<VelgorPatch> patch = session.patch(arguments.positional().first());
    if (!patch) {
        return Failed;
    }
    session.library().setMultiSelections(session.library().findSimilarPatches(patch->id()));
    const QList<VelgorPatch> similar = session.library().getMultiSelection();
    if (arguments.has(QStringLiteral("json"))) {
        nlohmann::ordered_json ids = nlohmann::ordered_json::array();
        for (const VelgorPatch &found : similar) {
            ids.push_back(std::to_string(found.id()));
        }
        Output::printJson(ids);
        return Done;
    }
    TextTable table({LibraryReadCommands::tr("Id"), LibraryReadCommands::tr("Name")});
    for (const VelgorPatch &found : similar) {
        table.addRow({QString::number(found.id()), found.name});
    }
    table.print();
    return Done;
}

int CommandHandlers::libraryExport(const Arguments &arguments)
{
    const std::optional<QString> output = arguments.value(QStringLiteral("output"));
    if (!output) {
        return Output::fail(LibraryReadCommands::tr("library export needs -o FILE"));
    }
    // Before the library is read: what pipes the ids in may be changing it.
    const std::optional<QStringList> ids = StandardInput::withIds(arguments.positional());
    if (!ids) {
        return Failed;
    }
    LibrarySession session(arguments);
    if (!session.open(LibrarySession::Access::Read)) {
        return Failed;
    }
    const std::optional<QList<VelgorPatch>> patches = session.patches(*ids);
    if (!patches) {
        return Failed;
    }
    PipedFiles files;
    PatchFileHandler handler(files);
    if (const Result<QString> written = handler.exportTo(*patches, *output); !written) {
        return Output::fail(written.problem().text());
    }
    QStringList names;
    for (const VelgorPatch &patch : *patches) {
        names.append(patch.name);
    }
    LongNames::warn(names);
    return Done;
}
