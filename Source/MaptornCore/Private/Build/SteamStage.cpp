#include "Build/SteamStage.h"

#include "Build/Cooker.h"
#include "Common/FileHelper.h"
#include "Common/Paths.h"
#include "Common/StringUtil.h"
#include "Module/MaptornModule.h"
#include "Module/ProjectEnvironment.h"

namespace Maptorn
{
namespace
{
constexpr const char* GameProjectName = "Kelvor";

bool EndStage(FMaptornModule& Module, bool bSucceeded)
{
    Module.bBusy = false;
    return bSucceeded;
}

// Copies every file below From to the same place below To, after removing what To held.
bool ReplaceFolder(const std::string& From, const std::string& To)
{
    if (FileSystem::DirectoryExists(To) && !FileSystem::DeleteDirectoryRecursively(To))
    {
        return false;
    }
    if (!FileSystem::CreateDirectoryTree(To))
    {
        return false;
    }
    for (const std::string& File : FileSystem::ListFilesRecursively(From))
    {
        std::string Relative = File.substr(From.size());
        Relative.erase(0, Relative.find_first_not_of('/'));
        const std::string Target = Paths::Combine(To, Relative);
        if (!FileSystem::CreateDirectoryTree(Paths::GetPath(Target)) || !FileSystem::CopyFile(File, Target))
        {
            return false;
        }
    }
    return true;
}
}

std::string GetProjectContentFolder(const std::string& MapPackage)
{
    static constexpr std::string_view GameRoot = "/Game/";
    if (!StartsWithIgnoreCase(MapPackage, GameRoot))
    {
        return {};
    }
    return Paths::GetPath(MapPackage.substr(GameRoot.size()));
}

std::string MakeSteamStageFolder(const std::string& InstallDir, const std::string& ContentFolder)
{
    return Paths::Combine(InstallDir, GameProjectName, "Content", ContentFolder);
}

bool RunSteamStage(FMaptornModule& Module, const std::shared_ptr<const FKelvorDefinition>& Definition)
{
    FMaptornPlatform& Platform = Module.GetPlatform();
    const std::string MapUrl = Definition && !Definition->Map.empty() ? GetLongPackageName(Definition->Map) : std::string();
    if (MapUrl.empty())
    {
        Platform.Log.Log(LogCategory::MaptornLog, ELogVerbosity::Error, "Please specify a map in the Definition file!");
        return EndStage(Module, false);
    }
    const std::string ContentFolder = GetProjectContentFolder(MapUrl);
    if (ContentFolder.empty())
    {
        Platform.Log.Log(LogCategory::MaptornLog, ELogVerbosity::Error,
            Printf("Cannot stage %s, the map must be in a folder of the project's Content", MapUrl.c_str()));
        return EndStage(Module, false);
    }

    FCooker Cooker(Platform);
    Cooker.WriteBuildMarker(true);
    if (!Cooker.CookMap(MapUrl, true))
    {
        Platform.Log.Log(LogCategory::MaptornLog, ELogVerbosity::Error, "Cooked content is needed for staging!");
        return EndStage(Module, false);
    }

    // The cook leaves the project's packages under Cooked/Windows/<project name>/Content.
    const std::string ProjectName = Paths::GetBaseFilename(Platform.Engine.GetProjectFilePath());
    const std::string Cooked = Paths::Combine(ProjectEnvironment::GetCookedDirectory(Platform.Engine, CookPlatformName(true)),
        ProjectName, "Content", ContentFolder);
    const std::string Staged = MakeSteamStageFolder(Module.InstallDir, ContentFolder);
    if (!FileSystem::DirectoryExists(Cooked))
    {
        Platform.Log.Log(LogCategory::MaptornLog, ELogVerbosity::Error, Printf("Cannot find the cooked map in %s", Cooked.c_str()));
        return EndStage(Module, false);
    }
    if (!ReplaceFolder(Cooked, Staged))
    {
        Platform.Log.Log(LogCategory::MaptornLog, ELogVerbosity::Error,
            Printf("Failed to stage %s to %s check your folder permissions", Cooked.c_str(), Staged.c_str()));
        return EndStage(Module, false);
    }
    Platform.Log.Log(LogCategory::MaptornLog, ELogVerbosity::Log, Printf("Staged %s to %s", MapUrl.c_str(), Staged.c_str()));
    EndStage(Module, true);
    Platform.Dialogs.MessageBox(EAppMsgType::Ok, "Staged map", "Staging");
    return true;
}
}
