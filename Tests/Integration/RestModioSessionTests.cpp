// The standalone mod.io session's login: e-mail code, verification, the login kept between runs
// with owner-only permissions, and logging out, over the real HTTP adapter against the sandbox
// service on loopback. Every completion must wait for RunPendingHandlers.

#include "Common/StringUtil.h"
#include "Platform/RestModioSessionRequests.h"
#include "Platform/StoredLogin.h"
#include "Support/RestSessionFixture.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <thread>

using namespace Maptorn;
using namespace Maptorn::Testing;
namespace fs = std::filesystem;

namespace
{
class RestModioSession : public FRestSessionTest
{
protected:
    // Starts an operation and ticks like the host until its callback has run, which must happen
    // inside RunPendingHandlers and exactly once.
    FModioErrorCode Await(FRestModioSession& Session, const std::function<void(FOnErrorOnlyDelegate)>& Start)
    {
        int Calls = 0;
        FModioErrorCode Result;
        Start([&](FModioErrorCode Error) {
            EXPECT_TRUE(bInsidePendingHandlers) << "a completion ran outside RunPendingHandlers";
            ++Calls;
            Result = Error;
        });
        TickUntil(Session, [&] { return Calls > 0; });
        for (int Frame = 0; Frame < 3; ++Frame)
        {
            Tick(Session);
        }
        EXPECT_EQ(Calls, 1);
        ErrorMessages.push_back(Result.GetErrorMessage());
        if (!Session.GetAuthTokenAsString().empty())
        {
            Token = Session.GetAuthTokenAsString();
        }
        return Result;
    }

    FModioErrorCode RequestCode(FRestModioSession& Session)
    {
        return Await(Session, [&](FOnErrorOnlyDelegate Done) { Session.RequestEmailAuthCodeAsync(ModderEmail, std::move(Done)); });
    }

    FModioErrorCode Authenticate(FRestModioSession& Session, const std::string& Code)
    {
        return Await(Session, [&](FOnErrorOnlyDelegate Done) { Session.AuthenticateUserEmailAsync(Code, std::move(Done)); });
    }

    FModioErrorCode Verify(FRestModioSession& Session)
    {
        return Await(Session, [&](FOnErrorOnlyDelegate Done) { Session.VerifyUserAuthenticationAsync(std::move(Done)); });
    }
};
}

TEST_F(RestModioSession, InitializingWithoutGameIdOrApiKeyIsAConfigurationError)
{
    const auto Session = std::make_unique<FRestModioSession>(Http, LoginFile.string());
    FModioInitializeOptions Options;
    Options.ApiKey = SandboxApiKey;
    const FModioErrorCode Error = Await(*Session, [&](FOnErrorOnlyDelegate Done) { Session->InitializeAsync(Options, std::move(Done)); });
    EXPECT_EQ(Error.GetValue(), ModioRest::ErrorValue::BadParameter);
    EXPECT_EQ(Error.GetErrorMessage(), "mod.io is not configured: game id and API key are needed");

    EXPECT_EQ(RequestCode(*Session).GetValue(), ModioRest::ErrorValue::SdkNotInitialized);
    EXPECT_TRUE(Sandbox.RequestLog().empty());
}

TEST_F(RestModioSession, TheLoginPostsEncodedFormsWithTheApiKeyAndChecksTheTokenWithMe)
{
    const std::unique_ptr<FRestModioSession> Session = MakeSession(false);
    ASSERT_FALSE(RequestCode(*Session));
    ASSERT_FALSE(Authenticate(*Session, "  " + Sandbox.LastCodeFor(ModderEmail) + "\n"));

    const std::vector<Sandbox::FRecordedRequest> Requests = RequestsTo("POST", "/v1/oauth/emailrequest");
    ASSERT_EQ(Requests.size(), 1u);
    EXPECT_EQ(Requests[0].Headers.at("content-type"), "application/x-www-form-urlencoded");
    EXPECT_EQ(Requests[0].Headers.at("accept"), "application/json");
    EXPECT_EQ(Requests[0].Headers.count("authorization"), 0u);
    EXPECT_EQ(Requests[0].Query.rfind("api_key=", 0), 0u);
    EXPECT_EQ(Requests[0].BodySize, std::string("email=modder%40example.com").size());
    const std::vector<Sandbox::FRecordedRequest> Exchanges = RequestsTo("POST", "/v1/oauth/emailexchange");
    ASSERT_EQ(Exchanges.size(), 1u);
    EXPECT_EQ(Exchanges[0].Headers.at("content-type"), "application/x-www-form-urlencoded");
    EXPECT_EQ(Exchanges[0].BodySize, std::string("security_code=").size() + 5) << "the code is sent trimmed";
    const std::vector<Sandbox::FRecordedRequest> Checks = RequestsTo("GET", "/v1/me");
    ASSERT_EQ(Checks.size(), 1u);
    EXPECT_EQ(Checks[0].Headers.at("authorization").rfind("Bearer ", 0), 0u);
}

