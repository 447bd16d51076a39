#pragma once

#include "Common/CoreTypes.h"
#include "Content/ModType.h"

#include <string>

namespace Maptorn
{
// One definition asset ("definition") of the game's classes UKelvor_Map, UKelvor_Mod and
// UKelvor_GameMode, reduced to the fields the workshop reads and writes. `Class` tells which of
// the three it is.
struct MAPTORNCORE_API FKelvorDefinition
{
    EModType Class = EModType::Map;
    std::string PackageName;          // "/UGC12/definition", "/Game/CustomMaps/SVR_x/definition"

    std::string Label;                // the id label: "SVR_<id>" or "UGC<modid>"
    std::string DisplayName;
    int32 Version = 0;
    bool bIsCustomGameMode = false;
    std::string CustomGameModeLabel;
    std::string Map;                  // soft object path of the Windows map, "/UGC12/Maps/Arena.Arena"
    std::string VeskoMap;             // soft object path of the Android/Quest map
    std::string GameLogicClass;       // game modes only

    // Only content mods may share their source with other modders.
    bool IsContentMod() const { return Class == EModType::Mod; }
};

// "Kelvor_Map", "Kelvor_Mod", "Kelvor_GameMode": the engine class names without their U prefix.
MAPTORNCORE_API const char* DefinitionClassName(EModType Class);
MAPTORNCORE_API std::optional<EModType> ParseDefinitionClassName(const std::string& Name);

// The package part of a soft object path: "/UGC12/Maps/Arena.Arena" gives "/UGC12/Maps/Arena".
MAPTORNCORE_API std::string GetLongPackageName(const std::string& SoftObjectPath);
}
