#include "Build/Packager.h"

#include "Build/AutomationCommandLine.h"
#include "Build/DepotManifest.h"
#include "Build/PackageTargets.h"
#include "Common/FileHelper.h"
#include "Common/Paths.h"
#include "Common/StringUtil.h"
#include "Content/ModDefinitions.h"
#include "Modio/ModioInterface.h"
#include "Module/ProjectEnvironment.h"

namespace Maptorn
{
namespace
{
std::string Absolute(IMaptornEngine& Engine, const std::string& Path)
{
    return Paths::ConvertRelativePathToFull(Engine.GetBaseDir(), Path);
}
}

FPackager::FPackager(FMaptornPlatform& InPlatform, FModioInterface& InClient, std::atomic<bool>& InBusy)
    : Platform(InPlatform)
    , Client(InClient)
    , bBusy(InBusy)
{
    // A copy: the loaded one stays the engine's, to be read and written on the game thread only.
    if (const std::shared_ptr<FKelvorDefinition> Loaded = LoadAnyModDefinition(Platform, Client.SelectedModId))
    {
        Definition = std::make_shared<const FKelvorDefinition>(*Loaded);
    }
}

std::string FPackager::ResolveStagingDirectory(uint8 Target, const std::string& PluginId)
{
    const std::string WorkshopRoot = ProjectEnvironment::GetWorkshopDirectory(Platform.Engine);
    if (Client.bStageOnly && !IsVeskoGroup(Target))
    {
        return Client.StageDir;
    }
    const std::string StagingDirectory = Paths::Combine(WorkshopRoot, PluginId);
    const std::string CleanFolder = Paths::Combine(StagingDirectory, StageFolderName(Target));
    if (FileSystem::DirectoryExists(CleanFolder))
    {
        FileSystem::DeleteDirectoryRecursively(CleanFolder);
    }
    if (!Client.bStageOnly)
    {
        const std::string UploadFolder = Paths::Combine(WorkshopRoot, PluginId, StageFolderName(Target));
        Client.PendingPlatforms.emplace_back(Target, UploadFolder);
        Platform.Log.Log(LogCategory::MaptornLog, ELogVerbosity::Log, Printf("Adding Folder to Upload Queue %s", UploadFolder.c_str()));
    }
    return StagingDirectory;
}

void FPackager::WriteMetadata(const std::string& PluginId)
{
    const std::string Folder = Paths::Combine(ProjectEnvironment::GetWorkshopDirectory(Platform.Engine), PluginId);
    if (!FileSystem::DirectoryExists(Folder))
    {
        FileSystem::CreateDirectoryTree(Folder);
    }
    FileHelper::SaveStringToFile(MakeDepotManifestJson(Definition ? *Definition : FKelvorDefinition{}), Paths::Combine(Folder, "metadata.json"));
}

std::string FPackager::MakeNeverCookList(const std::string& PluginId)
{
    // No other UGC plug-in's content may be cooked into this package.
    std::string List;
    for (const FPluginInfo& Plugin : Platform.Engine.GetEnabledPlugins())
    {
        if (ContainsIgnoreCase(Plugin.FriendlyName, "UGC") && Plugin.bCanContainContent && Plugin.FriendlyName != PluginId)
        {
            List += NeverCookEntry(Plugin.FriendlyName);
        }
    }
    return List;
}

bool FPackager::Package(uint8 Target)
{
    IMaptornEngine& Engine = Platform.Engine;
    const std::string AutomationTool = Absolute(Engine, Paths::Combine(Engine.EngineDir(), "Build", "BatchFiles", "RunUAT.bat"));
    const bool bVesko = IsVeskoGroup(Target);
    const std::string PluginId = MakeUGCPluginName(Client.SelectedModId);

    const std::optional<FPluginInfo> Plugin = Engine.FindPlugin(PluginId);
    if (!Plugin)
    {
        Platform.Dialogs.MessageBox(EAppMsgType::Ok, Printf("ERROR: cannot find plugin UGC%s", Client.SelectedModId.c_str()), "Upload");
        bBusy = false;
        Client.PendingPlatforms.clear();
        return false;
    }

    const std::string StagingDirectory = ResolveStagingDirectory(Target, PluginId);
    WriteMetadata(PluginId);

    FAutomationCommandInputs Inputs;
    Inputs.Target = Target;
    Inputs.ProjectDir = Absolute(Engine, Engine.ProjectDir());
    Inputs.ProjectFile = Absolute(Engine, Engine.GetProjectFilePath());
    Inputs.PlatformName = bVesko ? VeskoPlatformName(Target) : PackagePlatformName(Target);
    Inputs.PluginDescriptor = Absolute(Engine, Plugin->DescriptorFileName);
    Inputs.PluginName = Plugin->Name;
    Inputs.ReleaseVersion = ReleaseVersionFor(Target);
    Inputs.StagingDirectory = StagingDirectory;
    Inputs.StageFlag = Client.bStageOnly ? "True" : "False";
    // The uploader flag is always on; the automation script decides what to do with it.
    Inputs.UploaderFlag = "True";
    Inputs.MetadataFile = Paths::Combine(Paths::Combine(ProjectEnvironment::GetWorkshopDirectory(Engine), PluginId), "metadata.json");
    Inputs.StageFolder = StageFolderName(Target);
    Inputs.NeverCookList = MakeNeverCookList(PluginId);
    const std::string& MapReference = Definition ? (bVesko ? Definition->VeskoMap : Definition->Map) : std::string();
    Inputs.MapPackage = MapReference.empty() ? std::string() : GetLongPackageName(MapReference);
    Inputs.CookDirectory = Printf("/UGC%s/", Client.SelectedModId.c_str());

    int32 ReturnCode = 0;
    std::string StdOut;
    std::string StdErr;
    const bool bRan = Platform.Processes.ExecProcess(AutomationTool, MakeAutomationCommandLine(Inputs), ReturnCode, StdOut, StdErr);
    if (!bRan)
    {
        Platform.Log.Log(LogCategory::MaptornLog, ELogVerbosity::Error, Printf("Cook command failed: %s %s", StdOut.c_str(), StdErr.c_str()));
        return false;
    }
    if (bVesko)
    {
        MoveVeskoPak(Target, Plugin->Name, StagingDirectory);
    }
    EchoAutomationLog();
    if (ReturnCode != 0)
    {
        Platform.Log.Log(LogCategory::MaptornLog, ELogVerbosity::Error,
            Printf("Cook command returned non-zero value: %d \n%s %s", ReturnCode, StdOut.c_str(), StdErr.c_str()));
    }
    return true;
}
}
