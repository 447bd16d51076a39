#include "Cli/Commands/Commands.h"
#include "Cli/Interrupt.h"

#include <CLI/CLI.hpp>

#include <iostream>
#include <unistd.h>

using namespace Maptorn::Cli;

namespace
{
void AddGlobalOptions(CLI::App& App, FHostOptions& Options)
{
    App.add_option("--project", Options.Project, "The Unreal project: its folder or its .uproject file (default: found from the working folder)");
    App.add_option("--engine", Options.Engine, "The engine folder, the one that holds Engine/");
    App.add_option("--config", Options.ConfigFile, "A config file with a [maptorn] section (default: $XDG_CONFIG_HOME/maptorn/config.ini)");
    App.add_option("--user-settings-dir", Options.UserSettingsDir, "The user's settings folder, where the game keeps its files (%LOCALAPPDATA% on Windows)");
    App.add_option("--steam-app-id", Options.SteamAppId, "The game's Steam application id");
    App.add_option("--modio-url", Options.ModioBaseUrl, "The mod.io API origin (default: https://g-<game id>.modapi.io)");
    App.add_option("--modio-game-id", Options.ModioGameId, "The game's mod.io game id");
    App.add_option("--modio-api-key-file", Options.ModioApiKeyFile,
        "A file holding the game's mod.io API key, or - to read it from standard input (or: MAPTORN_MODIO_API_KEY, the config file)");
    App.add_option("--log-file", Options.LogFile, "Also write every log line to this file");
    App.add_flag("--yes,-y", Options.bAssumeYes, "Answer yes to every question");
    App.add_flag("--verbose,-v", Options.bVerbose, "Show progress log lines too, not only warnings and errors");
    App.add_flag("--json", Options.bJson, "Print the result as JSON (commands that have a result)");
}

// A command's own --json, or the global one given before the command.
template <typename FRequest>
const FRequest& WithJson(FRequest& Request, const FHostOptions& Options)
{
    Request.bJson = Request.bJson || Options.bJson;
    return Request;
}
}

