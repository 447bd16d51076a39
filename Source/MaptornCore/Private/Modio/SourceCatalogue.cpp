#include "Modio/ModioInterface.h"

#include "Common/FileHelper.h"
#include "Common/Paths.h"
#include "Common/StringUtil.h"
#include "Content/ModDefinitions.h"
#include "Modio/JsonFields.h"
#include "Modio/ModioErrorAnswer.h"
#include "Modio/ModioRequests.h"
#include "Modio/SourceModReader.h"

namespace Maptorn
{
namespace
{
// The cached logo's extension from its first bytes; empty for anything that is not an image.
const char* ImageExtension(const std::vector<uint8>& Bytes)
{
    if (Bytes.size() >= 8 && Bytes[0] == 0x89 && Bytes[1] == 'P' && Bytes[2] == 'N' && Bytes[3] == 'G')
    {
        return ".png";
    }
    if (Bytes.size() >= 3 && Bytes[0] == 0xFF && Bytes[1] == 0xD8 && Bytes[2] == 0xFF)
    {
        return ".jpg";
    }
    return "";
}
}

std::vector<std::string> FModioInterface::LocalUGCModIds() const
{
    std::vector<std::string> Ids;
    for (const FPluginInfo& Plugin : Platform.Engine.GetEnabledPlugins())
    {
        // A plug-in named "UGC../x" or "UGC007" is no mod of mod.io: its name never goes into a query.
        if (StartsWithIgnoreCase(Plugin.Name, "UGC") && IsPlainModId(std::string_view(Plugin.Name).substr(3)))
        {
            Ids.push_back(Plugin.Name.substr(3));
        }
    }
    return Ids;
}

void FModioInterface::QuerySourceMods()
{
    if (bSourceQueryBusy)
    {
        return;
    }
    bSourceQueryBusy = true;
    const std::string Url = ModioRequests::CatalogueUrl(Config.ModioApiBaseUrl, Config.ModioGameId, Config.ModioApiKey, SourceQuery, LocalUGCModIds());
    FHttpRequestPtr Request = ModioRequests::MakeCatalogueRequest(Http, Url);
    std::weak_ptr<bool> Alive = AliveToken;
    if (Request)
    {
        Request->OnProcessRequestComplete() = [this, Alive](FHttpRequestPtr, FHttpResponsePtr Response, bool bConnected) {
            if (!Alive.expired())
            {
                OnSourceModsAnswer(Response, bConnected);
            }
        };
    }
    if (!Request || !Request->ProcessRequest())
    {
        OnSourceModsAnswer(nullptr, false);
    }
}

void FModioInterface::OnSourceModsAnswer(FHttpResponsePtr Response, bool bConnected)
{
    // An error answer is a failed query too: the rows shown stay rather than become an empty page.
    FSourceModList Page;
    LastSourceQueryError = AnswerError(Response, bConnected);
    const bool bRead = LastSourceQueryError.empty() && ReadSourceModList(Platform, *this, Response->GetContentAsString(), Page);
    if (LastSourceQueryError.empty() && !bRead)
    {
        LastSourceQueryError = "mod.io's answer is not a list of mods";
    }
    bSourceQueryBusy = false;
    if (!bRead)
    {
        // The browser keeps the rows it shows.
        OnSourceModListUpdated.Broadcast(false, LastSourceModList);
        return;
    }
    LastSourceModList = std::move(Page);
    OnSourceModListUpdated.Broadcast(true, LastSourceModList);
    FetchMissingThumbnails();
}

void FModioInterface::FetchMissingThumbnails()
{
    const std::string DefaultThumbnail = DefaultThumbnailPath(Platform.Engine);
    std::weak_ptr<bool> Alive = AliveToken;
    for (const FSourceModInfo& Record : LastSourceModList.Mods)
    {
        if (Record.ThumbnailPath != DefaultThumbnail || Record.LogoUrl.empty())
        {
            continue;
        }
        FHttpRequestPtr Request = Http.CreateRequest();
        if (!Request)
        {
            return;
        }
        Request->SetVerb("GET");
        Request->SetURL(Record.LogoUrl);
        Request->SetHeader("User-Agent", ModioRequests::UserAgent);
        Request->OnProcessRequestComplete() = [this, Alive, PluginName = Record.PluginName](FHttpRequestPtr, FHttpResponsePtr Response, bool bConnected) {
            const char* Extension = bConnected && Response && Response->GetResponseCode() == 200 ? ImageExtension(Response->GetContent()) : "";
            if (Alive.expired() || *Extension == '\0')
            {
                return;
            }
            const std::string File = Paths::Combine(ThumbnailCacheDir(Platform.Engine), PluginName + Extension);
            const std::vector<uint8>& Bytes = Response->GetContent();
            if (!FileSystem::CreateDirectoryTree(ThumbnailCacheDir(Platform.Engine)) ||
                !FileHelper::SaveBytesToFile(Bytes.data(), Bytes.size(), File))
            {
                return;
            }
            for (FSourceModInfo& Shown : LastSourceModList.Mods)
            {
                if (Shown.PluginName == PluginName)
                {
                    Shown.ThumbnailPath = File;
                    OnSourceModImageCreated.Broadcast(Shown);
                }
            }
        };
        Request->ProcessRequest();
    }
}

void FModioInterface::FetchSourceMod(const std::string& ModId, FOnSourceModFetched OnDone)
{
    if (!IsPlainModId(ModId))
    {
        return OnDone(false, {}, "\"" + ModId + "\" is not a mod id: mod.io's ids are plain numbers such as 4711");
    }
    FHttpRequestPtr Request =
        ModioRequests::MakeCatalogueRequest(Http, ModioRequests::SourceModUrl(Config.ModioApiBaseUrl, Config.ModioGameId, Config.ModioApiKey, ModId));
    if (!Request)
    {
        return OnDone(false, {}, "mod.io could not be reached");
    }
    std::weak_ptr<bool> Alive = AliveToken;
    Request->OnProcessRequestComplete() = [this, Alive, OnDone, ModId](FHttpRequestPtr Done, FHttpResponsePtr Response, bool bConnected) {
        if (Alive.expired())
        {
            return;
        }
        FSourceModList Page;
        std::string Error = AnswerError(Response, bConnected, Done && !bConnected ? Done->GetFailureReason() : std::string());
        if (Error.empty() && !ReadSourceModList(Platform, *this, Response->GetContentAsString(), Page))
        {
            Error = "mod.io's answer is not a list of mods";
        }
        // Only the mod asked for is installed, whatever else a server puts in its answer.
        const std::string PluginName = MakeUGCPluginName(ModId);
        for (const FSourceModInfo& Mod : Page.Mods)
        {
            if (Error.empty() && Mod.PluginName == PluginName)
            {
                return OnDone(true, Mod, {});
            }
        }
        if (Error.empty() && !Page.Mods.empty())
        {
            Error = "mod.io answered with another mod (" + Page.Mods.front().PluginName + ") than the one asked for; nothing was installed";
        }
        OnDone(false, {}, Error.empty() ? "mod.io has no shared source plug-in with id " + ModId : Error);
    };
    if (!Request->ProcessRequest())
    {
        OnDone(false, {}, "mod.io could not be reached");
    }
}

std::string FModioInterface::AnswerError(const FHttpResponsePtr& Response, bool bConnected, const std::string& FailureReason)
{
    if (!bConnected || !Response)
    {
        return FailureReason.empty() ? std::string("mod.io could not be reached") : "mod.io could not be reached: " + FailureReason;
    }
    const int32 Status = Response->GetResponseCode();
    return Status >= 200 && Status < 300 ? std::string() : DescribeErrorAnswer(Status, Response->GetContentAsString());
}

void FModioInterface::FetchDependencies(const std::string& ModId, std::function<void(bool, std::vector<FModDependency>)> OnDone)
{
    FHttpRequestPtr Request = Http.CreateRequest();
    if (!Request)
    {
        return OnDone(false, {});
    }
    Request->SetVerb("GET");
    Request->SetURL(ModioRequests::DependenciesUrl(Config.ModioApiBaseUrl, Config.ModioGameId, ModId, Config.ModioApiKey));
    Request->SetHeader("Accept", "application/json");
    Request->SetHeader("User-Agent", ModioRequests::UserAgent);
    // Nothing is answered once the client is gone: the walk over dependencies would ask it again.
    Request->OnProcessRequestComplete() = [OnDone, Alive = std::weak_ptr<bool>(AliveToken)](FHttpRequestPtr, FHttpResponsePtr Response, bool bConnected) {
        if (Alive.expired())
        {
            return;
        }
        using FJson = nlohmann::json;
        const FJson Answer = bConnected && Response && Response->GetResponseCode() == 200
            ? FJson::parse(Response->GetContentAsString(), nullptr, false) : FJson();
        const FJson* Data = JsonFields::TryGetArray(Answer, "data");
        if (!Data)
        {
            return OnDone(false, {});
        }
        std::vector<FModDependency> Dependencies;
        for (const FJson& Entry : *Data)
        {
            Dependencies.push_back({JsonFields::GetString(Entry, "mod_id"), JsonFields::GetString(Entry, "name"),
                JsonFields::TruncateToInt32(JsonFields::GetNumber(Entry, "dependency_depth"))});
        }
        OnDone(true, std::move(Dependencies));
    };
    if (!Request->ProcessRequest())
    {
        OnDone(false, {});
    }
}

void FModioInterface::AddDependency(const std::string& ModId, const std::string& DependencyModId, std::function<void(bool)> OnDone)
{
    IModioSession* Session = Platform.ModioSession;
    if (!Session)
    {
        Platform.Log.Log(LogCategory::LogTemp, ELogVerbosity::Log, "Failed to get the modio subsystem");
        return OnDone(false);
    }
    FHttpRequestPtr Request = ModioRequests::MakeAuthorizedRequest(Http, "POST",
        ModioRequests::AddDependencyUrl(Config.ModioApiBaseUrl, Config.ModioGameId, ModId, Config.ModioApiKey), Session->GetAuthTokenAsString());
    if (!Request)
    {
        return OnDone(false);
    }
    Request->SetHeader("User-Agent", ModioRequests::UserAgent);
    Request->SetHeader("Content-Type", "application/x-www-form-urlencoded");
    Request->SetContentAsString(Printf("dependencies[]=%s", DependencyModId.c_str()));
    Request->OnProcessRequestComplete() = [this, OnDone, Alive = std::weak_ptr<bool>(AliveToken)](FHttpRequestPtr Done, FHttpResponsePtr Response,
                                              bool bConnected) {
        if (Alive.expired())
        {
            return;
        }
        LastDependencyError = AnswerError(Response, bConnected, !bConnected && Done ? Done->GetFailureReason() : std::string());
        OnDone(LastDependencyError.empty() && Response->GetResponseCode() == 201);
    };
    if (!Request->ProcessRequest())
    {
        LastDependencyError = "mod.io could not be reached";
        OnDone(false);
    }
}
}
