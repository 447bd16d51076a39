#pragma once

#include "Common/CoreTypes.h"
#include "Modio/SourceModInfo.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace Maptorn
{
// A dependency that cannot come with the plug-in: mod.io has no such mod for us, or it is no
// shared source plug-in (it has no source file to download).
struct MAPTORNCORE_API FUnavailableDependency
{
    std::string ModId;
    std::string Name;
    std::string Why;
};

// Everything a shared plug-in needs from mod.io, found by walking its dependencies one level at a
// time (each mod asked once, so a cycle ends the walk instead of repeating it).
struct MAPTORNCORE_API FDependencyResolution
{
    std::string ModId;
    // The plug-in's own dependency list could be read; when not, Error says why.
    bool bListed = false;
    std::string Error;
    // Every dependency that can be downloaded, a dependency before the plug-ins that need it.
    std::vector<FSourceModInfo> Dependencies;
    std::vector<FUnavailableDependency> Unavailable;
    // Each dependency that leads back to a plug-in already on the way: (needed by, mod id).
    std::vector<std::pair<std::string, std::string>> Cycles;

    // The downloadable dependencies the project does not have yet.
    std::vector<FSourceModInfo> Missing() const;
    // "UGC1005 (Lamp Kit), UGC1007 (Sign Kit)".
    static std::string NameList(const std::vector<FSourceModInfo>& Mods);
    // One line per cycle: "UGC1009 depends on UGC1008 again (a cycle): each is installed once".
    std::vector<std::string> CycleLines() const;
};

// The order in which Root's dependencies install, each after its own, from the graph the walk
// found (mod id -> the ids it depends on); only ids in Installable are ordered. Edges that lead
// back to a mod still being ordered are cycles.
MAPTORNCORE_API std::vector<std::string> OrderDependencies(const std::string& Root, const std::map<std::string, std::vector<std::string>>& Edges,
    const std::map<std::string, FSourceModInfo>& Installable, std::vector<std::pair<std::string, std::string>>& OutCycles);
}
