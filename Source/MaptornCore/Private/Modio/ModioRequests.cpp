#include "Modio/ModioRequests.h"

#include "Common/StringUtil.h"
#include "Content/SVRInterface.h"

namespace Maptorn::ModioRequests
{
std::string OwnModsUrl(const std::string& BaseUrl, int64 GameId)
{
    return Printf("%s/v1/me/mods?game_id=%lld&status-not=3", BaseUrl.c_str(), static_cast<long long>(GameId));
}

const char* SortSuffix(ESourceModQueryType SortType)
{
    switch (SortType)
    {
    case ESourceModQueryType::Popular: return "&_sort=-popular";
    case ESourceModQueryType::Subscribers: return "&_sort=subscribers";
    case ESourceModQueryType::Newest: return "&_sort=-date_live";
    case ESourceModQueryType::LastUpdated: return "&_sort=-date_updated";
    case ESourceModQueryType::Rating: return "&_sort=rating";
    case ESourceModQueryType::Downloads: return "&_sort=downloads";
    case ESourceModQueryType::NameAscending: return "&_sort=name";
    case ESourceModQueryType::NameDescending: return "&_sort=-name";
    default: return "";
    }
}

std::string CatalogueUrl(const std::string& BaseUrl, int64 GameId, const std::string& ApiKey, const FSourceModQuery& Query,
    const std::vector<std::string>& LocalModIds)
{
    std::string Url = Printf("%s/v1/games/%lld/mods?api_key=", BaseUrl.c_str(), static_cast<long long>(GameId)) + ApiKey;
    Url += "&tags=" + (Query.FilterTags.empty() ? std::string("Mod") : Query.FilterTags.front());
    if (Query.SortType == ESourceModQueryType::Installed)
    {
        std::string Ids;
        for (const std::string& Id : LocalModIds)
        {
            Ids += (Ids.empty() ? "" : ",") + Id;
        }
        Url += Printf("&id-in=%s", Ids.c_str());
    }
    Url += SortSuffix(Query.SortType);
    const std::size_t SearchLength = CountCharacters(Query.SearchText);
    if (SearchLength >= 1 && SearchLength <= 32)
    {
        Url += Printf("&name-lk=*%s*", Query.SearchText.c_str());
    }
    if (Query.PageLimit > 0)
    {
        Url += Printf("&_offset=%d&_limit=%d", Query.PageOffset, Query.PageLimit);
    }
    return Url;
}

std::string DependenciesUrl(const std::string& BaseUrl, int64 GameId, const std::string& ModId, const std::string& ApiKey)
{
    return Printf("%s/v1/games/%lld/mods/%s/dependencies?recursive=false&api_key=", BaseUrl.c_str(), static_cast<long long>(GameId),
               ModId.c_str()) + ApiKey;
}

std::string AddDependencyUrl(const std::string& BaseUrl, int64 GameId, const std::string& ModId, const std::string& ApiKey)
{
    return Printf("%s/v1/games/%lld/mods/%s/dependencies?api_key=", BaseUrl.c_str(), static_cast<long long>(GameId), ModId.c_str()) + ApiKey;
}

std::string MultipartCreateUrl(const std::string& BaseUrl, int64 GameId, const std::string& ModId)
{
    return Printf("%s/v1/games/%lld/mods/%s/files/multipart", BaseUrl.c_str(), static_cast<long long>(GameId), ModId.c_str());
}

std::string MultipartPartUrl(const std::string& BaseUrl, int64 GameId, const std::string& ModId, const std::string& UploadId)
{
    return MultipartCreateUrl(BaseUrl, GameId, ModId) + "?upload_id=" + UploadId;
}

std::string MultipartCompleteUrl(const std::string& BaseUrl, int64 GameId, const std::string& ModId, const std::string& UploadId)
{
    return MultipartCreateUrl(BaseUrl, GameId, ModId) + "/complete?upload_id=" + UploadId;
}

std::string ModFilesUrl(const std::string& BaseUrl, int64 GameId, const std::string& ModId)
{
    return Printf("%s/v1/games/%lld/mods/%s/files", BaseUrl.c_str(), static_cast<long long>(GameId), ModId.c_str());
}

FHttpRequestPtr MakeAuthorizedRequest(IMaptornHttp& Http, const std::string& Verb, const std::string& Url, const std::string& Token)
{
    FHttpRequestPtr Request = Http.CreateRequest();
    if (Request)
    {
        Request->SetVerb(Verb);
        Request->SetURL(Url);
        Request->SetHeader("Accept", "application/json");
        Request->SetHeader("Authorization", Printf("Bearer %s", Token.c_str()));
    }
    return Request;
}

FHttpRequestPtr MakeCatalogueRequest(IMaptornHttp& Http, const std::string& Url)
{
    FHttpRequestPtr Request = Http.CreateRequest();
    if (Request)
    {
        Request->SetVerb("GET");
        Request->SetURL(Url);
        Request->SetHeader("Accept", "application/json");
        Request->SetHeader("User-Agent", UserAgent);
        Request->SetHeader("X-Modio-Platform", "source");
    }
    return Request;
}
}
