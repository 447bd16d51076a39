// The source-plug-in browser: paging, every sort, the search box, and "Add to Project" that installs
// a shared plug-in into the project.

#include "Journey/EditorJourneyFixture.h"

#include <algorithm>
#include <fstream>

namespace fs = std::filesystem;

namespace
{
// The sort the last catalogue request asked for, as the service saw it.
std::string LastCatalogueSort(const Maptorn::Sandbox::FModioSandbox& Sandbox)
{
	const std::vector<Maptorn::Sandbox::FRecordedRequest> Log = Sandbox.RequestLog();
	for (auto It = Log.rbegin(); It != Log.rend(); ++It)
	{
		const size_t Sort = It->Query.find("_sort=");
		if (It->Path == "/v1/games/1/mods" && Sort != std::string::npos)
		{
			return It->Query.substr(Sort + 6, It->Query.find('&', Sort) - Sort - 6);
		}
	}
	return std::string();
}
}

TEST_F(EditorJourney, TheBrowserPagesSortsSearchesAndAddsASharedPluginToTheProject)
{
	StartEditor();
	LogIn();
	ASSERT_TRUE(OpenPage("Download Source Plugin"));
	ASSERT_TRUE(WaitFor([this] { return Window().ShowsContaining("Results - Page 1/2"); })) << Window().PrintTree();
	EXPECT_EQ(Window().Rows("SKelvorWorkshopSourcePluginEntry").size(), 20u);
	EXPECT_EQ(Window().IsButtonEnabled("Previous Page"), false);

	ASSERT_TRUE(Press("Next Page")) << Window().LastFailure();
	ASSERT_TRUE(WaitFor([this] { return Window().ShowsContaining("Results - Page 2/2"); })) << Window().PrintTree();
	EXPECT_EQ(Window().IsButtonEnabled("Next Page"), false);
	ASSERT_TRUE(Press("Previous Page")) << Window().LastFailure();
	ASSERT_TRUE(WaitFor([this] { return Window().ShowsContaining("Results - Page 1/2"); })) << Window().PrintTree();

	// Every sort of the combo reaches mod.io, and the names sort both ways.
	const std::vector<std::pair<std::string, std::string>> Sorts = {{"Popular", "-downloads_today"}, {"Subscribers", "-subscribers_total"},
		{"Newest", "-date_live"}, {"Last Updated", "-date_updated"}, {"Rating", "-ratings_weighted_aggregate"},
		{"Downloads", "-downloads_total"}, {"Name Z-A", "-name"}, {"Name A-Z", "name"}};
	std::string Current = Window().Rows("SComboBox<TSharedPtr<ESourceModQueryType>>").empty()
		? std::string()
		: Window().Rows("SComboBox<TSharedPtr<ESourceModQueryType>>").front().front();
	for (const auto& [Label, Key] : Sorts)
	{
		ASSERT_TRUE(WaitFor([this] { return Window().IsButtonEnabled("Refresh.svg").value_or(false); }));
		ASSERT_TRUE(Window().Choose(Current, Label)) << Window().LastFailure();
		ASSERT_TRUE(WaitFor([&] { return LastCatalogueSort(Sandbox) == Key; })) << Label;
		Current = Label;
	}
	ASSERT_TRUE(WaitFor([this] { return Window().IsButtonEnabled("Refresh.svg").value_or(false); }));
	EXPECT_EQ(Window().Rows("SKelvorWorkshopSourcePluginEntry").front().front(), "Alpine Cabins");

	ASSERT_TRUE(Window().Type("Search for Source Plugins", "Kit"));
	ASSERT_TRUE(WaitFor([this] { return Window().Shows("3 Results - Page 1/1"); })) << Window().PrintTree();
	for (const std::vector<std::string>& Row : Window().Rows("SKelvorWorkshopSourcePluginEntry"))
	{
		EXPECT_NE(Row.front().find("Kit"), std::string::npos) << Row.front();
	}

	// A plug-in not yet in the project is added without a question.
	ASSERT_TRUE(PressNear("Crate Kit", "Add to Project")) << Window().LastFailure();
	ASSERT_TRUE(WaitFor([this] { return Window().Shows("Status: Installed, Editor Restart Required"); }, 30.0)) << Window().PrintTree();
	EXPECT_TRUE(MessageBoxes().empty());
	bool bInstalled = false;
	for (const fs::directory_entry& Entry : fs::directory_iterator(ProjectDir() + "Plugins"))
	{
		const fs::path Descriptor = Entry.path() / (Entry.path().filename().string() + ".uplugin");
		bInstalled |= Entry.path().filename().string().rfind("UGC", 0) == 0 && fs::exists(Descriptor);
	}
	EXPECT_TRUE(bInstalled) << "the shared plug-in is in the project's Plugins folder";
	int32 NotInstalled = 0;
	for (const std::vector<std::string>& Row : Window().Rows("SKelvorWorkshopSourcePluginEntry"))
	{
		NotInstalled += std::count(Row.begin(), Row.end(), "Status: Not Installed") > 0 ? 1 : 0;
	}
	EXPECT_EQ(NotInstalled, 2) << "the other rows can still be added";
}

TEST_F(EditorJourney, AddingAPluginTheProjectHasSwitchedOffAsksFirstAndNoKeepsIt)
{
	// Crate Kit's plug-in is in the project, but switched off in the .uproject.
	LeavePluginInProject(CrateKit);
	const std::string ProjectFile = Editor.Layout().ProjectFile;
	nlohmann::json Project = nlohmann::json::parse(std::ifstream(ProjectFile), nullptr, false);
	Project["Plugins"].push_back({{"Name", "UGC" + std::to_string(CrateKit)}, {"Enabled", false}});
	std::ofstream(ProjectFile) << Project.dump(1, '\t');
	const std::string Descriptor = ProjectDir() + "Plugins/UGC" + std::to_string(CrateKit) + "/UGC" + std::to_string(CrateKit) + ".uplugin";
	const std::string Before = Maptorn::Testing::ReadTextFile(Descriptor);

	StartEditor();
	LogIn();
	ASSERT_TRUE(OpenPage("Download Source Plugin"));
	ASSERT_TRUE(Window().Type("Search for Source Plugins", "Crate Kit"));
	ASSERT_TRUE(WaitFor([this] { return Window().Shows("1 Results - Page 1/1"); })) << Window().PrintTree();
	SurfaceTestState::Get().MessageBoxAnswers.push_back(EAppReturnType::No);
	ASSERT_TRUE(PressNear("Crate Kit", "Add to Project")) << Window().LastFailure();
	ASSERT_EQ(MessageBoxes().size(), 1u);
	EXPECT_EQ(MessageBoxes().front().Caption, "Kelvor Workshop Source Download");
	Editor.RunFor(0.2);
	EXPECT_EQ(Maptorn::Testing::ReadTextFile(Descriptor), Before) << "no answers no";
	EXPECT_FALSE(Window().ShowsContaining("Downloading"));
}
