#pragma once

#include "Common/CoreTypes.h"

#include "Content/KelvorDefinition.h"
#include "Platform/MaptornPlatform.h"

#include <memory>
#include <string>

namespace Maptorn
{
class FModioInterface;

// The definition of the mod.io plug-in "UGC<ModId>" when it exists and is of the asked kind.
MAPTORNCORE_API std::shared_ptr<FKelvorDefinition> LoadModDefinition(FMaptornPlatform& Platform, const std::string& ModId, EModType Kind);

// The definition of "UGC<ModId>" whatever its kind.
MAPTORNCORE_API std::shared_ptr<FKelvorDefinition> LoadAnyModDefinition(FMaptornPlatform& Platform, const std::string& ModId);

// Creates the content-only plug-in "UGC<ModId>" from the engine's ContentOnly template, with its
// definition of the given kind saved at once, and remembers it in the client's created mods.
MAPTORNCORE_API bool CreateUGCPlugin(FMaptornPlatform& Platform, FModioInterface& Client, const std::string& ModId, EModType Type);

// "UGC" followed by the mod id.
MAPTORNCORE_API std::string MakeUGCPluginName(const std::string& ModId);
}
