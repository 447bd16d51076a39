#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Maptorn::Sandbox
{
inline constexpr std::string_view UpperAlphanumerics = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
inline constexpr std::string_view Alphanumerics = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";

// Length characters drawn from Alphabet; thread-safe.
std::string RandomText(size_t Length, std::string_view Alphabet);

// A random (version 4) UUID in its usual text form.
std::string NewUuid();
}
