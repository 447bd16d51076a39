#include "Platform/RestModioSession.h"

#include "Common/StringUtil.h"
#include "Modio/ModioRequests.h"
#include "Platform/RestModioSessionRequests.h"
#include "Platform/StoredLogin.h"

#include <algorithm>

namespace Maptorn
{
namespace
{
bool IsSuccess(int32 Status)
{
    return Status >= 200 && Status < 300;
}

std::string WithoutSecret(std::string Text, const std::string& Secret)
{
    return Secret.empty() ? Text : ReplaceAll(std::move(Text), Secret, "***");
}
}

FRestModioSession::FRestModioSession(IMaptornHttp& InHttp, std::string InStoredLoginFile, IMaptornLog* Log)
    : Http(InHttp, RequestTimers, Log)
    , StoredLoginFile(std::move(InStoredLoginFile))
{
}

FRestModioSession::~FRestModioSession()
{
    Lifetime.reset();
    // Its temporary files go with it; no event is delivered.
    Upload.reset();
    const std::vector<FHttpRequestPtr> Running = std::move(RequestsInFlight);
    for (const FHttpRequestPtr& Request : Running)
    {
        Request->CancelRequest();
    }
}

void FRestModioSession::InitializeAsync(const FModioInitializeOptions& Options, FOnErrorOnlyDelegate OnInitComplete)
{
    if (Options.GameId <= 0 || Options.ApiKey.empty())
    {
        Complete(std::move(OnInitComplete), FModioErrorCode{ModioRest::ErrorValue::BadParameter,
            "mod.io is not configured: game id and API key are needed"});
        return;
    }
    GameId = Options.GameId;
    ApiKey = Options.ApiKey;
    BaseUrl = ModioRest::ResolveBaseUrl(Options.BaseUrl, GameId);
    bInitialized = true;
    bShutDown = false;
    // A token issued by another service would only be refused there, or worse, sent to it.
    const std::optional<FStoredLogin> Stored = LoadStoredLoginFor(StoredLoginFile, BaseUrl);
    AccessToken = Stored ? Stored->AccessToken : std::string();
    Complete(std::move(OnInitComplete), {});
}

void FRestModioSession::SetLogLevel(EModioLogLevel Level)
{
    LogLevel = Level;
}

FModioErrorCode FRestModioSession::EnableModManagement(FOnModManagementDelegate Callback)
{
    ModManagementCallback = std::move(Callback);
    return {};
}

void FRestModioSession::VerifyUserAuthenticationAsync(FOnErrorOnlyDelegate Callback)
{
    if (const std::optional<FModioErrorCode> Refusal = RefusalToStartAuthorized())
    {
        Complete(std::move(Callback), *Refusal);
        return;
    }
    const std::string Token = AccessToken;
    Send(MakeMeRequest(Token),
        [this, Callback, Token](int32 Status, const std::string& Body) {
            if (IsSuccess(Status))
            {
                Complete(Callback, ModioRest::IsUserObject(Body) ? FModioErrorCode{} : ModioRest::UnexpectedAnswer());
                return;
            }
            Complete(Callback, ModioRest::ErrorFromAnswer(Status, Body), Token);
            ForgetLoginIfRefused(Status, Token);
        },
        Callback);
}

std::optional<FModioErrorCode> FRestModioSession::RefusalToStartAuthorized() const
{
    if (std::optional<FModioErrorCode> Refusal = RefusalToStart())
    {
        return Refusal;
    }
    if (AccessToken.empty())
    {
        return FModioErrorCode{ModioRest::ErrorValue::NoAuthToken, "No user is logged in"};
    }
    return std::nullopt;
}

// A refused token stays refused; a login made meanwhile is not this one.
void FRestModioSession::ForgetLoginIfRefused(int32 Status, const std::string& Token)
{
    if (Status == 401 && AccessToken == Token)
    {
        ForgetLogin();
    }
}

std::optional<FModioErrorCode> FRestModioSession::RefusalToStartLogin() const
{
    if (std::optional<FModioErrorCode> Refusal = RefusalToStart())
    {
        return Refusal;
    }
    if (!AccessToken.empty())
    {
        return FModioErrorCode{ModioErrorValue::UserAlreadyAuthenticated, "A user is already logged in; clear the user data to log in as someone else"};
    }
    return std::nullopt;
}

void FRestModioSession::RequestEmailAuthCodeAsync(const std::string& EmailAddress, FOnErrorOnlyDelegate Callback)
{
    if (const std::optional<FModioErrorCode> Refusal = RefusalToStartLogin())
    {
        Complete(std::move(Callback), *Refusal);
        return;
    }
    Send(MakeFormRequest(ModioRest::EmailRequestUrl(BaseUrl, ApiKey), ModioRest::EmailRequestBody(EmailAddress)),
        [this, Callback](int32 Status, const std::string& Body) {
            Complete(Callback, IsSuccess(Status) ? FModioErrorCode{} : ModioRest::ErrorFromAnswer(Status, Body));
        },
        Callback);
}

void FRestModioSession::AuthenticateUserEmailAsync(const std::string& AuthCode, FOnErrorOnlyDelegate Callback)
{
    if (const std::optional<FModioErrorCode> Refusal = RefusalToStartLogin())
    {
        Complete(std::move(Callback), *Refusal);
        return;
    }
    Send(MakeFormRequest(ModioRest::EmailExchangeUrl(BaseUrl, ApiKey), ModioRest::EmailExchangeBody(TrimWhitespace(AuthCode))),
        [this, Callback](int32 Status, const std::string& Body) {
            if (!IsSuccess(Status))
            {
                Complete(Callback, ModioRest::ErrorFromAnswer(Status, Body));
                return;
            }
            const std::optional<ModioRest::FAccessToken> Token = ModioRest::ReadAccessToken(Body);
            if (!Token)
            {
                Complete(Callback, ModioRest::UnexpectedAnswer());
                return;
            }
            OnEmailExchanged(Token->Token, Token->DateExpires, Callback);
        },
        Callback);
}

// The token is kept only once the service has shown whose it is.
void FRestModioSession::OnEmailExchanged(const std::string& Token, int64 DateExpires, FOnErrorOnlyDelegate Callback)
{
    if (const std::optional<FModioErrorCode> Refusal = RefusalToStart())
    {
        Complete(std::move(Callback), *Refusal);
        return;
    }
    Send(MakeMeRequest(Token),
        [this, Callback, Token, DateExpires](int32 Status, const std::string& Body) {
            if (IsSuccess(Status) && ModioRest::IsUserObject(Body))
            {
                KeepLogin(Token, DateExpires);
                Complete(Callback, {});
                return;
            }
            Complete(Callback, IsSuccess(Status) ? ModioRest::UnexpectedAnswer() : ModioRest::ErrorFromAnswer(Status, Body), Token);
        },
        Callback);
}

void FRestModioSession::ClearUserDataAsync(FOnErrorOnlyDelegate Callback)
{
    if (AccessToken.empty() || RefusalToStart())
    {
        ForgetLogin();
        Complete(std::move(Callback), {});
        return;
    }
    // The token is revoked on the service before the logout counts as done, so that a process
    // ending right after it does not cut the request off; a service that is slow to answer only
    // holds it up for LogoutTimeoutSeconds. Either way the login is forgotten here.
    FHttpRequestPtr Logout = ModioRequests::MakeAuthorizedRequest(Http, "POST", ModioRest::LogoutUrl(BaseUrl), AccessToken);
    if (Logout)
    {
        Logout->SetHeader("Content-Type", "application/x-www-form-urlencoded");
        Logout->SetTimeout(LogoutTimeoutSeconds);
    }
    ForgetLogin();
    const auto OnEnd = [this, Callback](FModioErrorCode) { Complete(Callback, {}); };
    Send(Logout, [OnEnd](int32, const std::string&) { OnEnd({}); }, OnEnd);
}

void FRestModioSession::ShutdownAsync(FOnErrorOnlyDelegate Callback)
{
    // A running submission stops here, and its listener hears so.
    if (Upload && !Upload->IsFinished())
    {
        const FModioModID Mod = Upload->GetModId();
        Upload.reset();
        PostUploadedEvent(Mod, FModioErrorCode{ModioRest::ErrorValue::SdkNotInitialized, "mod.io has been shut down"});
    }
    bInitialized = false;
    bShutDown = true;
    Complete(std::move(Callback), {});
}

void FRestModioSession::RunPendingHandlers()
{
    const auto Now = std::chrono::steady_clock::now();
    RequestTimers.Tick(std::chrono::duration<float>(Now - LastPump).count());
    LastPump = Now;
    FinishUploadIfDone();
    // Handlers queued while these run wait for the next tick; the session may be gone after the last one.
    std::vector<std::function<void()>> Ready;
    Ready.swap(PendingHandlers);
    for (std::function<void()>& Handler : Ready)
    {
        Handler();
    }
}

std::string FRestModioSession::GetAuthTokenAsString()
{
    return AccessToken;
}

void FRestModioSession::Send(FHttpRequestPtr Request, FAnswerHandler OnAnswer, FOnErrorOnlyDelegate Callback)
{
    if (!Request)
    {
        Complete(std::move(Callback), ModioRest::TransportFailure());
        return;
    }
    std::weak_ptr<int> Alive = Lifetime;
    Request->OnProcessRequestComplete() = [this, Alive, OnAnswer = std::move(OnAnswer), Callback](
                                              FHttpRequestPtr Done, FHttpResponsePtr Response, bool bConnectedSuccessfully) {
        if (Alive.expired())
        {
            return;
        }
        ForgetRequest(Done);
        if (!bConnectedSuccessfully || !Response)
        {
            Complete(Callback, ModioRest::TransportFailure());
            return;
        }
        OnAnswer(Response->GetResponseCode(), Response->GetContentAsString());
    };
    RequestsInFlight.push_back(Request);
    if (!Request->ProcessRequest())
    {
        Request->OnProcessRequestComplete() = nullptr;
        ForgetRequest(Request);
        Complete(std::move(Callback), ModioRest::TransportFailure());
    }
}

FHttpRequestPtr FRestModioSession::MakeFormRequest(const std::string& Url, const std::string& Body)
{
    FHttpRequestPtr Request = Http.CreateRequest();
    if (Request)
    {
        Request->SetVerb("POST");
        Request->SetURL(Url);
        Request->SetHeader("Accept", "application/json");
        Request->SetHeader("Content-Type", "application/x-www-form-urlencoded");
        Request->SetContentAsString(Body);
    }
    return Request;
}

FHttpRequestPtr FRestModioSession::MakeMeRequest(const std::string& Token)
{
    return ModioRequests::MakeAuthorizedRequest(Http, "GET", ModioRest::MeUrl(BaseUrl), Token);
}

void FRestModioSession::Complete(FOnErrorOnlyDelegate Callback, FModioErrorCode Error, const std::string& AlsoHide)
{
    if (!Callback)
    {
        return;
    }
    Post([Callback = std::move(Callback), Error = Redacted(std::move(Error), AlsoHide)] { Callback(Error); });
}

FModioErrorCode FRestModioSession::Redacted(FModioErrorCode Error, const std::string& AlsoHide) const
{
    Error.Message = WithoutSecret(WithoutSecret(WithoutSecret(std::move(Error.Message), AlsoHide), AccessToken), ApiKey);
    return Error;
}

void FRestModioSession::Post(std::function<void()> Handler)
{
    PendingHandlers.push_back(std::move(Handler));
}

std::optional<FModioErrorCode> FRestModioSession::RefusalToStart() const
{
    if (bInitialized)
    {
        return std::nullopt;
    }
    return FModioErrorCode{ModioRest::ErrorValue::SdkNotInitialized,
        bShutDown ? "mod.io has been shut down" : "mod.io is not initialised"};
}

void FRestModioSession::KeepLogin(const std::string& Token, int64 DateExpires)
{
    AccessToken = Token;
    // Without the file the login still holds for this run.
    SaveStoredLogin(StoredLoginFile, FStoredLogin{Token, DateExpires, BaseUrl});
}

void FRestModioSession::ForgetLogin()
{
    AccessToken.clear();
    DeleteStoredLogin(StoredLoginFile);
}

void FRestModioSession::ForgetRequest(const FHttpRequestPtr& Request)
{
    std::erase(RequestsInFlight, Request);
}
}
