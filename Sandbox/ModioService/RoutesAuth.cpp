// E-mail authentication: a code "sent" to an address (shown on the console and at
// /sandbox/last-code), exchanged for a bearer token; and the token's user.

#include "Common/StringUtil.h"
#include "ModioService/SandboxRoutes.h"
#include "ModioService/SandboxState.h"

#include <httplib.h>

#include <regex>

namespace Maptorn::Sandbox
{
namespace
{
constexpr int64 CodeLifetimeSeconds = 15 * 60;

bool IsValidEmail(const std::string& Email)
{
    static const std::regex Pattern(R"(^\w+([-+.']\w+)*@\w+([-.]\w+)*\.\w+([-.]\w+)*$)");
    return !Email.empty() && std::regex_match(Email, Pattern);
}

FReply RequestCode(FRouteContext& Context)
{
    const std::string Email = TrimWhitespace(Context.Body.Value("email"));
    if (!IsValidEmail(Email))
    {
        return FReply::Error(ValidationError("email", "The email must be a valid email address."));
    }
    std::scoped_lock Lock(Context.State.Mutex);
    Context.State.IssueCodeLocked(Email);
    Context.State.SaveLocked();
    Json::FJsonObject Answer;
    Answer["code"] = 201;
    Answer["message"] = "Please enter the 5-digit security code sent to your email address (" + Email + ").";
    return FReply::Json(200, Answer);
}

// The token lasts a year, or until date_expires when the client asks for less.
int64 TokenExpiryOf(const FRouteContext& Context, int64 Now)
{
    const std::string Asked = TrimWhitespace(Context.Body.Value("date_expires"));
    int64 Expires = Now + TokenLifetimeSeconds;
    if (!Asked.empty() &&
        std::all_of(Asked.begin(), Asked.end(), [](char C) { return std::isdigit(static_cast<unsigned char>(C)); }))
    {
        const int64 Value = std::stoll(Asked);
        Expires = Value > Now ? std::min(Value, Expires) : Expires;
    }
    return Expires;
}

FReply ExchangeCode(FRouteContext& Context)
{
    const std::string Entered = TrimWhitespace(Context.Body.Value("security_code"));
    FSandboxState& State = Context.State;
    std::scoped_lock Lock(State.Mutex);
    auto Code =
        std::find_if(State.Store.Codes.rbegin(), State.Store.Codes.rend(),
                     [&](const FSecurityCode& Issued) { return !Entered.empty() && EqualsIgnoreCase(Issued.Code, Entered); });
    if (Code == State.Store.Codes.rend())
    {
        return FReply::Error(MakeError(401, ErrorRef::SecurityCodeInvalid, "The security code is invalid."));
    }
    if (Code->bUsed)
    {
        return FReply::Error(MakeError(401, ErrorRef::SecurityCodeUsed, "The security code has already been redeemed."));
    }
    const int64 Now = State.Now();
    if (Now - Code->DateIssued > CodeLifetimeSeconds)
    {
        return FReply::Error(
            MakeError(401, ErrorRef::SecurityCodeExpired, "The security code has expired, please request a new one."));
    }
    Code->bUsed = true;
    FSandboxUser& User = State.Store.FindOrAddUser(Code->Email, Now);
    User.DateOnline = Now;
    const int64 Expires = TokenExpiryOf(Context, Now);
    Json::FJsonObject Answer;
    Answer["code"] = 200;
    Answer["access_token"] = State.IssueTokenLocked(User.Id, Expires);
    Answer["date_expires"] = Expires;
    State.SaveLocked();
    return FReply::Json(200, Answer);
}

FReply GetMe(FRouteContext& Context)
{
    std::scoped_lock Lock(Context.State.Mutex);
    const FSandboxUser* User = Context.State.Store.FindUser(Context.UserId);
    return FReply::Json(200, UserObject(*User, ViewOf(Context)));
}

FReply Logout(FRouteContext& Context)
{
    std::scoped_lock Lock(Context.State.Mutex);
    const auto Token = Context.State.Store.Tokens.find(BearerTokenOf(Context.Request));
    if (Token != Context.State.Store.Tokens.end())
    {
        Token->second.bRevoked = true;
        Context.State.SaveLocked();
    }
    Json::FJsonObject Answer;
    // mod.io's Logout answers with a Web Message Object: code, success and message.
    Answer["code"] = 200;
    Answer["success"] = true;
    Answer["message"] = "You have successfully logged out of mod.io.";
    return FReply::Json(200, Answer);
}

FReply LastCode(FRouteContext& Context)
{
    const std::string Email = Context.Query("email");
    std::scoped_lock Lock(Context.State.Mutex);
    const auto& Codes = Context.State.Store.Codes;
    const auto Code = std::find_if(Codes.rbegin(), Codes.rend(),
                                   [&](const FSecurityCode& Issued) { return EqualsIgnoreCase(Issued.Email, Email); });
    if (Code == Codes.rend())
    {
        return FReply::Error(MakeError(404, ErrorRef::NotFound, "No security code was issued for " + Email + "."));
    }
    Json::FJsonObject Answer;
    Answer["email"] = Code->Email;
    Answer["code"] = Code->Code;
    return FReply::Json(200, Answer);
}
}

void RegisterAuthRoutes(FSandboxRouter& Router)
{
    Router.Get("/sandbox/last-code", EAccess::Open, LastCode);
    Router.Post("/v1/oauth/emailrequest", EAccess::ApiKey, EBodyKind::Form, RequestCode);
    Router.Post("/v1/oauth/emailexchange", EAccess::ApiKey, EBodyKind::Form, ExchangeCode);
    Router.Post("/v1/oauth/logout", EAccess::Token, EBodyKind::Form, Logout);
    Router.Get("/v1/me", EAccess::Token, GetMe);
}
}
