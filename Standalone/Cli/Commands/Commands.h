#pragma once

#include "Cli/StandaloneHost.h"
#include "Sample/SampleProject.h"

#include <optional>
#include <string>

namespace Maptorn::Cli
{
struct FCookRequest
{
    std::string ModId;           // cook the plug-in's definition: its linked map, or CookDirectory
    std::string MapUrl;          // or cook this map package
    std::string CookDirectory;
    bool bAndroid = false;
};

struct FPackageRequest
{
    std::string ModId;
    bool bWindows = false;
    bool bAndroid = false;
    std::string StageDir;        // staging instead of packaging for upload when set
};

struct FBrowseRequest
{
    std::string SearchText;
    std::string Sort = "popular";
    int Page = 1;
    bool bJson = false;
};

// What `maptorn plugin set` changes in a plug-in's definition; unset members stay.
struct FPluginSetRequest
{
    std::string ModId;
    std::optional<std::string> Map;        // the Windows map, an object path
    std::optional<std::string> QuestMap;   // the Android/Quest map
    std::optional<std::string> GameLogic;  // game modes: the game-logic class
};

struct FMapSetRequest
{
    std::optional<std::string> Map;        // the project map's Windows map, an object path
    std::optional<std::string> QuestMap;   // its Android/Quest map
};

struct FCreateRequest
{
    std::string Name;
    std::string Summary;
    std::string LogoPath;        // the plug-in's default logo when empty
    std::string TypeWord = "map";
    bool bJson = false;
};

struct FUploadRequest
{
    std::string ModId;
    bool bWindows = false;
    bool bAndroid = false;
    bool bShareSource = false;
    std::string Changelog;
    std::string StageDir;        // stage into this game folder instead of uploading
    bool bJson = false;
};

// Each command answers its process exit code (EExitCode).
int RunEnv(const FCommandContext& Context);
int RunMapCreate(const FCommandContext& Context, const std::string& MapId, const std::string& MapName);
int RunPluginCreate(const FCommandContext& Context, const std::string& ModId, const std::string& TypeWord);
int RunPluginSet(const FCommandContext& Context, const FPluginSetRequest& Request);
int RunMapSet(const FCommandContext& Context, const FMapSetRequest& Request);
int RunCook(const FCommandContext& Context, const FCookRequest& Request);
int RunPak(const FCommandContext& Context, const std::string& ModId, const std::string& PlatformName, const std::string& OutputDirectory);
int RunPackage(const FCommandContext& Context, const FPackageRequest& Request);
int RunDeploy(const FCommandContext& Context, bool bWindows, bool bAndroid);
int RunStageSteam(const FCommandContext& Context, const std::string& InstallDir);
int RunBrowse(const FCommandContext& Context, const FBrowseRequest& Request);
int RunMods(const FCommandContext& Context, bool bJson);
// With bWithDependencies the missing dependencies are installed first; without, they are listed.
int RunInstall(const FCommandContext& Context, const std::string& ModId, bool bJson = false, bool bWithDependencies = false);
int RunDeps(const FCommandContext& Context, const std::string& ModId, bool bJson);
int RunDepsAdd(const FCommandContext& Context, const std::string& ModId, const std::string& DependencyId);
int RunLogin(const FCommandContext& Context, const std::string& Email, const std::string& Code);
int RunLogout(const FCommandContext& Context);
int RunWhoAmI(const FCommandContext& Context, bool bJson);
int RunCreate(const FCommandContext& Context, const FCreateRequest& Request);
// Uploads, or stages when the request names a stage folder.
int RunUpload(const FCommandContext& Context, const FUploadRequest& Request);
// Sample options that install the stand-in engine built beside this program.
Sample::FSampleOptions SampleOptionsWithStandin();
int RunSampleCreate(const FCommandContext& Context, const std::string& Folder);
int RunDemo(const FCommandContext& Context, const std::string& Folder, bool bKeep);
}
