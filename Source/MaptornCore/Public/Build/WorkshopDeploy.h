#pragma once

#include "Common/CoreTypes.h"
#include "Content/KelvorDefinition.h"

#include <memory>

namespace Maptorn
{
class FMaptornModule;

// Prepares a Steam Workshop build of the project's own map in the depot folder: with no platform
// chosen it writes the build manifest; with one chosen it cooks that platform's content. Runs on
// a worker while the module's bBusy is set, and clears it on every exit. True when the manifest
// was written or the platform's content cooked.
MAPTORNCORE_API bool RunWorkshopDeploy(FMaptornModule& Module);
// The same with the project's map definition already loaded: the window loads it on the game
// thread, where the engine's objects may be touched, and hands it to the worker.
MAPTORNCORE_API bool RunWorkshopDeploy(FMaptornModule& Module, const std::shared_ptr<const FKelvorDefinition>& Definition);
}
