// The editor's mod.io session adapter under the core's client: start-up, the e-mail login, a
// login kept over a restart, logout, shutdown and the plug-in's errors, all through the recording
// UModioSubsystem whose completions run only when the module's tick pumps them.

#include "EditorModioSessionFixture.h"

// The core's verbosities; the engine surface has its own ELogVerbosity.
using FVerbosity = Maptorn::ELogVerbosity;

namespace
{
bool LogMentions(const Maptorn::Testing::FRecordingLog& Log, const std::string& Text)
{
	for (const Maptorn::Testing::FLogLine& Line : Log.Lines)
	{
		if (Line.Message.find(Text) != std::string::npos)
		{
			return true;
		}
	}
	return false;
}
}

using EditorModioSession = FEditorModioSessionTest;

TEST_F(EditorModioSession, StartUpInitialisesThePluginAndVerifiesOnlyOnItsAnswer)
{
	EXPECT_EQ(RecordingModio::Get().Calls, (std::vector<std::string>{"InitializeAsync", "SetLogLevel"}));
	const FModioInitializeOptions& Options = *RecordingModio::Get().InitOptions;
	EXPECT_EQ(MaptornString::ToStd(Options.GameId.ToString()), "7");
	EXPECT_EQ(MaptornString::ToStd(Options.ApiKey.ToString()), "SECRET-KEY");
	EXPECT_EQ(Options.GameEnvironment, EModioEnvironment::Live);
	EXPECT_EQ(RecordingModio::Get().LogLevel, EModioLogLevel::Warning);

	Tick();
	EXPECT_EQ(RecordingModio::CountCalls("VerifyUserAuthenticationAsync"), 1);
	EXPECT_EQ(RecordingModio::CountCalls("EnableModManagement"), 1);
	EXPECT_TRUE(Client->bIsModioBusy) << "the verification has not been answered yet";

	Tick();
	EXPECT_TRUE(Fakes.Log.Has("LogTemp", FVerbosity::Log, "User not authenticated Error Code User is not authenticated"));
	EXPECT_FALSE(Client->bIsLoggedIn);
	EXPECT_FALSE(Client->bIsModioBusy);
	EXPECT_FALSE(LogMentions(Fakes.Log, "SECRET-KEY"));
}

TEST_F(EditorModioSession, ALoginSurvivesARestartUntilLogout)
{
	Tick();
	Tick();
	Client->AuthCode = "A1B2C";
	Client->Login();
	Tick();
	ASSERT_TRUE(Client->bIsLoggedIn);
	EXPECT_EQ(RecordingModio::CountCalls("ListUserCreatedModsAsync"), 1) << "the own mods are listed right after the login";

	StopEditor();
	StartEditor();
	Tick();
	Tick();
	EXPECT_TRUE(Client->bIsLoggedIn) << "the plug-in's stored login verifies after the restart";
	EXPECT_EQ(RecordingModio::CountCalls("ListUserCreatedModsAsync"), 2) << "the own mods are refreshed on verification";

	Client->LoginIndex = 2;
	Client->Logout();
	EXPECT_TRUE(Client->bIsModioBusy);
	Tick();
	EXPECT_EQ(RecordingModio::CountCalls("ClearUserDataAsync"), 1);
	EXPECT_FALSE(Client->bIsLoggedIn);
	EXPECT_EQ(Client->LoginIndex, 0);
	EXPECT_FALSE(Client->bIsModioBusy);

	StopEditor();
	StartEditor();
	Tick();
	Tick();
	EXPECT_FALSE(Client->bIsLoggedIn);
}

TEST_F(EditorModioSession, ThePluginsErrorsReachTheCoreWithValueAndMessage)
{
	Tick();
	Tick();
	Client->EmailAddress = "modder@example.com";
	Client->AuthCode = "ZZZZZ";
	RecordingModio::Get().ScriptedErrors["AuthenticateUserEmailAsync"] = Modio::ErrorCode{21761, "The security code is invalid"};
	Client->Login();
	Tick();
	EXPECT_TRUE(Fakes.Log.Has("LogTemp", FVerbosity::Log, "Error Modio Login, the error code was The security code is invalid"));
	EXPECT_FALSE(Client->bIsLoggedIn);
	EXPECT_FALSE(Client->bIsModioBusy);
	EXPECT_EQ(Client->AuthCode, "ZZZZZ") << "the typed code stays for correction";

	RecordingModio::Get().ScriptedErrors["RequestEmailAuthCodeAsync"] = Modio::ErrorCode{Maptorn::ModioErrorValue::UserAlreadyAuthenticated, "Already"};
	Client->RequestEmailCode();
	Tick();
	EXPECT_TRUE(Fakes.Log.Has("LogTemp", FVerbosity::Log, "User already logged in"));
	EXPECT_TRUE(Client->bIsLoggedIn);
	EXPECT_FALSE(Client->bIsModioBusy);
}

TEST_F(EditorModioSession, ShutdownHasCompletedBeforeTheModuleIsGone)
{
	StartLoggedIn();
	const int32 PumpsBefore = RecordingModio::Get().PumpCount;
	StopEditor();
	EXPECT_EQ(RecordingModio::CountCalls("ShutdownAsync"), 1);
	EXPECT_GT(RecordingModio::Get().PumpCount, PumpsBefore) << "the shutdown pumped the plug-in itself";
	EXPECT_TRUE(RecordingModio::Get().Pending.empty());
	EXPECT_FALSE(RecordingModio::Get().bInitialized);
	EXPECT_FALSE(Fakes.Log.Has("LogTemp", FVerbosity::Log, "Error Shutdown Modio SDK, the error code was "))
		<< "a shutdown that succeeded says nothing";
}

TEST_F(EditorModioSession, WithoutTheSubsystemCallsFailInTheTickAndNothingStaysBusy)
{
	for (const bool bEngineRunning : {true, false})
	{
		StopEditor();
		Fakes.Log.Lines.clear();
		RecordingModio::Reset();
		SurfaceEngine::SetModioSubsystem(nullptr);
		SurfaceEngine::SetEngineRunning(bEngineRunning);
		StartEditor();
		EXPECT_FALSE(Fakes.Log.Has("LogTemp", FVerbosity::Log,
			"Error initializing Modio SDK, the error code was The mod.io plug-in's subsystem is not available"))
			<< "completions wait for the tick";
		Tick();
		EXPECT_TRUE(Fakes.Log.Has("LogTemp", FVerbosity::Log,
			"Error initializing Modio SDK, the error code was The mod.io plug-in's subsystem is not available"));

		Client->EmailAddress = "modder@example.com";
		Client->RequestEmailCode();
		EXPECT_TRUE(Client->bIsModioBusy);
		Tick();
		EXPECT_FALSE(Client->bIsModioBusy);
		EXPECT_EQ(Client->LoginIndex, 0);
		EXPECT_FALSE(Session->QueryCurrentModUpdate().has_value());
		StopEditor();
		EXPECT_TRUE(Fakes.Log.Has("LogTemp", FVerbosity::Log,
			"Error Shutdown Modio SDK, the error code was The mod.io plug-in's subsystem is not available"));
		EXPECT_TRUE(RecordingModio::Get().Calls.empty());
		StartEditor();
	}
}
