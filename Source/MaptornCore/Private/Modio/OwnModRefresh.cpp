#include "Modio/ModioInterface.h"

#include "Common/StringUtil.h"
#include "Modio/JsonFields.h"
#include "Modio/ModioRequests.h"
#include "Modio/SourceModReader.h"

namespace Maptorn
{
void FModioInterface::RefreshOwnMods()
{
    IModioSession* Session = Platform.ModioSession;
    if (!Session)
    {
        return;
    }
    FHttpRequestPtr Request = ModioRequests::MakeAuthorizedRequest(Platform.Http, "GET",
        ModioRequests::OwnModsUrl(Config.ModioApiBaseUrl, Config.ModioGameId), Session->GetAuthTokenAsString());
    if (!Request)
    {
        return;
    }
    std::weak_ptr<bool> Alive = AliveToken;
    Request->OnProcessRequestComplete() = [this, Alive](FHttpRequestPtr, FHttpResponsePtr Response, bool bConnected) {
        if (!Alive.expired())
        {
            bOwnModRefreshBusy = false;
            OnOwnModsAnswer(Response, bConnected);
        }
    };
    bOwnModRefreshBusy = Request->ProcessRequest();
}

void FModioInterface::OnOwnModsAnswer(FHttpResponsePtr Response, bool bConnected)
{
    using FJson = nlohmann::json;
    if (!bConnected || !Response)
    {
        return;
    }
    OwnModVersions.clear();
    const FJson Answer = FJson::parse(Response->GetContentAsString(), nullptr, false);
    if (Answer.is_discarded())
    {
        Platform.Log.Log(LogCategory::LogTemp, ELogVerbosity::Log, "Failed to deserialize Mod.io GetMods response");
        return;
    }
    OwnMods.clear();
    if (const FJson* Data = JsonFields::TryGetArray(Answer, "data"))
    {
        for (const FJson& ModObject : *Data)
        {
            double Id = 0.0;
            if (!JsonFields::TryGetNumber(ModObject, "id", Id))
            {
                continue;
            }
            FSourceModInfo Info = ReadSourceModInfo(Platform, *this, ModObject);
            const auto State = static_cast<ESourceModInstallState>(Info.InstallState);
            if (State == ESourceModInstallState::Installed || State == ESourceModInstallState::RequiresUpdate)
            {
                OwnModVersions[std::to_string(JsonFields::TruncateToInt64(Id))] = Info.Version;
                OwnMods.push_back(std::move(Info));
            }
        }
    }
    OnUploadListUpdated.Broadcast();
}
}
