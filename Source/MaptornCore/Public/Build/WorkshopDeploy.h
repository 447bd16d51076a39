#pragma once

#include "Common/CoreTypes.h"

namespace Maptorn
{
class FMaptornModule;

// Prepares a Steam Workshop build of the project's own map in the depot folder: with no platform
// chosen it writes the build manifest; with one chosen it cooks that platform's content. Runs on
// a worker while the module's bBusy is set, and clears it on every exit. True when the manifest
// was written or the platform's content cooked.
MAPTORNCORE_API bool RunWorkshopDeploy(FMaptornModule& Module);
}
