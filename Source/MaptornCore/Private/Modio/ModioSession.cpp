#include "Common/Paths.h"
#include "Common/StringUtil.h"
#include "Modio/ModioInterface.h"

namespace Maptorn
{
void FModioInterface::InitializeSession()
{
    if (IModioSession* Session = Platform.ModioSession)
    {
        FModioInitializeOptions Options;
        Options.GameId = Config.ModioGameId;
        Options.ApiKey = Config.ModioApiKey;
        Options.Environment = EModioEnvironment::Live;
        Options.BaseUrl = Config.ModioApiBaseUrl;
        Session->InitializeAsync(Options, Guarded<FModioErrorCode>([this](FModioErrorCode ErrorCode) { OnInitializeComplete(ErrorCode); }));
        Session->SetLogLevel(EModioLogLevel::Warning);
    }

    DefaultLogoPath = Paths::Combine(Platform.Engine.ProjectDir(), "Plugins", "Maptorn", "Resources", "KelvorThumbnail.jpg");
    NewModLogoPath = DefaultLogoPath;
    LogTemp(Printf("Logo Location: %s", DefaultLogoPath.c_str()));
    LogTemp("Initializing Modio SDK");
}

void FModioInterface::OnInitializeComplete(FModioErrorCode ErrorCode)
{
    if (ErrorCode)
    {
        LogTemp(Printf("Error initializing Modio SDK, the error code was %s", ErrorCode.GetErrorMessage().c_str()));
        return;
    }
    VerifyLogin();
    if (IModioSession* Session = Platform.ModioSession)
    {
        Session->EnableModManagement(Guarded<FModioModManagementEvent>([this](FModioModManagementEvent Event) { OnModManagementEvent(Event); }));
    }
}

void FModioInterface::LogTemp(const std::string& Message, ELogVerbosity Verbosity) const
{
    Platform.Log.Log(LogCategory::LogTemp, Verbosity, Message);
}

void FModioInterface::QuerySourceModsOnce()
{
    if (!bSourceModsQueried)
    {
        QuerySourceMods();
        bSourceModsQueried = true;
    }
}

void FModioInterface::CallWhileBusy(const std::function<void(IModioSession&, FOnErrorOnlyDelegate)>& Call,
    std::function<void(FModioErrorCode)> OnDone)
{
    IModioSession* Session = Platform.ModioSession;
    if (!Session)
    {
        return;
    }
    bIsModioBusy = true;
    Call(*Session, Guarded<FModioErrorCode>([this, OnDone = std::move(OnDone)](FModioErrorCode ErrorCode) {
        OnDone(ErrorCode);
        bIsModioBusy = false;
    }));
}

void FModioInterface::OnVerificationFailed(const FModioErrorCode& ErrorCode)
{
    LogTemp(Printf("User not authenticated Error Code %s", ErrorCode.GetErrorMessage().c_str()));
    bIsLoggedIn = false;
}

void FModioInterface::VerifyLogin()
{
    CallWhileBusy([](IModioSession& Session, FOnErrorOnlyDelegate Done) { Session.VerifyUserAuthenticationAsync(std::move(Done)); },
        [this](FModioErrorCode ErrorCode) {
            if (ErrorCode)
            {
                OnVerificationFailed(ErrorCode);
                return;
            }
            OwnModRefreshCountdown = OwnModRefreshInterval;
            bIsLoggedIn = true;
            RefreshOwnMods();
            QuerySourceModsOnce();
        });
}

void FModioInterface::RecheckLogin()
{
    if (IModioSession* Session = Platform.ModioSession)
    {
        Session->VerifyUserAuthenticationAsync(Guarded<FModioErrorCode>([this](FModioErrorCode ErrorCode) {
            if (ErrorCode)
            {
                OnVerificationFailed(ErrorCode);
                return;
            }
            bIsLoggedIn = true;
            QuerySourceModsOnce();
        }));
    }
}

void FModioInterface::RequestEmailCode()
{
    // Only emptiness is checked here; the page checks the format before it offers the button.
    if (EmailAddress.empty())
    {
        LogTemp("Cannot request email code, email is invalid");
        return;
    }
    CallWhileBusy([this](IModioSession& Session, FOnErrorOnlyDelegate Done) { Session.RequestEmailAuthCodeAsync(EmailAddress, std::move(Done)); },
        [this](FModioErrorCode ErrorCode) {
            LoginError = ErrorCode && ErrorCode.GetValue() != ModioErrorValue::UserAlreadyAuthenticated
                ? Printf("The code could not be sent: %s", ErrorCode.GetErrorMessage().c_str())
                : std::string();
            if (!ErrorCode)
            {
                LoginIndex = 2;
            }
            else if (ErrorCode.GetValue() == ModioErrorValue::UserAlreadyAuthenticated)
            {
                // A login is already held: that counts as logged in, without moving the login step.
                bIsLoggedIn = true;
                LogTemp("User already logged in");
                QuerySourceModsOnce();
            }
            else
            {
                LogTemp(Printf("Error Requesting Auth Code, the error code was %d %s", ErrorCode.GetValue(), ErrorCode.GetErrorMessage().c_str()));
            }
        });
}

void FModioInterface::Login()
{
    // The message names a length, but only emptiness is refused: the service judges the code.
    if (AuthCode.empty())
    {
        LogTemp("Cannot login, auth code isnt the correct length");
        return;
    }
    CallWhileBusy([this](IModioSession& Session, FOnErrorOnlyDelegate Done) { Session.AuthenticateUserEmailAsync(AuthCode, std::move(Done)); },
        [this](FModioErrorCode ErrorCode) {
            if (ErrorCode)
            {
                // The typed e-mail and code stay, so that the user can correct them.
                LogTemp(Printf("Error Modio Login, the error code was %s", ErrorCode.GetErrorMessage().c_str()));
                LoginError = Printf("The login was refused: %s", ErrorCode.GetErrorMessage().c_str());
                return;
            }
            LoginError.clear();
            bIsLoggedIn = true;
            EmailAddress.clear();
            AuthCode.clear();
            // The upload page lists the modder's mods at once, not at the next periodic refresh.
            OwnModRefreshCountdown = OwnModRefreshInterval;
            RefreshOwnMods();
            QuerySourceModsOnce();
        });
}

void FModioInterface::Logout()
{
    CallWhileBusy([](IModioSession& Session, FOnErrorOnlyDelegate Done) { Session.ClearUserDataAsync(std::move(Done)); },
        [this](FModioErrorCode ErrorCode) {
            if (ErrorCode)
            {
                // A failed logout reports with the login's message.
                LogTemp(Printf("Error Modio Login, the error code was %s", ErrorCode.GetErrorMessage().c_str()));
                LoginError = Printf("The logout failed: %s", ErrorCode.GetErrorMessage().c_str());
                return;
            }
            LoginError.clear();
            bIsLoggedIn = false;
            LoginIndex = 0;
            OwnMods.clear();
            OwnModVersions.clear();
            OnUploadListUpdated.Broadcast();
        });
}

void FModioInterface::Shutdown()
{
    IModioSession* Session = Platform.ModioSession;
    // The engine's pre-exit and the module's shutdown both end the session; only the first does.
    if (!Session || bSessionShutDown)
    {
        return;
    }
    bSessionShutDown = true;
    // The client may be gone when the completion runs: capture only the log.
    IMaptornLog& Log = Platform.Log;
    Session->ShutdownAsync([&Log](FModioErrorCode ErrorCode) {
        // Only a shut-down that failed has an error to tell.
        if (ErrorCode)
        {
            Log.Log(LogCategory::LogTemp, ELogVerbosity::Log,
                Printf("Error Shutdown Modio SDK, the error code was %s", ErrorCode.GetErrorMessage().c_str()));
        }
    });
}
}
