#pragma once

#include "LibraryStorageManager.h"

/// Moves a library and waits for the end.
inline Result<> moveLibrary(LibraryStorageManager &storage, const QString &directory, const VelgorLibrary &library,
    LibraryMove::Steps steps = {})
{
    Result<> result = Problem{.why = QStringLiteral("not ended")};
    steps.ended = [&result](const Result<> &moved, const LibraryWriteResult &) { result = moved; };
    storage.startMove(directory, library, std::move(steps));
    storage.finish();
    return result;
}
