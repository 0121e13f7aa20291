#include "ContentFiles.h"

#include "PatchFileHandler.h"
#include "VelgorContent.h"

#include <algorithm>

namespace {

/// Compares what an export writes of a slot.
bool isExportedAlike(const VelgorContentPatch &a, const VelgorContentPatch &b)
{
    return a.patch.name == b.patch.name && a.patch.patchData == b.patch.patchData
        && a.patch.userIRData == b.patch.userIRData && a.patch.headerData == b.patch.headerData;
}

} // namespace

ContentFiles::ContentFiles(VelgorContent &content, PatchFileHandler &files, QObject *parent)
    : QObject(parent)
    , m_content(content)
    , m_files(files)
{
    connect(&content, &VelgorContent::rowsInserted, this, &ContentFiles::changed);
    connect(&content, &VelgorContent::rowsRemoved, this, &ContentFiles::changed);
    connect(&content, &VelgorContent::rowMoved, this, &ContentFiles::changed);
    connect(&content, &VelgorContent::rowsChanged, this, &ContentFiles::changed);
    connect(&content, &VelgorContent::inverseTailBitChanged, this, &ContentFiles::changed);
    connect(&content, &VelgorContent::wasReset, this, [this] {
        m_fileName.clear();
        m_stored.clear();
        Q_EMIT changed();
    });
}

void ContentFiles::importFile()
{
    m_content.openPresetFile(m_files);
    imported();
}

void ContentFiles::importFile(const QString &path)
{
    m_content.openPresetFile(m_files, path);
    imported();
}

void ContentFiles::imported()
{
    m_problem = m_files.problem();
    if (!m_files.wasCancelled() && !m_content.openError()) {
        markStored(m_files.path());
    }
}

bool ContentFiles::exportList()
{
    const bool isDone = m_files.save(m_content);
    m_problem = m_files.problem();
    if (isDone) {
        markStored(m_files.path());
    }
    m_content.setSaveError(!isDone && !m_files.wasCancelled());
    return isDone;
}

bool ContentFiles::exportPatch(const VelgorPatch &patch)
{
    const bool isDone = m_files.save(patch);
    m_problem = m_files.problem();
    m_content.setSaveError(!isDone && !m_files.wasCancelled());
    return isDone;
}

bool ContentFiles::isModified() const
{
    const auto &list = m_content.velgorContentPatchList();
    if (list.isEmpty()) {
        return false;
    }
    return m_content.inverseTailBit() != m_isTailBitInverseStored
        || !std::equal(list.begin(), list.end(), m_stored.begin(), m_stored.end(), isExportedAlike);
}

void ContentFiles::markStored(const QString &path)
{
    m_fileName = path;
    m_stored = m_content.velgorContentPatchList();
    m_isTailBitInverseStored = m_content.inverseTailBit();
    Q_EMIT changed();
}
