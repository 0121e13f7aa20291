#pragma once

#include "LibraryStorage.h"
#include "TestPatches.h"
#include "VelgorLibrary.h"

/// Writes down what is asked of a storage, and hands it on if there is one.
class RecordingStorage : public LibraryStorage {
public:
    /// `storage` must outlive this object.
    explicit RecordingStorage(LibraryStorage *storage)
        : m_storage(storage)
    {
    }

    /// "remove 1,2", "save Lead,Clean", "delayedSave Lead": ids, and what the library held at that moment. What is
    /// handed on stands there without them: "remove 2" patches, "save", "delayedSave".
    QStringList calls;

    void remove(const QList<quint64> &patchIDs) override
    {
        QStringList ids;
        for (const quint64 id : patchIDs) {
            ids.append(QString::number(id));
        }
        calls.append(QStringLiteral("remove ") + (m_storage ? QString::number(ids.size()) : ids.join(u',')));
        if (m_storage) {
            m_storage->remove(patchIDs);
        }
    }

    void startSave(const VelgorLibrary &library) override
    {
        note(QStringLiteral("save"), library);
        if (m_storage) {
            m_storage->startSave(library);
        }
    }

    void delayedSave(const VelgorLibrary &library) override
    {
        note(QStringLiteral("delayedSave"), library);
        if (m_storage) {
            m_storage->delayedSave(library);
        }
    }

private:
    void note(const QString &call, const VelgorLibrary &library)
    {
        calls.append(m_storage ? call : call + u' ' + TestPatches::names(library.patches()).join(u','));
    }

    LibraryStorage *m_storage;
};
