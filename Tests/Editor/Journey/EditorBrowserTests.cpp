// The source-plug-in browser: paging, every sort, the search box, and "Add to Project" that installs
// a shared plug-in into the project.

#include "Journey/EditorJourneyFixture.h"

#include <curl/curl.h>

#include <algorithm>
#include <fstream>
#include <set>

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

// The cartographer, who shares the kits, makes Mod need Dependency on the service.
bool AddDependency(Maptorn::Sandbox::FModioSandbox& Sandbox, int64 Mod, int64 Dependency)
{
	CURL* Curl = curl_easy_init();
	const std::string Url = Sandbox.GetBaseUrl() + "/v1/games/1/mods/" + std::to_string(Mod) + "/dependencies";
	const std::string Body = "dependencies[]=" + std::to_string(Dependency);
	curl_slist* Headers = curl_slist_append(nullptr, ("Authorization: Bearer " + Sandbox.IssueTokenFor("cartographer@example.com")).c_str());
	curl_easy_setopt(Curl, CURLOPT_URL, Url.c_str());
	curl_easy_setopt(Curl, CURLOPT_HTTPHEADER, Headers);
	curl_easy_setopt(Curl, CURLOPT_POSTFIELDS, Body.c_str());
	curl_easy_setopt(Curl, CURLOPT_WRITEFUNCTION, +[](char*, size_t Size, size_t Count, void*) { return Size * Count; });
	long Status = 0;
	const bool bSent = curl_easy_perform(Curl) == CURLE_OK;
	curl_easy_getinfo(Curl, CURLINFO_RESPONSE_CODE, &Status);
	curl_slist_free_all(Headers);
	curl_easy_cleanup(Curl);
	return bSent && Status == 201;
}

std::set<std::string> PluginsIn(const std::string& Folder)
{
	std::set<std::string> Names;
	for (const fs::directory_entry& Entry : fs::directory_iterator(Folder))
	{
		const std::string Name = Entry.path().filename().string();
		if (Name.rfind("UGC", 0) == 0 && fs::exists(Entry.path() / (Name + ".uplugin")))
		{
			Names.insert(Name);
		}
	}
	return Names;
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

	// A plug-in not yet in the project, needing no other, is added without a question.
	ASSERT_TRUE(PressNear("Sign Kit", "Add to Project")) << Window().LastFailure();
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

TEST_F(EditorJourney, APluginThatNeedsOthersAsksAndYesAddsThemAllWhileNoAddsItAlone)
{
	// Crate Kit needs Lamp Kit, which needs Sign Kit; Alpine Cabins needs Brass Fixtures and Cargo Containers.
	ASSERT_TRUE(AddDependency(Sandbox, 1005, 1007));
	ASSERT_TRUE(AddDependency(Sandbox, 1008, 1009));
	ASSERT_TRUE(AddDependency(Sandbox, 1008, 1010));
	StartEditor();
	LogIn();
	ASSERT_TRUE(OpenPage("Download Source Plugin"));
	EXPECT_TRUE(Window().ShowsContaining("run \"maptorn deps add <your mod id> <dependency id>\"")) << Window().PrintTree();
	ASSERT_TRUE(Window().Type("Search for Source Plugins", "Kit"));
	ASSERT_TRUE(WaitFor([this] { return Window().Shows("3 Results - Page 1/1"); })) << Window().PrintTree();

	SurfaceTestState::Get().MessageBoxAnswers.push_back(EAppReturnType::Yes);
	ASSERT_TRUE(PressNear("Crate Kit", "Add to Project")) << Window().LastFailure();
	const std::set<std::string> All = {"UGC1005", "UGC1006", "UGC1007"};
	ASSERT_TRUE(WaitFor([&] { return PluginsIn(ProjectDir() + "Plugins") == All; }, 30.0)) << Window().PrintTree();
	ASSERT_EQ(MessageBoxes().size(), 1u);
	EXPECT_EQ(MessageBoxes()[0].Caption, "Kelvor Workshop Source Download");
	EXPECT_EQ(MessageBoxes()[0].Text, "UGC1006 (Crate Kit) needs other plugins from mod.io that are not in your project: UGC1007 (Sign Kit), "
									  "UGC1005 (Lamp Kit). \r\n \r\n Download them too? Yes downloads all of them, No downloads only UGC1006.");
	ASSERT_TRUE(WaitFor([this] { return !Window().ShowsContaining("Status: Download"); }, 30.0)) << Window().PrintTree();

	ASSERT_TRUE(Window().Type("Search for Source Plugins", "Alpine"));
	ASSERT_TRUE(WaitFor([this] { return Window().Shows("1 Results - Page 1/1"); })) << Window().PrintTree();
	SurfaceTestState::Get().MessageBoxAnswers.push_back(EAppReturnType::No);
	ASSERT_TRUE(PressNear("Alpine Cabins", "Add to Project")) << Window().LastFailure();
	ASSERT_TRUE(WaitFor([this] { return Window().Shows("Status: Installed, Editor Restart Required"); }, 30.0)) << Window().PrintTree();
	ASSERT_EQ(MessageBoxes().size(), 2u);
	EXPECT_NE(MessageBoxes()[1].Text.find("UGC1009 (Brass Fixtures), UGC1010 (Cargo Containers)"), std::string::npos) << MessageBoxes()[1].Text;
	Editor.RunFor(0.3);
	EXPECT_EQ(PluginsIn(ProjectDir() + "Plugins"), (std::set<std::string>{"UGC1005", "UGC1006", "UGC1007", "UGC1008"})) << "no adds only the one";
}
