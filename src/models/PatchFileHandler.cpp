#include "PatchFileHandler.h"

#include "Diagnostics.h"
#include "PatchWriter.h"
#include "ShownName.h"
#include "Utf8Text.h"
#include "VelgorContent.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace {

/// The part of a text behind its last "/", as a file dialog proposes it.
QString lastPathComponent(const QString &path)
{
    return path.section(u'/', -1, -1, QString::SectionSkipEmpty);
}

/// What a file dialog proposes for a patch: its name as far as file systems and dialogs have room for it.
QString proposedFileName(const QString &patchName)
{
    constexpr qsizetype longest = 200;
    const QString suffix = QStringLiteral(".prst");
    QString stem = lastPathComponent(patchName + suffix).chopped(suffix.size());
    const auto isControl = [](QChar character) { return character.category() == QChar::Other_Control; };
    std::replace_if(stem.begin(), stem.end(), isControl, u' ');
    return Utf8Text::longestPrefixWithin(stem, longest) + suffix;
}

SHeaderDesc exportHeader(const SHeaderDesc &stored, qsizetype count)
{
    SHeaderDesc header = stored;
    header.nbpatches = static_cast<quint16>(count);
    header.size = 0;
    header.length = SHeaderDesc::encodedLength;
    return header;
}

SPatch namedRecord(SPatch record, const QString &name)
{
    record.rename(name);
    return record;
}

/// As the library's own file keeps it: as it was hashed, but no longer than its field.
SPatch storedRecord(const SPatch &record)
{
    return namedRecord(record, record.name);
}

const Problem cancelled{.what = Problem::What::Cancelled};

} // namespace

PatchFileHandler::PatchFileHandler(FileAccess &files, FileDialogs *dialogs)
    : m_files(files)
    , m_dialogs(dialogs)
{
}

Result<QString> PatchFileHandler::askForFile()
{
    const std::optional<QString> path = m_dialogs->askOpenFile(tr("Open patches list"));
    return path ? Result<QString>(*path) : cancelled;
}

Result<SPresetFile> PatchFileHandler::read(const QString &filename)
{
    const Result<QByteArray> bytes = m_files.read(filename);
    if (!bytes) {
        return bytes.problem().in(filename);
    }
    Result<SPresetFile> presets = SPresetFile::fromData(*bytes);
    if (!presets) {
        return Problem{.what = Problem::What::Malformed,
            .where = filename,
            .why = tr("not a complete preset file (%1)").arg(presets.problem().why)};
    }
    return presets;
}

Result<> PatchFileHandler::checkExport(const VelgorContent &velgorContent)
{
    const auto &list = velgorContent.velgorContentPatchList();
    if (!list.isEmpty() && list.first().patch.records) {
        return Success();
    }
    Diagnostics::printLine(QStringLiteral("Cannot save empty VelgorContent"));
    return Problem{.why = tr("The list holds no patches that could be exported.")};
}

Result<> PatchFileHandler::checkExport(const VelgorPatch &patch)
{
    if (patch.records) {
        return Success();
    }
    Diagnostics::printLine(QStringLiteral("Cannot save empty VelgorPatch"));
    return Problem{
        .why = tr("The patch \"%1\" holds no preset data that could be exported.").arg(shownName(patch.name))};
}

Result<QString> PatchFileHandler::save(const VelgorContent &velgorContent, const std::optional<QString> &fileName)
{
    if (const Result<> checked = checkExport(velgorContent); !checked) {
        return checked.problem();
    }
    const QString proposed = lastPathComponent(fileName.value_or(QStringLiteral("patches.prst")));
    const std::optional<QString> path = m_dialogs->askSaveFile(tr("Save patches list"), proposed);
    return path ? exportTo(velgorContent, *path) : cancelled;
}

Result<QString> PatchFileHandler::save(const VelgorPatch &patch)
{
    if (const Result<> checked = checkExport(patch); !checked) {
        return checked.problem();
    }
    const std::optional<QString> path = m_dialogs->askSaveFile(tr("Save patch"), proposedFileName(patch.name));
    return path ? exportTo(QList{patch}, *path) : cancelled;
}

Result<QByteArray> PatchFileHandler::storedBytes(const VelgorPatch &patch)
{
    if (!patch.records) {
        return Problem{
            .why = tr("The patch \"%1\" holds no preset data that could be stored.").arg(shownName(patch.name))};
    }
    const auto presets = SPresetFile::fromRecords(exportHeader(patch.records->headerData, 1),
        {storedRecord(patch.records->patchData)}, {patch.records->userIRData});
    return presets ? PatchWriter::encodePatches(*presets) : presets.problem();
}

Result<QString> PatchFileHandler::exportTo(const VelgorContent &velgorContent, const QString &filename)
{
    if (const Result<> checked = checkExport(velgorContent); !checked) {
        return checked.problem();
    }
    const auto &list = velgorContent.velgorContentPatchList();
    SHeaderDesc header = exportHeader(list.first().patch.records->headerData, list.size());
    if (velgorContent.inverseTailBit()) {
        header.tailBit ^= 1U;
    }
    auto [patches, userIRs] = velgorContent.getPatchesAndUserIRs();
    return write(header, std::move(patches), std::move(userIRs), filename);
}

Result<QString> PatchFileHandler::exportTo(const QList<VelgorPatch> &patches, const QString &filename)
{
    QList<SPatch> records;
    QList<SUserIR> userIRs;
    for (const VelgorPatch &patch : patches) {
        if (const Result<> checked = checkExport(patch); !checked) {
            return checked.problem();
        }
        records.append(namedRecord(patch.records->patchData, patch.name));
        userIRs.append(patch.records->userIRData);
    }
    if (patches.isEmpty()) {
        return Problem{.why = tr("There are no patches to export.")};
    }
    return write(exportHeader(patches.first().records->headerData, patches.size()), std::move(records),
        std::move(userIRs), filename);
}

Result<QString> PatchFileHandler::write(
    const SHeaderDesc &header, QList<SPatch> patches, QList<SUserIR> userIRs, const QString &filename)
{
    qint64 size = SHeaderDesc::encodedLength + SHeaderPatchDesc::encodedLength * patches.size();
    for (const SPatch &patch : patches) {
        size += patch.length;
    }
    for (const SUserIR &userIR : userIRs) {
        size += userIR.length;
    }
    if (patches.size() > std::numeric_limits<quint16>::max() || size > std::numeric_limits<quint32>::max()) {
        return Problem{.where = filename, .why = tr("a preset file cannot hold that many patches")};
    }
    const Result<SPresetFile> presets = SPresetFile::fromRecords(header, std::move(patches), std::move(userIRs));
    const Result<QByteArray> bytes = presets ? PatchWriter::encodePatches(*presets) : presets.problem();
    const Result<> written = bytes ? m_files.write(filename, *bytes) : bytes.problem();
    return written ? Result<QString>(filename) : written.problem().in(filename);
}
