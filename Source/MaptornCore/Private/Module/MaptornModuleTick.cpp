#include "Module/MaptornModule.h"

#include "Common/StringUtil.h"
#include "Content/ModDefinitions.h"
#include "Modio/ModioSdkTypes.h"
#include "Modio/SourceModReader.h"
#include "Workshop/WorkshopNotifications.h"

#include <cmath>

namespace Maptorn
{
void FMaptornModule::Tick(float DeltaTime)
{
    if (!ModioClient)
    {
        return;
    }
    if (IModioSession* Session = Platform.ModioSession)
    {
        // Every SDK completion runs here, on the game thread.
        Session->RunPendingHandlers();
    }
    ModioClient->TickRequests(DeltaTime);
    TickUploadProgress();
    TickPlatformUploadCountdown(DeltaTime);
    TickOwnModRefresh(DeltaTime);
    TickSourcePluginDownload();
    if (WorkNotifications && ModioClient)
    {
        // Packaging shares the module's busy flag.
        WorkNotifications->Tick(bBusy);
    }
}

void FMaptornModule::TickUploadProgress()
{
    IModioSession* Session = Platform.ModioSession;
    if (!Session || !ModioClient->bIsUploading)
    {
        return;
    }
    const std::optional<FModioModProgressInfo> Progress = Session->QueryCurrentModUpdate();
    if (!Progress)
    {
        return;
    }
    ModioClient->bCompressing = Progress->GetCurrentState() == EModioModProgressState::Compressing;
    // A whole percent shown as a fraction with two decimals.
    ModioClient->UploadProgress = std::round(Pct_Int64Int64(Progress->Current, Progress->Total)) * 0.01f;
}

void FMaptornModule::TickPlatformUploadCountdown(float DeltaTime)
{
    if (ModioClient->NextUploadDelay <= 0.0f)
    {
        return;
    }
    ModioClient->NextUploadDelay -= DeltaTime;
    if (ModioClient->NextUploadDelay <= 0.0f)
    {
        ModioClient->NextUploadDelay = 0.0f;
        ModioClient->StartNextPlatformUpload();
    }
}

void FMaptornModule::TickOwnModRefresh(float DeltaTime)
{
    if (ModioClient->bIsModioBusy || !ModioClient->bIsLoggedIn)
    {
        return;
    }
    ModioClient->OwnModRefreshCountdown -= DeltaTime;
    if (ModioClient->OwnModRefreshCountdown <= 0.0f)
    {
        ModioClient->RefreshOwnMods();
        ModioClient->OwnModRefreshCountdown = FModioInterface::OwnModRefreshInterval;
    }
}

void FMaptornModule::TickSourcePluginDownload()
{
    FModioInterface& Client = *ModioClient;
    if (!Client.ActiveDownload)
    {
        return;
    }
    Client.ActiveDownload->Update();

    const EPluginDownloadState State = Client.ActiveDownload->GetState();
    if (State != EPluginDownloadState::Complete && State != EPluginDownloadState::Failed)
    {
        return;
    }
    // Remembered by id, so that whichever catalogue page shows the mod later shows it installed.
    FSourceModInfo* Record = Client.FindCatalogueRecord(Client.ActiveDownload->ModId);
    const std::string Name = Record ? Record->Name : MakeUGCPluginName(Client.ActiveDownload->ModId);
    FWorkshopWorkEnd End{EWorkshopWork::Download, Client.ActiveDownload->ModId, State == EPluginDownloadState::Complete, {}};
    if (End.bSucceeded)
    {
        Client.FinishedDownloads[Client.ActiveDownload->ModId] = Client.ActiveDownload->Version;
        Client.LastDownloadError.clear();
        End.Message = Printf("%s was added to the project: restart the editor to load it", Name.c_str());
    }
    else
    {
        Client.LastDownloadError = Printf("%s was not added to the project: its download failed (the output log says why)", Name.c_str());
        End.Message = Client.LastDownloadError;
    }
    if (Record)
    {
        // An installed plug-in loads only after an editor restart. A failed download leaves the
        // project as it was, so the row offers the download again.
        if (State == EPluginDownloadState::Complete)
        {
            Record->InstallState = static_cast<uint8>(ESourceModInstallState::InstalledRestartRequired);
        }
        else
        {
            const bool bPluginPresent = Platform.Engine.FindPlugin(Record->PluginName).has_value();
            Record->InstallState = static_cast<uint8>(bPluginPresent ? ESourceModInstallState::RequiresUpdate
                                                                     : ESourceModInstallState::NotInstalled);
        }
    }
    Client.OnSourceModListUpdated.Broadcast(true, Client.LastSourceModList);
    Client.ActiveDownload.reset();
    Client.OnWorkFinished.Broadcast(End);

    if (!Client.DownloadQueue.empty())
    {
        const FSourceModInfo Next = Client.DownloadQueue.front();
        Client.DownloadQueue.pop_front();
        Client.DownloadsRemaining = static_cast<int32>(Client.DownloadQueue.size());
        Client.StartDownload(Next);
    }
}
}
