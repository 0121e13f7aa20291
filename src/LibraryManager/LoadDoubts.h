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
    /// Where it was read from, if there is a doubt about it.
    void setFile(quint64 id, const QString &file);
    /// Tells of those that are left when the whole library is known.
    void note(const LibraryEntries &entries, const VelgorLibrary &library, LibraryLoadResult &result) const;

private:
    struct Doubt {
        QString name;
        QString file;
        bool isDamaged = false;
    };

    /// Empty where the content explains the id after all.
    [[nodiscard]] static QString textOf(
        const Doubt &doubt, const VelgorPatch &patch, const VelgorPatch &entry, quint64 storedId, bool areIdsExplained);

    QHash<quint64, Doubt> m_doubts; ///< by patch id
};
