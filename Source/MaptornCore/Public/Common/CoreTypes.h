#pragma once

#include <cstdint>

namespace Maptorn
{
// The engine's fixed-width names, so code reads the same in the core and the editor module.
using int8 = std::int8_t;
using int32 = std::int32_t;
using int64 = std::int64_t;
using uint8 = std::uint8_t;
using uint32 = std::uint32_t;
using uint64 = std::uint64_t;
}
