// `maptorn deps`: what a shared source plug-in needs from mod.io, and adding a dependency to one
// of your own mods (the editor's mod.io plug-in has no call for that).

#include "Cli/Commands/Commands.h"
#include "Cli/Commands/DependencyReport.h"
#include "Cli/WorkshopRun.h"

#include "Common/StringUtil.h"
#include "Content/ModDefinitions.h"

#include <ostream>

namespace Maptorn::Cli
{
int RunDeps(const FCommandContext& Context, const std::string& ModId, bool bJson)
{
    int ExitCode = ExitFailed;
    std::unique_ptr<FWorkshopRun> Run = FWorkshopRun::StartForMod(Context, ModId, ExitCode);
    if (!Run)
    {
        return ExitCode;
    }
    std::string Error;
    FModioInterface& Client = Run->Client();
    std::optional<FSourceModInfo> Record;
    std::optional<FDependencyResolution> Resolution;
    Client.FetchSourceMod(ModId, [&](bool bFound, FSourceModInfo Info, std::string Why) {
        Record = bFound ? Info : FSourceModInfo{};
        Error = std::move(Why);
    });
    Client.ResolveDependencies(ModId, [&](FDependencyResolution Answer) { Resolution = std::move(Answer); });
    Run->TickUntil([&] { return Record.has_value() && Resolution.has_value(); });
    if (!Error.empty())
    {
        return Fail(Context, ExitFailed, "Cannot list the dependencies of mod " + ModId + ": " + Error + ".");
    }
    if (!Resolution->bListed)
    {
        return Fail(Context, ExitFailed, Resolution->Error + ".");
    }
    if (bJson)
    {
        nlohmann::json Answer = DependenciesJson(*Resolution);
        Answer["mod_id"] = ModId;
        Answer["plugin"] = Record->PluginName;
        Context.Out << Answer.dump(2) << "\n";
        return ExitSuccess;
    }
    PrintDependencies(Context.Out, *Record, *Resolution);
    return ExitSuccess;
}

int RunDepsAdd(const FCommandContext& Context, const std::string& ModId, const std::string& DependencyId)
{
    for (const std::string& Id : {ModId, DependencyId})
    {
        if (!IsPlainModId(Id))
        {
            return Fail(Context, ExitBadInput, "Mod ids are the numbers mod.io gave the mods, e.g. 4711 (got \"" + Id + "\").");
        }
    }
    if (ModId == DependencyId)
    {
        return Fail(Context, ExitBadInput, "A mod cannot depend on itself.");
    }
    std::string Error;
    std::unique_ptr<FWorkshopRun> Run = FWorkshopRun::Start(Context, false, Error);
    if (!Run)
    {
        return Fail(Context, ExitNoEnvironment, Error);
    }
    if (!Run->Controller->IsAuthenticated())
    {
        return Fail(Context, ExitFailed,
            "Adding a dependency changes your mod on mod.io, so it needs your login: log in first with `maptorn login`. Nothing was changed.");
    }
    std::optional<bool> bAdded;
    Run->Client().AddDependency(ModId, DependencyId, [&bAdded](bool bOk) { bAdded = bOk; });
    Run->TickUntil([&] { return bAdded.has_value(); });
    if (!*bAdded)
    {
        const std::string& Why = Run->Client().LastDependencyError;
        return Fail(Context, ExitFailed, "mod.io did not add " + MakeUGCPluginName(DependencyId) + " to the dependencies of your mod " + ModId +
            ": " + Why + (!Why.empty() && Why.back() == '.' ? "" : ".") + " Nothing was changed.");
    }
    Context.Out << "Mod " << ModId << " now needs " << MakeUGCPluginName(DependencyId) << " on mod.io: `maptorn install " << ModId
                << " --with-dependencies` brings both.\n";
    return ExitSuccess;
}
}
