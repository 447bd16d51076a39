#include "Platform/CurlHttpResponse.h"

#include <charconv>

namespace Maptorn
{
FCurlHttpResponse::FCurlHttpResponse(
    int32 InResponseCode, FHttpHeaderList InHeaders, std::vector<uint8> InContent, int64 InBodyBytes)
    : ResponseCode(InResponseCode), Headers(std::move(InHeaders)), Content(std::move(InContent)), BodyBytes(InBodyBytes)
{
}

std::string FCurlHttpResponse::GetContentAsString() const
{
    return std::string(Content.begin(), Content.end());
}

std::string FCurlHttpResponse::GetHeader(const std::string& Name) const
{
    return FindHeader(Headers, Name);
}

int64 FCurlHttpResponse::GetContentLength() const
{
    const std::string Announced = FindHeader(Headers, "Content-Length");
    int64 Length = 0;
    const auto [End, Error] = std::from_chars(Announced.data(), Announced.data() + Announced.size(), Length);
    if (Announced.empty() || Error != std::errc() || End != Announced.data() + Announced.size() || Length < 0)
    {
        return BodyBytes;
    }
    return Length;
}
}
