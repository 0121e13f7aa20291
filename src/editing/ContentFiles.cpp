#include "ContentFiles.h"

#include "EditHistory.h"
#include "PatchFileHandler.h"
#include "UnreadableNames.h"
#include "VelgorContent.h"

#include <algorithm>

namespace {

/// What an export writes of the record, but for its place in the list.
SPatch exportedRecord(const VelgorPatch &patch)
{
    SPatch record = patch.records->patchData;
    record.pos = 0;
    record.rename(patch.name);
    return record;
}

/// Without a walk through bytes that the two share, as those of slots that nobody touched are.
bool isEqual(QByteArrayView a, QByteArrayView b)
{
    return a.size() == b.size() && (a.data() == b.data() || a == b);
}

QByteArrayView exportedBytes(const SUserIR &userIR)
{
    return QByteArrayView(userIR.data).sliced(std::min(SUserIR::numberSize, userIR.data.size()));
}

/// Compares the bytes first, so that the rest of the records can be compared as a whole without them.
template <typename Record, typename Bytes>
bool isRecordAlike(Record a, Record b, Bytes bytes)
{
    if (!isEqual(bytes(a), bytes(b))) {
        return false;
    }
    a.data.clear();
    b.data.clear();
    return a == b;
}

bool isExportedAlike(const VelgorContentPatch &a, const VelgorContentPatch &b)
{
    if (!a.patch.records || !b.patch.records) {
        return !a.patch.records && !b.patch.records;
    }
    return isRecordAlike(exportedRecord(a.patch), exportedRecord(b.patch), [](const SPatch &record) {
        return QByteArrayView(record.data);
    }) && isRecordAlike(a.patch.records->userIRData, b.patch.records->userIRData, exportedBytes);
}

/// The file's header comes from the first slot; sizes and counts are made anew.
std::optional<SHeaderDesc> exportedHeader(const QList<VelgorContentPatch> &list)
{
    if (list.isEmpty() || !list.first().patch.records) {
        return std::nullopt;
    }
    SHeaderDesc header = list.first().patch.records->headerData;
    header.nbpatches = 0;
    header.size = 0;
    header.length = 0;
    return header;
}

} // namespace

ContentFiles::ContentFiles(VelgorContent &content, PatchFileHandler &files, EditHistory &history)
    : m_content(content)
    , m_files(files)
    , m_history(history)
{
    connect(&content, &VelgorContent::rowsInserted, this, &ContentFiles::changed);
    connect(&content, &VelgorContent::rowsRemoved, this, &ContentFiles::changed);
    connect(&content, &VelgorContent::rowMoved, this, &ContentFiles::changed);
    connect(&content, &VelgorContent::rowsChanged, this, &ContentFiles::changed);
    connect(&content, &VelgorContent::inverseTailBitChanged, this, &ContentFiles::changed);
    connect(&content, &VelgorContent::wasReset, this, &ContentFiles::changed);
    connect(&content, &VelgorContent::originChanged, this, &ContentFiles::changed);
}

void ContentFiles::importFile()
{
    // Not as a part of the step: while the user chooses, other things may happen.
    const Result<QString> path = m_files.askForFile();
    if (path) {
        importFile(*path);
    } else {
        m_problem = path.problem().text();
    }
}

void ContentFiles::importFile(const QString &path)
{
    Result<QString> read = path;
    m_history.perform(tr("Import"), [&] {
        read = m_content.openPresetFile(m_files, path);
        if (read) {
            m_content.setFile(path);
        }
    });
    m_problem = read ? QString() : read.problem().text();
    if (read) {
        m_content.setUnreadableNames(UnreadableNames(m_content).count() > 0);
        Q_EMIT imported(m_content.velgorContentPatchList().size(), path);
    }
}

QList<VelgorPatch> ContentFiles::patchesIn(const QString &path)
{
    QList<VelgorPatch> patches;
    const Result<SPresetFile> presets = m_files.read(path);
    m_problem = presets ? QString() : presets.problem().text();
    for (qsizetype i = 0; presets && i < presets->patches.size(); ++i) {
        patches.append(VelgorPatch(presets->patches.at(i), presets->userIRs.at(i), presets->headerDesc));
    }
    return patches;
}

bool ContentFiles::exportList()
{
    const ContentOrigin *origin = m_content.origin();
    const auto path = m_files.save(m_content, origin ? std::optional(origin->file) : std::nullopt);
    if (path) {
        m_content.setFile(*path);
        // A slot without preset data writes nothing.
        Q_EMIT exported(m_content.getPatchesAndUserIRs().first.size(), *path);
    }
    return finishExport(path);
}

bool ContentFiles::exportPatch(const VelgorPatch &patch)
{
    const Result<QString> path = m_files.save(patch);
    if (path) {
        Q_EMIT patchExported(patch.name, *path);
    }
    return finishExport(path);
}

bool ContentFiles::finishExport(const Result<QString> &path)
{
    m_problem = path ? QString() : path.problem().text();
    m_content.setSaveError(!path && path.problem().what != Problem::What::Cancelled);
    return bool(path);
}

QString ContentFiles::fileName() const
{
    const ContentOrigin *origin = m_content.origin();
    return origin ? origin->file : QString();
}

bool ContentFiles::isModified() const
{
    const ContentOrigin *origin = m_content.origin();
    const auto &list = m_content.velgorContentPatchList();
    if (list.isEmpty() || !origin) {
        return !list.isEmpty();
    }
    const auto &stored = origin->list;
    return m_content.inverseTailBit() != origin->inverseTailBit || exportedHeader(list) != exportedHeader(stored)
        || !std::equal(list.begin(), list.end(), stored.begin(), stored.end(), isExportedAlike);
}

void ContentFiles::endOpenError()
{
    m_content.setOpenError(false);
}

void ContentFiles::endSaveError()
{
    m_content.setSaveError(false);
}

void ContentFiles::endUnreadableNames()
{
    m_content.setUnreadableNames(false);
}
