// The client's login state rules and mod creation, against an in-process session whose
// completions run when the test pumps them, as the module's tick does.

#include "Modio/ModioInterface.h"
#include "Support/CannedHttp.h"
#include "Support/FakePlatform.h"

#include <gtest/gtest.h>

using namespace Maptorn;
using namespace Maptorn::Testing;

namespace
{
class ModioSessionState : public ::testing::Test
{
protected:
    ModioSessionState()
        : Client(Platform, FMaptornConfig{"", "https://g-7.modapi.io", 7, "KEY"})
    {
    }

    void Pump() { Fakes.Session.RunPendingHandlers(); }

    int CatalogueQueries() const
    {
        int Count = 0;
        for (const FHttpRequestPtr& Request : Http.Sent)
        {
            Count += Request->GetURL().find("/games/7/mods?api_key=") != std::string::npos ? 1 : 0;
        }
        return Count;
    }

    void LogIn()
    {
        Client.AuthCode = "ABCDE";
        Client.Login();
        Pump();
    }

    FFakePlatform Fakes;
    FCannedHttp Http;
    FMaptornPlatform Platform{Fakes.Log, Fakes.Dialogs, Fakes.Engine, Fakes.Definitions, Fakes.Processes, Fakes.Tasks, Http, Fakes.Archive, &Fakes.Session};
    FModioInterface Client;
};
}

TEST_F(ModioSessionState, EmptyEmailOrCodeLogsAndSendsNothing)
{
    Client.RequestEmailCode();
    Client.Login();
    EXPECT_TRUE(Fakes.Session.Calls.empty());
    EXPECT_FALSE(Client.bIsModioBusy);
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Log, "Cannot request email code, email is invalid"));
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Log, "Cannot login, auth code isnt the correct length"));

    // Only emptiness is refused: a one-character code goes to the service as typed.
    Client.AuthCode = "7";
    Client.Login();
    EXPECT_TRUE(Client.bIsModioBusy);
    ASSERT_EQ(Fakes.Session.Calls.size(), 1u);
    EXPECT_EQ(Fakes.Session.Calls[0], "AuthenticateUserEmailAsync:7");
    Pump();
    EXPECT_FALSE(Client.bIsModioBusy);
}

TEST_F(ModioSessionState, ACodeRequestMovesToCodeEntryAndAlreadyLoggedInCountsAsLogin)
{
    Client.EmailAddress = "modder@example.com";
    Client.LoginIndex = 1;
    Client.RequestEmailCode();
    EXPECT_TRUE(Client.bIsModioBusy);
    Pump();
    EXPECT_EQ(Client.LoginIndex, 2);
    EXPECT_FALSE(Client.bIsLoggedIn);
    EXPECT_FALSE(Client.bIsModioBusy);

    Client.LoginIndex = 1;
    Fakes.Session.NextResult = {ModioErrorValue::UserAlreadyAuthenticated, "already"};
    Client.RequestEmailCode();
    Pump();
    EXPECT_TRUE(Client.bIsLoggedIn);
    EXPECT_EQ(Client.LoginIndex, 1) << "the login step stays where it was";
    EXPECT_FALSE(Client.bIsModioBusy);
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Log, "User already logged in"));
    EXPECT_EQ(CatalogueQueries(), 1);

    Fakes.Session.NextResult = {20481, "Too many requests"};
    Client.RequestEmailCode();
    Pump();
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Log, "Error Requesting Auth Code, the error code was 20481 Too many requests"));
    EXPECT_FALSE(Client.bIsModioBusy);
}

