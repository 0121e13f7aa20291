#include "Arguments.h"
#include "CommandHandlers.h"
#include "DoctorReport.h"
#include "KeptLibraries.h"
#include "LibraryDoctor.h"
#include "LibrarySession.h"
#include "Output.h"
#include "RescuedPatches.h"
#include "SettledExamination.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <algorithm>

namespace {

/// The context of this file's texts.
struct DoctorCommand {
    Q_DECLARE_TR_FUNCTIONS(DoctorCommand)
};

std::optional<KeptLibraries::Preview> previewOf(const QString &file, LibrarySession &session)
{
    const QString directory = session.storage().libDirectory();
    const QFileInfo info(file);
    const bool hasDirectory = info.fileName() != file;
    if (hasDirectory && QFileInfo(info.path()).canonicalFilePath() != QFileInfo(directory).canonicalFilePath()) {
        Output::fail(DoctorCommand::tr("%1: not in the library directory %2").arg(file, directory));
        return std::nullopt;
    }
    const QList<KeptLibrary> kept = KeptLibraries::find(directory).libraries;
    const auto isNamed = [&info](const KeptLibrary &library) { return library.file == info.fileName(); };
    if (std::none_of(kept.begin(), kept.end(), isNamed)) {
        Output::fail(DoctorCommand::tr("%1: no former library file of %2").arg(file, directory));
        return std::nullopt;
    }
    auto preview = KeptLibraries::preview(directory, info.fileName(), session.library().state());
    if (!preview) {
        Output::fail(DoctorCommand::tr("%1: not a complete library file").arg(file));
    }
    return preview;
}

int examine(const Arguments &arguments)
{
    LibrarySession session(arguments);
    if (!session.exists()) {
        return Failed;
    }
    const LibraryHealth health = SettledExamination::examine(session.storage().libDirectory());
    DoctorReport(session.storage().libDirectory(), health).print(arguments.has(QStringLiteral("json")));
    return health.findings.isEmpty() ? Done : Found;
}

int repair(const Arguments &arguments)
{
    LibrarySession session(arguments);
    if (!session.open(LibrarySession::Access::Rescue)) {
        return Failed;
    }
    const QString directory = session.storage().libDirectory();
    const QList<VelgorPatch> rescued = LibraryDoctor(directory).examine().rescuedPatches();
    RescuedPatches::addTo(session.library(), rescued, RescuedPatches::libraryFiles(directory));
    const int status = rescued.isEmpty() ? session.report() : session.save();
    const LibraryHealth left = LibraryDoctor(directory).examine();
    DoctorReport report(directory, left);
    if (status == Done) {
        report.setAdded(rescued);
    }
    report.print(arguments.has(QStringLiteral("json")));
    return status != Done ? status : left.findings.isEmpty() ? Done : Found;
}

int preview(const Arguments &arguments)
{
    LibrarySession session(arguments);
    if (!session.open(LibrarySession::Access::Inspect)) {
        return Failed;
    }
    const auto preview = previewOf(*arguments.value(QStringLiteral("preview")), session);
    if (preview) {
        DoctorReport::printPreview(*preview, arguments.has(QStringLiteral("json")));
    }
    return preview ? Done : Failed;
}

int restore(const Arguments &arguments)
{
    LibrarySession session(arguments);
    if (!session.open(LibrarySession::Access::Rescue)) {
        return Failed;
    }
    const auto preview = previewOf(*arguments.value(QStringLiteral("restore")), session);
    if (!preview) {
        return Failed;
    }
    if (preview->patches.isEmpty()) {
        return Output::fail(
            DoctorCommand::tr("none of its patches has a file that could be read; nothing was changed"));
    }
    session.library().adopt({.patches = preview->patches, .defaultPatch = preview->defaultPatch});
    session.storage().keepLibraryFile();
    const int status = session.save();
    if (status == Done) {
        DoctorReport::printPreview(*preview, arguments.has(QStringLiteral("json")));
    }
    return status;
}

} // namespace

int CommandHandlers::libraryDoctor(const Arguments &arguments)
{
    const bool isRepair = arguments.has(QStringLiteral("repair"));
    const bool isPreview = arguments.has(QStringLiteral("preview"));
    const bool isRestore = arguments.has(QStringLiteral("restore"));
    if (int(isRepair) + int(isPreview) + int(isRestore) > 1) {
        return Output::fail(DoctorCommand::tr("library doctor takes one of --repair, --preview and --restore"));
    }
    if (isRepair) {
        return repair(arguments);
    }
    if (isPreview) {
        return preview(arguments);
    }
    return isRestore ? restore(arguments) : examine(arguments);
}
