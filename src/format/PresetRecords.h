#pragma once

#include "SHeaderDesc.h"
#include "SPatch.h"
#include "SUserIR.h"

/// What a preset file holds of one patch: its own two records, and the header of the file that it came from.
/// A value; bytes are shared until changed.
struct PresetRecords {
    SPatch patchData;
    SUserIR userIRData;
    SHeaderDesc headerData;

    bool operator==(const PresetRecords &) const = default;
};
