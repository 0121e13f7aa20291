#pragma once

#include "LibraryStorage.h"

#include <QStringList>

/// Hands everything on to another storage, and writes down what was asked for.
class RecordingStorage : public LibraryStorage {
public:
    /// `storage` must outlive this object.
    explicit RecordingStorage(LibraryStorage &storage)
        : m_storage(storage)
    {
    }

    QStringList calls; ///< "remove 3" patches, "save", "delayedSave"

    void remove(const QList<quint64> &patchIDs) override
    {
        calls.append(QStringLiteral("remove %1").arg(patchIDs.size()));
        m_storage.remove(patchIDs);
    }

    void startSave(const VelgorLibrary &library) override
    {
        calls.append(QStringLiteral("save"));
        m_storage.startSave(library);
    }

    void delayedSave(const VelgorLibrary &library) override
    {
        calls.append(QStringLiteral("delayedSave"));
        m_storage.delayedSave(library);
    }

private:
    LibraryStorage &m_storage;
};
