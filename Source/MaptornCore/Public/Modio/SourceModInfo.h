#pragma once

#include "Common/CoreTypes.h"
#include "Content/ModType.h"

#include <string>
#include <vector>

namespace Maptorn
{
// What the browser row shows for a mod's local state.
enum class ESourceModInstallState : uint8
{
    NotInstalled = 0,
    Installed = 1,
    RequiresUpdate = 2,
    Downloading = 3,
    DownloadPending = 4,
    InstalledRestartRequired = 5,
};

// "Not Installed", "Installed", "Requires Update", "Downloading", "Download Pending",
// "Installed, Editor Restart Required"; empty for other values.
MAPTORNCORE_API const char* InstallStateWord(uint8 InstallState);

// One mod read from a mod.io mod object.
struct MAPTORNCORE_API FSourceModInfo
{
    std::string PluginName;      // "UGC<id>"
    std::string Name;
    std::string Summary;
    std::string Author;
    uint8 InstallState = 0;      // an ESourceModInstallState value
    EModType ModType = EModType::Map;
    std::vector<std::string> Tags;
    std::string LogoUrl;
    std::string Version;         // the live modfile's version as mod.io holds it: text ("1.2.3", or "7" from this tool)
    int64 FileSize = 0;
    bool bWindows = false;
    bool bOculus = false;
    std::string ThumbnailPath;
    std::string ProfileUrl;
    std::string BinaryUrl;
    std::string FileMd5;         // the live modfile's "filehash.md5"; empty when mod.io gives none
};

// One page of catalogue results.
struct MAPTORNCORE_API FSourceModList
{
    std::vector<FSourceModInfo> Mods;
    int32 CurrentPage = 1;
    int32 TotalPages = 1;
    int32 TotalResults = 0;
};

// The browser's query choice: 0 lists the installed plug-ins, 1-8 are sort orders.
enum class ESourceModQueryType : uint32
{
    Installed = 0,
    Popular = 1,
    Subscribers = 2,
    Newest = 3,
    LastUpdated = 4,
    Rating = 5,
    Downloads = 6,
    NameAscending = 7,
    NameDescending = 8,
};

// One entry of a mod's dependency list.
struct MAPTORNCORE_API FModDependency
{
    std::string ModId;
    std::string Name;
    int32 DependencyDepth = 0;
};

struct MAPTORNCORE_API FSourceModQuery
{
    ESourceModQueryType SortType = ESourceModQueryType::Popular;
    std::vector<std::string> FilterTags;
    std::string SearchText;
    int32 PageOffset = 0;
    int32 PageLimit = 20;
};
}
