#pragma once

#include "Modio/ModDependencies.h"

#include <nlohmann/json.hpp>

#include <iosfwd>

namespace Maptorn::Cli
{
// What a shared plug-in depends on, as `maptorn deps` and `maptorn install` show it: one row per
// dependency (id, name, state in this project), the ones that cannot be installed and why, and
// the cycles met on the way.
void PrintDependencies(std::ostream& Out, const FSourceModInfo& Mod, const FDependencyResolution& Resolution);
nlohmann::json DependenciesJson(const FDependencyResolution& Resolution);
}