int main(int Argc, char** Argv)
{
    InstallInterruptHandlers();
    CLI::App App{"maptorn: the Kelvor Workshop from the command line: create, build and publish Kelvor content."};
    App.require_subcommand(1);
    // Global options may come before or after the command; subcommands inherit this when added.
    App.fallthrough();
    FHostOptions Options;
    AddGlobalOptions(App, Options);
    const FCommandContext Context{Options, std::cout, std::cerr, std::cin, isatty(STDIN_FILENO) != 0};
    int ExitCode = ExitSuccess;

    CLI::App* Env = App.add_subcommand("env", "Show the project, engine, game folders and configuration the workshop uses");
    Env->callback([&] { ExitCode = RunEnv(Context); });

    CLI::App* Map = App.add_subcommand("map", "The project's own map (a Steam Workshop or server map)");
    Map->require_subcommand(1);
    CLI::App* MapCreate = Map->add_subcommand("create", "Create the project's map definition in Content/CustomMaps/SVR_<id>");
    std::string MapId, MapName;
    MapCreate->add_option("id", MapId, "The map's id: letters, digits, '-' and '_'")->required();
    MapCreate->add_option("--name", MapName, "The map's name, 3-32 characters")->required();
    MapCreate->callback([&] { ExitCode = RunMapCreate(Context, MapId, MapName); });
    CLI::App* MapSet = Map->add_subcommand("set", "Point the project map's definition at its levels, as the editor's details panel does");
    FMapSetRequest MapSetRequest;
    MapSet->add_option("--map", MapSetRequest.Map, "The Windows map, e.g. /Game/CustomMaps/SVR_Harbour/Harbour.Harbour");
    MapSet->add_option("--quest-map", MapSetRequest.QuestMap, "The Android/Quest map");
    MapSet->callback([&] { ExitCode = RunMapSet(Context, MapSetRequest); });

    CLI::App* Plugin = App.add_subcommand("plugin", "Content plug-ins of mod.io mods (UGC<mod id>)");
    Plugin->require_subcommand(1);
    CLI::App* PluginCreate = Plugin->add_subcommand("create", "Create the plug-in UGC<modid> from the engine's ContentOnly template, with its definition");
    std::string ModId, TypeWord;
    PluginCreate->add_option("modid", ModId, "The mod's id on mod.io (digits)")->required();
    PluginCreate->add_option("--type", TypeWord, "What the mod holds: map, mod or gamemode")->required();
    PluginCreate->callback([&] { ExitCode = RunPluginCreate(Context, ModId, TypeWord); });
    CLI::App* PluginSet = Plugin->add_subcommand("set", "Point the definition of UGC<modid> at its maps or game logic, as the editor's details panel does");
    FPluginSetRequest PluginSetRequest;
    PluginSet->add_option("modid", PluginSetRequest.ModId, "The mod's id on mod.io (digits)")->required();
    PluginSet->add_option("--map", PluginSetRequest.Map, "The Windows map, e.g. /UGC4711/Maps/Arena.Arena");
    PluginSet->add_option("--quest-map", PluginSetRequest.QuestMap, "The Android/Quest map, e.g. /UGC4711/Maps/Arena_Quest.Arena_Quest");
    PluginSet->add_option("--game-logic", PluginSetRequest.GameLogic, "Game modes: the game-logic class");
    PluginSet->callback([&] { ExitCode = RunPluginSet(Context, PluginSetRequest); });

    CLI::App* Cook = App.add_subcommand("cook", "Cook content with the engine's editor (the chosen platform plus LinuxServer)");
    FCookRequest CookRequest;
    Cook->add_option("modid", CookRequest.ModId, "Cook the plug-in UGC<modid>: its definition's linked map, or --cookdir");
    Cook->add_option("--map", CookRequest.MapUrl, "Cook this map package instead, e.g. /Game/CustomMaps/SVR_Bay/Bay");
    Cook->add_option("--cookdir", CookRequest.CookDirectory, "Cook a content folder of the plug-in, e.g. /UGC4711/");
    Cook->add_flag("--android", CookRequest.bAndroid, "Cook for Android (ASTC) instead of Windows");
    Cook->callback([&] { ExitCode = RunCook(Context, CookRequest); });

    CLI::App* Pak = App.add_subcommand("pak", "Pack the cooked content of UGC<modid> into one pak with the engine's pak tool");
    std::string PakModId, PakPlatform = "Windows", PakOutput;
    Pak->add_option("modid", PakModId, "The mod's id on mod.io (digits)")->required();
    Pak->add_option("--platform", PakPlatform, "The cooked platform: Windows, Android_ASTC or LinuxServer")->capture_default_str();
    Pak->add_option("--output", PakOutput, "Folder for the pak and its metadata.json (default: Saved/Cooked/Workshop)");
    Pak->callback([&] { ExitCode = RunPak(Context, PakModId, PakPlatform, PakOutput); });

    CLI::App* Package = App.add_subcommand("package", "Package UGC<modid> per platform with the automation tool, for upload or staged into a game install");
    FPackageRequest PackageRequest;
    Package->add_option("modid", PackageRequest.ModId, "The mod's id on mod.io (digits)")->required();
    Package->add_flag("--windows", PackageRequest.bWindows, "The Windows client (and the Kelvor Linux server when not staging)");
    Package->add_flag("--android", PackageRequest.bAndroid, "Quest/Android and the Vesko Linux server");
    Package->add_option("--stage-dir", PackageRequest.StageDir, "Stage into this game install folder instead of packaging for upload");
    Package->callback([&] { ExitCode = RunPackage(Context, PackageRequest); });

    CLI::App* Deploy = App.add_subcommand("deploy", "Prepare the Steam Workshop build of the project's map in Saved/Cooked/Depot");
    bool bDeployWindows = false, bDeployAndroid = false;
    Deploy->add_flag("--windows", bDeployWindows, "Cook the Windows map (wins over --android)");
    Deploy->add_flag("--android", bDeployAndroid, "Cook the Android map");
    Deploy->callback([&] { ExitCode = RunDeploy(Context, bDeployWindows, bDeployAndroid); });

    CLI::App* StageSteam = App.add_subcommand("stage-steam", "Cook the project's map for the Steam game and stage it into its install folder");
    std::string SteamInstallDir;
    StageSteam->add_option("--install-dir", SteamInstallDir, "Your Steam Kelvor install folder")->required();
    StageSteam->callback([&] { ExitCode = RunStageSteam(Context, SteamInstallDir); });

    CLI::App* Browse = App.add_subcommand("browse", "List shared source plug-ins on mod.io, twenty to a page");
    FBrowseRequest BrowseRequest;
    Browse->add_option("--search", BrowseRequest.SearchText, "Names containing this text (1-32 characters)");
    Browse->add_option("--sort", BrowseRequest.Sort, "popular, subscribers, newest, updated, rating, downloads, name, -name or installed")->capture_default_str();
    Browse->add_option("--page", BrowseRequest.Page, "Page number, from 1")->capture_default_str();
    Browse->add_flag("--json", BrowseRequest.bJson, "Print the page as JSON");
    Browse->callback([&] { ExitCode = RunBrowse(Context, WithJson(BrowseRequest, Options)); });

    CLI::App* Login = App.add_subcommand("login", "Log in to mod.io with an e-mail security code");
    std::string LoginEmail, LoginCode;
    Login->add_option("--email", LoginEmail, "Your mod.io account's e-mail (asked on a terminal when left out)");
    Login->add_option("--code", LoginCode, "The 5-character code from the e-mail (asked on a terminal when left out)");
    Login->callback([&] { ExitCode = RunLogin(Context, LoginEmail, LoginCode); });
    App.add_subcommand("logout", "Log out of mod.io and delete the stored login")->callback([&] { ExitCode = RunLogout(Context); });
    CLI::App* WhoAmI = App.add_subcommand("whoami", "Tell whether the stored mod.io login is still valid");
    bool bWhoAmIJson = false;
    WhoAmI->add_flag("--json", bWhoAmIJson, "Print the answer as JSON");
    WhoAmI->callback([&] { ExitCode = RunWhoAmI(Context, bWhoAmIJson || Options.bJson); });

    CLI::App* Create = App.add_subcommand("create", "Create a mod on mod.io and its plug-in UGC<id> in the project (needs a login)");
    FCreateRequest CreateRequest;
    Create->add_option("--name", CreateRequest.Name, "The mod's name")->required();
    Create->add_option("--summary", CreateRequest.Summary, "One paragraph about the mod (at most 250 characters are kept)")->required();
    Create->add_option("--logo", CreateRequest.LogoPath, "The mod's logo image (default: the workshop's Kelvor thumbnail)");
    Create->add_option("--type", CreateRequest.TypeWord, "What the mod holds: map, mod or gamemode")->capture_default_str();
    Create->add_flag("--json", CreateRequest.bJson, "Print the result as JSON");
    Create->callback([&] { ExitCode = RunCreate(Context, WithJson(CreateRequest, Options)); });

    CLI::App* Upload = App.add_subcommand("upload", "Package UGC<modid> and upload one file per platform to mod.io (needs a login)");
    FUploadRequest UploadRequest;
    Upload->add_option("modid", UploadRequest.ModId, "Your mod's id on mod.io (digits)")->required();
    Upload->add_flag("--windows", UploadRequest.bWindows, "The Windows client and the Kelvor Linux server");
    Upload->add_flag("--android", UploadRequest.bAndroid, "Quest/Android and the Vesko Linux server");
    Upload->add_flag("--share-source", UploadRequest.bShareSource, "Also share the plug-in's source with other modders (content mods only)");
    Upload->add_option("--changelog", UploadRequest.Changelog, "What changed in this version");
    Upload->add_flag("--json", UploadRequest.bJson, "Print the result as JSON");
    Upload->callback([&] { ExitCode = RunUpload(Context, WithJson(UploadRequest, Options)); });

    CLI::App* Stage = App.add_subcommand("stage", "Package UGC<modid> for Windows and stage it into a local Kelvor install to try it");
    FUploadRequest StageRequest;
    Stage->add_option("modid", StageRequest.ModId, "Your mod's id on mod.io (digits)")->required();
    Stage->add_option("--stage-dir", StageRequest.StageDir, "The Kelvor install folder to stage into")->required();
    Stage->add_flag("--json", StageRequest.bJson, "Print the result as JSON");
    Stage->callback([&] { ExitCode = RunUpload(Context, WithJson(StageRequest, Options)); });

    CLI::App* Install = App.add_subcommand("install", "Download a shared source plug-in from mod.io into the project's plug-ins");
    std::string InstallModId;
    Install->add_option("modid", InstallModId, "The source plug-in's mod id on mod.io (digits)")->required();
    bool bInstallJson = false, bWithDependencies = false;
    Install->add_flag("--json", bInstallJson, "Print the result as JSON");
    Install->add_flag("--with-dependencies", bWithDependencies,
        "Also install the plug-ins it needs that the project lacks (without it they are only listed)");
    Install->callback([&] { ExitCode = RunInstall(Context, InstallModId, bInstallJson || Options.bJson, bWithDependencies); });

    CLI::App* Deps = App.add_subcommand("deps", "List what a shared source plug-in needs from mod.io, or add a dependency to your own mod");
    std::string DepsModId;
    bool bDepsJson = false;
    Deps->add_option("modid", DepsModId, "The source plug-in's mod id on mod.io (digits)");
    Deps->add_flag("--json", bDepsJson, "Print the list as JSON");
    CLI::App* DepsAdd = Deps->add_subcommand("add", "Make your mod <modid> need the mod <dependency> on mod.io (needs a login)");
    std::string DepsAddModId, DependencyId;
    DepsAdd->add_option("modid", DepsAddModId, "Your mod's id on mod.io (digits)")->required();
    DepsAdd->add_option("dependency", DependencyId, "The id of the mod it needs (digits)")->required();
    DepsAdd->callback([&] { ExitCode = RunDepsAdd(Context, DepsAddModId, DependencyId); });
    Deps->callback([&] {
        if (Deps->got_subcommand(DepsAdd))
        {
            return;
        }
        ExitCode = DepsModId.empty() ? Fail(Context, ExitBadInput, "Name the plug-in: `maptorn deps <modid>`, or `maptorn deps add <modid> <dependency>`.")
                                     : RunDeps(Context, DepsModId, bDepsJson || Options.bJson);
    });

    CLI::App* Mods = App.add_subcommand("mods", "List your own mods on mod.io that this project can upload (needs a login)");
    bool bModsJson = false;
    Mods->add_flag("--json", bModsJson, "Print the list as JSON");
    Mods->callback([&] { ExitCode = RunMods(Context, bModsJson || Options.bJson); });

    CLI::App* Sample = App.add_subcommand("sample", "Lay out a sample project and stand-in engine to try the tool on");
    std::string SampleFolder;
    Sample->add_option("folder", SampleFolder, "A new or empty folder")->required();
    Sample->callback([&] { ExitCode = RunSampleCreate(Context, SampleFolder); });

    CLI::App* Demo = App.add_subcommand("demo", "Run the workflow end to end on a generated sample project");
    std::string DemoFolder;
    bool bKeep = false;
    Demo->add_option("--dir", DemoFolder, "Where to lay out the sample (default: a new temporary folder)");
    Demo->add_flag("--keep", bKeep, "Keep the sample afterwards");
    Demo->callback([&] { ExitCode = RunDemo(Context, DemoFolder, bKeep); });

    try
    {
        App.parse(Argc, Argv);
    }
    catch (const CLI::CallForHelp& Help)
    {
        return App.exit(Help);
    }
    catch (const CLI::ParseError& Error)
    {
        App.exit(Error);
        return ExitBadInput;
    }
    return ExitCode;
}
