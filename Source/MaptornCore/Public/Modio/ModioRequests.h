#pragma once

#include "Common/CoreTypes.h"
#include "Modio/SourceModInfo.h"
#include "Platform/HttpPort.h"

#include <string>
#include <vector>

namespace Maptorn::ModioRequests
{
inline constexpr const char* UserAgent = "Kelvor Client";

// "%s/v1/me/mods?game_id=%d": the user's mods (deleted ones included: the reader drops them).
MAPTORNCORE_API std::string OwnModsUrl(const std::string& BaseUrl, int64 GameId);

// "&_sort=..." with a sort key of mod.io's Get Mods for the orders 1-8; nothing for 0 and above 8.
MAPTORNCORE_API const char* SortSuffix(ESourceModQueryType SortType);

// The catalogue URL in its fixed order: api key, tag, the local ids for sort 0, the sort,
// a name search of 1-32 characters, paging when the limit is positive; every value percent-encoded.
MAPTORNCORE_API std::string CatalogueUrl(const std::string& BaseUrl, int64 GameId, const std::string& ApiKey, const FSourceModQuery& Query,
    const std::vector<std::string>& LocalModIds);

MAPTORNCORE_API // The catalogue entry of one mod ("&id=<mod id>"), read before an install.
MAPTORNCORE_API std::string SourceModUrl(const std::string& BaseUrl, int64 GameId, const std::string& ApiKey, const std::string& ModId);

std::string DependenciesUrl(const std::string& BaseUrl, int64 GameId, const std::string& ModId, const std::string& ApiKey);
MAPTORNCORE_API std::string AddDependencyUrl(const std::string& BaseUrl, int64 GameId, const std::string& ModId, const std::string& ApiKey);

// The mod-file upload endpoints of a mod.
MAPTORNCORE_API std::string MultipartCreateUrl(const std::string& BaseUrl, int64 GameId, const std::string& ModId);
MAPTORNCORE_API std::string MultipartPartUrl(const std::string& BaseUrl, int64 GameId, const std::string& ModId, const std::string& UploadId);
MAPTORNCORE_API std::string MultipartCompleteUrl(const std::string& BaseUrl, int64 GameId, const std::string& ModId, const std::string& UploadId);
MAPTORNCORE_API std::string ModFilesUrl(const std::string& BaseUrl, int64 GameId, const std::string& ModId);

// A request with "Accept: application/json" and "Authorization: Bearer <token>" (sent even when
// the token is empty). Null when the host has no HTTP.
MAPTORNCORE_API FHttpRequestPtr MakeAuthorizedRequest(IMaptornHttp& Http, const std::string& Verb, const std::string& Url, const std::string& Token);

// A catalogue read: "Accept", "User-Agent" and "X-Modio-Platform: source", no authorization.
MAPTORNCORE_API FHttpRequestPtr MakeCatalogueRequest(IMaptornHttp& Http, const std::string& Url);
}
