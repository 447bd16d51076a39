#include "Module/ProjectEnvironment.h"

#include "Common/FileHelper.h"
#include "Common/Paths.h"
#include "Common/StringUtil.h"

namespace Maptorn::ProjectEnvironment
{
static std::string AbsoluteSavedDir(IMaptornEngine& Engine)
{
    return Paths::ConvertRelativePathToFull(Engine.GetBaseDir(), Engine.ProjectSavedDir());
}

std::string GetGameFolder(IMaptornEngine& Engine)
{
    return Paths::Combine(Engine.UserSettingsDir(), "Kelvor");
}

std::string FindModDirectory(IMaptornEngine& Engine)
{
    const std::string GameFolder = GetGameFolder(Engine);
    if (!FileSystem::DirectoryExists(GameFolder))
    {
        return AbsoluteSavedDir(Engine);
    }

    std::string ModDirectory = Paths::Combine(GameFolder, "Saved", "Mods");
    if (IConfigCache* Config = Engine.GetConfig())
    {
        const std::string SettingsFile = Paths::Combine(GameFolder, "Saved", "Config", "Windows", "GameUserSettings.ini");
        // The game may have changed its settings since the editor started: read them fresh.
        Config->RemoveFromCache(SettingsFile);
        const std::optional<std::string> Chosen = Config->GetString(GameSettingsSection, ModDirectoryKey, SettingsFile);
        if (Chosen && !Chosen->empty() && FileSystem::DirectoryExists(*Chosen))
        {
            ModDirectory = *Chosen;
        }
    }
    return ModDirectory;
}

std::string GetDepotDirectory(IMaptornEngine& Engine)
{
    return Paths::Combine(AbsoluteSavedDir(Engine), "Cooked", "Depot");
}

std::string GetWorkshopDirectory(IMaptornEngine& Engine)
{
    return Paths::Combine(AbsoluteSavedDir(Engine), "Cooked", "Workshop");
}

std::string GetCookedDirectory(IMaptornEngine& Engine, const std::string& Platform)
{
    return Paths::Combine(AbsoluteSavedDir(Engine), "Cooked", Platform);
}

std::string GetProjectEngineSettingsPath(IMaptornEngine& Engine)
{
    return Paths::ConvertRelativePathToFull(Engine.GetBaseDir(), Paths::Combine(Engine.ProjectConfigDir(), "DefaultEngine.ini"));
}

// Each of the two texts has exactly one "%s", which stands for the file.
static std::string FormatStreamingFixLine(const char* LogLineFormat, const std::string& SettingsFile)
{
    return ReplaceAll(LogLineFormat, "%s", SettingsFile);
}

void EnsureEventDrivenLoaderEnabled(IMaptornEngine& Engine, IMaptornLog& Log, const char* LogLineFormat)
{
    IConfigCache* Config = Engine.GetConfig();
    if (!Config)
    {
        return;
    }
    const std::string SettingsFile = GetProjectEngineSettingsPath(Engine);
    Config->RemoveFromCache(SettingsFile);
    const bool bEnabled = Config->GetBool(StreamingSettingsSection, EventDrivenLoaderKey, SettingsFile).value_or(false);
    if (bEnabled)
    {
        return;
    }
    Config->SetBool(StreamingSettingsSection, EventDrivenLoaderKey, true, SettingsFile);
    Config->Flush(false, SettingsFile);
    Log.Log(LogCategory::LogTemp, ELogVerbosity::Log, FormatStreamingFixLine(LogLineFormat, SettingsFile));
}
}