TEST_F(ModioSessionState, ASuccessfulLoginClearsBothFieldsAFailedOneKeepsThem)
{
    Client.EmailAddress = "modder@example.com";
    Fakes.Session.NextResult = {21764, "Invalid security code"};
    LogIn();
    EXPECT_FALSE(Client.bIsLoggedIn);
    EXPECT_EQ(Client.EmailAddress, "modder@example.com");
    EXPECT_EQ(Client.AuthCode, "ABCDE");
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Log, "Error Modio Login, the error code was Invalid security code"));
    EXPECT_EQ(CatalogueQueries(), 0);

    Fakes.Session.NextResult = {};
    Client.LoginIndex = 2;
    LogIn();
    EXPECT_TRUE(Client.bIsLoggedIn);
    EXPECT_EQ(Client.EmailAddress, "");
    EXPECT_EQ(Client.AuthCode, "");
    EXPECT_EQ(Client.LoginIndex, 2) << "a login does not move the step; the window shows 3 while logged in";
}

TEST_F(ModioSessionState, TheCatalogueLatchFiresOnceAcrossLogoutAndLogin)
{
    LogIn();
    EXPECT_EQ(CatalogueQueries(), 1);
    EXPECT_TRUE(Client.bSourceModsQueried);
    Http.Pump();

    Client.OwnMods.push_back(FSourceModInfo{});
    Client.OwnModVersions["42"] = 3;
    Client.LoginIndex = 2;
    Client.Logout();
    Pump();
    EXPECT_FALSE(Client.bIsLoggedIn);
    EXPECT_EQ(Client.LoginIndex, 0);
    EXPECT_TRUE(Client.OwnMods.empty());
    EXPECT_TRUE(Client.OwnModVersions.empty()) << "the next user cannot upload this user's mods";

    LogIn();
    EXPECT_TRUE(Client.bIsLoggedIn);
    EXPECT_EQ(CatalogueQueries(), 1);
}

TEST_F(ModioSessionState, StartUpVerifiesTheStoredLoginAndRefreshesOwnModsAtOnce)
{
    Client.OwnModRefreshCountdown = 12.0f;
    Client.InitializeSession();
    Pump(); // initialised, then verified
    EXPECT_EQ(Fakes.Session.Calls, (std::vector<std::string>{"InitializeAsync", "VerifyUserAuthenticationAsync", "EnableModManagement"}));
    EXPECT_TRUE(Client.bIsLoggedIn);
    EXPECT_FALSE(Client.bIsModioBusy);
    EXPECT_FLOAT_EQ(Client.OwnModRefreshCountdown, 300.0f);
    ASSERT_GE(Http.Sent.size(), 2u);
    EXPECT_NE(Http.Sent[0]->GetURL().find("/v1/me/mods?game_id=7"), std::string::npos);
    EXPECT_EQ(CatalogueQueries(), 1);

    // The quiet re-check never touches the busy flag and never queries again.
    Fakes.Session.NextResult = {20994, "No user"};
    Client.RecheckLogin();
    EXPECT_FALSE(Client.bIsModioBusy);
    Pump();
    EXPECT_FALSE(Client.bIsLoggedIn);
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Log, "User not authenticated Error Code No user"));
}

TEST_F(ModioSessionState, VerificationHoldsTheBusyFlagUntilItsAnswer)
{
    Fakes.Session.NextResult = {20994, "No user"};
    Client.VerifyLogin();
    EXPECT_TRUE(Client.bIsModioBusy);
    Pump();
    EXPECT_FALSE(Client.bIsModioBusy);
    EXPECT_FALSE(Client.bIsLoggedIn);
    EXPECT_TRUE(Fakes.Dialogs.MessageBoxes.empty()) << "logged out at start-up is normal";
}

TEST_F(ModioSessionState, ShutDownWritesItsErrorLineOnlyWhenItFailed)
{
    Client.Shutdown();
    Pump();
    EXPECT_EQ(Fakes.Log.CountMessage("Error Shutdown Modio SDK, the error code was "), 0) << "nothing failed";

    FModioInterface Failing(Platform, FMaptornConfig{"", "https://g-7.modapi.io", 7, "KEY"});
    Fakes.Session.NextResult = {21000, "SDK not initialised"};
    Failing.Shutdown();
    Pump();
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Log, "Error Shutdown Modio SDK, the error code was SDK not initialised"));
}

