// Mod-file submission as the SDK's mod management does it: progress is read with
// QueryCurrentModUpdate, and the end arrives as an Uploaded event through RunPendingHandlers.
// One submission runs at a time: another one asked for meanwhile ends at once with
// UploadAlreadyRunning, and the running one carries on undisturbed.

#include "Platform/RestModioSession.h"
#include "Platform/RestModioSessionRequests.h"

#include <algorithm>

namespace Maptorn
{
void FRestModioSession::SetUploadOptions(FRestUploadOptions Options)
{
    Options.PartSize = std::max<int64>(1, Options.PartSize);
    Options.MultipartThreshold = std::max<int64>(0, Options.MultipartThreshold);
    UploadOptions = std::move(Options);
}

std::optional<FModioModProgressInfo> FRestModioSession::QueryCurrentModUpdate()
{
    return Upload ? Upload->GetProgress() : std::nullopt;
}

void FRestModioSession::SubmitNewModFileForMod(FModioModID Mod, const FModioCreateModFileParams& Params)
{
    if (const std::optional<FModioErrorCode> Refusal = RefusalToStartAuthorized())
    {
        PostUploadedEvent(Mod, *Refusal);
        return;
    }
    if (Upload && !Upload->IsFinished())
    {
        PostUploadedEvent(Mod, FModioErrorCode{ModioRest::ErrorValue::UploadAlreadyRunning,
            "Another mod file is being uploaded; wait until it has finished"});
        return;
    }
    const std::string Token = AccessToken;
    Upload = std::make_unique<FRestModFileUpload>(Http, FRestUploadTarget{BaseUrl, GameId, Mod, Token}, Params, UploadOptions,
        [this, Mod, Token](FModioErrorCode Error, bool bTokenRefused) {
            FModioErrorCode Event = Redacted(std::move(Error), Token);
            if (bTokenRefused)
            {
                ForgetLoginIfRefused(401, Token);
            }
            PostUploadedEvent(Mod, std::move(Event));
        });
    Upload->Start();
}

void FRestModioSession::FinishUploadIfDone()
{
    if (Upload)
    {
        Upload->Poll();
        if (Upload->IsFinished())
        {
            Upload.reset();
        }
    }
}

void FRestModioSession::PostUploadedEvent(FModioModID Mod, FModioErrorCode Error)
{
    // The event goes to whoever listens when it is delivered, as the SDK's mod management does.
    std::weak_ptr<int> Alive = Lifetime;
    Post([this, Alive, Mod, Error = std::move(Error)] {
        if (!Alive.expired() && ModManagementCallback)
        {
            ModManagementCallback(FModioModManagementEvent{Mod, EModioModManagementEventType::Uploaded, Error});
        }
    });
}
}
