#pragma once

#include "LibraryEntries.h"
#include "LibraryLoadResult.h"

#include <QCoreApplication>
#include <QHash>
#include <QString>

/// The patches whose files hold what their ids were perhaps not made from. They are loaded all the same, and told of.
class LoadDoubts {
    Q_DECLARE_TR_FUNCTIONS(LoadDoubts)

public:
    /// What was read for the patch of this id: its name, and whether the checksum of its file is wrong.
    void insert(quint64 id, const QString &name, bool isDamaged);
    /// In the file of the patch `id` was one whose content gives the id `hash`.
    void insertForeign(quint64 id, quint64 hash) { m_foreign.append({id, hash}); }
    /// Where it was read from, if there is a doubt about it.
    void setFile(quint64 id, const QString &file);
    [[nodiscard]] bool isEmpty() const { return m_doubts.isEmpty() && m_foreign.isEmpty(); }
    /// Tells of those that are left when all was read: `patches` are the entries, with what was found for them.
    void note(const LibraryEntries &entries, const QList<VelgorPatch> &patches, LibraryLoadResult &result) const;

private:
    struct Doubt {
        QString name;
        QString file;
        bool isDamaged = false;
    };

    struct Foreign {
        quint64 id;
        quint64 hash;
    };

    /// Empty where the content explains the id after all.
    [[nodiscard]] static QString textOf(
        const Doubt &doubt, const VelgorPatch &patch, quint64 storedId, bool areIdsExplained);

    /// Patches of one hash are told apart by the fresh ids of all but the first. One that was not found in its own file
    /// may have been read from that of the first, whose id it fits as well: for each such file its id, and the id of
    /// the patch that is in it.
    [[nodiscard]] QHash<quint64, quint64> exchanged(
        const LibraryEntries &entries, const QList<VelgorPatch> &patches) const;

    QHash<quint64, Doubt> m_doubts; ///< by patch id
    QList<Foreign> m_foreign;
};
