#include "Cli/WorkshopRun.h"

#include "Cli/Interrupt.h"
#include "Common/FileHelper.h"
#include "Common/Paths.h"
#include "Common/StringUtil.h"

#include <chrono>
#include <cstdio>
#include <iostream>
#include <thread>
#include <vector>
#include <unistd.h>

namespace Maptorn::Cli
{
std::unique_ptr<FWorkshopRun> FWorkshopRun::StartForMod(const FCommandContext& Context, const std::string& ModId, int& OutExitCode)
{
    if (!IsPlainModId(ModId))
    {
        OutExitCode = Fail(Context, ExitBadInput, "The mod id must be the number mod.io gave the mod, e.g. 4711 (got \"" + ModId + "\").");
        return nullptr;
    }
    std::string Error;
    std::unique_ptr<FWorkshopRun> Run = Start(Context, false, Error);
    if (!Run)
    {
        OutExitCode = Fail(Context, ExitNoEnvironment, Error);
    }
    return Run;
}

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
        if (IsInterruptRequested())
        {
            StopForInterrupt();
        }
        if (Done())
        {
            return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(16));
    } while (true);
}

void FWorkshopRun::StopForInterrupt()
{
    std::vector<std::string> Leftovers;
    const std::string SavedDir = Paths::ConvertRelativePathToFull(Host->Engine.GetBaseDir(), Host->Engine.ProjectSavedDir());
    Leftovers.push_back(Paths::Combine(SavedDir, "modio_upload.tmp"));
    if (Module && Module->ModioClient)
    {
        FModioInterface& Client = *Module->ModioClient;
        if (Client.ActiveDownload)
        {
            Leftovers.push_back(Client.ActiveDownload->ArchivePath());
            Leftovers.push_back(Client.ActiveDownload->ExtractFolder());
        }
        Client.CancelDownloads();
        // An extraction under way finishes before its folder can go; the tick then ends the download.
        while (Client.ActiveDownload)
        {
            Host->Tasks.PumpGameThread();
            Module->Tick(1.0f / 60.0f);
            std::this_thread::sleep_for(std::chrono::milliseconds(16));
        }
    }
    // Packaging and cooking run child processes on workers that use the module: their own end is
    // awaited (only their completions run, so no upload starts in the meantime).
    while (Module && Module->bBusy)
    {
        Host->Tasks.PumpGameThread();
        std::this_thread::sleep_for(std::chrono::milliseconds(16));
    }
    // The module shuts down as at a normal end; the session and the HTTP thread go with the host,
    // which removes an upload's temporary files and lets no transfer write after this.
    Controller.reset();
    if (Module)
    {
        Module->ShutdownModule();
        if (Host->Platform.ModioSession)
        {
            Host->Platform.ModioSession->RunPendingHandlers();
        }
        if (PreviousSteamAppIdFile)
        {
            FileHelper::SaveBytesToFile(reinterpret_cast<const uint8*>(PreviousSteamAppIdFile->data()), PreviousSteamAppIdFile->size(),
                FMaptornModule::SteamAppIdFile);
        }
        Module.reset();
    }
    Host.reset();
    for (const std::string& Path : Leftovers)
    {
        FileSystem::DeleteFile(Path);
        FileSystem::DeleteDirectoryRecursively(Path);
    }
    std::cout.flush();
    std::cerr << "Interrupted: the work was stopped and its temporary files removed; the project's plug-ins are as they were." << std::endl;
    _exit(ExitInterrupted);
}

void FWorkshopRun::WaitForModio()
{
    TickUntil([this] { return !Client().bIsModioBusy; });
}
}
