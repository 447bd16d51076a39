// The editor's mod.io session adapter when the plug-in refuses an upload (the journeys through the
// pages walk creation, the own-mod listing and uploads that succeed).

#include "EditorModioSessionFixture.h"

// The core's verbosities; the engine surface has its own ELogVerbosity.
using FVerbosity = Maptorn::ELogVerbosity;

using EditorModioSessionMods = FEditorModioSessionTest;

TEST_F(EditorModioSessionMods, AFailedUploadShowsTheFailureBoxWithThePluginsMessage)
{
	StartLoggedIn();
	Client->bIsModioBusy = Client->bIsUploading = true;
	Client->UploadModId = "42";
	Client->PendingPlatforms = {{0, "/cooked/Windows"}, {10, "/cooked/Oculus"}};
	Client->CurrentPlatform = 0;
	Client->StartNextPlatformUpload();
	RecordingModio::Get().Progress = Modio::ModProgressInfo{42, EModioModProgressState::Uploading, 10, 200};
	Tick();

	RecordingModio::FinishUpload(42, Modio::ErrorCode{20490, "The file was rejected"});
	Tick();
	EXPECT_EQ(MessageBoxesReading("ERROR: Failed to upload mod, check output log for details"), 1);
	EXPECT_TRUE(Fakes.Log.Has("LogTemp", FVerbosity::Error, "Failed to upload mod 20490 The file was rejected"));
	EXPECT_FALSE(Client->bIsModioBusy);
	EXPECT_FALSE(Client->bIsUploading);
	EXPECT_TRUE(Client->PendingPlatforms.empty());
	Tick(1.0f);
	EXPECT_EQ(RecordingModio::Get().ModFiles.size(), 1u) << "the rest of the queue is dropped";
}
