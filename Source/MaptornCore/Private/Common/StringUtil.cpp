#include "Common/StringUtil.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdarg>
#include <cstdio>

namespace Maptorn
{
std::string Printf(const char* Format, ...)
{
    va_list Args;
    va_start(Args, Format);
    va_list Copy;
    va_copy(Copy, Args);
    const int Length = std::vsnprintf(nullptr, 0, Format, Copy);
    va_end(Copy);
    std::string Result;
    if (Length > 0)
    {
        Result.resize(static_cast<std::size_t>(Length) + 1);
        std::vsnprintf(Result.data(), Result.size(), Format, Args);
        Result.resize(static_cast<std::size_t>(Length));
    }
    va_end(Args);
    return Result;
}

static char LowerChar(char C)
{
    return static_cast<char>(std::tolower(static_cast<unsigned char>(C)));
}

std::string ToLower(std::string_view Text)
{
    std::string Result(Text);
    std::transform(Result.begin(), Result.end(), Result.begin(), LowerChar);
    return Result;
}

bool EqualsIgnoreCase(std::string_view A, std::string_view B)
{
    return A.size() == B.size() && std::equal(A.begin(), A.end(), B.begin(), [](char X, char Y) { return LowerChar(X) == LowerChar(Y); });
}

std::size_t FindIgnoreCase(std::string_view Haystack, std::string_view Needle)
{
    if (Needle.empty())
    {
        return 0;
    }
    const auto It = std::search(Haystack.begin(), Haystack.end(), Needle.begin(), Needle.end(),
        [](char X, char Y) { return LowerChar(X) == LowerChar(Y); });
    return It == Haystack.end() ? std::string_view::npos : static_cast<std::size_t>(It - Haystack.begin());
}

bool ContainsIgnoreCase(std::string_view Haystack, std::string_view Needle)
{
    return FindIgnoreCase(Haystack, Needle) != std::string_view::npos;
}

bool StartsWithIgnoreCase(std::string_view Text, std::string_view Prefix)
{
    return Text.size() >= Prefix.size() && EqualsIgnoreCase(Text.substr(0, Prefix.size()), Prefix);
}

std::string TrimWhitespace(std::string_view Text)
{
    const auto IsSpace = [](char C) { return std::isspace(static_cast<unsigned char>(C)) != 0; };
    while (!Text.empty() && IsSpace(Text.front()))
    {
        Text.remove_prefix(1);
    }
    while (!Text.empty() && IsSpace(Text.back()))
    {
        Text.remove_suffix(1);
    }
    return std::string(Text);
}

std::string ReplaceAll(std::string Text, std::string_view From, std::string_view To)
{
    if (From.empty())
    {
        return Text;
    }
    std::size_t Pos = 0;
    while ((Pos = Text.find(From, Pos)) != std::string::npos)
    {
        Text.replace(Pos, From.size(), To);
        Pos += To.size();
    }
    return Text;
}

std::string UrlEncode(std::string_view Value)
{
    static constexpr char Hex[] = "0123456789ABCDEF";
    std::string Encoded;
    Encoded.reserve(Value.size());
    for (const char Character : Value)
    {
        const unsigned char Byte = static_cast<unsigned char>(Character);
        if ((Byte >= 'A' && Byte <= 'Z') || (Byte >= 'a' && Byte <= 'z') || (Byte >= '0' && Byte <= '9') || Byte == '-' || Byte == '.' || Byte == '_' || Byte == '~')
        {
            Encoded += Character;
            continue;
        }
        Encoded += '%';
        Encoded += Hex[Byte >> 4];
        Encoded += Hex[Byte & 0x0F];
    }
    return Encoded;
}

bool IsPlainModId(std::string_view Text)
{
    if (Text.empty() || Text.front() < '1' || Text.front() > '9')
    {
        return false;
    }
    unsigned long long Value = 0;
    const auto [End, Error] = std::from_chars(Text.data(), Text.data() + Text.size(), Value);
    return Error == std::errc() && End == Text.data() + Text.size() && Value <= 0x7FFFFFFFFFFFFFFFull;
}
}
