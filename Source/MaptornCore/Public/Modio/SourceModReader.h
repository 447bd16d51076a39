#pragma once

#include "Common/CoreTypes.h"

#include "Modio/SourceModInfo.h"
#include "Platform/MaptornPlatform.h"

#include <nlohmann/json.hpp>

#include <string>

namespace Maptorn
{
class FModioInterface;

// Reads one mod object of a mod.io answer. The install state is decided against the client's
// downloads and the project's plug-ins; missing keys never fail a record. An "id" that is not a
// plain mod id (IsPlainModId) never reaches a path: the record comes back with an empty
// PluginName, and callers drop it.
MAPTORNCORE_API FSourceModInfo ReadSourceModInfo(FMaptornPlatform& Platform, const FModioInterface& Client, const nlohmann::json& ModObject);

// A modfile version as a number, for the versions stamped into definitions: a plain decimal
// version gives its value, any other text (such as "1.2.3") 0.
MAPTORNCORE_API int32 VersionNumber(const std::string& VersionText);

// Map, then Mod, then GameMode, compared ignoring case; Fallback when no tag names a type.
MAPTORNCORE_API EModType ModTypeFromTags(const std::vector<std::string>& Tags, EModType Fallback);

// The thumbnail shown for a plug-in: its cached logo in Saved/ModThumbnails as .jpg, .jpeg or
// .png, else the workshop's default thumbnail.
MAPTORNCORE_API std::string FindThumbnailPath(IMaptornEngine& Engine, const std::string& PluginName);
MAPTORNCORE_API std::string DefaultThumbnailPath(IMaptornEngine& Engine);
MAPTORNCORE_API std::string ThumbnailCacheDir(IMaptornEngine& Engine);

struct MAPTORNCORE_API FPageNumbers
{
    int32 CurrentPage = 1;
    int32 TotalPages = 1;
};

// 1-based page numbers of a result slice. A limit of 0 or less cannot page: it is page 1 of 1.
MAPTORNCORE_API FPageNumbers ComputePageNumbers(int64 Count, int64 Offset, int64 Limit, int64 Total);

// Reads a page answer ("result_count", "result_offset", "result_limit", "result_total", "data").
// False when the body is not a JSON object; an object without "result_count" gives an empty page.
// Mods whose id is not a plain mod id are left out.
MAPTORNCORE_API bool ReadSourceModList(FMaptornPlatform& Platform, const FModioInterface& Client, const std::string& Body, FSourceModList& OutList);
}