TEST_F(ModioSessionState, WithoutASessionEveryOperationIsSilent)
{
    FMaptornPlatform NoSession{Fakes.Log, Fakes.Dialogs, Fakes.Engine, Fakes.Definitions, Fakes.Processes, Fakes.Tasks, Http, Fakes.Archive, nullptr};
    FModioInterface Alone(NoSession, FMaptornConfig{});
    Alone.EmailAddress = "modder@example.com";
    Alone.AuthCode = "ABCDE";
    Alone.RequestEmailCode();
    Alone.Login();
    Alone.Logout();
    Alone.CreateMod();
    EXPECT_FALSE(Alone.bIsModioBusy);
    EXPECT_TRUE(Fakes.Log.Lines.empty());
}

TEST_F(ModioSessionState, ACreatedGameModeCarriesItsTagAndBlobAndGetsItsLocalPlugin)
{
    Client.NewModName = "Capture";
    Client.NewModSummary = "Hold the flag";
    Client.NewModLogoPath = "/logo.png";
    Client.NewModType = EModType::GameMode;
    Fakes.Session.NextNewModId = 77;
    Client.CreateMod();
    EXPECT_TRUE(Client.bIsModioBusy);
    ASSERT_EQ(Fakes.Session.CreateModParams.size(), 1u);
    const FModioCreateModParams& Sent = Fakes.Session.CreateModParams[0];
    EXPECT_EQ(Sent.Tags, std::vector<std::string>{"GameMode"});
    EXPECT_EQ(Sent.PathToLogoFile, "/logo.png");
    EXPECT_EQ(Sent.MetadataBlob, "{\n\t\"ModType\": \"GameMode\",\n\t\"EngineVersion\": \"5.1.1\",\n\t\"VersionUUID\": 0\n}");

    Pump();
    EXPECT_FALSE(Client.bIsModioBusy);
    EXPECT_EQ(Client.StatusText, "Created Mod 77");
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Log, "Created ModId 77"));
    ASSERT_EQ(Fakes.Engine.CreatedPlugins.size(), 1u);
    EXPECT_EQ(Fakes.Engine.CreatedPlugins[0].Name, "UGC77");
}

TEST_F(ModioSessionState, AFailedCreationShowsTheServiceMessageAndCreatesNothing)
{
    Client.NewModName = "Capture";
    Fakes.Session.NextResult = {13009, "The logo must be an image"};
    Client.CreateMod();
    Pump();
    EXPECT_EQ(Client.StatusText, "The logo must be an image");
    EXPECT_FALSE(Client.bIsModioBusy);
    EXPECT_TRUE(Fakes.Engine.CreatedPlugins.empty());
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Log, "Error creating mod, the error code was 13009 The logo must be an image"));
}

TEST_F(ModioSessionState, MetadataUpdatesOnlyOwnNumericModsAndSendsOnlyTheBlob)
{
    Client.UpdateMetadata("42");
    Client.OwnModVersions["abc"] = 1;
    Client.UpdateMetadata("abc");
    EXPECT_TRUE(Fakes.Session.EditModParams.empty());

    Fakes.Engine.EngineVersion = "5.1.1";
    Client.OwnModVersions["42"] = 9;
    Client.NewModType = EModType::Mod;
    Client.UpdateMetadata("42");
    ASSERT_EQ(Fakes.Session.EditModParams.size(), 1u);
    const FModioEditModParams& Sent = Fakes.Session.EditModParams[0];
    EXPECT_FALSE(Sent.Name || Sent.Summary || Sent.LogoPath || Sent.Tags);
    EXPECT_EQ(Sent.MetadataBlob, "{\n\t\"ModType\": \"Mod\",\n\t\"EngineVersion\": \"5.1.1\",\n\t\"VersionUUID\": 9\n}");
    Pump();
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Log, "Successfully updated mod metadata"));
}
