#pragma once

#include "Common/CoreTypes.h"
#include "ModioService/ModioSandbox.h"

#include <vector>

namespace Maptorn::Sandbox
{
struct FSandboxState;

inline constexpr int64 FirstSeededModId = 1001;
// Seeded mod files take their mod's id plus this.
inline constexpr int64 SeededModfileIdOffset = 3000;

// The seeded mods, by id; the same on every run.
std::vector<FSeededMod> SeededModList();

// Adds the sample users, mods, files and logos; the caller holds the state's lock. Nothing
// happens when the seed is there already (a data folder seeded on an earlier run).
void SeedStore(FSandboxState& State);
}
