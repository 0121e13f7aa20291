#pragma once

#include "LibraryState.h"
#include "VelgorLibrary.h"

#include <memory>
#include <optional>

/// A loaded library as a program holds it; none where none was loaded.
inline std::unique_ptr<VelgorLibrary> libraryOf(const std::optional<LibraryState> &state)
{
    if (!state) {
        return nullptr;
    }
    auto library = std::make_unique<VelgorLibrary>();
    library->adopt(*state);
    return library;
}
