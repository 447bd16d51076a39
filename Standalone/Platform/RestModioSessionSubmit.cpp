// Creating and editing mods and uploading mod files over REST are not built yet: each answers,
// through the pending handlers like every completion, that it is not available.

#include "Platform/RestModioSession.h"

namespace Maptorn
{
namespace
{
FModioErrorCode NotAvailableYet()
{
    return FModioErrorCode{ModioErrorValue::HttpRequestFailed, "Not available in this build yet"};
}
}

std::optional<FModioModProgressInfo> FRestModioSession::QueryCurrentModUpdate()
{
    return std::nullopt;
}

FModioModCreationHandle FRestModioSession::GetModCreationHandle()
{
    return FModioModCreationHandle{++LastModCreationHandle};
}

void FRestModioSession::SubmitNewModAsync(FModioModCreationHandle, const FModioCreateModParams&, FOnSubmitNewModDelegate Callback)
{
    if (Callback)
    {
        Post([Callback = std::move(Callback)] { Callback(NotAvailableYet(), std::nullopt); });
    }
}

void FRestModioSession::SubmitModChangesAsync(FModioModID, const FModioEditModParams&, FOnSubmitModChangesDelegate Callback)
{
    if (Callback)
    {
        Post([Callback = std::move(Callback)] { Callback(NotAvailableYet(), std::nullopt); });
    }
}

void FRestModioSession::SubmitNewModFileForMod(FModioModID Mod, const FModioCreateModFileParams&)
{
    // The event goes to whoever listens when it is delivered, as the SDK's mod management does.
    Post([this, Mod] {
        if (ModManagementCallback)
        {
            ModManagementCallback(FModioModManagementEvent{Mod, EModioModManagementEventType::Uploaded, NotAvailableYet()});
        }
    });
}
}
