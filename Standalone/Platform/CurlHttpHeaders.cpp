#include "Platform/CurlHttpHeaders.h"

#include "Common/StringUtil.h"

#include <algorithm>

namespace Maptorn
{
std::string FindHeader(const FHttpHeaderList& Headers, std::string_view Name)
{
    const auto Found = std::find_if(
        Headers.rbegin(), Headers.rend(), [Name](const auto& Header) { return EqualsIgnoreCase(Header.first, Name); });
    return Found == Headers.rend() ? std::string() : Found->second;
}

void SetHeaderReplacing(FHttpHeaderList& Headers, const std::string& Name, const std::string& Value)
{
    const auto Found = std::find_if(
        Headers.begin(), Headers.end(), [&Name](const auto& Header) { return EqualsIgnoreCase(Header.first, Name); });
    if (Found == Headers.end())
    {
        Headers.emplace_back(Name, Value);
        return;
    }
    *Found = {Name, Value};
}

std::string FormatRequestHeaderLine(const std::string& Name, const std::string& Value)
{
    return Value.empty() ? Name + ";" : Name + ": " + Value;
}

std::optional<std::pair<std::string, std::string>> ParseResponseHeaderLine(std::string_view Line)
{
    if (StartsWithIgnoreCase(Line, "HTTP/"))
    {
        return std::nullopt;
    }
    const std::size_t Colon = Line.find(':');
    if (Colon == std::string_view::npos || Colon == 0)
    {
        return std::nullopt;
    }
    std::string Name = TrimWhitespace(Line.substr(0, Colon));
    if (Name.empty())
    {
        return std::nullopt;
    }
    return std::make_pair(std::move(Name), TrimWhitespace(Line.substr(Colon + 1)));
}
}