TEST_F(RestModioSession, ALoginStoredForAnotherServiceIsNotUsed)
{
    Token = Sandbox.IssueTokenFor(ModderEmail);
    ASSERT_TRUE(SaveStoredLogin(LoginFile.string(), FStoredLogin{Token, 0, "https://g-1.modapi.io"}));
    const std::unique_ptr<FRestModioSession> Session = MakeSession(false);
    EXPECT_EQ(Verify(*Session).GetValue(), ModioRest::ErrorValue::NoAuthToken);
    EXPECT_TRUE(Sandbox.RequestLog().empty());
}

TEST_F(RestModioSession, RequestingACodeWhileLoggedInAnswersAlreadyAuthenticatedWithoutARequest)
{
    const std::unique_ptr<FRestModioSession> Session = MakeSession();

    EXPECT_EQ(RequestCode(*Session).GetValue(), ModioErrorValue::UserAlreadyAuthenticated);
    EXPECT_EQ(Authenticate(*Session, "ABCDE").GetValue(), ModioErrorValue::UserAlreadyAuthenticated);
    EXPECT_TRUE(Sandbox.RequestLog().empty());
}

TEST_F(RestModioSession, AnExpiredTokenFailsVerificationAndTheStoredLoginIsForgotten)
{
    const std::unique_ptr<FRestModioSession> Session = MakeSession();
    Sandbox.ExpireToken(Session->GetAuthTokenAsString());

    const FModioErrorCode Error = Verify(*Session);
    EXPECT_EQ(Error.GetValue(), 11005);
    EXPECT_EQ(Error.GetErrorMessage(), "Your access token has expired or been revoked. (HTTP 401, error_ref 11005)");
    EXPECT_FALSE(fs::exists(LoginFile));
    EXPECT_EQ(Session->GetAuthTokenAsString(), "");
    EXPECT_FALSE(RequestCode(*Session)) << "a new code can be asked for";
}

TEST_F(RestModioSession, AServiceFaultOnTheCodeRequestIsAnErrorWithItsMessage)
{
    const std::unique_ptr<FRestModioSession> Session = MakeSession(false);
    Sandbox.InjectFault({"/v1/oauth/emailrequest", "POST", 1, Sandbox::EFaultKind::Status, 500, 0});

    const FModioErrorCode Error = RequestCode(*Session);
    EXPECT_TRUE(Error);
    EXPECT_EQ(Error.GetValue(), 10000);
    EXPECT_EQ(Error.GetErrorMessage(), "The mod.io API is temporarily unavailable. (HTTP 500, error_ref 10000)");
    EXPECT_FALSE(RequestCode(*Session)) << "the next request goes through";
}

TEST_F(RestModioSession, AnAnswerCutShortIsAnHttpFailureAndKeepsTheLogin)
{
    const std::unique_ptr<FRestModioSession> Session = MakeSession();
    Sandbox.InjectFault({"/v1/me", "GET", 4, Sandbox::EFaultKind::CloseMidBody, 0, 0});

    const FModioErrorCode Error = Verify(*Session);
    EXPECT_EQ(Error.GetValue(), ModioErrorValue::HttpRequestFailed);
    EXPECT_EQ(Error.GetErrorMessage(), "HTTP request failed");
    EXPECT_TRUE(fs::exists(LoginFile));
    EXPECT_FALSE(Session->GetAuthTokenAsString().empty());
}

TEST_F(RestModioSession, AfterShutdownNoRequestIsStarted)
{
    const std::unique_ptr<FRestModioSession> Session = MakeSession();
    EXPECT_FALSE(Await(*Session, [&](FOnErrorOnlyDelegate Done) { Session->ShutdownAsync(std::move(Done)); }));
    Sandbox.ClearRequestLog();

    EXPECT_EQ(Verify(*Session).GetValue(), ModioRest::ErrorValue::SdkNotInitialized);
    EXPECT_TRUE(Sandbox.RequestLog().empty());
}

