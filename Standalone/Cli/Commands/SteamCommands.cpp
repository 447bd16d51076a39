// The Steam Workshop side of the window for the project's own map: the platform deploy and the
// local stage, pressed through the controller and ticked until the worker clears the busy flag.

#include "Cli/Commands/Commands.h"
#include "Cli/WorkshopRun.h"

#include "Common/FileHelper.h"
#include "Content/SVRInterface.h"
#include "Module/ProjectEnvironment.h"

#include <ostream>

namespace Maptorn::Cli
{
namespace
{
constexpr const char* NoMapDefinition = "The project has no map definition yet: create one with `maptorn map create <id> --name <name>`.";

// The window's Steam side, refused before anything starts when the project has no map definition.
std::unique_ptr<FWorkshopRun> StartSteamRun(const FCommandContext& Context, int& OutExitCode)
{
    std::string Error;
    bool bNoMap = false;
    std::unique_ptr<FWorkshopRun> Run = FWorkshopRun::Start(Context, true, Error, FWorkshopRun::EModio::Absent,
        [&bNoMap](FStandaloneHost& Host) -> std::optional<std::string> {
            bNoMap = !FSVRInterface(Host.Platform).GetMapDefinition();
            return bNoMap ? std::optional<std::string>(NoMapDefinition) : std::nullopt;
        });
    if (!Run)
    {
        OutExitCode = Fail(Context, bNoMap ? ExitFailed : ExitNoEnvironment, Error);
        return nullptr;
    }
    std::ostream& Out = Context.Out;
    Run->Host->Processes.SetOutputEcho([&Out](const std::string& Line, bool) { Out << "  | " << Line << "\n"; });
    return Run;
}

std::string ProjectMapLabel(FWorkshopRun& Run)
{
    const auto Definition = Run.Module->SVR ? Run.Module->SVR->GetMapDefinition() : nullptr;
    return Definition ? Definition->Label : std::string();
}
}

int RunDeploy(const FCommandContext& Context, bool bWindows, bool bAndroid)
{
    int ExitCode = ExitSuccess;
    std::unique_ptr<FWorkshopRun> Run = StartSteamRun(Context, ExitCode);
    if (!Run)
    {
        return ExitCode;
    }
    FWorkshopController& Window = *Run->Controller;
    Window.OnWindowsBuildPlatformsChanged(bWindows ? ECheckBoxState::Checked : ECheckBoxState::Unchecked);
    Window.OnAndroidBuildPlatformsChanged(bAndroid ? ECheckBoxState::Checked : ECheckBoxState::Unchecked);
    Window.SubmitVeskoClicked();
    Run->TickUntil([&Run] { return !Run->Module->bBusy; });
    if (Run->Host->Dialogs.GetLastMessageBoxText() != "Successfully built!")
    {
        return Fail(Context, ExitFailed, "The deploy did not finish; the lines above say why.");
    }
    Context.Out << "Depot: " << ProjectEnvironment::GetDepotDirectory(Run->Host->Engine) << "/" << ProjectMapLabel(*Run) << "\n";
    return ExitSuccess;
}

int RunStageSteam(const FCommandContext& Context, const std::string& InstallDir)
{
    if (!FileSystem::DirectoryExists(InstallDir))
    {
        return Fail(Context, ExitBadInput, "The game folder " + InstallDir + " does not exist; give your Steam Kelvor install with --install-dir.");
    }
    int ExitCode = ExitSuccess;
    std::unique_ptr<FWorkshopRun> Run = StartSteamRun(Context, ExitCode);
    if (!Run)
    {
        return ExitCode;
    }
    // A Steam install to stage into stands for Steam running, which the editor needs for this.
    Run->Module->InstallDir = InstallDir;
    Run->Module->SteamUGC = std::make_unique<FSteamWorkshopDeploy>();
    Run->Controller->StageButtonClicked();
    if (!Run->Module->bBusy)
    {
        return Fail(Context, ExitFailed, "The stage did not start; the lines above say why.");
    }
    Run->TickUntil([&Run] { return !Run->Module->bBusy; });
    if (Run->Host->Dialogs.GetLastMessageBoxText() != "Staged map")
    {
        return Fail(Context, ExitFailed, "The stage did not finish; the lines above say why.");
    }
    Context.Out << "Staged " << ProjectMapLabel(*Run) << " into " << InstallDir << "/Kelvor/Content\n";
    return ExitSuccess;
}
}
