#pragma once

#include "Common/TickTimers.h"
#include "Modio/RetryingHttp.h"
#include "Platform/HttpPort.h"
#include "Platform/LogPort.h"
#include "Platform/ModioSessionPort.h"
#include "Platform/RestModFileUpload.h"
#include "Platform/StoredLogin.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Maptorn
{
// The mod.io session port over mod.io's public REST API. An HTTP completion only updates the
// login and queues the caller's callback; callbacks run inside RunPendingHandlers, which the
// module's tick calls. The login is kept in StoredLoginFile (owner-only) between runs. Mod files
// are packed and sent by one FRestModFileUpload at a time, whose end is an Uploaded event.
class FRestModioSession final : public IModioSession
{
public:
    // StoredLoginFile is usually StoredLoginPath(game id); empty keeps the login for this run only.
    // Every request rides out mod.io's rate limit on Http; Log, when given, hears of the waits.
    FRestModioSession(IMaptornHttp& Http, std::string StoredLoginFile, IMaptornLog* Log = nullptr);
    // Requests still running are cancelled; their callbacks never run.
    ~FRestModioSession() override;
    FRestModioSession(const FRestModioSession&) = delete;
    FRestModioSession& operator=(const FRestModioSession&) = delete;

    void InitializeAsync(const FModioInitializeOptions& Options, FOnErrorOnlyDelegate OnInitComplete) override;
    void SetLogLevel(EModioLogLevel Level) override;
    FModioErrorCode EnableModManagement(FOnModManagementDelegate Callback) override;
    void VerifyUserAuthenticationAsync(FOnErrorOnlyDelegate Callback) override;
    void RequestEmailAuthCodeAsync(const std::string& EmailAddress, FOnErrorOnlyDelegate Callback) override;
    void AuthenticateUserEmailAsync(const std::string& AuthCode, FOnErrorOnlyDelegate Callback) override;
    void ClearUserDataAsync(FOnErrorOnlyDelegate Callback) override;
    void ShutdownAsync(FOnErrorOnlyDelegate Callback) override;
    void RunPendingHandlers() override;

    std::optional<FModioModProgressInfo> QueryCurrentModUpdate() override;
    std::string GetAuthTokenAsString() override;

    FModioModCreationHandle GetModCreationHandle() override;
    void SubmitNewModAsync(FModioModCreationHandle Handle, const FModioCreateModParams& Params,
        FOnSubmitNewModDelegate Callback) override;
    void SubmitModChangesAsync(FModioModID Mod, const FModioEditModParams& Params,
        FOnSubmitModChangesDelegate Callback) override;
    void SubmitNewModFileForMod(FModioModID Mod, const FModioCreateModFileParams& Params) override;

    EModioLogLevel GetLogLevel() const { return LogLevel; }

    // How long a logout waits for the service to revoke the token.
    static constexpr float LogoutTimeoutSeconds = 5.0f;

    // Standalone only: the multipart threshold, the part size and where temporary upload files
    // go, for the mod-file submissions started afterwards.
    void SetUploadOptions(FRestUploadOptions Options);
    const FRestUploadOptions& GetUploadOptions() const { return UploadOptions; }

private:
    using FAnswerHandler = std::function<void(int32 Status, const std::string& Body)>;

    // OnAnswer runs with the status and body; a transfer that gets no answer completes Callback
    // with HttpRequestFailed instead.
    void Send(FHttpRequestPtr Request, FAnswerHandler OnAnswer, FOnErrorOnlyDelegate Callback);
    FHttpRequestPtr MakeFormRequest(const std::string& Url, const std::string& Body);
    FHttpRequestPtr MakeMeRequest(const std::string& Token);

    // Queues Callback with Error, whose message never shows the API key, the held token or AlsoHide.
    void Complete(FOnErrorOnlyDelegate Callback, FModioErrorCode Error, const std::string& AlsoHide = {});
    FModioErrorCode Redacted(FModioErrorCode Error, const std::string& AlsoHide = {}) const;
    void Post(std::function<void()> Handler);
    // The error to report when no request may start; nothing when one may.
    std::optional<FModioErrorCode> RefusalToStart() const;
    // As RefusalToStart, and the SDK's "already authenticated" while a login is held.
    std::optional<FModioErrorCode> RefusalToStartLogin() const;
    // As RefusalToStart, and "no user is logged in" without a login.
    std::optional<FModioErrorCode> RefusalToStartAuthorized() const;

    // A request with Token answered 401: the token is dead, unless a new login replaced it meanwhile.
    void ForgetLoginIfRefused(int32 Status, const std::string& Token);
    // Posts a mod's form-data (fields and logo); OnAccepted reads a 2xx answer and says whether
    // it was what the request gives. Refusals and unreadable answers complete OnError.
    void PostModForm(const std::string& Url, const std::string& Body, std::function<bool(const std::string&)> OnAccepted,
        FOnErrorOnlyDelegate OnError);
    void PostUploadedEvent(FModioModID Mod, FModioErrorCode Error);
    void FinishUploadIfDone();

    void OnEmailExchanged(const std::string& Token, int64 DateExpires, FOnErrorOnlyDelegate Callback);
    void KeepLogin(const std::string& Token, int64 DateExpires);
    void ForgetLogin();
    void ForgetRequest(const FHttpRequestPtr& Request);

    // The waits of Http run on RequestTimers, advanced by the time between two pumps.
    FTickTimers RequestTimers;
    std::chrono::steady_clock::time_point LastPump = std::chrono::steady_clock::now();
    FRetryingHttp Http;
    std::string StoredLoginFile;

    bool bInitialized = false;
    bool bShutDown = false;
    int64 GameId = 0;
    std::string ApiKey;
    std::string BaseUrl;
    std::string AccessToken;
    EModioLogLevel LogLevel = EModioLogLevel::Warning;

    FOnModManagementDelegate ModManagementCallback;
    int64 LastModCreationHandle = 0;
    FRestUploadOptions UploadOptions;
    // The running (or just finished) mod-file submission; one at a time.
    std::unique_ptr<FRestModFileUpload> Upload;

    std::vector<std::function<void()>> PendingHandlers;
    std::vector<FHttpRequestPtr> RequestsInFlight;
    // HTTP callbacks hold a weak reference: once the session is gone they do nothing.
    std::shared_ptr<int> Lifetime = std::make_shared<int>(0);
};
}
