#include "Arguments.h"
#include "CommandHandlers.h"
#include "CommandTable.h"
#include "LibrarySession.h"
#include "LongNames.h"
#include "Output.h"
#include "ShownText.h"
#include "StandardInput.h"

#include <QCoreApplication>
#include <QSet>

#include <algorithm>

namespace {

/// The context of this file's texts.
struct LibraryChangeCommands {
    Q_DECLARE_TR_FUNCTIONS(LibraryChangeCommands)
};

/// The patches that the ids name, each once; nothing, after a line on standard error, when an id is unknown.
std::optional<QList<VelgorPatch>> distinctPatches(const LibrarySession &session, const QStringList &ids)
{
    std::optional<QList<VelgorPatch>> patches = session.patches(ids);
    if (patches) {
        QSet<quint64> seen;
        patches->removeIf([&seen](const VelgorPatch &patch) {
            const bool isKnown = seen.contains(patch.id());
            seen.insert(patch.id());
            return isKnown;
        });
    }
    return patches;
}

/// A line for each patch: saving itself only counts the patch files that were written anew, which may be none.
void printLines(const QString &what, const QList<VelgorPatch> &patches)
{
    for (const VelgorPatch &patch : patches) {
        Output::print(
            QStringLiteral("%1  %2  %3\n").arg(what).arg(patch.id(), -20).arg(ShownText::escaped(patch.name)));
    }
}

/// What the options say of one patch only is refused for several.
QString whyNotForAll(const Arguments &arguments, qsizetype count)
{
    if (count > 1 && arguments.has(QStringLiteral("default"))) {
        return LibraryChangeCommands::tr("--default takes one patch, not %1").arg(count);
    }
    if (count > 1 && arguments.has(QStringLiteral("name"))) {
        return LibraryChangeCommands::tr("--name takes one patch, not %1; their names would be lost").arg(count);
    }
    return {};
}

/// Puts what the options say into `patch`. An error text for a value that is none.
QString applyEdits(const Arguments &arguments, VelgorPatch &patch)
{
    patch.name = arguments.value(QStringLiteral("name")).value_or(patch.name);
    if (arguments.has(QStringLiteral("name")) && patch.name.trimmed().isEmpty()) {
        return LibraryChangeCommands::tr("--name takes a name that is not blank");
    }
    patch.comment = arguments.value(QStringLiteral("comment")).value_or(patch.comment);
    for (const PatchField &field : PatchFields::all()) {
        const QString option = QString::fromLatin1(field.option);
        const std::optional<QString> value = field.isMark() ? arguments.value(option) : std::nullopt;
        if (!value) {
            continue;
        }
        if (*value != QStringLiteral("on") && *value != QStringLiteral("off")) {
            return LibraryChangeCommands::tr("--%1 takes on or off").arg(option);
        }
        patch.*field.flag = *value == QStringLiteral("on");
    }
    return {};
}

bool hasEdits(const Arguments &arguments)
{
    const QList<CommandOption> marks = CommandTable::markOptions();
    return arguments.has(QStringLiteral("name")) || arguments.has(QStringLiteral("comment"))
        || arguments.has(QStringLiteral("default"))
        || std::any_of(marks.begin(), marks.end(),
            [&arguments](const CommandOption &option) { return arguments.has(option.name); });
}

} // namespace

int CommandHandlers::librarySet(const Arguments &arguments)
{
    if (!hasEdits(arguments)) {
        return Output::fail(LibraryChangeCommands::tr("library set: nothing to set was given"));
    }
    const std::optional<QStringList> ids = StandardInput::withIds(arguments.positional());
    if (!ids) {
        return Failed;
    }
    LibrarySession session(arguments);
    if (!session.open(LibrarySession::Access::Change)) {
        return Failed;
    }
    const std::optional<QList<VelgorPatch>> patches = distinctPatches(session, *ids);
    if (!patches) {
        return Failed;
    }
    const QString refusal = whyNotForAll(arguments, patches->size());
    if (!refusal.isEmpty()) {
        return Output::fail(refusal);
    }
    QList<VelgorPatch> edited = *patches;
    for (VelgorPatch &patch : edited) {
        const QString error = applyEdits(arguments, patch);
        if (!error.isEmpty()) {
            return Output::fail(error);
        }
    }
    for (const VelgorPatch &patch : std::as_const(edited)) {
        session.library().update(patch);
    }
    if (arguments.has(QStringLiteral("default"))) {
        session.library().setDefaultPatch(edited.first().id());
    }
    const int status = session.save();
    if (status == Done) {
        LongNames::warn({arguments.value(QStringLiteral("name")).value_or(QString())});
        printLines(LibraryChangeCommands::tr("changed"), edited);
    }
    return status;
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
    const std::optional<QStringList> given = StandardInput::withIds(arguments.positional());
    if (!given) {
        return Failed;
    }
    LibrarySession session(arguments);
    if (!session.open(LibrarySession::Access::Change)) {
        return Failed;
    }
    const std::optional<QList<VelgorPatch>> patches = distinctPatches(session, *given);
    if (!patches) {
        return Failed;
    }
    QList<quint64> ids;
    for (const VelgorPatch &patch : *patches) {
        ids.append(patch.id());
    }
    session.library().deletePatches(ids);
    session.storage().remove(ids);
    const int status = session.save();
    if (status == Done) {
        printLines(LibraryChangeCommands::tr("removed"), *patches);
    }
    return status;
}
