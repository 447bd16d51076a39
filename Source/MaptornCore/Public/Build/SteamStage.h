#pragma once

#include "Common/CoreTypes.h"
#include "Content/KelvorDefinition.h"

#include <memory>
#include <string>

namespace Maptorn
{
class FMaptornModule;

// The folder of a map package below the project's content: "/Game/CustomMaps/SVR_Bay/Bay" gives
// "CustomMaps/SVR_Bay". Empty for a map outside /Game/, which the game install cannot load, and for
// one directly in /Game/, whose folder is the whole content.
MAPTORNCORE_API std::string GetProjectContentFolder(const std::string& MapPackage);

// Where the Steam game loads that folder from: its own content in the install, laid out as the
// packaged game is (<install>/Kelvor/Content/<folder>).
MAPTORNCORE_API std::string MakeSteamStageFolder(const std::string& InstallDir, const std::string& ContentFolder);

// The Steam-side stage of the project's own map: cooks its Windows map (the only client the Steam
// game runs) and copies the cooked folder into the game install, replacing an earlier stage. Runs on
// a worker while bBusy is set and clears it on every exit; Definition is the worker's own copy.
MAPTORNCORE_API bool RunSteamStage(FMaptornModule& Module, const std::shared_ptr<const FKelvorDefinition>& Definition);
}
