#pragma once

#include "Common/CoreTypes.h"
#include "Platform/MaptornPlatform.h"

#include <string>

namespace Maptorn
{
// The game's content folder for a mod type: "CustomMaps", "CustomMods", "CustomGameModes"; ""
// for any other value.
MAPTORNCORE_API const char* ContentFolderForModType(uint8 ModType);

// The pak tool's -platform= for a cook platform: "Windows" and "Android_ASTC" (any case) keep
// their own name, everything else paks as "Linux".
MAPTORNCORE_API std::string PakPlatformFor(const std::string& Platform);

// "../../../UGC<content folder>", where the game looks for mounted user content.
MAPTORNCORE_API std::string MakePakMountPoint(uint8 ModType, const std::string& ModId);

// One response-file entry: "<absolute source>" "<mount>/<relative>" and CR LF.
MAPTORNCORE_API std::string MakePakListLine(const std::string& AbsoluteFile, const std::string& MountPoint, const std::string& RelativePath);

// The pak tool's parameters: the pak, the list to create it from, the platform and fixed switches.
MAPTORNCORE_API std::string MakePakParams(const std::string& PakFile, const std::string& PakListFile, const std::string& PakPlatform);

// metadata.json beside the pak: "EngineVersion" (the version before its first "-", left out when
// it cannot be cut) and "ModType", in the engine's pretty form.
MAPTORNCORE_API std::string MakePakMetadataJson(const std::string& EngineVersion, uint8 ModType);

// Paks the cooked content of the plug-in "UGC<ModId>" for PlatformName into
// OutputDirectory/UGC<ModId>.pak with metadata.json beside it. Blocking: runs on a worker.
// Does nothing and returns false when the plug-in has no definition. Otherwise every step runs
// even when the pak tool fails; OutPakSize is the pak's size, -1 when it is missing. Returns
// whether the tool ran and returned 0; callers judge the outcome by the files it left.
MAPTORNCORE_API bool BuildPak(FMaptornPlatform& Platform, const std::string& ModId, const std::string& PlatformName,
    const std::string& OutputDirectory, int64& OutPakSize);
}
