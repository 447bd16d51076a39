#pragma once

#include "Common/CoreTypes.h"
#include "Common/MulticastDelegate.h"
#include "Platform/NotificationsPort.h"

#include <memory>
#include <string>

namespace Maptorn
{
class FModioInterface;
class FPluginModDownload;
struct FWorkshopWorkEnd;

// The editor's toasts for the workshop's long work, so that a modder who closed the window or looks
// elsewhere still sees it: the upload (packaging, then each platform's file) and staging of an own
// mod, and each source-plug-in download. A toast follows the progress line the window shows and
// ends as the work ends; a refusal before any work began raises a toast of its own. Without a toast
// host every call does nothing.
class MAPTORNCORE_API FWorkshopNotifications
{
public:
    FWorkshopNotifications(IMaptornNotifications* InHost, FModioInterface& InClient);
    ~FWorkshopNotifications();
    FWorkshopNotifications(const FWorkshopNotifications&) = delete;
    FWorkshopNotifications& operator=(const FWorkshopNotifications&) = delete;

    // Follows the client's running work; the module calls it every frame after the client's own
    // tick. bPackaging: the packaging step still runs on its worker.
    void Tick(bool bPackaging);

private:
    struct FToast
    {
        bool bShown = false;
        // 0 when the host could not show it; its updates then go nowhere.
        IMaptornNotifications::FHandle Handle = 0;
        std::string Text;
    };

    void OnWorkFinished(const FWorkshopWorkEnd& End);
    // Begins the toast, or changes its text when that changed.
    void Show(FToast& Toast, const std::string& Text);
    // "<mod name>: <text>", so that a toast seen without the window says which mod it is about.
    std::string AboutOwnMod(const std::string& ModId, const std::string& Text) const;

    IMaptornNotifications* Host;
    FModioInterface& Client;
    FToast UploadToast;
    FToast DownloadToast;
    // The download DownloadToast shows; a queued one that starts next gets a toast of its own.
    std::weak_ptr<FPluginModDownload> ShownDownload;
    TMulticastDelegate<const FWorkshopWorkEnd&>::FHandle WorkFinishedHandle = 0;
};
}
