#pragma once

/// Operations beside a plain way of doing the same.
void registerPairRows();
/// Operations that must not cost more for each patch when there are more patches.
void registerGrowthRows();
