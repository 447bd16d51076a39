#include "Common/NativePath.h"

namespace Maptorn::NativePath
{
std::filesystem::path FromUtf8(std::string_view Utf8)
{
    return std::filesystem::path(std::u8string(Utf8.begin(), Utf8.end()));
}

std::string ToUtf8(const std::filesystem::path& Path)
{
    const std::u8string Text = Path.generic_u8string();
    return std::string(Text.begin(), Text.end());
}
}
