// The project's own map on the Steam Workshop page: its definition created from the page, its map
// linked in the definition's details, a depot build and a platform cook deployed, and the map staged
// into the Steam game install; and what the page says while the game is not installed.

#include "Journey/EditorJourneyFixture.h"

#include "Support/StandinEngine.h"

#include <fstream>
#include <sstream>

namespace fs = std::filesystem;

namespace
{
std::string ReadFile(const fs::path& Path)
{
	std::ifstream In(Path, std::ios::binary);
	std::ostringstream Text;
	Text << In.rdbuf();
	return Text.str();
}
}

TEST_F(EditorJourney, TheSteamPageCreatesTheProjectMapDeploysItAndStagesItIntoTheGameInstall)
{
	StartEditor();
	LogIn();
	ASSERT_TRUE(OpenPage("Steam Workshop"));
	EXPECT_TRUE(Window().Shows("Kelvor installation not found, can't stage")) << Window().PrintTree();
	EXPECT_TRUE(Window().Shows("This project has no map definition yet, name your map and create one"));
	EXPECT_EQ(Window().IsButtonEnabled("Deploy Platform Builds"), false) << "nothing to deploy yet";
	ASSERT_TRUE(OpenPage("Upload Mod"));
	EXPECT_FALSE(Window().Shows("Kelvor installation not found, can't stage")) << "its stage goes to the chosen Stage Dir";

	// The game installed through Steam is found when the editor starts again.
	const std::string Install = Temp.Dir() + "Steam/steamapps/common/Kelvor";
	fs::create_directories(Install);
	Editor.NextOptions().GameInstallDir = Install;
	std::string Error;
	ASSERT_TRUE(Editor.Restart(Error)) << Error;
	ASSERT_TRUE(WaitForText("Logged In")) << Window().PrintTree();
	ASSERT_TRUE(OpenPage("Steam Workshop"));
	EXPECT_TRUE(Window().Shows("Kelvor install: " + Install)) << Window().PrintTree();
	EXPECT_EQ(Window().IsButtonEnabled("Stage Map"), false) << "no map yet";

	ASSERT_TRUE(Window().Type("Map Name", "ab"));
	ASSERT_TRUE(Press("Create Map Definition"));
	ASSERT_FALSE(MessageBoxes().empty());
	EXPECT_EQ(MessageBoxes().back().Text, "The map name needs to be 3-32 characters long");
	ASSERT_TRUE(Window().Type("Map Name", "Old Harbour"));
	ASSERT_TRUE(Press("Create Map Definition"));
	EXPECT_TRUE(Window().Shows("Map definition: SVR_Old_Harbour (Old_Harbour)")) << Window().PrintTree();
	EXPECT_TRUE(Window().Shows("Windows map: not linked in the definition"));
	EXPECT_EQ(Window().IsButtonEnabled("Create Map Definition"), false) << "one map per project";
	const std::string Asset = ReadFile(ProjectDir() + "Content/CustomMaps/SVR_Old_Harbour/definition.uasset");
	EXPECT_NE(Asset.find("[Kelvor_Map definition]\nId=SVR_Old_Harbour\nMapLabel=Old_Harbour\n"), std::string::npos) << Asset;

	// The modder links their level in the definition's details, as in the engine.
	FWidgetDriver Details = Editor.OpenAssetDetails("/Game/CustomMaps/SVR_Old_Harbour/definition.definition");
	ASSERT_TRUE(Details.Type("Map", "/Game/CustomMaps/SVR_Old_Harbour/Harbour.Harbour", true)) << Details.LastFailure();
	ASSERT_TRUE(Details.Click("Save")) << Details.LastFailure();
	Editor.Frame();
	EXPECT_TRUE(Window().Shows("Windows map: /Game/CustomMaps/SVR_Old_Harbour/Harbour.Harbour")) << Window().PrintTree();

	// No platform ticked (Android is ticked at start-up): the depot build's manifest.
	EXPECT_EQ(Window().CheckState("Android"), ECheckBoxState::Checked);
	ASSERT_TRUE(Window().Toggle("Android"));
	ASSERT_TRUE(Window().Type("Steam change note", "First build"));
	ASSERT_TRUE(Press("Deploy Platform Builds")) << Window().LastFailure();
	ASSERT_TRUE(WaitFor([this] { return !MessageBoxes().empty() && MessageBoxes().back().Text == "Successfully built!"; })) << Window().PrintTree();
	const nlohmann::json Manifest = nlohmann::json::parse(ReadFile(ProjectDir() + "Saved/Cooked/Depot/SVR_Old_Harbour/metadata.json"), nullptr, false);
	EXPECT_EQ(Manifest.value("Id", ""), "SVR_Old_Harbour");
	EXPECT_EQ(Manifest.value("MapLabel", ""), "Old_Harbour");
	EXPECT_EQ(Manifest.value("EngineVersion", ""), "4.27");
	ASSERT_TRUE(WaitFor([this] { return Window().IsButtonEnabled("Deploy Platform Builds").value_or(false); })) << "the page is back";
	EXPECT_EQ(Window().BoxText("Steam change note"), "First build");

	// Windows ticked: the engine's editor cooks the linked map.
	const Maptorn::Testing::FStandinEngine Engine(Editor.Layout().EngineRoot);
	ASSERT_TRUE(Window().Toggle("Windows"));
	ASSERT_TRUE(Press("Deploy Platform Builds")) << Window().LastFailure();
	ASSERT_TRUE(WaitFor([&] { return Engine.ReadRecord().size() == 1 && Window().IsButtonEnabled("Deploy Platform Builds").value_or(false); }, 60.0))
		<< Window().PrintTree();
	const std::vector<std::string> Cook = Engine.ReadRecord()[0].Argv;
	EXPECT_NE(std::find(Cook.begin(), Cook.end(), "-targetplatform=Windows+LinuxServer"), Cook.end());
	EXPECT_NE(std::find(Cook.begin(), Cook.end(), "-map=/Game/CustomMaps/SVR_Old_Harbour/Harbour"), Cook.end());

	// Staged where the game loads its content, replacing an earlier stage.
	const fs::path Staged = fs::path(Install) / "Kelvor/Content/CustomMaps/SVR_Old_Harbour";
	fs::create_directories(Staged);
	std::ofstream(Staged / "Stale.umap") << "an earlier stage";
	ASSERT_TRUE(Press("Stage Map")) << Window().LastFailure();
	ASSERT_TRUE(WaitFor([this] { return MessageBoxes().back().Text == "Staged map"; }, 60.0)) << Window().PrintTree();
	EXPECT_TRUE(fs::is_regular_file(Staged / "Harbour.umap"));
	EXPECT_TRUE(fs::is_regular_file(Staged / "Harbour.uexp"));
	EXPECT_FALSE(fs::exists(Staged / "Stale.umap"));
	EXPECT_EQ(Engine.ReadRecord().size(), 2u) << "the stage cooks again";
	EXPECT_TRUE(WaitFor([this] { return Window().IsButtonEnabled("Stage Map").value_or(false); }));
}
