#pragma once

#include "Modio/SourceModInfo.h"
#include "Platform/MaptornPlatform.h"

#include <nlohmann/json.hpp>

#include <string>

namespace Maptorn
{
class FModioInterface;

// Reads one mod object of a mod.io answer. The install state is decided against the client's
// downloads and the project's plug-ins; missing keys never fail a record.
FSourceModInfo ReadSourceModInfo(FMaptornPlatform& Platform, const FModioInterface& Client, const nlohmann::json& ModObject);

// Map, then Mod, then GameMode, compared ignoring case; Fallback when no tag names a type.
EModType ModTypeFromTags(const std::vector<std::string>& Tags, EModType Fallback);

// The thumbnail shown for a plug-in: its cached logo in Saved/ModThumbnails as .jpg, .jpeg or
// .png, else the workshop's default thumbnail.
std::string FindThumbnailPath(IMaptornEngine& Engine, const std::string& PluginName);
std::string DefaultThumbnailPath(IMaptornEngine& Engine);
std::string ThumbnailCacheDir(IMaptornEngine& Engine);

struct FPageNumbers
{
    int32 CurrentPage = 1;
    int32 TotalPages = 1;
};

// 1-based page numbers of a result slice. A limit of 0 or less cannot page: it is page 1 of 1.
FPageNumbers ComputePageNumbers(int64 Count, int64 Offset, int64 Limit, int64 Total);

// Reads a page answer ("result_count", "result_offset", "result_limit", "result_total", "data").
// False when the body is not a JSON object; an object without "result_count" gives an empty page.
bool ReadSourceModList(FMaptornPlatform& Platform, const FModioInterface& Client, const std::string& Body, FSourceModList& OutList);
}