TEST_F(RestModioSession, DestroyingTheSessionWithARequestRunningRunsNoCallback)
{
    int Calls = 0;
    {
        const std::unique_ptr<FRestModioSession> Session = MakeSession(false);
        Sandbox.InjectFault({"/v1/oauth/emailrequest", "POST", 1, Sandbox::EFaultKind::Stall, 0, 300});
        Session->RequestEmailAuthCodeAsync(ModderEmail, [&](FModioErrorCode) { ++Calls; });
    }
    for (int Frame = 0; Frame < 200; ++Frame)
    {
        Tasks.PumpGameThread();
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    EXPECT_EQ(Calls, 0);
}

// The form and URL builders: what goes on the wire.

TEST(RestModioRequests, FormValuesKeepOnlyUnreservedCharacters)
{
    EXPECT_EQ(UrlEncode("AZaz09-._~"), "AZaz09-._~");
    EXPECT_EQ(UrlEncode("a+b c@x.io&y=z/%*"), "a%2Bb%20c%40x.io%26y%3Dz%2F%25%2A");
    EXPECT_EQ(UrlEncode("o'neil\xC3\xA9"), "o%27neil%C3%A9");
    EXPECT_EQ(ModioRest::EmailRequestBody("modder+maps@example.com"), "email=modder%2Bmaps%40example.com");
    EXPECT_EQ(ModioRest::EmailExchangeBody("P39TM"), "security_code=P39TM");
}

TEST(RestModioRequests, TheOriginDefaultsToTheGamesHostAndLosesTrailingSlashesAndOneV1)
{
    EXPECT_EQ(ModioRest::ResolveBaseUrl("", 1234), "https://g-1234.modapi.io");
    EXPECT_EQ(ModioRest::ResolveBaseUrl("http://127.0.0.1:8080//", 1), "http://127.0.0.1:8080");
    EXPECT_EQ(ModioRest::ResolveBaseUrl("https://g-1234.modapi.io/v1", 1234), "https://g-1234.modapi.io");
    EXPECT_EQ(ModioRest::ResolveBaseUrl("https://g-1234.modapi.io/V1/", 1234), "https://g-1234.modapi.io");
    EXPECT_EQ(ModioRest::ResolveBaseUrl("https://h/proxy/v1/v1", 1), "https://h/proxy/v1");
}

TEST(RestModioRequests, MalformedAnswersAreErrorsNotCrashes)
{
    EXPECT_FALSE(ModioRest::ReadAccessToken("<html>"));
    EXPECT_FALSE(ModioRest::ReadAccessToken("{\"code\":200}"));
    EXPECT_FALSE(ModioRest::ReadAccessToken("[\"access_token\"]"));
    EXPECT_FALSE(ModioRest::IsUserObject("{\"name\":\"x\"}"));
    EXPECT_FALSE(ModioRest::IsUserObject(""));

    EXPECT_EQ(ModioRest::ErrorFromAnswer(502, "<html>bad gateway</html>").GetValue(), ModioErrorValue::HttpRequestFailed);
    EXPECT_EQ(ModioRest::ErrorFromAnswer(400, "{\"error\":{\"error_ref\":0,\"message\":\"no\"}}").GetValue(),
        ModioErrorValue::HttpRequestFailed) << "a ref of 0 must not read as success";
    EXPECT_EQ(ModioRest::ErrorFromAnswer(400, "{\"error\":\"text\"}").GetValue(), ModioErrorValue::HttpRequestFailed);
    const FModioErrorCode Known = ModioRest::ErrorFromAnswer(401, "{\"error\":{\"code\":401,\"error_ref\":11014,\"message\":\"m\"}}");
    EXPECT_EQ(Known.GetValue(), 11014);
    EXPECT_EQ(Known.GetErrorMessage(), "m (HTTP 401, error_ref 11014)");
    const FModioErrorCode Fields = ModioRest::ErrorFromAnswer(422,
        R"({"error":{"code":422,"error_ref":13009,"message":"Validation Failed.","errors":{"logo":"Too small.","name":["Taken.","Too long."]}}})");
    EXPECT_EQ(Fields.GetErrorMessage(), "Validation Failed. (HTTP 422, error_ref 13009): logo: Too small.; name: Taken. Too long.");
}

// The stored login on its own.

namespace
{
class StoredLogin : public ::testing::Test
{
protected:
    FTempDir Temp;
    std::string File = (Temp.Path() / "cfg" / "maptorn" / "login-1.json").string();
};
}

TEST_F(StoredLogin, ACorruptOrMissingFileGivesNoLogin)
{
    EXPECT_FALSE(LoadStoredLogin(File));
    fs::create_directories(fs::path(File).parent_path());
    for (const char* Text : {"", "{\"access_token\":\"tok", "[1,2]", "{\"access_token\":\"\"}", "{\"access_token\":null}", "\x01\x02"})
    {
        WriteTextFile(File, Text);
        EXPECT_FALSE(LoadStoredLogin(File)) << Text;
    }
    EXPECT_FALSE(LoadStoredLogin(Temp.Path().string())) << "a folder is no login";
}

TEST_F(StoredLogin, ThePathIsInTheUsersConfigFolder)
{
    const char* OldXdg = std::getenv("XDG_CONFIG_HOME");
    const std::string SavedXdg = OldXdg ? OldXdg : "";
    const char* OldHome = std::getenv("HOME");
    const std::string SavedHome = OldHome ? OldHome : "";

    ::setenv("XDG_CONFIG_HOME", "/x/config", 1);
    ::setenv("HOME", "/home/u", 1);
    EXPECT_EQ(StoredLoginPath(42), "/x/config/maptorn/login-42.json");
    ::setenv("XDG_CONFIG_HOME", "relative", 1);
    EXPECT_EQ(StoredLoginPath(42), "/home/u/.config/maptorn/login-42.json");
    ::unsetenv("XDG_CONFIG_HOME");
    EXPECT_EQ(StoredLoginPath(7), "/home/u/.config/maptorn/login-7.json");

    OldXdg ? ::setenv("XDG_CONFIG_HOME", SavedXdg.c_str(), 1) : ::unsetenv("XDG_CONFIG_HOME");
    OldHome ? ::setenv("HOME", SavedHome.c_str(), 1) : ::unsetenv("HOME");
}
