#pragma once

#include "Common/CoreTypes.h"

#include <string>
#include <string_view>

#if defined(__GNUC__) || defined(__clang__)
#define MAPTORN_PRINTF_FORMAT(FormatIndex, FirstArgument) __attribute__((format(printf, FormatIndex, FirstArgument)))
#else
#define MAPTORN_PRINTF_FORMAT(FormatIndex, FirstArgument)
#endif

namespace Maptorn
{
// printf-style formatting into a std::string (FString::Printf). GCC and Clang check the arguments.
MAPTORNCORE_API std::string Printf(const char* Format, ...) MAPTORN_PRINTF_FORMAT(1, 2);

MAPTORNCORE_API std::string ToLower(std::string_view Text);
MAPTORNCORE_API bool EqualsIgnoreCase(std::string_view A, std::string_view B);
MAPTORNCORE_API bool ContainsIgnoreCase(std::string_view Haystack, std::string_view Needle);
MAPTORNCORE_API bool StartsWithIgnoreCase(std::string_view Text, std::string_view Prefix);
// Position of Needle in Haystack ignoring case, or npos.
MAPTORNCORE_API std::size_t FindIgnoreCase(std::string_view Haystack, std::string_view Needle);
MAPTORNCORE_API std::string TrimWhitespace(std::string_view Text);
// Every occurrence of From replaced by To.
MAPTORNCORE_API std::string ReplaceAll(std::string Text, std::string_view From, std::string_view To);
// RFC 3986: unreserved characters (A-Z a-z 0-9 - . _ ~) stay, every other byte becomes %XX.
MAPTORNCORE_API std::string UrlEncode(std::string_view Value);
// True for a mod.io id as it may reach a path or a URL: decimal digits only, no leading zero,
// above zero and within 64 bits ("1/../x", " 7", "007" and "0" are not ids).
MAPTORNCORE_API bool IsPlainModId(std::string_view Text);
}
