#pragma once

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
std::string Printf(const char* Format, ...) MAPTORN_PRINTF_FORMAT(1, 2);

std::string ToLower(std::string_view Text);
bool EqualsIgnoreCase(std::string_view A, std::string_view B);
bool ContainsIgnoreCase(std::string_view Haystack, std::string_view Needle);
bool StartsWithIgnoreCase(std::string_view Text, std::string_view Prefix);
// Position of Needle in Haystack ignoring case, or npos.
std::size_t FindIgnoreCase(std::string_view Haystack, std::string_view Needle);
std::string TrimWhitespace(std::string_view Text);
// Every occurrence of From replaced by To.
std::string ReplaceAll(std::string Text, std::string_view From, std::string_view To);
}
