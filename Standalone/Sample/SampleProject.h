#pragma once

#include <optional>
#include <string>

namespace Maptorn::Sample
{
struct FSampleOptions
{
    std::string ProjectName = "KelvorModKit";
    // False writes s.EventDrivenLoaderEnabled=False in DefaultEngine.ini, the state the
    // workshop asks the user to fix; true writes True.
    bool bEventDrivenLoaderEnabled = false;
    // Lays out the game's user settings (Kelvor/Saved/Config/Windows/GameUserSettings.ini).
    bool bWithGameInstall = false;
    // Written as ModDirectory= in GameUserSettings.ini when given (needs bWithGameInstall).
    std::optional<std::string> ModDirectory;
    // When set, the stand-in engine tools are installed from this binary.
    std::string StandinBinary;
};

// Where things went. Directories end with "/" except EngineRoot, the folder that holds Engine/.
struct FSampleLayout
{
    std::string Root;
    std::string ProjectDir;
    std::string ProjectFile;
    std::string EngineRoot;
    std::string UserSettingsDir;
    bool bCreated = false;
    std::string FailReason; // set when bCreated is false
};

// Lays out, under Root, a sample project (Root/Project), a stand-in engine folder with its
// version file and the plug-in browser's ContentOnly template (Root/Engine), and a user-settings
// folder (Root/UserSettings). Never throws; a failed step is reported in the result.
// Where the sample's automation tool keeps its logs: <user settings>/../Roaming/Unreal Engine/AutomationTool/Logs.
std::string AutomationLogsDir(const FSampleLayout& Layout);

FSampleLayout CreateSampleLayout(const std::string& Root, const FSampleOptions& Options = {});
}
