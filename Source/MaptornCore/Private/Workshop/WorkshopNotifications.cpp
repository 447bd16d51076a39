#include "Workshop/WorkshopNotifications.h"

#include "Content/ModDefinitions.h"
#include "Modio/ModioInterface.h"
#include "WorkshopSupport.h"

namespace Maptorn
{
FWorkshopNotifications::FWorkshopNotifications(IMaptornNotifications* InHost, FModioInterface& InClient)
    : Host(InHost)
    , Client(InClient)
{
    if (Host)
    {
        WorkFinishedHandle = Client.OnWorkFinished.Add([this](const FWorkshopWorkEnd& End) { OnWorkFinished(End); });
    }
}

FWorkshopNotifications::~FWorkshopNotifications()
{
    if (!Host)
    {
        return; // nothing was subscribed or shown
    }
    Client.OnWorkFinished.Remove(WorkFinishedHandle);
    // Work cut short by the module going away would otherwise leave its throbber turning.
    for (const FToast* Toast : {&UploadToast, &DownloadToast})
    {
        if (Toast->bShown)
        {
            Host->FinishNotification(Toast->Handle, Toast->Text, false);
        }
    }
}

void FWorkshopNotifications::Tick(bool bPackaging)
{
    if (!Host)
    {
        return;
    }
    if (Client.bIsUploading)
    {
        Show(UploadToast, AboutOwnMod(Client.UploadModId, bPackaging ? "Packaging..." : WorkshopSupport::UploadProgressText(Client)));
    }
    if (Client.ActiveDownload)
    {
        if (ShownDownload.lock() != Client.ActiveDownload)
        {
            ShownDownload = Client.ActiveDownload;
            DownloadToast = FToast();
        }
        Show(DownloadToast, WorkshopSupport::DownloadProgressText(Client));
    }
}

void FWorkshopNotifications::OnWorkFinished(const FWorkshopWorkEnd& End)
{
    const bool bDownload = End.Work == EWorkshopWork::Download;
    FToast& Toast = bDownload ? DownloadToast : UploadToast;
    // A download's words name their mod already.
    const std::string Text = bDownload ? End.Message : AboutOwnMod(End.ModId, End.Message);
    if (Toast.bShown)
    {
        Host->FinishNotification(Toast.Handle, Text, End.bSucceeded);
    }
    else
    {
        Host->Notify(Text, End.bSucceeded ? ENotificationState::Success : ENotificationState::Fail);
    }
    Toast = FToast();
}

void FWorkshopNotifications::Show(FToast& Toast, const std::string& Text)
{
    if (!Toast.bShown)
    {
        Toast.Handle = Host->BeginNotification(Text);
        Toast.bShown = true;
    }
    else if (Text != Toast.Text)
    {
        Host->UpdateNotification(Toast.Handle, Text);
    }
    Toast.Text = Text;
}

std::string FWorkshopNotifications::AboutOwnMod(const std::string& ModId, const std::string& Text) const
{
    const FSourceModInfo* Mod = Client.FindOwnMod(ModId);
    const std::string Subject = Mod && !Mod->Name.empty() ? Mod->Name : MakeUGCPluginName(ModId);
    return Subject + ": " + Text;
}
}
