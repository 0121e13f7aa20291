#pragma once

#include "LibraryJson.h"

class VelgorLibrary;

namespace LibrarySnapshot {

/// What of a library goes to disk, as it is now: everything but the placeholder patch. Cheap, because the patches
/// are shared until one side changes them. User-interface thread only; the result may go to another thread.
[[nodiscard]] LibraryState take(const VelgorLibrary &library);

} // namespace LibrarySnapshot
