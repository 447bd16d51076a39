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
    const std::string Token = Session->GetAuthTokenAsString();
    if (Token.empty() && RefreshOwnModsThroughSession(*Session))
    {
        return;
    }
    FHttpRequestPtr Request = ModioRequests::MakeAuthorizedRequest(Http, "GET",
        ModioRequests::OwnModsUrl(Config.ModioApiBaseUrl, Config.ModioGameId), Token);
    if (!Request)
    {
        return;
    }
    std::weak_ptr<bool> Alive = AliveToken;
    const uint64 Generation = ++OwnModRefreshGeneration;
    Request->OnProcessRequestComplete() = [this, Alive, Generation](FHttpRequestPtr, FHttpResponsePtr Response, bool bConnected) {
        if (!Alive.expired() && Generation == OwnModRefreshGeneration)
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
    // An error answer is no list of mods: the rows shown stay as they are.
    const int32 Status = Response->GetResponseCode();
    if (Status < 200 || Status >= 300)
    {
        Platform.Log.Log(LogCategory::LogTemp, ELogVerbosity::Warning, Printf("mod.io refused the list of your mods (HTTP %d)", Status));
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
            // /me/mods lists deleted mods too (status 3); they cannot take a new file.
            double Id = 0.0;
            if (!JsonFields::TryGetNumber(ModObject, "id", Id) || JsonFields::GetNumber(ModObject, "status") == 3.0)
            {
                continue;
            }
            KeepOwnMod(ReadSourceModInfo(Platform, *this, ModObject));
        }
    }
    FetchOwnModLogos();
    OnUploadListUpdated.Broadcast();
}

void FModioInterface::KeepOwnMod(FSourceModInfo Info)
{
    const auto State = static_cast<ESourceModInstallState>(Info.InstallState);
    if (!Info.PluginName.empty() && (State == ESourceModInstallState::Installed || State == ESourceModInstallState::RequiresUpdate))
    {
        OwnModVersions[Info.PluginName.substr(3)] = VersionNumber(Info.Version);
        OwnMods.push_back(std::move(Info));
    }
}
}
