#include "Cli/Commands/Commands.h"

#include "Common/FileHelper.h"
#include "Common/StringUtil.h"
#include "Content/ModDefinitions.h"
#include "Content/SVRInterface.h"
#include "Module/ProjectEnvironment.h"

#include <iomanip>
#include <ostream>

namespace Maptorn::Cli
{
namespace
{
void PrintRow(std::ostream& Out, const std::string& Label, const std::string& Value)
{
    Out << std::left << std::setw(22) << (Label + ":") << Value << '\n';
}

std::string WithSource(const FSetting& Setting)
{
    return Setting.Value.empty() ? "not set" : Setting.Value + "  (" + Setting.Source + ")";
}

// The key itself is a secret: only whether it is there, and its length.
std::string DescribeApiKey(const FSetting& Setting)
{
    if (Setting.Value.empty())
    {
        return "not set";
    }
    return "set, " + std::to_string(Setting.Value.size()) + " characters  (" + Setting.Source + ")";
}

std::string DescribeStreamingSetting(FStandaloneHost& Host)
{
    const std::string Ini = ProjectEnvironment::GetProjectEngineSettingsPath(Host.Engine);
    const std::optional<bool> Enabled = Host.Engine.GetConfig()->GetBool(
        ProjectEnvironment::StreamingSettingsSection, ProjectEnvironment::EventDrivenLoaderKey, Ini);
    if (Enabled.value_or(false))
    {
        return "s.EventDrivenLoaderEnabled is True";
    }
    return std::string("s.EventDrivenLoaderEnabled is ") + (Enabled ? "False" : "missing") + " (the workshop sets it to True when it starts)";
}

std::string DescribeProjectMap(FStandaloneHost& Host)
{
    FSVRInterface SVR(Host.Platform);
    if (SVR.Id.empty())
    {
        return "none";
    }
    const std::string Folder = (SVR.bIsUGC ? "UGC" : "SVR_") + SVR.Id;
    std::shared_ptr<FKelvorDefinition> Definition = SVR.GetMapDefinition();
    return Folder + (Definition ? " (definition \"" + Definition->DisplayName + "\")" : " (no definition yet)");
}

std::string DescribeUGCPlugins(FStandaloneHost& Host)
{
    std::string List;
    for (const FPluginInfo& Plugin : Host.Engine.GetEnabledPlugins())
    {
        if (!StartsWithIgnoreCase(Plugin.Name, "UGC") || !Plugin.bCanContainContent)
        {
            continue;
        }
        std::string Kind = "no definition";
        for (EModType Type : {EModType::Map, EModType::Mod, EModType::GameMode})
        {
            if (LoadModDefinition(Host.Platform, Plugin.Name.substr(3), Type))
            {
                Kind = ModTypeWord(Type);
            }
        }
        List += (List.empty() ? "" : ", ") + Plugin.Name + " (" + Kind + ")";
    }
    return List.empty() ? "none" : List;
}
}

int RunEnv(const FCommandContext& Context)
{
    std::string Error;
    std::unique_ptr<FStandaloneHost> Host = FStandaloneHost::Create(Context, false, Error);
    if (!Host)
    {
        return Fail(Context, ExitNoEnvironment, Error);
    }
    std::ostream& Out = Context.Out;
    const std::string GameFolder = ProjectEnvironment::GetGameFolder(Host->Engine);

    PrintRow(Out, "Project file", Host->ProjectFile + "  (" + (Host->Settings.Project.Value.empty() ? std::string("found from the working folder") : Host->Settings.Project.Source) + ")");
    PrintRow(Out, "Engine folder", Host->EngineRoot.empty() ? "not set (needed to create plug-ins and to build)" : Host->EngineRoot + "  (" + Host->Settings.Engine.Source + ")");
    PrintRow(Out, "Engine version", Host->EngineRoot.empty() ? "unknown" : Host->Engine.EngineVersionString());
    PrintRow(Out, "User settings folder", WithSource(Host->Settings.UserSettingsDir));
    PrintRow(Out, "Game folder", GameFolder + (FileSystem::DirectoryExists(GameFolder) ? "" : "  (the game is not installed for this user)"));
    PrintRow(Out, "Mod directory", ProjectEnvironment::FindModDirectory(Host->Engine));
    PrintRow(Out, "Depot directory", ProjectEnvironment::GetDepotDirectory(Host->Engine));
    PrintRow(Out, "Workshop directory", ProjectEnvironment::GetWorkshopDirectory(Host->Engine));
    PrintRow(Out, "DefaultEngine.ini", ProjectEnvironment::GetProjectEngineSettingsPath(Host->Engine));
    PrintRow(Out, "Streaming setting", DescribeStreamingSetting(*Host));
    PrintRow(Out, "Project map", DescribeProjectMap(*Host));
    PrintRow(Out, "UGC plug-ins", DescribeUGCPlugins(*Host));
    PrintRow(Out, "Config file", Host->Settings.ConfigFile.empty() ? "none (looked for " + DefaultConfigFilePath() + ")" : Host->Settings.ConfigFile);
    PrintRow(Out, "Steam app id", WithSource(Host->Settings.SteamAppId));
    PrintRow(Out, "mod.io URL", WithSource(Host->Settings.ModioBaseUrl));
    PrintRow(Out, "mod.io game id", WithSource(Host->Settings.ModioGameId));
    PrintRow(Out, "mod.io API key", DescribeApiKey(Host->Settings.ModioApiKey));
    return ExitSuccess;
}
}
