#include "ModioService/SandboxRouter.h"

#include "Common/StringUtil.h"
#include "ModioService/SandboxFaultReplies.h"
#include "ModioService/SandboxState.h"

#include <httplib.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <regex>

namespace Maptorn::Sandbox
{
namespace
{
constexpr std::array<std::string_view, 14> KnownPlatforms = { "source", "windows", "mac",           "linux",      "android",
                                                              "ios",    "xboxone", "xboxseriesx",   "ps4",        "ps5",
                                                              "switch", "oculus",  "windowsserver", "linuxserver" };

std::optional<FApiError> CheckApiKey(const FRouteContext& Context)
{
    // mod.io reads the key from the query string only; one in a form body counts as none.
    const std::string Key = Context.Query("api_key");
    if (Key.empty())
    {
        return MakeError(401, ErrorRef::ApiKeyMissing, "No api_key was supplied with the request.");
    }
    const bool bWellFormed = Key.size() == 32 && std::all_of(Key.begin(), Key.end(),
                                                             [](char C) { return std::isalnum(static_cast<unsigned char>(C)); });
    if (!bWellFormed)
    {
        return MakeError(401, ErrorRef::ApiKeyMalformed, "The api_key supplied is malformed.");
    }
    if (Key != Context.State.Options.ApiKey)
    {
        return MakeError(401, ErrorRef::ApiKeyInvalid, "The api_key supplied is invalid.");
    }
    return std::nullopt;
}

std::optional<FApiError> CheckToken(FRouteContext& Context, const std::string& Bearer)
{
    std::scoped_lock Lock(Context.State.Mutex);
    const auto Found = Context.State.Store.Tokens.find(Bearer);
    if (Found == Context.State.Store.Tokens.end() || Found->second.bRevoked || Found->second.DateExpires <= Context.State.Now() ||
        !Context.State.Store.FindUser(Found->second.UserId))
    {
        return MakeError(401, ErrorRef::TokenExpiredOrRevoked, "Your access token has expired or been revoked.");
    }
    Context.UserId = Found->second.UserId;
    return std::nullopt;
}

std::optional<FApiError> CheckAccess(FRouteContext& Context, EAccess Access)
{
    if (Access == EAccess::Open)
    {
        return std::nullopt;
    }
    const std::string Bearer = BearerTokenOf(Context.Request);
    if (Access != EAccess::ApiKey && !Bearer.empty())
    {
        return CheckToken(Context, Bearer);
    }
    if (Access == EAccess::Token)
    {
        return MakeError(401, ErrorRef::LoginRequired, "You must be logged in (an OAuth 2 bearer token) to use this endpoint.");
    }
    return CheckApiKey(Context);
}

void ReadPlatform(FRouteContext& Context)
{
    const std::string Asked = ToLower(TrimWhitespace(Context.Request.get_header_value("X-Modio-Platform")));
    Context.bPlatformAsked = !Asked.empty();
    Context.Platform = IsKnownPlatform(Asked) ? Asked : "windows";
}

FRecordedRequest RecordOf(const httplib::Request& Request, size_t BodySize, int32 Status)
{
    FRecordedRequest Entry;
    Entry.Method = Request.method;
    Entry.Path = Request.path;
    const size_t QueryStart = Request.target.find('?');
    if (QueryStart != std::string::npos)
    {
        static const std::regex ApiKey("(^|&)(api_key=)([^&]*)");
        const std::string Query = Request.target.substr(QueryStart + 1);
        std::smatch Match;
        Entry.Query = std::regex_search(Query, Match, ApiKey) ? Match.prefix().str() + Match[1].str() + Match[2].str() +
                                                                    MaskSecret(Match[3].str()) + Match.suffix().str()
                                                              : Query;
    }
    for (const auto& [Name, Value] : Request.headers)
    {
        const std::string Lower = ToLower(Name);
        const std::string Bearer = Lower == "authorization" ? BearerTokenOf(Request) : std::string();
        Entry.Headers[Lower] = Bearer.empty() ? Value : "Bearer " + MaskSecret(Bearer);
    }
    Entry.BodySize = BodySize;
    Entry.Status = Status;
    return Entry;
}

EReplyCut CutOf(const std::optional<FFault>& Fault)
{
    if (Fault && Fault->Kind == EFaultKind::CloseMidBody)
    {
        return EReplyCut::Half;
    }
    if (Fault && Fault->Kind == EFaultKind::CloseAfter)
    {
        return EReplyCut::After;
    }
    return Fault && Fault->Kind == EFaultKind::TruncateBody ? EReplyCut::LastByte : EReplyCut::None;
}
}

std::string BearerTokenOf(const httplib::Request& Request)
{
    const std::string Header = TrimWhitespace(Request.get_header_value("Authorization"));
    return StartsWithIgnoreCase(Header, "Bearer ") ? TrimWhitespace(Header.substr(7)) : std::string();
}

bool IsKnownPlatform(const std::string& Platform)
{
    return std::find(KnownPlatforms.begin(), KnownPlatforms.end(), Platform) != KnownPlatforms.end();
}

std::string FRouteContext::Query(const std::string& Name) const
{
    return Request.get_param_value(Name);
}

bool FRouteContext::HasQuery(const std::string& Name) const
{
    return Request.has_param(Name);
}

int64 FRouteContext::PathNumber(size_t Index) const
{
    const std::string Text = PathText(Index);
    int64 Value = 0;
    const auto [End, Error] = std::from_chars(Text.data(), Text.data() + Text.size(), Value);
    return Error == std::errc() && End == Text.data() + Text.size() ? Value : 0;
}

std::string FRouteContext::PathText(size_t Index) const
{
    return Index < Request.matches.size() ? Request.matches[Index].str() : std::string();
}

std::optional<FApiError> FRouteContext::CheckGame() const
{
    if (PathNumber(1) != State.Options.GameId)
    {
        return MakeError(404, ErrorRef::GameNotFound, "The requested game could not be found.");
    }
    return std::nullopt;
}

FSandboxRouter::FSandboxRouter(httplib::Server& InServer, FSandboxState& InState) : Server(InServer), State(InState) {}

void FSandboxRouter::Get(const std::string& Pattern, EAccess Access, FRouteHandler Handler)
{
    Remember("GET", Pattern);
    Server.Get(Pattern, [this, Route = FRoute{ Access, EBodyKind::None, std::move(Handler) }](const httplib::Request& Request,
                                                                                              httplib::Response& Response)
               { Dispatch(Request, Response, nullptr, Route); });
}

void FSandboxRouter::Delete(const std::string& Pattern, EAccess Access, FRouteHandler Handler)
{
    Remember("DELETE", Pattern);
    Server.Delete(Pattern, [this, Route = FRoute{ Access, EBodyKind::None, std::move(Handler) }](const httplib::Request& Request,
                                                                                                 httplib::Response& Response)
                  { Dispatch(Request, Response, nullptr, Route); });
}

void FSandboxRouter::Post(const std::string& Pattern, EAccess Access, EBodyKind Body, FRouteHandler Handler)
{
    Remember("POST", Pattern);
    Server.Post(Pattern, [this, Route = FRoute{ Access, Body, std::move(Handler) }](
                             const httplib::Request& Request, httplib::Response& Response, const httplib::ContentReader& Reader)
                { Dispatch(Request, Response, &Reader, Route); });
}

void FSandboxRouter::Put(const std::string& Pattern, EAccess Access, EBodyKind Body, FRouteHandler Handler)
{
    Remember("PUT", Pattern);
    Server.Put(Pattern, [this, Route = FRoute{ Access, Body, std::move(Handler) }](
                            const httplib::Request& Request, httplib::Response& Response, const httplib::ContentReader& Reader)
               { Dispatch(Request, Response, &Reader, Route); });
}

void FSandboxRouter::Remember(const std::string& Method, const std::string& Pattern)
{
    if (!bCatchAll)
    {
        Known.push_back({Method, std::regex(Pattern)});
    }
}

void FSandboxRouter::NotFoundForTheRest()
{
    // A path that exists under another method is 405, as mod.io answers; anything else is 404.
    const FRouteHandler NotFound = [this](FRouteContext& Context) {
        for (const FKnownRoute& Route : Known)
        {
            if (Route.Method != Context.Request.method && std::regex_match(Context.Request.path, Route.Pattern))
            {
                return FReply::Error(MakeError(405, ErrorRef::MethodNotAllowed,
                    "The " + Context.Request.method + " method is not supported for this resource."));
            }
        }
        return FReply::Error(MakeError(404, ErrorRef::NotFound, "The requested resource could not be found."));
    };
    bCatchAll = true;
    Get(".*", EAccess::Open, NotFound);
    Delete(".*", EAccess::Open, NotFound);
    Post(".*", EAccess::Open, EBodyKind::Raw, NotFound);
    Put(".*", EAccess::Open, EBodyKind::Raw, NotFound);
}

void FSandboxRouter::Dispatch(const httplib::Request& Request, httplib::Response& Response, const httplib::ContentReader* Reader,
                              const FRoute& Route)
{
    // httplib 0.11 slices every answer to a Range header on its own (JSON errors included, and
    // with no 416 past the end); the download route answers ranges itself.
    const_cast<httplib::Request&>(Request).ranges.clear();
    const std::optional<FFault> Fault = State.Faults.Take(Request.method, Request.path);
    if (Fault && Fault->Kind == EFaultKind::Stall)
    {
        State.WaitUnlessStopping(Fault->DelayMs);
    }
    FRequestBody Body;
    FRouteContext Context{ State, Request, Body, 0, "windows", false };
    ReadPlatform(Context);
    FReply Reply = Answer(Context, Reader, Route, Fault);
    if (Fault)
    {
        SpoilReply(*Fault, Reply);
    }
    WriteReply(Reply, CutOf(Fault), Response, Fault ? static_cast<uint64>(std::max<int64_t>(Fault->CutAfterBytes, 0)) : 0);
    State.Log.Add(RecordOf(Request, Body.ReceivedBytes, Reply.Status));
    State.Say(Request.method + " " + Request.path + " -> " + std::to_string(Reply.Status));
}

FReply FSandboxRouter::Answer(FRouteContext& Context, const httplib::ContentReader* Reader, const FRoute& Route,
                              const std::optional<FFault>& Fault)
{
    const bool bStatusFault = Fault && Fault->Kind == EFaultKind::Status;
    if (Reader)
    {
        const EReceiveResult Received = ReceiveBody(Context.Request, *Reader, Route.Body, State.Blobs, Context.Body);
        if (Received == EReceiveResult::Broken && !bStatusFault)
        {
            return FReply::Error(MakeError(400, ErrorRef::ValidationFailed, "The request body could not be read."));
        }
        if (Received == EReceiveResult::UnsupportedType && !bStatusFault)
        {
            return FReply::Error(
                MakeError(415, ErrorRef::UnsupportedContentType,
                          Route.Body == EBodyKind::MultipartForm
                              ? "This endpoint takes multipart/form-data."
                              : "This endpoint takes application/x-www-form-urlencoded or multipart/form-data."));
        }
    }
    if (bStatusFault)
    {
        return FReply::Error(FaultError(Fault->Status));
    }
    if (const std::optional<FApiError> Denied = CheckAccess(Context, Route.Access))
    {
        return FReply::Error(*Denied);
    }
    try
    {
        return Route.Handler(Context);
    }
    catch (const std::exception& Exception)
    {
        return FReply::Error(MakeError(500, ErrorRef::ServiceOutage, std::string("The sandbox failed: ") + Exception.what()));
    }
}
}
