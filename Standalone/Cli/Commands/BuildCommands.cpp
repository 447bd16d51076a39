#include "Cli/Commands/Commands.h"

#include "Build/Cooker.h"
#include "Build/PakBuilder.h"
#include "Build/Packager.h"
#include "Build/WorkshopDeploy.h"
#include "Common/FileHelper.h"
#include "Common/Paths.h"
#include "Common/StringUtil.h"
#include "Content/ModDefinitions.h"
#include "Modio/ModioInterface.h"
#include "Module/MaptornModule.h"
#include "Module/ProjectEnvironment.h"

#include <ostream>

namespace Maptorn::Cli
{
namespace
{
// Build commands show the engine tools' output as it comes.
std::unique_ptr<FStandaloneHost> MakeBuildHost(const FCommandContext& Context, std::string& OutError)
{
    std::unique_ptr<FStandaloneHost> Host = FStandaloneHost::Create(Context, true, OutError);
    if (Host)
    {
        std::ostream& Out = Context.Out;
        Host->Processes.SetOutputEcho([&Out](const std::string& Line, bool) { Out << "  | " << Line << "\n"; });
    }
    return Host;
}
}

int RunCook(const FCommandContext& Context, const FCookRequest& Request)
{
    if (Request.ModId.empty() == Request.MapUrl.empty())
    {
        return Fail(Context, ExitBadInput, "Name what to cook: a mod id (its plug-in's linked map, or --cookdir) or --map <package>.");
    }
    if (!Request.ModId.empty() && !IsPlainModId(Request.ModId))
    {
        return Fail(Context, ExitBadInput, "The mod id must be the number mod.io gave the mod, e.g. 4711 (got \"" + Request.ModId + "\").");
    }
    std::string Error;
    std::unique_ptr<FStandaloneHost> Host = MakeBuildHost(Context, Error);
    if (!Host)
    {
        return Fail(Context, ExitNoEnvironment, Error);
    }
    FCooker Cooker(Host->Platform);
    const bool bWindows = !Request.bAndroid;
    bool bCooked = false;
    if (!Request.MapUrl.empty())
    {
        bCooked = Cooker.CookMap(Request.MapUrl, bWindows);
    }
    else
    {
        FModioInterface Client(Host->Platform, MakeModuleConfig(Host->Settings));
        Client.CurrentDefinition = LoadAnyModDefinition(Host->Platform, Request.ModId);
        if (!Client.CurrentDefinition && Request.CookDirectory.empty())
        {
            return Fail(Context, ExitFailed, "UGC" + Request.ModId + " has no definition: create it with `maptorn plugin create " + Request.ModId + " --type ...`.");
        }
        const ECookMode Mode = Request.CookDirectory.empty() ? ECookMode::LinkedMap : ECookMode::ContentDirectory;
        bCooked = Cooker.CookDefinition(Client, bWindows, Mode, Request.CookDirectory);
    }
    if (!bCooked)
    {
        return Fail(Context, ExitFailed, "The cook failed; the lines above say why.");
    }
    const std::string Cooked = Paths::Combine(Paths::ConvertRelativePathToFull(Host->Engine.GetBaseDir(), Host->Engine.ProjectSavedDir()), "Cooked");
    Context.Out << "Cooked for " << CookPlatformName(bWindows) << " and LinuxServer into " << Cooked << "\n";
    return ExitSuccess;
}

int RunPak(const FCommandContext& Context, const std::string& ModId, const std::string& PlatformName, const std::string& OutputDirectory)
{
    if (!IsPlainModId(ModId))
    {
        return Fail(Context, ExitBadInput, "The mod id must be the number mod.io gave the mod, e.g. 4711 (got \"" + ModId + "\").");
    }
    std::string Error;
    std::unique_ptr<FStandaloneHost> Host = MakeBuildHost(Context, Error);
    if (!Host)
    {
        return Fail(Context, ExitNoEnvironment, Error);
    }
    if (!LoadAnyModDefinition(Host->Platform, ModId))
    {
        return Fail(Context, ExitFailed, "UGC" + ModId + " has no definition: create it with `maptorn plugin create " + ModId + " --type ...`.");
    }
    const std::string Output = OutputDirectory.empty() ? ProjectEnvironment::GetWorkshopDirectory(Host->Engine) : OutputDirectory;
    int64 PakSize = -1;
    const bool bBuilt = BuildPak(Host->Platform, ModId, PlatformName, Output, PakSize);
    if (!bBuilt || PakSize < 0)
    {
        return Fail(Context, ExitFailed, "No pak was built; cook UGC" + ModId + " for " + PlatformName + " first (`maptorn cook " + ModId + "`).");
    }
    Context.Out << "Pak: " << Output << "/UGC" << ModId << ".pak (" << PakSize << " bytes), metadata.json beside it\n";
    return ExitSuccess;
}

int RunPackage(const FCommandContext& Context, const FPackageRequest& Request)
{
    if (!IsPlainModId(Request.ModId))
    {
        return Fail(Context, ExitBadInput, "The mod id must be the number mod.io gave the mod, e.g. 4711 (got \"" + Request.ModId + "\").");
    }
    if (!Request.bWindows && !Request.bAndroid)
    {
        return Fail(Context, ExitBadInput, "Choose what to package: --windows, --android or both.");
    }
    if (!Request.StageDir.empty() && !FileSystem::DirectoryExists(Request.StageDir))
    {
        return Fail(Context, ExitBadInput, "The stage folder " + Request.StageDir + " does not exist; pass your game's install folder.");
    }
    std::string Error;
    std::unique_ptr<FStandaloneHost> Host = MakeBuildHost(Context, Error);
    if (!Host)
    {
        return Fail(Context, ExitNoEnvironment, Error);
    }
    FModioInterface Client(Host->Platform, MakeModuleConfig(Host->Settings));
    Client.SelectedModId = Request.ModId;
    Client.bBuildWindows = Request.bWindows;
    Client.bBuildAndroid = Request.bAndroid;
    Client.bStageOnly = !Request.StageDir.empty();
    Client.StageDir = Request.StageDir;

    std::atomic<bool> bBusy = true;
    bool bCompleted = false;
    FPackager(Host->Platform, Client, bBusy).RunPackagingTask([&bCompleted] { bCompleted = true; });
    Host->Tasks.PumpGameThread();
    if (!bCompleted)
    {
        return Fail(Context, ExitFailed, "Packaging stopped; the message above says which platform failed.");
    }
    if (Client.bStageOnly)
    {
        Context.Out << "Staged UGC" << Request.ModId << " into " << Request.StageDir << "\n";
    }
    for (const auto& [Target, Folder] : Client.PendingPlatforms)
    {
        Context.Out << "Packaged platform " << int(Target) << " into " << Folder << "\n";
    }
    return ExitSuccess;
}
}
