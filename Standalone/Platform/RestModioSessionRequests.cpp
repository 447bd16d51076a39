#include "Platform/RestModioSessionRequests.h"

#include "Common/StringUtil.h"
#include "Modio/JsonFields.h"

namespace Maptorn::ModioRest
{
std::string DefaultBaseUrl(int64 GameId)
{
    return "https://g-" + std::to_string(GameId) + ".modapi.io";
}

std::string ResolveBaseUrl(const std::string& ConfiguredBaseUrl, int64 GameId)
{
    std::string BaseUrl = TrimWhitespace(ConfiguredBaseUrl);
    while (!BaseUrl.empty() && BaseUrl.back() == '/')
    {
        BaseUrl.pop_back();
    }
    return BaseUrl.empty() ? DefaultBaseUrl(GameId) : BaseUrl;
}

std::string UrlEncode(const std::string& Value)
{
    static constexpr char Hex[] = "0123456789ABCDEF";
    std::string Encoded;
    Encoded.reserve(Value.size());
    for (const char Character : Value)
    {
        const unsigned char Byte = static_cast<unsigned char>(Character);
        const bool bUnreserved = (Byte >= 'A' && Byte <= 'Z') || (Byte >= 'a' && Byte <= 'z') ||
            (Byte >= '0' && Byte <= '9') || Byte == '-' || Byte == '.' || Byte == '_' || Byte == '~';
        if (bUnreserved)
        {
            Encoded += Character;
        }
        else
        {
            Encoded += '%';
            Encoded += Hex[Byte >> 4];
            Encoded += Hex[Byte & 0x0F];
        }
    }
    return Encoded;
}

std::string EmailRequestUrl(const std::string& BaseUrl, const std::string& ApiKey)
{
    return BaseUrl + "/v1/oauth/emailrequest?api_key=" + UrlEncode(ApiKey);
}

std::string EmailRequestBody(const std::string& EmailAddress)
{
    return "email=" + UrlEncode(EmailAddress);
}

std::string EmailExchangeUrl(const std::string& BaseUrl, const std::string& ApiKey)
{
    return BaseUrl + "/v1/oauth/emailexchange?api_key=" + UrlEncode(ApiKey);
}

std::string EmailExchangeBody(const std::string& SecurityCode)
{
    return "security_code=" + UrlEncode(SecurityCode);
}

std::string MeUrl(const std::string& BaseUrl)
{
    return BaseUrl + "/v1/me";
}

std::string LogoutUrl(const std::string& BaseUrl)
{
    return BaseUrl + "/v1/oauth/logout";
}

std::optional<FAccessToken> ReadAccessToken(const std::string& Body)
{
    const JsonFields::FJson Answer = JsonFields::FJson::parse(Body, nullptr, false);
    FAccessToken Token;
    Token.Token = JsonFields::GetString(Answer, "access_token");
    Token.DateExpires = JsonFields::TruncateToInt64(JsonFields::GetNumber(Answer, "date_expires"));
    if (Token.Token.empty())
    {
        return std::nullopt;
    }
    return Token;
}

bool IsUserObject(const std::string& Body)
{
    const JsonFields::FJson Answer = JsonFields::FJson::parse(Body, nullptr, false);
    return JsonFields::FindField(Answer, "id") != nullptr;
}

FModioErrorCode ErrorFromAnswer(int32 Status, const std::string& Body)
{
    const JsonFields::FJson Answer = JsonFields::FJson::parse(Body, nullptr, false);
    const JsonFields::FJson* Error = JsonFields::TryGetObject(Answer, "error");
    if (Error)
    {
        FModioErrorCode Code;
        Code.Value = JsonFields::TruncateToInt32(JsonFields::GetNumber(*Error, "error_ref"));
        Code.Message = JsonFields::GetString(*Error, "message");
        // A ref of 0 would read as success: the failure still has to show.
        if (Code.Value != 0)
        {
            if (Code.Message.empty())
            {
                Code.Message = Printf("mod.io answered HTTP %d (error %d)", Status, Code.Value);
            }
            return Code;
        }
        if (!Code.Message.empty())
        {
            return FModioErrorCode{ModioErrorValue::HttpRequestFailed, Code.Message};
        }
    }
    return FModioErrorCode{ModioErrorValue::HttpRequestFailed, Printf("HTTP request failed (HTTP %d)", Status)};
}

FModioErrorCode TransportFailure()
{
    return FModioErrorCode{ModioErrorValue::HttpRequestFailed, "HTTP request failed"};
}

FModioErrorCode UnexpectedAnswer()
{
    return FModioErrorCode{ModioErrorValue::HttpRequestFailed, "HTTP request failed: unexpected answer from mod.io"};
}
}
