#include "Build/Cooker.h"

#include "Common/FileHelper.h"
#include "Common/Paths.h"
#include "Common/StringUtil.h"
#include "Content/KelvorDefinition.h"
#include "Modio/ModioInterface.h"
#include "Module/ProjectEnvironment.h"

namespace Maptorn
{
const char* CookPlatformName(bool bWindows)
{
    return bWindows ? "Windows" : "Android_ASTC";
}

std::string MakeCookExecutable(IMaptornEngine& Engine)
{
    return "\"" + Paths::Combine(Engine.EngineDir(), "Binaries", "Win64", "UnrealEditor.exe") + "\"";
}

std::string MakeCookParams(const std::string& AbsoluteProjectFile, bool bWindows)
{
    return Printf("\"%s\" ", AbsoluteProjectFile.c_str()) +
           Printf(" -run=cook -targetplatform=%s+LinuxServer -UnVersioned", CookPlatformName(bWindows));
}

FCooker::FCooker(FMaptornPlatform& InPlatform)
    : Platform(InPlatform)
{
}

bool FCooker::CookMap(const std::string& MapUrl, bool bWindows)
{
    ProjectEnvironment::EnsureEventDrivenLoaderEnabled(Platform.Engine, Platform.Log, ProjectEnvironment::CookStreamingFixLine);
    const std::string ProjectFile = Paths::ConvertRelativePathToFull(Platform.Engine.GetBaseDir(), Platform.Engine.GetProjectFilePath());
    const std::string Params = MakeCookParams(ProjectFile, bWindows) + Printf(" -map=%s", MapUrl.c_str());
    Platform.Log.Log(LogCategory::MaptornLog, ELogVerbosity::Log, Printf("MapURL = %s", MapUrl.c_str()));
    return RunCook(Params, LogCategory::MaptornLog);
}

bool FCooker::CookDefinition(const FModioInterface& Client, bool bWindows, ECookMode Mode, const std::string& Directory)
{
    ProjectEnvironment::EnsureEventDrivenLoaderEnabled(Platform.Engine, Platform.Log, ProjectEnvironment::CookStreamingFixLine);
    const std::string ProjectFile = Paths::ConvertRelativePathToFull(Platform.Engine.GetBaseDir(), Platform.Engine.GetProjectFilePath());
    std::string Params = MakeCookParams(ProjectFile, bWindows);

    if (Mode == ECookMode::LinkedMap)
    {
        const std::shared_ptr<FKelvorDefinition>& Definition = Client.CurrentDefinition;
        if (!Definition)
        {
            return false;
        }
        const std::string& MapPath = bWindows ? Definition->Map : Definition->VeskoMap;
        if (MapPath.empty())
        {
            Platform.Dialogs.MessageBox(EAppMsgType::Ok, Printf("ERROR: %s", "Map is not linked in the definition"), "Cook Error");
            return false;
        }
        const std::string MapUrl = GetLongPackageName(MapPath);
        Params += Printf(" -map=%s", MapUrl.c_str());
        Platform.Log.Log(LogCategory::LogTemp, ELogVerbosity::Log, Printf("MapURL = %s", MapUrl.c_str()));
    }
    else if (Mode == ECookMode::ContentDirectory || Mode == ECookMode::ContentDirectoryAlt)
    {
        Params += Printf(" -cookdir=%s", Directory.c_str());
        Platform.Log.Log(LogCategory::LogTemp, ELogVerbosity::Log, Printf("CookDir = %s", Directory.c_str()));
    }
    else
    {
        Platform.Log.Log(LogCategory::LogTemp, ELogVerbosity::Error, Printf("Unknown cook mode %d", static_cast<int>(Mode)));
        return false;
    }
    return RunCook(Params, LogCategory::LogTemp);
}

bool FCooker::RunCook(const std::string& Params, const char* Category)
{
    Platform.Log.Log(Category, ELogVerbosity::Log, Printf("Cook command: %s", Params.c_str()));
    int32 ReturnCode = 0;
    std::string StdOut;
    std::string StdErr;
    if (!Platform.Processes.ExecProcess(MakeCookExecutable(Platform.Engine), Params, ReturnCode, StdOut, StdErr))
    {
        Platform.Log.Log(Category, ELogVerbosity::Error, Printf("Cook command failed: %s %s", StdOut.c_str(), StdErr.c_str()));
        return false;
    }
    if (ReturnCode != 0)
    {
        Platform.Log.Log(Category, ELogVerbosity::Error,
            Printf("Cook command returned non-zero value: %d \n%s %s", ReturnCode, StdOut.c_str(), StdErr.c_str()));
        return false;
    }
    return true;
}

void FCooker::WriteBuildMarker(bool bFlag)
{
    const std::string Marker = Paths::Combine(Platform.Engine.ProjectSavedDir(), "WorkshopCook.txt");
    FileHelper::SaveStringToFile(bFlag ? "Build:0" : "Build:1", Marker);
}
}
