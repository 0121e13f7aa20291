#pragma once

#include "VelgorContentPatch.h"

#include <QList>
#include <QtGlobal>

/// What the views of one library patch ask of the library that they belong to. User-interface thread only.
class LibraryCallbacks {
public:
    LibraryCallbacks() = default;
    virtual ~LibraryCallbacks() = default;
    Q_DISABLE_COPY_MOVE(LibraryCallbacks)

    /// Puts an edited patch in the place of the one with its id, and tells of that by changed().
    virtual void edit(const VelgorPatch &patch) = 0;
    /// The patch with this id was edited in the library: slots that hold it follow, and a save is asked for.
    virtual void changed(quint64 id) = 0;
    /// The places of the list being composed that hold this library patch's sound, under whatever name, in order.
    [[nodiscard]] virtual QList<BankNumber> inContentPatch(quint64 pid) const = 0;
    virtual void setDefaultPatch(quint64 id) = 0;
    [[nodiscard]] virtual bool isDefaultPatch(quint64 id) const = 0;
};
