#include "Modio/ModioRequests.h"

#include "Common/StringUtil.h"
#include "Content/SVRInterface.h"

namespace Maptorn::ModioRequests
{
std::string OwnModsUrl(const std::string& BaseUrl, int64 GameId)
{
    // mod.io lets only game admins filter on status with anything but "=" and "-in"; the
    // refresh leaves deleted mods out as it reads the answer instead.
    return Printf("%s/v1/me/mods?game_id=%lld", BaseUrl.c_str(), static_cast<long long>(GameId));
}

const char* SortSuffix(ESourceModQueryType SortType)
{
    switch (SortType)
    {
    // The browser's words mapped onto the sort keys mod.io's Get Mods documents; the older
    // keys (popular, subscribers, rating, downloads) are no longer listed there.
    case ESourceModQueryType::Popular: return "&_sort=-downloads_today";
    case ESourceModQueryType::Subscribers: return "&_sort=-subscribers_total";
    case ESourceModQueryType::Newest: return "&_sort=-date_live";
    case ESourceModQueryType::LastUpdated: return "&_sort=-date_updated";
    case ESourceModQueryType::Rating: return "&_sort=-ratings_weighted_aggregate";
    case ESourceModQueryType::Downloads: return "&_sort=-downloads_total";
    case ESourceModQueryType::NameAscending: return "&_sort=name";
    case ESourceModQueryType::NameDescending: return "&_sort=-name";
    default: return "";
    }
}

std::string CatalogueUrl(const std::string& BaseUrl, int64 GameId, const std::string& ApiKey, const FSourceModQuery& Query,
    const std::vector<std::string>& LocalModIds)
{
    // Every value is percent-encoded: a search for "a b&_limit=1" is one name filter, not two parameters.
    std::string Url = Printf("%s/v1/games/%lld/mods?api_key=", BaseUrl.c_str(), static_cast<long long>(GameId)) + UrlEncode(ApiKey);
    Url += "&tags=" + UrlEncode(Query.FilterTags.empty() ? std::string("Mod") : Query.FilterTags.front());
    if (Query.SortType == ESourceModQueryType::Installed)
    {
        std::string Ids;
        for (const std::string& Id : LocalModIds)
        {
            Ids += (Ids.empty() ? "" : ",") + Id;
        }
        Url += "&id-in=" + UrlEncode(Ids);
    }
    Url += SortSuffix(Query.SortType);
    const std::size_t SearchLength = CountCharacters(Query.SearchText);
    if (SearchLength >= 1 && SearchLength <= 32)
    {
        Url += "&name-lk=" + UrlEncode("*" + Query.SearchText + "*");
    }
    if (Query.PageLimit > 0)
    {
        Url += Printf("&_offset=%d&_limit=%d", Query.PageOffset, Query.PageLimit);
    }
    return Url;
}

std::string SourceModUrl(const std::string& BaseUrl, int64 GameId, const std::string& ApiKey, const std::string& ModId)
{
    return Printf("%s/v1/games/%lld/mods?api_key=", BaseUrl.c_str(), static_cast<long long>(GameId)) + UrlEncode(ApiKey) + "&id=" +
           UrlEncode(ModId);
}

std::string DependenciesUrl(const std::string& BaseUrl, int64 GameId, const std::string& ModId, const std::string& ApiKey)
{
    return Printf("%s/v1/games/%lld/mods/%s/dependencies?recursive=false&api_key=", BaseUrl.c_str(), static_cast<long long>(GameId),
               UrlEncode(ModId).c_str()) + UrlEncode(ApiKey);
}

std::string AddDependencyUrl(const std::string& BaseUrl, int64 GameId, const std::string& ModId, const std::string& ApiKey)
{
    return Printf("%s/v1/games/%lld/mods/%s/dependencies?api_key=", BaseUrl.c_str(), static_cast<long long>(GameId),
               UrlEncode(ModId).c_str()) + UrlEncode(ApiKey);
}

std::string MultipartCreateUrl(const std::string& BaseUrl, int64 GameId, const std::string& ModId)
{
    return Printf("%s/v1/games/%lld/mods/%s/files/multipart", BaseUrl.c_str(), static_cast<long long>(GameId), ModId.c_str());
}

std::string MultipartPartUrl(const std::string& BaseUrl, int64 GameId, const std::string& ModId, const std::string& UploadId)
{
    return MultipartCreateUrl(BaseUrl, GameId, ModId) + "?upload_id=" + UrlEncode(UploadId);
}

std::string MultipartCompleteUrl(const std::string& BaseUrl, int64 GameId, const std::string& ModId, const std::string& UploadId)
{
    return MultipartCreateUrl(BaseUrl, GameId, ModId) + "/complete?upload_id=" + UrlEncode(UploadId);
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
