// The account page: the terms, the e-mail code, the login that fills the upload page at once, the
// logout; and what a modder sees when mod.io refuses.

#include "Journey/EditorJourneyFixture.h"

#include "EditorEngine/SurfaceEditor.h"

namespace fs = std::filesystem;

TEST_F(EditorJourney, ALoginThroughTheAccountPageListsTheModdersModsAtOnce)
{
	LeavePluginInProject(NeonProps);
	StartEditor();
	EXPECT_TRUE(Window().Shows("Agree to Mod.io Terms")) << Window().PrintTree();
	EXPECT_TRUE(OpenPage("Upload Mod"));
	EXPECT_TRUE(Window().Shows("Agree to Mod.io Terms")) << "the account page stays until the modder is logged in";

	LogIn();

	// The upload page was chosen before the login, and shows the mods without waiting for the periodic refresh.
	ASSERT_TRUE(WaitForText("Neon Props", 2.0)) << Window().PrintTree();
	EXPECT_TRUE(Window().Shows("Select a Mod to Upload"));
	EXPECT_EQ(Window().Rows("SKelvorWorkshopUploadEntry").size(), 1u) << "only mods whose plug-in is in the project are listed";

	ASSERT_TRUE(OpenPage("Account"));
	ASSERT_TRUE(Press("Logout")) << Window().LastFailure();
	ASSERT_TRUE(WaitForText("Agree to Mod.io Terms")) << Window().PrintTree();
	EXPECT_FALSE(std::filesystem::exists(Editor.LoginFile())) << "logging out forgets the stored login";
}

TEST_F(EditorJourney, TheEditorOffersTheTabKeepsTheLoginOverARestartAndEndsTheSessionOnce)
{
	LeavePluginInProject(NeonProps);
	StartEditor();
	const std::optional<SurfaceEditor::FTabInfo> Tab = SurfaceEditor::FindTab(TEXT("KelvorWorkshopTab"));
	ASSERT_TRUE(Tab.has_value());
	EXPECT_EQ(Tab->DisplayName.ToString(), FString(TEXT("Kelvor Workshop")));
	EXPECT_TRUE(Tab->bInToolsCategory) << "the tab is offered in the Tools menu";
	EXPECT_TRUE(fs::exists(Temp.Path() / "Modder" / "steam_appid.txt")) << "the game's app id for Steam, in the editor's working folder";
	LogIn();
	EXPECT_EQ(Editor.Exit(), 1) << "the mod.io session ends once, at the engine's exit";
	EXPECT_FALSE(fs::exists(Temp.Path() / "Modder" / "steam_appid.txt"));

	// The next start finds the login kept by the plug-in: no account page, the mods listed.
	StartEditor();
	ASSERT_TRUE(OpenPage("Upload Mod"));
	EXPECT_TRUE(WaitForText("Neon Props")) << Window().PrintTree();
	EXPECT_FALSE(Window().Shows("Agree to Mod.io Terms"));
}
