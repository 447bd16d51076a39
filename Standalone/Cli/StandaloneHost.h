#pragma once

#include "Cli/HostOptions.h"
#include "Platform/ConsoleDialogs.h"
#include "Platform/ConsoleLog.h"
#include "Platform/JsonDefinitions.h"
#include "Platform/RestModioSession.h"
#include "Platform/MaptornPlatform.h"
#include "Platform/StandaloneEngine.h"
#include "Platform/StandaloneProcesses.h"
#include "Platform/StandaloneTasks.h"
#include "Platform/CurlHttp.h"
#include "Platform/ZipArchive.h"

#include <functional>
#include <iosfwd>
#include <memory>
#include <string>

namespace Maptorn::Cli
{
enum EExitCode : int
{
    ExitSuccess = 0,
    ExitFailed = 1,         // the work was tried and did not succeed
    ExitBadInput = 2,       // the command line was wrong; nothing was changed
    ExitNoEnvironment = 3,  // no project, no engine or a broken configuration; nothing was changed
};

// What every command gets: the parsed options and the console.
struct FCommandContext
{
    const FHostOptions& Options;
    std::ostream& Out;
    std::ostream& Err;
    std::istream& In;
    bool bInteractive = false;
};

// The platform of the standalone host: every port's adapter over one project folder.
class FStandaloneHost
{
public:
    // Resolves settings, the project and (when needed) the engine; null with a message otherwise.
    static std::unique_ptr<FStandaloneHost> Create(const FCommandContext& Context, bool bNeedsEngine, std::string& OutError);

    // False with a message when the mod.io game id or API key is missing.
    bool RequireModioSettings(std::string& OutError) const;
    // Creates the mod.io session for the module to initialise. False with a message when mod.io
    // is not configured.
    bool CreateModioSession(std::string& OutError);

    FResolvedSettings Settings;
    std::string ProjectFile;
    std::string EngineRoot;

    FConsoleLog Log;
    FConsoleDialogs Dialogs;
    FStandaloneEngine Engine;
    FJsonDefinitions Definitions;
    FStandaloneProcesses Processes;
    FStandaloneTasks Tasks;
    FCurlHttp Http{Tasks};
    FZipArchive Archive;
    std::unique_ptr<FRestModioSession> Session;
    FMaptornPlatform Platform;

private:
    FStandaloneHost(const FCommandContext& Context, FResolvedSettings InSettings, std::string InProjectFile, std::string InEngineRoot);
};

// Prints "error: <message>" and answers the exit code, for one-line returns.
int Fail(const FCommandContext& Context, int ExitCode, const std::string& Message);
}
