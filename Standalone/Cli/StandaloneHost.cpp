#include "Cli/StandaloneHost.h"

#include "Cli/ProjectLocator.h"
#include "Common/Paths.h"

#include <chrono>
#include <optional>
#include <filesystem>
#include <thread>
#include <ostream>

namespace Maptorn::Cli
{
namespace
{
FStandaloneEngineSettings MakeEngineSettings(const FResolvedSettings& Settings, const std::string& ProjectFile, const std::string& EngineRoot)
{
    std::error_code Error;
    FStandaloneEngineSettings EngineSettings;
    EngineSettings.ProjectFile = ProjectFile;
    EngineSettings.EngineRoot = EngineRoot;
    EngineSettings.UserSettingsDir = Settings.UserSettingsDir.Value;
    EngineSettings.BaseDir = std::filesystem::current_path(Error).generic_string() + "/";
    return EngineSettings;
}
}

std::unique_ptr<FStandaloneHost> FStandaloneHost::Create(const FCommandContext& Context, bool bNeedsEngine, std::string& OutError)
{
    FResolvedSettings Settings;
    if (!ResolveSettings(Context.Options, Settings, OutError))
    {
        return nullptr;
    }
    std::string ProjectFile;
    if (!LocateProjectFile(Settings.Project.Value, ProjectFile, OutError))
    {
        return nullptr;
    }
    std::string EngineRoot;
    if (!Settings.Engine.Value.empty())
    {
        if (!LocateEngineRoot(Settings.Engine.Value, EngineRoot, OutError))
        {
            return nullptr;
        }
    }
    else if (bNeedsEngine)
    {
        OutError = "This command needs the engine folder: pass --engine <folder that holds Engine/> or set MAPTORN_ENGINE.";
        return nullptr;
    }
    return std::unique_ptr<FStandaloneHost>(new FStandaloneHost(Context, std::move(Settings), std::move(ProjectFile), std::move(EngineRoot)));
}

FStandaloneHost::FStandaloneHost(const FCommandContext& Context, FResolvedSettings InSettings, std::string InProjectFile, std::string InEngineRoot)
    : Settings(std::move(InSettings))
    , ProjectFile(std::move(InProjectFile))
    , EngineRoot(std::move(InEngineRoot))
    , Dialogs(Context.Out, Context.In, Context.bInteractive)
    , Engine(MakeEngineSettings(Settings, ProjectFile, EngineRoot))
    , Definitions(Engine)
    , Platform{Log, Dialogs, Engine, Definitions, Processes, Tasks, Http, Archive, nullptr}
{
    Log.SetVerbose(Context.Options.bVerbose);
    if (!Context.Options.LogFile.empty() && !Log.OpenFile(Context.Options.LogFile))
    {
        Context.Err << "warning: cannot write the log file " << Context.Options.LogFile << "; logging to the console only\n";
    }
    Dialogs.SetAssumeYes(Context.Options.bAssumeYes);
}

bool FStandaloneHost::RequireModioSettings(std::string& OutError) const
{
    if (Settings.ModioGameId.Value.empty() || Settings.ModioApiKey.Value.empty())
    {
        OutError = "This command talks to mod.io: set the game id and API key (--modio-game-id and --modio-api-key-file, "
                   "MAPTORN_MODIO_GAME_ID and MAPTORN_MODIO_API_KEY, or the config file).";
        return false;
    }
    return true;
}

bool FStandaloneHost::CreateModioSession(std::string& OutError)
{
    if (!RequireModioSettings(OutError))
    {
        return false;
    }
    Session = std::make_unique<FRestModioSession>(Http, StoredLoginPath(MakeModuleConfig(Settings).ModioGameId), &Log);
    Platform.ModioSession = Session.get();
    return true;
}

int Fail(const FCommandContext& Context, int ExitCode, const std::string& Message)
{
    Context.Err << "error: " << Message << std::endl;
    return ExitCode;
}
}
