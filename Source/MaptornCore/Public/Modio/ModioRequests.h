#pragma once

#include "Common/CoreTypes.h"
#include "Modio/SourceModInfo.h"
#include "Platform/HttpPort.h"

#include <string>
#include <vector>

namespace Maptorn::ModioRequests
{
inline constexpr const char* UserAgent = "Kelvor Client";

// "%s/v1/me/mods?game_id=%d&status-not=3": the user's mods, deleted ones left out.
std::string OwnModsUrl(const std::string& BaseUrl, int64 GameId);

// "&_sort=..." for the sort orders 1-8; nothing for 0 and values above 8.
const char* SortSuffix(ESourceModQueryType SortType);

// The catalogue URL in its fixed order: api key, tag, the local ids for sort 0, the sort,
// a name search of 1-32 characters, paging when the limit is positive.
std::string CatalogueUrl(const std::string& BaseUrl, int64 GameId, const std::string& ApiKey, const FSourceModQuery& Query,
    const std::vector<std::string>& LocalModIds);

std::string DependenciesUrl(const std::string& BaseUrl, int64 GameId, const std::string& ModId, const std::string& ApiKey);
std::string AddDependencyUrl(const std::string& BaseUrl, int64 GameId, const std::string& ModId, const std::string& ApiKey);

// The mod-file upload endpoints of a mod.
std::string MultipartCreateUrl(const std::string& BaseUrl, int64 GameId, const std::string& ModId);
std::string MultipartPartUrl(const std::string& BaseUrl, int64 GameId, const std::string& ModId, const std::string& UploadId);
std::string MultipartCompleteUrl(const std::string& BaseUrl, int64 GameId, const std::string& ModId, const std::string& UploadId);
std::string ModFilesUrl(const std::string& BaseUrl, int64 GameId, const std::string& ModId);

// A request with "Accept: application/json" and "Authorization: Bearer <token>" (sent even when
// the token is empty). Null when the host has no HTTP.
FHttpRequestPtr MakeAuthorizedRequest(IMaptornHttp& Http, const std::string& Verb, const std::string& Url, const std::string& Token);

// A catalogue read: "Accept", "User-Agent" and "X-Modio-Platform: source", no authorization.
FHttpRequestPtr MakeCatalogueRequest(IMaptornHttp& Http, const std::string& Url);
}
