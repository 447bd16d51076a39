#pragma once

#include "Platform/CurlHttpHeaders.h"
#include "Platform/HttpPort.h"

namespace Maptorn
{
// What a finished transfer received: immutable once handed to the game thread.
class FCurlHttpResponse final : public IHttpResponse
{
public:
    // BodyBytes counts the body wherever it went, memory or file.
    FCurlHttpResponse(int32 ResponseCode, FHttpHeaderList Headers, std::vector<uint8> Content, int64 BodyBytes);

    int32 GetResponseCode() const override { return ResponseCode; }
    const std::vector<uint8>& GetContent() const override { return Content; }
    std::string GetContentAsString() const override;
    std::string GetHeader(const std::string& Name) const override;
    std::vector<std::pair<std::string, std::string>> GetAllHeaders() const override { return Headers; }
    // The length the server announced, or the bytes received when it announced none.
    int64 GetContentLength() const override;

private:
    int32 ResponseCode = 0;
    FHttpHeaderList Headers;
    std::vector<uint8> Content;
    int64 BodyBytes = 0;
};
}
