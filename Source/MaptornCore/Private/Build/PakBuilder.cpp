#include "Build/PakBuilder.h"

#include "Common/FileHelper.h"
#include "Common/JsonWriter.h"
#include "Common/Paths.h"
#include "Common/StringUtil.h"
#include "Content/ModDefinitions.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace Maptorn
{
namespace
{
// The first kind whose definition the plug-in holds; a plug-in has only one.
// Sorted so that the same cooked content always gives the same list.
std::string BuildPakList(IMaptornLog& Log, const std::string& CookedSourceDir, const std::string& MountPoint)
{
    std::vector<std::string> Files = FileSystem::ListFilesRecursively(CookedSourceDir);
    std::sort(Files.begin(), Files.end());

    const std::string Prefix = CookedSourceDir + "/";
    std::string PakList;
    for (const std::string& File : Files)
    {
        std::string RelativePath = ReplaceAll(File, "\\", "/");
        if (RelativePath.starts_with(Prefix))
        {
            RelativePath.erase(0, Prefix.size());
        }
        Log.Log(LogCategory::LogTemp, ELogVerbosity::Log, Printf("Adding to paklist %s", RelativePath.c_str()));
        PakList += MakePakListLine(File, MountPoint, RelativePath);
    }
    return PakList;
}

bool RunPakTool(FMaptornPlatform& Platform, const std::string& PakTool, const std::string& Params)
{
    int32 ReturnCode = 0;
    std::string StdOut;
    std::string StdErr;
    if (!Platform.Processes.ExecProcess(PakTool, Params, ReturnCode, StdOut, StdErr))
    {
        Platform.Log.Log(LogCategory::LogTemp, ELogVerbosity::Error,
            Printf("Pak command failed: %s %s", PakTool.c_str(), Params.c_str()));
        return false;
    }
    if (ReturnCode != 0)
    {
        Platform.Log.Log(LogCategory::LogTemp, ELogVerbosity::Error,
            Printf("Pak command returned non-zero value: %d \n%s %s", ReturnCode, StdOut.c_str(), StdErr.c_str()));
        return false;
    }
    return true;
}
}

const char* ContentFolderForModType(uint8 ModType)
{
    switch (ModType)
    {
    case 0: return "CustomMaps";
    case 1: return "CustomMods";
    case 2: return "CustomGameModes";
    default: return "";
    }
}

std::string PakPlatformFor(const std::string& Platform)
{
    if (EqualsIgnoreCase(Platform, "Windows"))
    {
        return "Windows";
    }
    if (EqualsIgnoreCase(Platform, "Android_ASTC"))
    {
        return "Android_ASTC";
    }
    return "Linux";
}

std::string MakePakMountPoint(uint8 ModType, const std::string& /*ModId*/)
{
    // The mod id is deliberately not part of the mount point: the game mounts every UGC pak of a
    // type under the same folder and expects exactly this.
    return Printf("../../../UGC%s", ContentFolderForModType(ModType));
}

std::string MakePakListLine(const std::string& AbsoluteFile, const std::string& MountPoint, const std::string& RelativePath)
{
    return Printf("\"%s\" \"%s/%s\"\r\n", AbsoluteFile.c_str(), MountPoint.c_str(), RelativePath.c_str());
}

std::string MakePakParams(const std::string& PakFile, const std::string& PakListFile, const std::string& PakPlatform)
{
    return Printf("\"%s\" ", PakFile.c_str()) + Printf("-create=\"%s\" ", PakListFile.c_str())
        + Printf("-platform=\"%s\" -UTF8Output -multiprocess -patchpaddingalign=2048", PakPlatform.c_str());
}

std::string MakePakMetadataJson(const std::string& EngineVersion, uint8 ModType)
{
    Json::FJsonObject Metadata = Json::FJsonObject::object();
    if (const std::optional<std::string> Version = EngineVersionBeforeDash(EngineVersion))
    {
        Metadata["EngineVersion"] = *Version;
    }
    Metadata["ModType"] = ModType;
    return Json::WritePretty(Metadata);
}

bool BuildPak(FMaptornPlatform& Platform, const std::string& ModId, const std::string& PlatformName,
    const std::string& OutputDirectory, int64& OutPakSize)
{
    const std::shared_ptr<FKelvorDefinition> Definition = LoadAnyModDefinition(Platform, ModId);
    if (!Definition)
    {
        return false;
    }
    const uint8 ModTypeValue = static_cast<uint8>(Definition->Class);
    IMaptornEngine& Engine = Platform.Engine;
    const std::string PluginName = MakeUGCPluginName(ModId);
    const std::string PakTool = "\"" + Paths::Combine(Engine.EngineDir(), "Binaries", "Win64", "UnrealPak.exe") + "\"";

    const std::string SavedDir = Paths::ConvertRelativePathToFull(Engine.GetBaseDir(), Engine.ProjectSavedDir());
    const std::string PakListFile = Paths::Combine(SavedDir, "custommap_paklist.txt");
    const std::string CookedSourceDir = Paths::Combine(SavedDir, "Cooked", PlatformName, PluginName);

    const std::string PakList = BuildPakList(Platform.Log, CookedSourceDir, MakePakMountPoint(ModTypeValue, ModId));
    FileHelper::SaveStringToFile(PakList, PakListFile);

    const std::string PakFile = Paths::Combine(OutputDirectory, PluginName + ".pak");
    const bool bPakToolSucceeded =
        RunPakTool(Platform, PakTool, MakePakParams(PakFile, PakListFile, PakPlatformFor(PlatformName)));

    OutPakSize = FileSystem::FileSize(PakFile);
    FileHelper::SaveStringToFile(MakePakMetadataJson(Engine.EngineVersionString(), ModTypeValue),
        Paths::Combine(OutputDirectory, "metadata.json"));
    return bPakToolSucceeded;
}
}
