#pragma once

#include <cstdint>

// Marks what the core offers the editor module. The engine builds the core as its own module
// (a DLL of its own in the editor) and defines this per module as export or import; the CMake
// build links the core statically and leaves it empty.
#ifndef MAPTORNCORE_API
#define MAPTORNCORE_API
#endif

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
