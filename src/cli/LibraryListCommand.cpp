#include "Arguments.h"
#include "CommandHandlers.h"
#include "LibraryJson.h"
#include "LibrarySession.h"
#include "LibraryViewFilter.h"
#include "Output.h"
#include "TextTable.h"

#include <QCoreApplication>

#include <nlohmann/json.hpp>

namespace {

/// The context of this file's texts.
struct LibraryListCommand {
    Q_DECLARE_TR_FUNCTIONS(LibraryListCommand)
};

/// The filter that the options ask for; nothing when they ask for none.
std::optional<LibraryViewFilter> filterOf(const Arguments &arguments)
{
    LibraryViewFilter filter;
    VelgorPatch &asked = filter.filterPatch;
    asked.name = arguments.value(QStringLiteral("name")).value_or(QString());
    asked.comment = arguments.value(QStringLiteral("comment")).value_or(QString());
    for (const PatchField &field : PatchFields::all()) {
        if (field.isFilter) {
            asked.*field.flag = arguments.has(QString::fromLatin1(field.option));
        }
    }
    // Spaces alone ask for nothing.
    if (asked.comment.trimmed().isEmpty()) {
        asked.comment.clear();
    }
    return filter == LibraryViewFilter() ? std::nullopt : std::optional(filter);
}

/// False for an order that is not known.
bool sortAsAsked(const Arguments &arguments, VelgorLibrary &library)
{
    const std::optional<QString> order = arguments.value(QStringLiteral("sort"));
    if (!order) {
        return true;
    }
    if (*order != QStringLiteral("name") && *order != QStringLiteral("-name")) {
        return false;
    }
    // The cycle of the sort command: upwards, the remembered order, downwards.
    const int steps = *order == QStringLiteral("name") ? 1 : 3;
    for (int step = 0; step < steps; ++step) {
        library.sort();
    }
    return true;
}

QString flagsOf(const VelgorPatch &patch)
{
    QStringList words;
    for (const PatchField &field : PatchFields::all()) {
        if (field.isMark() && patch.*field.flag) {
            words.append(QString::fromLatin1(field.option));
        }
    }
    return words.join(u' ');
}

void printTable(const QList<VelgorPatch> &patches, const VelgorLibrary &library)
{
    TextTable table({LibraryListCommand::tr("Id"), LibraryListCommand::tr("Name"), LibraryListCommand::tr("Default"),
        LibraryListCommand::tr("User IR"), LibraryListCommand::tr("Version"), LibraryListCommand::tr("Imported"),
        LibraryListCommand::tr("Marks"), LibraryListCommand::tr("Comment")});
    for (const VelgorPatch &patch : patches) {
        table.addRow({QString::number(patch.id()), patch.name,
            library.defaultPatch() == patch.id() ? LibraryListCommand::tr("default") : QString(),
            patch.hasUserIR ? LibraryListCommand::tr("user IR") : QString(), patch.version,
            patch.date.toDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm")), flagsOf(patch), patch.comment});
    }
    table.print();
    Output::print(LibraryListCommand::tr("%1 of %2 patches").arg(patches.size()).arg(library.count()) + u'\n');
}

void printJson(const QList<VelgorPatch> &patches, const VelgorLibrary &library, const QString &directory)
{
    nlohmann::ordered_json json;
    json["directory"] = Output::jsonText(directory);
    json["defaultPatch"] = nullptr;
    if (library.defaultPatch()) {
        json["defaultPatch"] = std::to_string(*library.defaultPatch());
    }
    json["total"] = library.count();
    Output::printJson(json, "patches", LibraryJson::listing(patches));
}

void printIds(const QList<VelgorPatch> &patches)
{
    QString text;
    for (const VelgorPatch &patch : patches) {
        text += QString::number(patch.id()) + u'\n';
    }
    Output::print(text);
}

} // namespace

int CommandHandlers::libraryList(const Arguments &arguments)
{
    const bool isJson = arguments.has(QStringLiteral("json"));
    const bool isIds = arguments.has(QStringLiteral("ids"));
    if (isJson && isIds) {
        return Output::fail(LibraryListCommand::tr("library list takes one of --json and --ids"));
    }
    LibrarySession session(arguments);
    if (!session.open(LibrarySession::Access::List)) {
        return Failed;
    }
    VelgorLibrary &library = session.library();
    if (!sortAsAsked(arguments, library)) {
        return Output::fail(LibraryListCommand::tr("--sort takes name or -name"));
    }
    const std::optional<LibraryViewFilter> filter = filterOf(arguments);
    QList<VelgorPatch> patches = library.count() == 0 ? QList<VelgorPatch>() : library.patches();
    if (filter) {
        patches = filter->filter(patches);
    }
    if (isJson) {
        printJson(patches, library, session.storage().libDirectory());
    } else if (isIds) {
        printIds(patches);
    } else {
        printTable(patches, library);
    }
    return filter && patches.isEmpty() ? Found : Done;
}
