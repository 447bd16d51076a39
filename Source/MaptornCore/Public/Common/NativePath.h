#pragma once

#include "Common/CoreTypes.h"

#include <filesystem>
#include <string>
#include <string_view>

// The core's paths are UTF-8 strings. The file system's own paths are UTF-16 on Windows, where a
// narrow string would be read in the user's code page and "C:/Users/Zoë" would not open: every
// path goes through this pair on its way to and from std::filesystem and the file streams.
namespace Maptorn::NativePath
{
MAPTORNCORE_API std::filesystem::path FromUtf8(std::string_view Utf8);
// With "/" separators, as the engine writes paths.
MAPTORNCORE_API std::string ToUtf8(const std::filesystem::path& Path);
}
