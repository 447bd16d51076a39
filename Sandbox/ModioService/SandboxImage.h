#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace Maptorn::Sandbox
{
enum class EImageType
{
    Png,
    Jpeg
};

struct FImageHeader
{
    EImageType Type = EImageType::Png;
    uint32_t Width = 0;
    uint32_t Height = 0;
};

// The type and size an image file declares in its header (PNG's IHDR, JPEG's first start-of-frame
// segment); nothing for any other file or a header cut short.
std::optional<FImageHeader> ReadImageHeader(const std::string& Path);
}
