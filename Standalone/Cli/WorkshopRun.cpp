#include "Cli/WorkshopRun.h"

#include "Common/FileHelper.h"

#include <chrono>
#include <thread>

namespace Maptorn::Cli
{
std::unique_ptr<FWorkshopRun> FWorkshopRun::Start(const FCommandContext& Context, bool bNeedsEngine, std::string& OutError, EModio Modio,
    const FPrecheck& Precheck)
{
    std::unique_ptr<FWorkshopRun> Run(new FWorkshopRun());
    Run->Host = FStandaloneHost::Create(Context, bNeedsEngine, OutError);
    if (!Run->Host || (Modio == EModio::Required && !Run->Host->CreateModioSession(OutError)))
    {
        return nullptr;
    }
    if (Precheck)
    {
        if (std::optional<std::string> Refusal = Precheck(*Run->Host))
        {
            OutError = *Refusal;
            return nullptr;
        }
    }
    // The module writes the game's Steam id beside the editor and removes it at shut-down; a file
    // the user already had in this folder is put back afterwards.
    Run->PreviousSteamAppIdFile = FileHelper::LoadFileToString(FMaptornModule::SteamAppIdFile);
    Run->Module = InitializeModule(Run->Host->Platform, MakeModuleConfig(Run->Host->Settings));
    Run->Module->StartupModule();
    Run->Controller = std::make_unique<FWorkshopController>();
    // The first frame delivers the initialisation, which starts the check of the stored login.
    Run->TickUntil([] { return true; });
    Run->WaitForModio();
    // A verified login refreshes the user's own mods at once and starts the browser's first
    // catalogue query; commands read the one and send their own queries after the other.
    Run->TickUntil([&Run] { return !Run->Client().bOwnModRefreshBusy && !Run->Client().bSourceQueryBusy; });
    return Run;
}

FWorkshopRun::~FWorkshopRun()
{
    Controller.reset();
    if (Module)
    {
        Module->ShutdownModule();
        // The session's shut-down answer is delivered like every other completion.
        if (Host && Host->Platform.ModioSession)
        {
            Host->Platform.ModioSession->RunPendingHandlers();
        }
        if (PreviousSteamAppIdFile)
        {
            FileHelper::SaveBytesToFile(reinterpret_cast<const uint8*>(PreviousSteamAppIdFile->data()), PreviousSteamAppIdFile->size(),
                FMaptornModule::SteamAppIdFile);
        }
    }
}

void FWorkshopRun::TickUntil(const std::function<bool()>& Done, const std::function<void()>& OnFrame)
{
    // Each frame is ticked with its real duration, as the editor does, so pauses last what they say.
    auto LastFrame = std::chrono::steady_clock::now();
    do
    {
        Host->Tasks.PumpGameThread();
        const auto Now = std::chrono::steady_clock::now();
        Module->Tick(std::chrono::duration<float>(Now - LastFrame).count());
        LastFrame = Now;
        if (OnFrame)
        {
            OnFrame();
        }
        if (Done())
        {
            return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(16));
    } while (true);
}

void FWorkshopRun::WaitForModio()
{
    TickUntil([this] { return !Client().bIsModioBusy; });
}
}
