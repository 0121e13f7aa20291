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

} // namespace

PatchFileHandler::PatchFileHandler(FileAccess &files, FileDialogs *dialogs)
    : m_files(files)
    , m_dialogs(dialogs)
{
}

void PatchFileHandler::begin()
{
    m_wasCancelled = false;
    m_problem.clear();
    m_path.clear();
}

bool PatchFileHandler::fail(const QString &problem)
{
    m_problem = problem;
    return false;
}

bool PatchFileHandler::cancel()
{
    m_wasCancelled = true;
    return false;
}

bool PatchFileHandler::canExport(const VelgorContent &velgorContent)
{
    const auto &list = velgorContent.velgorContentPatchList();
    if (!list.isEmpty() && list.first().patch.records) {
        return true;
    }
    Diagnostics::printLine(QStringLiteral("Cannot save empty VelgorContent"));
    return fail(tr("The list holds no patches that could be exported."));
}

bool PatchFileHandler::canExport(const VelgorPatch &patch)
{
    if (patch.records) {
        return true;
    }
    Diagnostics::printLine(QStringLiteral("Cannot save empty VelgorPatch"));
    return fail(tr("The patch \"%1\" holds no preset data that could be exported.").arg(shownName(patch.name)));
}

std::optional<SPresetFile> PatchFileHandler::open(const VelgorContent &velgorContent)
{
    Q_UNUSED(velgorContent)
    begin();
    const std::optional<QString> path = m_dialogs->askOpenFile(tr("Open patches list"));
    if (!path) {
        cancel();
        return std::nullopt;
    }
    return read(*path);
}

std::optional<SPresetFile> PatchFileHandler::read(const QString &filename)
{
    begin();
    m_path = filename;
    const FileReadResult file = m_files.read(filename);
    if (!file.bytes) {
        fail(tr("%1: %2").arg(filename, file.error));
        return std::nullopt;
    }
    std::optional<SPresetFile> presets = SPresetFile::fromData(*file.bytes);
    if (!presets) {
        fail(tr("%1: not a complete preset file (%2)").arg(filename, Diagnostics::lastLine()));
    }
    return presets;
}

bool PatchFileHandler::save(const VelgorContent &velgorContent, const std::optional<QString> &fileName)
{
    begin();
    if (!canExport(velgorContent)) {
        return false;
    }
    const QString proposed = lastPathComponent(fileName.value_or(QStringLiteral("patches.prst")));
    const std::optional<QString> path = m_dialogs->askSaveFile(tr("Save patches list"), proposed);
    return path ? exportTo(velgorContent, *path) : cancel();
}

bool PatchFileHandler::save(const VelgorPatch &patch)
{
    begin();
    if (!canExport(patch)) {
        return false;
    }
    const std::optional<QString> path = m_dialogs->askSaveFile(tr("Save patch"), proposedFileName(patch.name));
    return path ? exportTo(QList{patch}, *path) : cancel();
}

bool PatchFileHandler::save(const VelgorPatch &patch, const QString &filename)
{
    begin();
    if (!patch.records) {
        return fail(tr("The patch \"%1\" holds no preset data that could be stored.").arg(shownName(patch.name)));
    }
    QList<SPatch> records;
    records.append(storedRecord(patch.records->patchData));
    return write(exportHeader(patch.records->headerData, 1), std::move(records), {patch.records->userIRData}, filename);
}

std::optional<QByteArray> PatchFileHandler::storedBytes(const VelgorPatch &patch)
{
    if (!patch.records) {
        return std::nullopt;
    }
    const auto presets = SPresetFile::fromRecords(exportHeader(patch.records->headerData, 1),
        {storedRecord(patch.records->patchData)}, {patch.records->userIRData});
    return presets ? PatchWriter::encodePatches(*presets) : std::nullopt;
}

bool PatchFileHandler::exportTo(const VelgorContent &velgorContent, const QString &filename)
{
    begin();
    if (!canExport(velgorContent)) {
        return false;
    }
    const auto &list = velgorContent.velgorContentPatchList();
    SHeaderDesc header = exportHeader(list.first().patch.records->headerData, list.size());
    if (velgorContent.inverseTailBit()) {
        header.tailBit ^= 1U;
    }
    auto [patches, userIRs] = velgorContent.getPatchesAndUserIRs();
    return write(header, std::move(patches), std::move(userIRs), filename);
}

bool PatchFileHandler::exportTo(const QList<VelgorPatch> &patches, const QString &filename)
{
    begin();
    QList<SPatch> records;
    QList<SUserIR> userIRs;
    for (const VelgorPatch &patch : patches) {
        if (!canExport(patch)) {
            return false;
        }
        records.append(namedRecord(patch.records->patchData, patch.name));
        userIRs.append(patch.records->userIRData);
    }
    if (patches.isEmpty()) {
        return fail(tr("There are no patches to export."));
    }
    return write(exportHeader(patches.first().records->headerData, patches.size()), std::move(records),
        std::move(userIRs), filename);
}

bool PatchFileHandler::write(
    const SHeaderDesc &header, QList<SPatch> patches, QList<SUserIR> userIRs, const QString &filename)
{
    m_path = filename;
    qint64 size = SHeaderDesc::encodedLength + SHeaderPatchDesc::encodedLength * patches.size();
    for (const SPatch &patch : patches) {
        size += patch.length;
    }
    for (const SUserIR &userIR : userIRs) {
        size += userIR.length;
    }
    if (patches.size() > std::numeric_limits<quint16>::max() || size > std::numeric_limits<quint32>::max()) {
        return fail(tr("%1: a preset file cannot hold that many patches").arg(filename));
    }
    const std::optional<SPresetFile> presets = SPresetFile::fromRecords(header, std::move(patches), std::move(userIRs));
    const std::optional<QByteArray> bytes = presets ? PatchWriter::encodePatches(*presets) : std::nullopt;
    if (!bytes) {
        return fail(tr("%1: %2").arg(filename, Diagnostics::lastLine()));
    }
    const QString error = m_files.write(filename, *bytes);
    return error.isEmpty() || fail(tr("%1: %2").arg(filename, error));
}
