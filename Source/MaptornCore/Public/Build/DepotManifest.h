#pragma once

#include "Common/CoreTypes.h"

#include "Content/KelvorDefinition.h"

#include <string>

namespace Maptorn
{
// The build manifest "metadata.json" of a depot or package folder, in the engine's pretty form.
// The pak sizes are always 0 and the engine version always "4.27": the game reads them so.
MAPTORNCORE_API std::string MakeDepotManifestJson(const FKelvorDefinition& Definition);
}
