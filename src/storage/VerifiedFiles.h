#pragma once

#include "FileStamp.h"
#include "VelgorPatch.h"

#include <QHash>
#include <QList>

/// Which patch files hold their patches to the last byte, because this program has read or written them, as long as
/// they stay as they were then.
class VerifiedFiles {
public:
    /// The file of this stamp holds the patch of this id, alone.
    void insert(quint64 id, const FileStamp &stamp) { m_stamps.insert(id, stamp); }
    /// Nothing is known of its file.
    void remove(quint64 id) { m_stamps.remove(id); }
    void reserve(qsizetype count) { m_stamps.reserve(count); }
    /// True when this file holds the patch. It is read unless that is known. A patch without preset data has nothing
    /// that a file could be compared with, and takes any.
    [[nodiscard]] bool holds(const OpenDirectory &directory, const QString &name, const VelgorPatch &patch);
    /// Forgets what is known of any other patch. A patch that comes with the same id later may be another one.
    void keepOnly(const QList<VelgorPatch> &patches);

private:
    QHash<quint64, FileStamp> m_stamps; ///< by the id of the patch
};
