#pragma once

#include "Common/CoreTypes.h"

#include <optional>
#include <string>

namespace Maptorn
{
// The kind of a content definition and of a mod.io mod.
enum class EModType : uint8
{
    Map = 0,
    Mod = 1,
    GameMode = 2,
};

// "Map", "Mod", "GameMode": the mod.io tag and metadata word of a type.
MAPTORNCORE_API const char* ModTypeWord(EModType Type);
// Accepts the words above and "gamemode" in any case; empty for anything else.
MAPTORNCORE_API std::optional<EModType> ParseModType(const std::string& Text);
}
