#include "Build/WorkshopDeploy.h"

#include "Build/Cooker.h"
#include "Build/DepotManifest.h"
#include "Common/FileHelper.h"
#include "Common/Paths.h"
#include "Common/StringUtil.h"
#include "Module/MaptornModule.h"
#include "Module/ProjectEnvironment.h"

namespace Maptorn
{
namespace
{
bool EndDeploy(FMaptornModule& Module, bool bSucceeded)
{
    if (Module.SteamUGC)
    {
        Module.SteamUGC->bUploadInProgress = false;
    }
    Module.bBusy = false;
    return bSucceeded;
}

bool WriteManifest(FMaptornModule& Module, const FKelvorDefinition& Definition, const std::string& DepotFolder)
{
    FMaptornPlatform& Platform = Module.GetPlatform();
    FileHelper::SaveStringToFile(MakeDepotManifestJson(Definition), Paths::Combine(DepotFolder, "metadata.json"));
    if (Module.SteamUGC)
    {
        Module.SteamUGC->bUploadInProgress = true;
    }
    Module.bBusy = false;
    Platform.Dialogs.MessageBox(EAppMsgType::Ok, "Successfully built!", "Kelvor Build");
    // No Steam upload follows here (the depot goes up with Steam's own tools): once the modder has
    // read the message the build is handed over, and the window's pages come back.
    if (Module.SteamUGC)
    {
        Module.SteamUGC->bUploadInProgress = false;
    }
    return true;
}

bool CookPlatform(FMaptornModule& Module, const FKelvorDefinition* Definition, bool bWindows, const std::string& DepotFolder)
{
    FMaptornPlatform& Platform = Module.GetPlatform();
    FCooker Cooker(Platform);
    Cooker.WriteBuildMarker(bWindows);
    std::string MapUrl;
    if (Definition)
    {
        const std::string& MapPath = bWindows ? Definition->Map : Definition->VeskoMap;
        MapUrl = MapPath.empty() ? std::string() : GetLongPackageName(MapPath);
    }
    if (MapUrl.empty())
    {
        Platform.Log.Log(LogCategory::MaptornLog, ELogVerbosity::Error, "Please specify a map in the Definition file!");
        return EndDeploy(Module, false);
    }
    if (!Cooker.CookMap(MapUrl, bWindows))
    {
        Platform.Log.Log(LogCategory::MaptornLog, ELogVerbosity::Error, "Cooked content is needed for deploying!");
        return EndDeploy(Module, false);
    }
    // The platform paks of a depot build are made by the game's own pipeline, not here.
    const std::string ClientPak = Paths::Combine(DepotFolder, bWindows ? "Windows.pak" : "Android_ASTC.pak");
    const std::string ServerPak = Paths::Combine(DepotFolder, bWindows ? "LinuxServer.pak" : "VeskoLinuxServer.pak");
    Platform.Log.Log(LogCategory::MaptornLog, ELogVerbosity::Warning,
        Printf("Cooked for deploying; %s and %s are not built by the deploy", ClientPak.c_str(), ServerPak.c_str()));
    return EndDeploy(Module, true);
}
}

bool RunWorkshopDeploy(FMaptornModule& Module)
{
    return RunWorkshopDeploy(Module, Module.SVR ? Module.SVR->GetMapDefinition() : nullptr);
}

bool RunWorkshopDeploy(FMaptornModule& Module, const std::shared_ptr<const FKelvorDefinition>& Definition)
{
    FMaptornPlatform& Platform = Module.GetPlatform();
    const std::string Label = Definition ? Definition->Label : std::string();

    const std::string DepotFolder = Paths::Combine(ProjectEnvironment::GetDepotDirectory(Platform.Engine), Label);
    if (!FileSystem::DirectoryExists(DepotFolder) && !FileSystem::CreateDirectoryTree(DepotFolder))
    {
        Platform.Log.Log(LogCategory::MaptornLog, ELogVerbosity::Error, Printf("Cannot create the depot folder %s", DepotFolder.c_str()));
        return EndDeploy(Module, false);
    }

    if (Module.bWindowsPlatform)
    {
        return CookPlatform(Module, Definition.get(), true, DepotFolder);
    }
    if (Module.bAndroidPlatform)
    {
        return CookPlatform(Module, Definition.get(), false, DepotFolder);
    }
    if (Definition)
    {
        return WriteManifest(Module, *Definition, DepotFolder);
    }
    return EndDeploy(Module, false);
}
}
