#include "Arguments.h"
#include "CommandHandlers.h"
#include "LibrarySession.h"
#include "LongNames.h"
#include "NameWarning.h"
#include "Output.h"
#include "PatchFileHandler.h"
#include "PipedFiles.h"
#include "VelgorContent.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QSet>

namespace {

/// The context of this file's texts.
struct ComposeCommand {
    Q_DECLARE_TR_FUNCTIONS(ComposeCommand)
};

struct Placement {
    qsizetype slot;
    QString position; ///< as it was given
    QString id;
};

/// What --slot says; nothing, after a line on standard error, when it is no BANK.NUMBER=ID or names a slot again.
std::optional<QList<Placement>> placements(const QStringList &values)
{
    static const QRegularExpression pattern(QStringLiteral("^([1-9][0-9]{0,8})\\.([1-3])=(.+)\\z"));
    QList<Placement> result;
    QSet<qsizetype> taken;
    for (const QString &value : values) {
        const QRegularExpressionMatch match = pattern.match(value);
        if (!match.hasMatch()) {
            Output::fail(
                ComposeCommand::tr("--slot takes BANK.NUMBER=ID with banks from 1 and numbers 1 to 3, not \"%1\"")
                    .arg(value));
            return std::nullopt;
        }
        const qsizetype slot =
            (match.captured(1).toLongLong() - 1) * BankNumber::numbersPerBank + match.captured(2).toLongLong() - 1;
        if (taken.contains(slot)) {
            Output::fail(
                ComposeCommand::tr("--slot names the place %1.%2 twice").arg(match.captured(1), match.captured(2)));
            return std::nullopt;
        }
        taken.insert(slot);
        result.append({slot, match.captured(1) + u'.' + match.captured(2), match.captured(3)});
    }
    return result;
}

/// Fills the list from the file or with the default patch.
Result<> fill(VelgorContent &content, const Arguments &arguments, const VelgorLibrary &library)
{
    if (const std::optional<QString> from = arguments.value(QStringLiteral("from"))) {
        PipedFiles files;
        PatchFileHandler handler(files);
        const Result<SPresetFile> presets = handler.read(*from);
        if (!presets) {
            return presets.problem();
        }
        NameWarning::print(*from, *presets);
        content.populate(*presets);
        return Success();
    }
    const auto filler = library.getPatchFromId(library.defaultPatch());
    if (!filler) {
        return Problem{.why = ComposeCommand::tr(
                           "the library has no default patch to fill the list with; "
                           "choose one with 'velgor library set ID --default', or start from a file with --from")};
    }
    content.createNew(*filler->patch);
    return Success();
}

} // namespace

int CommandHandlers::libraryCompose(const Arguments &arguments)
{
    const std::optional<QString> output = arguments.value(QStringLiteral("output"));
    if (!output) {
        return Output::fail(ComposeCommand::tr("library compose needs -o FILE"));
    }
    const auto places = placements(arguments.values(QStringLiteral("slot")));
    if (!places) {
        return Failed;
    }
    LibrarySession session(arguments);
    if (!session.open(LibrarySession::Access::Read)) {
        return Failed;
    }
    VelgorContent content;
    if (const Result<> filled = fill(content, arguments, session.library()); !filled) {
        return Output::fail(filled.problem().text());
    }
    for (const Placement &place : *places) {
        if (place.slot >= content.velgorContentPatchList().size()) {
            return Output::fail(ComposeCommand::tr("the list has no place %1").arg(place.position));
        }
        const std::optional<VelgorPatch> patch = session.patch(place.id);
        if (!patch) {
            return Failed;
        }
        content.setPatch(*patch, place.slot);
    }
    content.recountVersions();
    content.checkVersions();
    if (content.mixVersions()) {
        Output::warn(ComposeCommand::tr("the list mixes firmware versions: %1")
                         .arg(QStringList(content.versions().keys()).join(QStringLiteral(", "))));
    }
    PipedFiles files;
    PatchFileHandler handler(files);
    if (const Result<QString> written = handler.exportTo(content, *output); !written) {
        return Output::fail(written.problem().text());
    }
    QStringList names;
    for (const VelgorContentPatch &slot : content.velgorContentPatchList()) {
        names.append(slot.patch.name);
    }
    LongNames::warn(names);
    return Done;
}
