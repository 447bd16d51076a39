// Creating a mod, uploading it for two platforms and staging it, all through the create and upload
// pages; checked on the service, on disk and on the pages.

#include "Journey/EditorJourneyFixture.h"

#include <algorithm>
#include <fstream>

namespace fs = std::filesystem;

namespace
{
// The ids of the project's UGC plug-ins.
std::vector<std::string> UgcPlugins(const std::string& ProjectDir)
{
	std::vector<std::string> Ids;
	for (const fs::directory_entry& Entry : fs::directory_iterator(ProjectDir + "Plugins"))
	{
		const std::string Name = Entry.path().filename().string();
		if (Name.rfind("UGC", 0) == 0)
		{
			Ids.push_back(Name.substr(3));
		}
	}
	return Ids;
}

std::string ReadFile(const std::string& Path)
{
	std::ifstream File(Path, std::ios::binary);
	return std::string(std::istreambuf_iterator<char>(File), {});
}

std::vector<std::string> Tags(const nlohmann::json& Mod)
{
	std::vector<std::string> Names;
	for (const nlohmann::json& Tag : Mod.value("tags", nlohmann::json::array()))
	{
		Names.push_back(Tag.value("name", ""));
	}
	return Names;
}
}

TEST_F(EditorJourney, AModCreatedOnTheCreatePageIsUploadedForEveryPlatformWithItsSourceThenStaged)
{
	StartEditor();
	LogIn();
	CreateMod("Signal Tower", "A lit tower for night maps.");

	// The plug-in is made when mod.io answers; its row is on the upload page within the same second.
	ASSERT_TRUE(WaitFor([this] { return !UgcPlugins(ProjectDir()).empty(); })) << Window().PrintTree();
	const std::string ModId = UgcPlugins(ProjectDir()).front();
	EXPECT_TRUE(fs::exists(ProjectDir() + "Plugins/UGC" + ModId + "/UGC" + ModId + ".uplugin"));
	ASSERT_TRUE(OpenPage("Upload Mod"));
	EXPECT_TRUE(WaitForText("Signal Tower", 1.0)) << Window().PrintTree();
	// The row shows the mod's logo as the mod.io plug-in downloaded it, not the default one.
	const std::string CachedLogo = Editor.Layout().UserSettingsDir + "mod.io/cache/mods/" + ModId + "/thumb_320x180/KelvorThumbnail.jpg";
	EXPECT_TRUE(WaitFor([&] {
		const auto Images = Window().RowImages("SKelvorWorkshopUploadEntry");
		return !Images.empty() && std::find(Images[0].begin(), Images[0].end(), CachedLogo) != Images[0].end();
	})) << Window().PrintTree();
	EXPECT_EQ(ReadFile(CachedLogo), ReadFile(std::string(MAPTORN_RESOURCES_DIR) + "KelvorThumbnail.jpg"));

	const nlohmann::json Mod = ServiceGet("/v1/games/1/mods/" + ModId);
	EXPECT_EQ(Mod.value("name", ""), "Signal Tower");
	EXPECT_EQ(Mod.value("summary", ""), "A lit tower for night maps.");
	EXPECT_NE(Mod.value("metadata_blob", ""), "");
	EXPECT_EQ(Tags(Mod), std::vector<std::string>{"Mod"});
	EXPECT_EQ(Mod["logo"].value("filename", ""), "KelvorThumbnail.jpg") << "the logo picked in the file dialog";

	// Upload for Windows and Android, sharing the plug-in's assets, with a change note.
	ASSERT_TRUE(PressNear("Signal Tower", "Select Mod")) << Window().LastFailure();
	ASSERT_TRUE(Window().Toggle("Windows"));
	ASSERT_TRUE(Window().Toggle("Android"));
	ASSERT_TRUE(Window().Toggle("Share Mod Assets"));
	fs::create_directories(ProjectDir() + "Plugins/UGC" + ModId + "/Saved/Autosaves"); // as the editor leaves it
	EXPECT_EQ(Window().CheckState("Windows"), ECheckBoxState::Checked);
	ASSERT_TRUE(Window().Type("Change note", "First release"));
	ASSERT_TRUE(PressNear("Change note", "Upload Mod")) << Window().LastFailure();
	std::vector<std::string> ProgressTexts;
	std::vector<std::string> ToastTexts;
	ASSERT_TRUE(WaitFor([&] {
		const std::string Text = Window().TextStartingWith("Uploading ");
		if (!Text.empty() && (ProgressTexts.empty() || ProgressTexts.back() != Text))
		{
			ProgressTexts.push_back(Text);
		}
		for (const FNotificationView& Toast : Window().Notifications())
		{
			if (ToastTexts.empty() || ToastTexts.back() != Toast.Text)
			{
				ToastTexts.push_back(Toast.Text);
			}
		}
		return !MessageBoxes().empty();
	}, 120.0)) << Window().PrintTree();
	EXPECT_EQ(MessageBoxes().back().Text, "Upload Complete");
	// Five files go up one after the other, and the progress line counts them.
	ASSERT_FALSE(ProgressTexts.empty()) << "the progress line showed";
	EXPECT_EQ(ProgressTexts.back().rfind("Uploading 5/5", 0), 0u) << ProgressTexts.back();
	// One toast follows the whole upload, from packaging to the last file, and ends as it ended.
	ASSERT_EQ(Window().Notifications().size(), 1u);
	EXPECT_EQ(Window().Notifications()[0].Text, "Signal Tower: Upload Complete");
	EXPECT_EQ(Window().Notifications()[0].State, SNotificationItem::CS_Success);
	EXPECT_TRUE(Window().Notifications()[0].bFading);
	EXPECT_EQ(ToastTexts.front(), "Signal Tower: Packaging...");
	EXPECT_NE(std::find_if(ToastTexts.begin(), ToastTexts.end(), [](const std::string& Text) { return Text.rfind("Signal Tower: Uploading 5/5", 0) == 0; }),
		ToastTexts.end()) << ToastTexts.back();

	const nlohmann::json Files = ServiceGet("/v1/games/1/mods/" + ModId + "/files");
	std::vector<std::string> Platforms;
	int64 LastAdded = 0;
	for (const nlohmann::json& File : Files.value("data", nlohmann::json::array()))
	{
		EXPECT_GE(File.value("date_added", int64(0)) - LastAdded, 1) << "a pause between files";
		LastAdded = File.value("date_added", int64(0));
		EXPECT_EQ(File.value("changelog", ""), "First release");
		EXPECT_EQ(File.value("version", ""), "1") << "the stamped version";
		for (const nlohmann::json& Platform : File.value("platforms", nlohmann::json::array()))
		{
			Platforms.push_back(Platform.value("platform", ""));
		}
	}
	std::sort(Platforms.begin(), Platforms.end());
	// Windows and its Linux server; Android as Quest (mod.io's "oculus") and the Vesko server (the game
	// files it as "mac"); the plug-in's own files for other modders.
	EXPECT_EQ(Platforms, (std::vector<std::string>{"linux", "mac", "oculus", "source", "windows"})) << Files.dump();
	EXPECT_FALSE(fs::exists(ProjectDir() + "Plugins/UGC" + ModId + "/Saved")) << "shared sources never carry Saved";
	EXPECT_NE(ServiceGet("/v1/games/1/mods/" + ModId).value("metadata_blob", "").find("\"VersionUUID\": 1"), std::string::npos);

	// Stage the Windows build into a folder of the modder's choosing.
	const std::string StageDir = Temp.Dir() + "Stage";
	fs::create_directories(StageDir);
	ASSERT_TRUE(Window().Toggle("Android"));
	Sandbox.ClearRequestLog();
	SurfaceTestState::Get().FolderAnswers.push_back(StageDir);
	EXPECT_TRUE(Window().Shows("Select your Steam Kelvor install directory to stage a map")) << Window().PrintTree();
	ASSERT_TRUE(Press("Select Stage Directory"));
	EXPECT_TRUE(Window().Shows("Stage Dir: " + StageDir)) << Window().PrintTree();
	ASSERT_TRUE(Press("Stage Mod")) << Window().LastFailure();
	EXPECT_TRUE(WaitFor([&] { return !fs::is_empty(StageDir) && Window().IsButtonEnabled("Stage Mod").value_or(false); }, 60.0))
		<< Window().PrintTree();
	EXPECT_TRUE(Window().IsButtonEnabled("Select Mod").value_or(false)) << "the rows are usable again";
	EXPECT_EQ(Window().Notifications().back().Text, "Signal Tower: Staged mod");
	EXPECT_EQ(Window().Notifications().back().State, SNotificationItem::CS_Success);
	for (const Maptorn::Sandbox::FRecordedRequest& Request : Sandbox.RequestLog())
	{
		EXPECT_FALSE(Request.Method != "GET" && Request.Path.find("/files") != std::string::npos) << "staging never uploads: " << Request.Path;
	}
}
