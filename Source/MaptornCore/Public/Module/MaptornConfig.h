#pragma once

#include "Common/CoreTypes.h"

#include <string>

namespace Maptorn
{
// The values the module is built with. None is hard-wired: the editor module fills them from
// its build configuration, the standalone host from flags, environment and a config file.
struct MAPTORNCORE_API FMaptornConfig
{
    std::string SteamAppId;       // the game's application id on Steam, written to ./steam_appid.txt
    std::string ModioApiBaseUrl;  // https origin without trailing slash
    int64 ModioGameId = 0;
    std::string ModioApiKey;      // a secret: never logged
};
}
