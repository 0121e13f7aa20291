#pragma once

#include "LibraryStorage.h"
#include "VelgorLibrary.h"

#include <QStringList>

/// Writes down what a library asks of its storage, and what the library held at that moment.
class FakeLibraryStorage : public LibraryStorage {
public:
    QStringList calls; ///< "remove 1,2", "save Lead,Clean", "delayedSave Lead"

    void remove(const QList<quint64> &patchIDs) override
    {
        QStringList ids;
        for (const quint64 id : patchIDs) {
            ids.append(QString::number(id));
        }
        calls.append(QStringLiteral("remove ") + ids.join(u','));
    }

    void startSave(const VelgorLibrary &library) override { calls.append(QStringLiteral("save ") + namesOf(library)); }

    void delayedSave(const VelgorLibrary &library) override
    {
        calls.append(QStringLiteral("delayedSave ") + namesOf(library));
    }

private:
    static QString namesOf(const VelgorLibrary &library)
    {
        QStringList names;
        for (const VelgorPatch &patch : library.patches()) {
            names.append(patch.name);
        }
        return names.join(u',');
    }
};
