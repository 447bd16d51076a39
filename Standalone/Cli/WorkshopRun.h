#pragma once

#include "Cli/StandaloneHost.h"
#include "Modio/ModioInterface.h"
#include "Module/MaptornModule.h"
#include "Workshop/WorkshopController.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace Maptorn::Cli
{
// The workshop window as a command sees it: the host, the module started as the editor starts
// it (mod.io session initialised, stored login verified), and the window's controller. Commands
// type into its fields and press its buttons, then tick until the work ends, so the tool behaves
// exactly as the window does.
class FWorkshopRun
{
public:
    enum class EModio
    {
        Required, // mod.io commands: its settings must be there
        Absent,   // Steam-side commands: started without a mod.io session, as an editor without its plug-in
    };

    // A refusal found on the host before the module starts (the start adjusts the project's
    // settings, and a refused command must leave the project as it was): the message, or nothing.
    using FPrecheck = std::function<std::optional<std::string>(FStandaloneHost& Host)>;

    // Null with a message a modder can act on when the project, engine or mod.io settings are
    // missing or Precheck refuses.
    static std::unique_ptr<FWorkshopRun> Start(const FCommandContext& Context, bool bNeedsEngine, std::string& OutError,
        EModio Modio = EModio::Required, const FPrecheck& Precheck = {});
    // For a command about one mod of the catalogue: refuses an id that is not a plain number
    // (exit 2), then starts without the engine. Null with OutExitCode set when either failed,
    // the reason already told.
    static std::unique_ptr<FWorkshopRun> StartForMod(const FCommandContext& Context, const std::string& ModId, int& OutExitCode);
    ~FWorkshopRun();
    FWorkshopRun(const FWorkshopRun&) = delete;
    FWorkshopRun& operator=(const FWorkshopRun&) = delete;

    // Editor frames (about 60 a second) until Done answers true; OnFrame runs after each.
    void TickUntil(const std::function<bool()>& Done, const std::function<void()>& OnFrame = {});
    // Until the mod.io call just started has answered.
    void WaitForModio();

    FModioInterface& Client() { return *Module->ModioClient; }
    // The newest log message starting with Prefix, without the prefix.
    std::optional<std::string> RecentMessage(const std::string& Prefix) { return Host->Log.FindRecent(Prefix); }

    std::unique_ptr<FStandaloneHost> Host;
    std::unique_ptr<FMaptornModule> Module;
    std::unique_ptr<FWorkshopController> Controller;

private:
    FWorkshopRun() = default;
    // After SIGINT or SIGTERM: cancels the work through the core, removes its temporary files,
    // shuts down as the destructor does and ends the process with ExitInterrupted.
    [[noreturn]] void StopForInterrupt();

    std::optional<std::string> PreviousSteamAppIdFile;
};
}
