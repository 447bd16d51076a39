// The editor's mod.io session adapter carrying the mod calls: creation through the plug-in's
// handle with the metadata blob and tag, the user's own mods from the plug-in's listing (it hands
// out no token), and an upload of two platforms with progress read from the plug-in.

#include "EditorModioSessionFixture.h"

// The core's verbosities; the engine surface has its own ELogVerbosity.
using FVerbosity = Maptorn::ELogVerbosity;

namespace
{
FModioModInfo UserMod(int64 Id, const char* Name, const char* Tag, const char* Version,
	EModioModServerSideStatus Status = EModioModServerSideStatus::Accepted)
{
	FModioModInfo Mod;
	Mod.ModId = FModioModID(Id);
	Mod.ProfileName = MaptornString::ToFString(Name);
	Mod.ProfileSummary = TEXT("Frozen tunnels");
	Mod.ProfileURL = TEXT("https://mod.io/g/kelvor/m/ice-caves");
	Mod.ProfileSubmittedBy.Username = TEXT("Glacier");
	FModioModTag ModTag;
	ModTag.Tag = MaptornString::ToFString(Tag);
	Mod.Tags.Add(ModTag);
	Mod.FileInfo.Version = MaptornString::ToFString(Version);
	Mod.FileInfo.Filesize = 2048;
	Mod.ModStatus = Status;
	return Mod;
}

// A local plug-in "UGC<Id>" whose mod definition carries Version.
void AddLocalMod(Maptorn::Testing::FFakePlatform& Fakes, const std::string& Id, int32 Version)
{
	Maptorn::FPluginInfo Plugin;
	Plugin.Name = "UGC" + Id;
	Plugin.BaseDir = "/proj/Plugins/UGC" + Id;
	Fakes.Engine.Plugins.push_back(Plugin);
	Fakes.Definitions.Add("/UGC" + Id + "/definition", Maptorn::EModType::Mod)->Version = Version;
}
}

using EditorModioSessionMods = FEditorModioSessionTest;

TEST_F(EditorModioSessionMods, CreationSendsTheBlobAndTagThroughThePluginsHandle)
{
	StartLoggedIn();
	Client->NewModName = "Ice Caves";
	Client->NewModSummary = "Frozen tunnels";
	Client->NewModLogoPath = "/proj/Plugins/Maptorn/Resources/KelvorThumbnail.jpg";
	Client->NewModType = Maptorn::EModType::GameMode;
	RecordingModio::Get().NextNewModId = 4242;
	Client->CreateMod();

	ASSERT_EQ(RecordingModio::Get().CreateParams.size(), 1u);
	EXPECT_EQ(RecordingModio::Get().HandlesSubmitted, std::vector<int64>{100}) << "the handle the plug-in made";
	const FModioCreateModParams& Params = RecordingModio::Get().CreateParams[0];
	EXPECT_EQ(MaptornString::ToStd(Params.PathToLogoFile), "/proj/Plugins/Maptorn/Resources/KelvorThumbnail.jpg");
	EXPECT_EQ(MaptornString::ToStd(Params.Name), "Ice Caves");
	EXPECT_EQ(MaptornString::ToStd(Params.Summary), "Frozen tunnels");
	ASSERT_TRUE(Params.Tags.IsSet());
	EXPECT_EQ(Params.Tags->Num(), 1);
	EXPECT_EQ(MaptornString::ToStd((*Params.Tags)[0]), "GameMode");
	ASSERT_TRUE(Params.MetadataBlob.IsSet());
	EXPECT_EQ(MaptornString::ToStd(*Params.MetadataBlob), Client->MakeMetadataBlob(0));
	EXPECT_NE(MaptornString::ToStd(*Params.MetadataBlob).find("\"ModType\": \"GameMode\""), std::string::npos);
	EXPECT_TRUE(Client->bIsModioBusy);

	Tick();
	EXPECT_EQ(Client->StatusText, "Created Mod 4242");
	EXPECT_FALSE(Client->bIsModioBusy);
	ASSERT_EQ(Fakes.Engine.CreatedPlugins.size(), 1u);
	EXPECT_EQ(Fakes.Engine.CreatedPlugins[0].Name, "UGC4242");

	RecordingModio::Get().ScriptedErrors["SubmitNewModAsync"] = Modio::ErrorCode{20502, "The logo is too small"};
	Client->CreateMod();
	Tick();
	EXPECT_EQ(RecordingModio::Get().HandlesSubmitted, (std::vector<int64>{100, 200})) << "a handle serves one creation";
	EXPECT_EQ(Client->StatusText, "The logo is too small");
	EXPECT_TRUE(Fakes.Log.Has("LogTemp", FVerbosity::Log, "Error creating mod, the error code was 20502 The logo is too small"));
	EXPECT_FALSE(Client->bIsModioBusy);
	EXPECT_EQ(Fakes.Engine.CreatedPlugins.size(), 1u);
}

