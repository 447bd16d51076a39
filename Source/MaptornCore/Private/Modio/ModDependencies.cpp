// A shared plug-in's dependencies before its download: each mod's own list (mod.io's one-level
// answer), each dependency looked up in the catalogue, then put in install order.

#include "Modio/ModDependencies.h"

#include "Common/StringUtil.h"
#include "Content/ModDefinitions.h"
#include "Modio/ModioInterface.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <set>

namespace Maptorn
{
std::vector<FSourceModInfo> FDependencyResolution::Missing() const
{
    std::vector<FSourceModInfo> Mods;
    for (const FSourceModInfo& Mod : Dependencies)
    {
        if (Mod.InstallState == static_cast<uint8>(ESourceModInstallState::NotInstalled))
        {
            Mods.push_back(Mod);
        }
    }
    return Mods;
}

std::string FDependencyResolution::NameList(const std::vector<FSourceModInfo>& Mods)
{
    std::string Text;
    for (const FSourceModInfo& Mod : Mods)
    {
        Text += (Text.empty() ? "" : ", ") + Mod.PluginName + " (" + Mod.Name + ")";
    }
    return Text;
}

std::vector<std::string> FDependencyResolution::CycleLines() const
{
    std::vector<std::string> Lines;
    for (const auto& [From, To] : Cycles)
    {
        Lines.push_back(Printf("%s depends on %s again (a cycle): each is installed once", MakeUGCPluginName(From).c_str(),
            MakeUGCPluginName(To).c_str()));
    }
    return Lines;
}

namespace DependencyOrdering
{
struct FOrderWalk
{
    const std::map<std::string, std::vector<std::string>>& Edges;
    const std::map<std::string, FSourceModInfo>& Installable;
    std::vector<std::pair<std::string, std::string>>& Cycles;
    std::set<std::string> Done;
    std::set<std::string> OnPath;
    std::vector<std::string> Order;

    // Depth first, a mod after everything it needs; the depth is bounded by the number of mods.
    void Visit(const std::string& ModId)
    {
        OnPath.insert(ModId);
        const auto Found = Edges.find(ModId);
        for (const std::string& Next : Found == Edges.end() ? std::vector<std::string>{} : Found->second)
        {
            if (OnPath.count(Next) != 0)
            {
                Cycles.emplace_back(ModId, Next);
            }
            else if (Done.count(Next) == 0 && Installable.count(Next) != 0)
            {
                Visit(Next);
            }
        }
        OnPath.erase(ModId);
        Done.insert(ModId);
        Order.push_back(ModId);
    }
};
}

std::vector<std::string> OrderDependencies(const std::string& Root, const std::map<std::string, std::vector<std::string>>& Edges,
    const std::map<std::string, FSourceModInfo>& Installable, std::vector<std::pair<std::string, std::string>>& OutCycles)
{
    DependencyOrdering::FOrderWalk Walk{Edges, Installable, OutCycles, {}, {}, {}};
    Walk.Visit(Root);
    Walk.Order.pop_back(); // the plug-in itself
    return Walk.Order;
}

namespace DependencyWalk
{
// One resolution in flight: it owns itself through the completions it hands out, and answers once
// the last of them has come back.
struct FWalk : std::enable_shared_from_this<FWalk>
{
    FModioInterface& Client;
    std::function<void(FDependencyResolution)> OnDone;
    FDependencyResolution Result;
    std::map<std::string, std::vector<std::string>> Edges;
    std::map<std::string, std::string> Names;
    std::map<std::string, FSourceModInfo> Found;
    std::set<std::string> Asked;
    std::vector<std::string> Mentioned; // in the order mod.io named them
    int32 Pending = 0;

    FWalk(FModioInterface& InClient, std::function<void(FDependencyResolution)> InOnDone)
        : Client(InClient), OnDone(std::move(InOnDone))
    {
    }

    void List(const std::string& ModId)
    {
        ++Pending;
        Client.FetchDependencies(ModId, [Self = shared_from_this(), ModId](bool bOk, std::vector<FModDependency> Dependencies) {
            Self->OnListed(ModId, bOk, Dependencies);
        });
    }

    void OnListed(const std::string& ModId, bool bOk, const std::vector<FModDependency>& Dependencies)
    {
        if (ModId == Result.ModId)
        {
            Result.bListed = bOk;
            Result.Error = bOk ? std::string() : "mod.io did not list the dependencies of " + MakeUGCPluginName(ModId);
        }
        else if (!bOk)
        {
            Result.Error = "mod.io did not list the dependencies of " + MakeUGCPluginName(ModId) + ", a dependency";
        }
        for (const FModDependency& Dependency : Dependencies)
        {
            Edges[ModId].push_back(Dependency.ModId);
            Names.emplace(Dependency.ModId, Dependency.Name);
            if (Asked.insert(Dependency.ModId).second)
            {
                Mentioned.push_back(Dependency.ModId);
                LookUp(Dependency.ModId);
            }
        }
        Finish();
    }

    void LookUp(const std::string& ModId)
    {
        ++Pending;
        Client.FetchSourceMod(ModId, [Self = shared_from_this(), ModId](bool bFound, FSourceModInfo Mod, std::string Why) {
            if (bFound && !Mod.BinaryUrl.empty())
            {
                Self->Found[ModId] = Mod;
                Self->List(ModId);
            }
            else
            {
                Self->Result.Unavailable.push_back({ModId, Self->Names[ModId],
                    bFound ? "it is no shared source plug-in (mod.io has no source file of it)" : Why});
            }
            Self->Finish();
        });
    }

    void Finish()
    {
        if (--Pending > 0)
        {
            return;
        }
        // The look-ups answer in any order; the unavailable ones are told in the order mod.io named them.
        const auto Position = [this](const FUnavailableDependency& Dependency) {
            return std::find(Mentioned.begin(), Mentioned.end(), Dependency.ModId) - Mentioned.begin();
        };
        std::stable_sort(Result.Unavailable.begin(), Result.Unavailable.end(),
            [&](const FUnavailableDependency& Left, const FUnavailableDependency& Right) { return Position(Left) < Position(Right); });
        for (const std::string& ModId : OrderDependencies(Result.ModId, Edges, Found, Result.Cycles))
        {
            Result.Dependencies.push_back(Found[ModId]);
        }
        // Answered once: nothing is pending any more, so nothing calls back after this.
        OnDone(std::move(Result));
    }
};
}

void FModioInterface::ResolveDependencies(const std::string& ModId, std::function<void(FDependencyResolution)> OnDone)
{
    auto Walk = std::make_shared<DependencyWalk::FWalk>(*this, std::move(OnDone));
    Walk->Result.ModId = ModId;
    Walk->Asked.insert(ModId);
    Walk->List(ModId);
}
}
