#pragma once

#include <QList>
#include <QtGlobal>

class VelgorLibrary;

/// What a library asks of the place where it is kept. User-interface thread only.
class LibraryStorage {
public:
    LibraryStorage() = default;
    virtual ~LibraryStorage() = default;
    Q_DISABLE_COPY_MOVE(LibraryStorage)

    /// The stored files of these patches are to go. They go with the next save, so that an interruption between the two
    /// loses nothing; a patch without files is no error.
    virtual void remove(const QList<quint64> &patchIDs) = 0;
    /// Begins to save the library as it is now, and does not wait for it.
    virtual void startSave(const VelgorLibrary &library) = 0;
    /// Asks for a save after a quiet moment. The library must outlive the wait.
    virtual void delayedSave(const VelgorLibrary &library) = 0;
};
