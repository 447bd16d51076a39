#include "Cli/Commands/DependencyReport.h"

#include "Content/ModDefinitions.h"

#include <iomanip>
#include <ostream>

namespace Maptorn::Cli
{
void PrintDependencies(std::ostream& Out, const FSourceModInfo& Mod, const FDependencyResolution& Resolution)
{
    if (!Resolution.Error.empty())
    {
        Out << Resolution.Error << ".\n";
    }
    if (Resolution.Dependencies.empty() && Resolution.Unavailable.empty())
    {
        if (Resolution.bListed)
        {
            Out << Mod.PluginName << " (" << Mod.Name << ") needs no other plug-in.\n";
        }
        return;
    }
    Out << Mod.PluginName << " (" << Mod.Name << ") needs:\n";
    Out << std::left << "  " << std::setw(8) << "Id" << std::setw(28) << "Name" << "Status\n";
    for (const FSourceModInfo& Dependency : Resolution.Dependencies)
    {
        Out << "  " << std::setw(8) << Dependency.PluginName.substr(3) << std::setw(28) << Dependency.Name
            << InstallStateWord(Dependency.InstallState) << "\n";
    }
    for (const FUnavailableDependency& Dependency : Resolution.Unavailable)
    {
        Out << "  " << std::setw(8) << Dependency.ModId << std::setw(28) << Dependency.Name << "Cannot be installed: " << Dependency.Why << "\n";
    }
    for (const std::string& Line : Resolution.CycleLines())
    {
        Out << "Note: " << Line << ".\n";
    }
}

nlohmann::json DependenciesJson(const FDependencyResolution& Resolution)
{
    nlohmann::json Dependencies = nlohmann::json::array();
    for (const FSourceModInfo& Dependency : Resolution.Dependencies)
    {
        Dependencies.push_back({{"id", Dependency.PluginName.substr(3)}, {"plugin", Dependency.PluginName}, {"name", Dependency.Name},
            {"status", InstallStateWord(Dependency.InstallState)}});
    }
    nlohmann::json Unavailable = nlohmann::json::array();
    for (const FUnavailableDependency& Dependency : Resolution.Unavailable)
    {
        Unavailable.push_back({{"id", Dependency.ModId}, {"name", Dependency.Name}, {"why", Dependency.Why}});
    }
    nlohmann::json Cycles = nlohmann::json::array();
    for (const auto& [From, To] : Resolution.Cycles)
    {
        Cycles.push_back({{"needed_by", From}, {"id", To}});
    }
    return {{"listed", Resolution.bListed}, {"dependencies", Dependencies}, {"unavailable", Unavailable}, {"cycles", Cycles}};
}
}
