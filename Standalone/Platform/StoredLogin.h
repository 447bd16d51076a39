#pragma once

#include "Common/CoreTypes.h"

#include <optional>
#include <string>

namespace Maptorn
{
// The mod.io login kept between runs of the standalone host: one small JSON file per game in
// the user's config folder, readable by its owner only. The token in it is never logged.
struct FStoredLogin
{
    std::string AccessToken;
    int64 DateExpires = 0; // unix seconds; 0 when the service gave none
    std::string BaseUrl;   // the origin the token was issued by
};

// "$XDG_CONFIG_HOME/maptorn/login-<gameid>.json", else "$HOME/.config/maptorn/login-<gameid>.json";
// empty when neither variable gives an absolute folder.
std::string StoredLoginPath(int64 GameId);

// Empty when the file is missing, unreadable, not a login or holds no token.
std::optional<FStoredLogin> LoadStoredLogin(const std::string& Path);

// The login in Path when it was issued by exactly BaseUrl and has not expired.
std::optional<FStoredLogin> LoadStoredLoginFor(const std::string& Path, const std::string& BaseUrl);

// Creates missing folders with 0700 and writes the file as 0600 from its first byte: a fresh
// temporary file is filled, flushed to disk and renamed over the target. False on any failure,
// leaving no temporary file behind.
bool SaveStoredLogin(const std::string& Path, const FStoredLogin& Login);

// True when no file is left at Path (also when there was none).
bool DeleteStoredLogin(const std::string& Path);
}
