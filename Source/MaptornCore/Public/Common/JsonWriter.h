#pragma once

#include "Common/CoreTypes.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <string_view>

namespace Maptorn::Json
{
// Objects keep their members in the order they were added, as the engine's writer does.
using FJsonObject = nlohmann::ordered_json;

#ifdef _WIN32
inline constexpr std::string_view PlatformLineTerminator = "\r\n";
#else
inline constexpr std::string_view PlatformLineTerminator = "\n";
#endif

// The engine's default "pretty" form: a tab per level, `"key": value`, a nested object on the
// line after its key, numbers as %.17g, no trailing line terminator.
MAPTORNCORE_API std::string WritePretty(const FJsonObject& Value, std::string_view LineTerminator = PlatformLineTerminator);

// The engine's condensed form: no whitespace at all.
MAPTORNCORE_API std::string WriteCondensed(const FJsonObject& Value);
}

namespace Maptorn
{
// "5.1.1-23901901+++UE5+Release-5.1" → "5.1.1". Empty when there is no "-" or it is the last character.
MAPTORNCORE_API std::optional<std::string> EngineVersionBeforeDash(const std::string& EngineVersion);
}