TEST_F(EditorModioSessionMods, OwnModsComeFromThePluginsListingWithoutAToken)
{
	EXPECT_EQ(Session->GetAuthTokenAsString(), "");
	AddLocalMod(Fakes, "42", 3);
	RecordingModio::Get().UserMods = {UserMod(42, "Ice Caves", "mod", "3"), UserMod(43, "Not Here", "Map", "1"),
		UserMod(44, "Gone", "Mod", "2", EModioModServerSideStatus::Deleted)};
	AddLocalMod(Fakes, "44", 2);
	StartLoggedIn();

	ASSERT_EQ(Client->OwnMods.size(), 1u) << "only mods with a local plug-in, deleted ones left out";
	const Maptorn::FSourceModInfo& Mod = Client->OwnMods[0];
	EXPECT_EQ(Mod.PluginName, "UGC42");
	EXPECT_EQ(Mod.Name, "Ice Caves");
	EXPECT_EQ(Mod.Summary, "Frozen tunnels");
	EXPECT_EQ(Mod.Author, "Glacier");
	EXPECT_EQ(Mod.ProfileUrl, "https://mod.io/g/kelvor/m/ice-caves");
	EXPECT_EQ(Mod.ModType, Maptorn::EModType::Mod);
	EXPECT_EQ(Mod.Version, "3");
	EXPECT_EQ(Mod.FileSize, 2048);
	EXPECT_EQ(Client->OwnModVersions, (std::map<std::string, int32>{{"42", 3}}));
	EXPECT_FALSE(Client->bOwnModRefreshBusy);

	RecordingModio::Get().ScriptedErrors["ListUserCreatedModsAsync"] = Modio::ErrorCode{20480, "Too many requests"};
	Client->RefreshOwnMods();
	EXPECT_TRUE(Client->bOwnModRefreshBusy);
	Tick();
	EXPECT_FALSE(Client->bOwnModRefreshBusy);
	EXPECT_EQ(Client->OwnMods.size(), 1u) << "a refused list keeps the rows shown";
	EXPECT_TRUE(Fakes.Log.Has("LogTemp", FVerbosity::Warning, "mod.io refused the list of your mods (20480 Too many requests)"));
}

TEST_F(EditorModioSessionMods, TwoPlatformsUploadOneAfterTheOtherWithThePluginsProgress)
{
	StartLoggedIn();
	Client->bIsModioBusy = Client->bIsUploading = true;
	Client->UploadModId = "42";
	Client->UploadChangelog = "Brighter lamps";
	Client->UploadVersion = 4;
	Client->PendingPlatforms = {{0, "/cooked/Windows"}, {10, "/cooked/Oculus"}};
	Client->CurrentPlatform = 0;
	Client->StartNextPlatformUpload();

	ASSERT_EQ(RecordingModio::Get().ModFiles.size(), 1u);
	const auto& [FirstMod, First] = RecordingModio::Get().ModFiles[0];
	EXPECT_EQ(FirstMod, 42);
	EXPECT_EQ(MaptornString::ToStd(First.PathToModRootDirectory), "/cooked/Windows/UGC42/");
	ASSERT_TRUE(First.ModfilePlatforms.IsSet());
	EXPECT_EQ(*First.ModfilePlatforms, TArray<EModioModfilePlatform>{EModioModfilePlatform::Windows});
	EXPECT_EQ(MaptornString::ToStd(First.Changelog.Get(FString())), "Brighter lamps");
	EXPECT_EQ(MaptornString::ToStd(First.VersionString.Get(FString())), "4");

	RecordingModio::Get().Progress = Modio::ModProgressInfo{42, EModioModProgressState::Compressing, 30, 40};
	Tick();
	EXPECT_TRUE(Client->bCompressing);
	RecordingModio::Get().Progress = Modio::ModProgressInfo{42, EModioModProgressState::Uploading, 50, 200};
	Tick();
	EXPECT_FALSE(Client->bCompressing);
	EXPECT_FLOAT_EQ(Client->UploadProgress, 0.25f);

	RecordingModio::FinishUpload(42);
	Tick();
	EXPECT_EQ(Client->CurrentPlatform, 10);
	EXPECT_EQ(MessageBoxesReading("Upload Complete"), 0);
	Tick(1.0f);
	ASSERT_EQ(RecordingModio::Get().ModFiles.size(), 2u) << "the next platform starts after its pause";
	const FModioCreateModFileParams& Second = RecordingModio::Get().ModFiles[1].second;
	EXPECT_EQ(MaptornString::ToStd(Second.PathToModRootDirectory), "/cooked/Oculus/UGC42/");
	EXPECT_EQ(*Second.ModfilePlatforms, TArray<EModioModfilePlatform>{EModioModfilePlatform::Oculus});

	RecordingModio::FinishUpload(42);
	Tick();
	EXPECT_EQ(MessageBoxesReading("Upload Complete"), 1);
	EXPECT_FALSE(Client->bIsModioBusy);
	EXPECT_FALSE(Client->bIsUploading);
}

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
