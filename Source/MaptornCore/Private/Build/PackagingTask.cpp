#include "Build/PackageTargets.h"
#include "Build/Packager.h"
#include "Common/FileHelper.h"
#include "Common/Paths.h"
#include "Common/StringUtil.h"
#include "Content/ModDefinitions.h"
#include "Modio/ModioInterface.h"
#include "Module/ProjectEnvironment.h"

namespace Maptorn
{
void FPackager::MoveVeskoPak(uint8 Target, const std::string& PluginName, std::string StagingDirectory)
{
    IMaptornLog& Log = Platform.Log;
    const std::string WorkshopRoot = ProjectEnvironment::GetWorkshopDirectory(Platform.Engine);
    const std::string PakPlatform = PakPlatformName(Target);
    const std::string PakName = Printf("%sKelvor-%s.pak", PluginName.c_str(), PakPlatform.c_str());
    const std::string TempFolder = Paths::Combine(WorkshopRoot, "Temp");
    const std::string BuiltPak = Paths::Combine(StagingDirectory, PakPlatform, "Kelvor", "Plugins", PluginName, "Content", "Paks", PakPlatform, PakName);

    const bool bBuilt = FileSystem::FileExists(BuiltPak);
    if (bBuilt)
    {
        if (FileSystem::DirectoryExists(TempFolder))
        {
            FileSystem::DeleteDirectoryRecursively(TempFolder);
        }
        if (FileSystem::CreateDirectoryTree(TempFolder) && !FileSystem::MoveFile(BuiltPak, Paths::Combine(TempFolder, PakName)))
        {
            Log.Log(LogCategory::MaptornLog, ELogVerbosity::Error,
                Printf("Failed to move %s to %s check your folder permissions", BuiltPak.c_str(), StagingDirectory.c_str()));
        }
    }
    if (!FileSystem::DeleteDirectoryRecursively(Paths::Combine(StagingDirectory, PakPlatform)))
    {
        Log.Log(LogCategory::MaptornLog, ELogVerbosity::Error, Printf("Failed to delete %s", StagingDirectory.c_str()));
    }
    if (!bBuilt)
    {
        // The tool left no pak: nothing to stage, and the log above already tells why.
        return;
    }

    if (Client.bStageOnly)
    {
        StagingDirectory = Client.StageDir;
    }
    const std::string PluginId = MakeUGCPluginName(Client.SelectedModId);
    const std::string FinalFolder = Client.bStageOnly ? Paths::Combine(StagingDirectory, PluginName + "Data")
                                                      : Paths::Combine(StagingDirectory, StageFolderName(Target), PluginId);
    if (FileSystem::DirectoryExists(FinalFolder))
    {
        FileSystem::DeleteDirectoryRecursively(FinalFolder);
    }
    if (!FileSystem::CreateDirectoryTree(FinalFolder))
    {
        Log.Log(LogCategory::MaptornLog, ELogVerbosity::Log, Printf("Failed to create staging dir %s", FinalFolder.c_str()));
    }
    const std::string ChunkName = Printf("%spakchunk0-%s.pak", PluginName.c_str(), PakPlatform.c_str());
    if (!FileSystem::MoveFile(Paths::Combine(TempFolder, PakName), Paths::Combine(FinalFolder, ChunkName)))
    {
        Log.Log(LogCategory::MaptornLog, ELogVerbosity::Error, Printf("Failed to move pak to stage area %s", FinalFolder.c_str()));
    }
    const std::string MetadataFile = Paths::Combine(Paths::Combine(WorkshopRoot, PluginId), "metadata.json");
    if (!FileSystem::CopyFile(MetadataFile, Paths::Combine(FinalFolder, "metadata.json")))
    {
        Log.Log(LogCategory::MaptornLog, ELogVerbosity::Error, "Failed to move metadata.json");
    }
    FileSystem::DeleteDirectoryRecursively(TempFolder);
}

void FPackager::EchoAutomationLog()
{
    // Collapsed as Windows does, so that missing folders on the way do not matter.
    const std::string LogsFolder = Paths::ConvertRelativePathToFull(Platform.Engine.GetBaseDir(),
        Paths::Combine(Paths::Combine(Platform.Engine.EngineUserDir(), "../../../"), "Roaming", "Unreal Engine", "AutomationTool", "Logs"));
    std::string LogFolder;
    for (const FileSystem::FDirectoryEntry& Entry : FileSystem::ListDirectory(LogsFolder))
    {
        if (Entry.bIsDirectory && ContainsIgnoreCase(Paths::GetCleanFilename(Entry.Path), "UE_5.1"))
        {
            LogFolder = Entry.Path;
        }
    }
    const std::string LogFile = LogFolder.empty() ? std::string() : Paths::Combine(LogFolder, "Log.txt");
    if (LogFile.empty() || !FileSystem::FileExists(LogFile))
    {
        return;
    }
    FileHelper::LoadFileToStringWithLineVisitor(LogFile, [this](const std::string& Line) {
        Platform.Log.Log(LogCategory::LogTemp, ELogVerbosity::Log, Line);
    });
}

void FPackager::FailPackaging(const char* Message)
{
    Platform.Dialogs.MessageBox(EAppMsgType::Ok, Message, "Package");
    bBusy = false;
    Client.PendingPlatforms.clear();
}

const char* FPackager::PackageChosenPlatforms()
{
    if (Client.bBuildWindows)
    {
        if (!Package(PackageTarget::Windows))
        {
            return "ERROR: Failed to package for windows, check output log for details";
        }
        // Staging is for the Windows client only: the server is built for uploads.
        if (!Client.bStageOnly && !Package(PackageTarget::KelvorLinuxServer))
        {
            return "ERROR: Failed to package linux server, check output log for details";
        }
    }
    if (Client.bBuildAndroid)
    {
        if (!Package(PackageTarget::Quest))
        {
            return "ERROR: Failed to package for android, check output log for details";
        }
        if (!Package(PackageTarget::VeskoLinuxServer))
        {
            return "ERROR: Failed to package linux server, check output log for details";
        }
    }
    return nullptr;
}

void FPackager::RunPackagingTask(std::function<void()> OnComplete, FOnPackagingFailed OnFailed)
{
    if (const char* Failure = PackageChosenPlatforms())
    {
        FailPackaging(Failure);
        if (OnFailed)
        {
            Platform.Tasks.AsyncTask(ENamedThreads::GameThread,
                [OnFailed = std::move(OnFailed), Message = std::string(Failure)] { OnFailed(Message); });
        }
        return;
    }
    Platform.Tasks.AsyncTask(ENamedThreads::GameThread, std::move(OnComplete));
}

void StartPackagingTask(FMaptornPlatform& Platform, FModioInterface& Client, std::atomic<bool>& bBusy, std::function<void()> OnComplete,
    FPackager::FOnPackagingFailed OnFailed)
{
    auto Packager = std::make_shared<FPackager>(Platform, Client, bBusy);
    Platform.Tasks.AsyncTask(ENamedThreads::AnyBackgroundThreadNormalTask,
        [Packager, OnComplete = std::move(OnComplete), OnFailed = std::move(OnFailed)]() mutable {
            Packager->RunPackagingTask(std::move(OnComplete), std::move(OnFailed));
    });
}
}
