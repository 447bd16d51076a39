#pragma once

#include "Common/CoreTypes.h"

namespace Maptorn
{
// Packaging targets use mod.io's platform numbers, with 1 and 2 given their own meaning here.
namespace PackageTarget
{
inline constexpr uint8 Windows = 0;
inline constexpr uint8 VeskoLinuxServer = 1;
inline constexpr uint8 KelvorLinuxServer = 2;
inline constexpr uint8 Android = 3;
inline constexpr uint8 Quest = 10;
}

// The Vesko group {1, 3, 10} builds against the Android/Quest edition's release.
MAPTORNCORE_API bool IsVeskoGroup(uint8 Target);
MAPTORNCORE_API bool IsDedicatedServer(uint8 Target);

// `-Platform` / `-targetplatform`: "Windows", "Linux", "Android"; "" for unknown targets.
MAPTORNCORE_API const char* PackagePlatformName(uint8 Target);
// "Windows", "LinuxServer", "Android_ASTC".
MAPTORNCORE_API const char* PakPlatformName(uint8 Target);
// "Windows", "LinuxVeskoServer", "LinuxKelServer", "Android_ASTC".
MAPTORNCORE_API const char* StageFolderName(uint8 Target);
// mod.io's file platform words: 0 "Windows", 1 "Mac", 2 "Linux", 3 and 10 "Oculus".
MAPTORNCORE_API const char* ModioFilePlatformName(uint8 Target);
// 0 "Win64", 1 and 2 "Linux", 3 and 10 "Android": the Vesko group's platform name.
MAPTORNCORE_API const char* VeskoPlatformName(uint8 Target);
// The game's released build a DLC package is based on.
MAPTORNCORE_API const char* ReleaseVersionFor(uint8 Target);
}
