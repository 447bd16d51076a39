#include "Platform/RestModioSessionRequests.h"

#include "Common/StringUtil.h"
#include "Modio/JsonFields.h"
#include "Modio/ModioErrorAnswer.h"

namespace Maptorn::ModioRest
{
std::string DefaultBaseUrl(int64 GameId)
{
    return "https://g-" + std::to_string(GameId) + ".modapi.io";
}

std::string ResolveBaseUrl(const std::string& ConfiguredBaseUrl, int64 GameId)
{
    std::string BaseUrl = TrimWhitespace(ConfiguredBaseUrl);
    const auto DropTrailingSlashes = [&BaseUrl] {
        while (!BaseUrl.empty() && BaseUrl.back() == '/')
        {
            BaseUrl.pop_back();
        }
    };
    DropTrailingSlashes();
    if (BaseUrl.size() > 3 && EqualsIgnoreCase(std::string_view(BaseUrl).substr(BaseUrl.size() - 3), "/v1"))
    {
        BaseUrl.resize(BaseUrl.size() - 3);
        DropTrailingSlashes();
    }
    return BaseUrl.empty() ? DefaultBaseUrl(GameId) : BaseUrl;
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
    const FModioErrorAnswer Answer = ReadErrorAnswer(Status, Body);
    // A ref of 0 would read as success: the failure still has to show.
    return FModioErrorCode{Answer.ErrorRef != 0 ? Answer.ErrorRef : ModioErrorValue::HttpRequestFailed, DescribeErrorAnswer(Answer)};
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
